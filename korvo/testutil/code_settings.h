// The code table is process-wide, and a project's setting changes it for
// good. A test that changes it holds a CodeTableGuard, which puts the
// built-in values back when the test ends, and opens its projects with
// CodeSettings.
#ifndef KORVO_TESTUTIL_CODE_SETTINGS_H_
#define KORVO_TESTUTIL_CODE_SETTINGS_H_

#include <cstring>
#include <filesystem>
#include <string>

#include "korvo/context/auto_ini.h"
#include "korvo/context/proj_path.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/temp_dir.h"

namespace korvo::test {

class CodeTableGuard {
 public:
  CodeTableGuard() { std::memcpy(saved_, CKorvoSnd::Akod1, sizeof saved_); }
  ~CodeTableGuard() { Restore(); }
  CodeTableGuard(const CodeTableGuard&) = delete;
  CodeTableGuard& operator=(const CodeTableGuard&) = delete;

  void Restore() const { std::memcpy(CKorvoSnd::Akod1, saved_, sizeof saved_); }
  bool Unchanged() const { return std::memcmp(CKorvoSnd::Akod1, saved_, sizeof saved_) == 0; }

 private:
  kod saved_[sizeof CKorvoSnd::Akod1 / sizeof CKorvoSnd::Akod1[0]];
};

// A project in `dir` with its settings directory "par" (ParKat).
class CodeSettings {
 public:
  explicit CodeSettings(const TempDir& dir) : dir_(dir) {
    std::filesystem::create_directory(dir.path() / "par");
    proj_.SetPath(dir.wpath().c_str());
    ini_.ParKat = dir.File("par");
    ini_.ProgKat = dir.wpath();
  }
  // Writes korvo.ini with MTRLKOD set to `value`, or removes it for null.
  void Setting(const char* value) const {
    if (value == nullptr) {
      std::filesystem::remove(dir_.path() / "par" / "korvo.ini");
    } else {
      dir_.Write("par/korvo.ini",
                 std::string("[SYSTEM]\r\nLANG=SV\r\n[KORVO]\r\nMTRLKOD=") + value + "\r\n");
    }
  }
  // Makes a document of the project, which applies the settings to the table.
  void Open() { CKorvoSnd snd(&proj_, nullptr, &ini_); }
  const CAutoIni& ini() const { return ini_; }
  CProjPath& proj() { return proj_; }

 private:
  const TempDir& dir_;
  CProjPath proj_;
  CAutoIni ini_;
};

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_CODE_SETTINGS_H_
