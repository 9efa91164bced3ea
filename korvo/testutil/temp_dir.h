// A fresh directory for one test, removed with everything in it at the end.
#ifndef KORVO_TESTUTIL_TEMP_DIR_H_
#define KORVO_TESTUTIL_TEMP_DIR_H_

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace korvo::test {

class TempDir {
 public:
  TempDir() {
    std::random_device rd;
    auto base = std::filesystem::temp_directory_path();
    for (;;) {
      path_ = base / ("korvo-test-" + std::to_string(rd()));
      if (std::filesystem::create_directory(path_)) break;
    }
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // The directory as the library's wide text, without a trailing separator.
  std::wstring wpath() const { return path_.wstring(); }
  // A file in the directory, as wide text.
  std::wstring File(const std::string& name) const { return (path_ / name).wstring(); }

  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
  }
  std::string Read(const std::string& name) const {
    std::ifstream in(path_ / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(path_ / name); }

 private:
  std::filesystem::path path_;
};

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_TEMP_DIR_H_
