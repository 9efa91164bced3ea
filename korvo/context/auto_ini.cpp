#include "korvo/context/auto_ini.h"

#include "korvo/context/ini_file.h"
#include "korvo/context/proj_path.h"

CAutoIni::CAutoIni() = default;
CAutoIni::~CAutoIni() = default;

std::wstring CAutoIni::ReadKey(const std::wstring& section, const std::wstring& key) {
  std::wstring value;
  korvo::ReadIniValue(korvo::IniPathIn(ParKat), section, key, &value);
  return value;
}

CKorvoInst::CKorvoInst() = default;
CKorvoInst::~CKorvoInst() = default;

int CKorvoInst::Init(CAutoIni* ini, CProjPath* proj) {
  ini_ = ini;
  proj_ = proj;
  return 0;
}

std::wstring CKorvoInst::ReadKey(const wchar_t* name, const wchar_t* key) {
  std::wstring value;
  if (name == nullptr || key == nullptr) return value;
  // A project may set a key of its own, even to an empty value, and that
  // setting stands before the installation's.
  if (proj_ != nullptr &&
      korvo::ReadIniValue(korvo::IniPathIn(proj_->ProjKat), name, key, &value)) {
    return value;
  }
  if (ini_ != nullptr) korvo::ReadIniValue(korvo::IniPathIn(ini_->ParKat), name, key, &value);
  return value;
}
