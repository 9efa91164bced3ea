// libFuzzer target: any bytes as a point's .TLK file give an interpretation
// that can be cleaned, checked, given a rock level and written back.
#include <korvo/korvo.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const fs::path dir = [] {
    fs::path d = fs::temp_directory_path() / "korvo-fuzz-tlk";
    fs::create_directories(d);
    korvo::SetMessageHandler(
        [](const std::wstring&, const std::wstring&, int, int) { return korvo::IDNO; });
    return d;
  }();
  const fs::path in = dir / "F.TLK";
  std::ofstream(in, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  CKorvoTlk tlk(1, 0, 0);
  if (tlk.Init(nullptr, L"F", in.wstring().c_str()) != 0) return 0;
  tlk.DataCheck(0);
  tlk.TolkClean();
  tlk.InsertBerg(1.5f, 4);
  tlk.Sortera(1);
  tlk.Uppdat(nullptr, (dir / "OUT.TLK").wstring().c_str());
  return 0;
}
