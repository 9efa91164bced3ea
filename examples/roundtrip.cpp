// Reads one investigation point and writes it back into a temporary
// directory, then tells whether the copy is byte for byte the original.
//
//   korvo-roundtrip PATH/TO/POINT.SND
#include <korvo/korvo.h>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace fs = std::filesystem;

static std::string Bytes(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: korvo-roundtrip POINT.SND\n");
    return 2;
  }
  const fs::path source = fs::absolute(argv[1]);
  if (!fs::is_regular_file(source)) {
    std::fprintf(stderr, "korvo-roundtrip: no such file: %s\n", source.string().c_str());
    return 1;
  }
  // Wide text goes to the terminal in its own character set; the numbers of
  // the files never depend on the locale.
  const char* ctype = std::setlocale(LC_CTYPE, "");
  if (ctype == nullptr || std::strcmp(ctype, "C") == 0) std::setlocale(LC_CTYPE, "C.UTF-8");
  korvo::SetStatusHandler(
      [](const std::wstring& text) { std::fprintf(stderr, "status: %ls\n", text.c_str()); });

  const std::wstring id = source.stem().wstring();
  CKorvoSnd point;
  point.Init(id.c_str(), source.wstring().c_str());
  std::printf("point %ls\n  x %.3f  y %.3f  z %.3f  inclination %.1f\n", point.id, point.x, point.y,
              point.z, point.lutning);
  for (const std::wstring* t : {&point.text1, &point.text2, &point.text3, &point.text4}) {
    if (!t->empty()) std::printf("  text: %ls\n", t->c_str());
  }
  std::printf("  guid %ls\n  file created %ls, last written %ls\n", point.guid.c_str(),
              point.skapad, point.andrad);

  const fs::path out_dir = fs::temp_directory_path() / "korvo-roundtrip";
  fs::create_directories(out_dir);
  const fs::path target = out_dir / source.filename();
  point.Uppdat(id.c_str(), target.wstring().c_str());
  const bool same = Bytes(source) == Bytes(target);
  std::printf("written to %s: %s\n", target.string().c_str(),
              same ? "identical to the original" : "DIFFERS from the original");
  return same ? 0 : 1;
}
