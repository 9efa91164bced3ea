// libFuzzer target: any bytes as a point's .SND file give a document, and the
// document writes itself back without a crash.
#include <korvo/korvo.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const fs::path dir = [] {
    fs::path d = fs::temp_directory_path() / "korvo-fuzz" / "Dbf";
    fs::create_directories(d);
    return d.parent_path();
  }();
  std::ofstream(dir / "Dbf" / "F.SND", std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  CProjPath proj;
  proj.SetPath(dir.wstring().c_str());
  CKorvoSnd snd(&proj, nullptr);
  snd.Init(L"F", nullptr);
  snd.SetMemFile(1);
  snd.Uppdat(nullptr, nullptr);
  return 0;
}
