// The settings of one installation (CAutoIni) and of this product within a
// project (CKorvoInst). Settings are INI text in Windows-1252, "[SECTION]"
// and "KEY=value" lines, in files named korvo.ini.
#ifndef KORVO_CONTEXT_AUTO_INI_H_
#define KORVO_CONTEXT_AUTO_INI_H_

#include <string>

#include "korvo/export.h"

class CProjPath;

class KORVO_EXPORT CAutoIni {
 public:
  CAutoIni();
  virtual ~CAutoIni();

  // The value of `key` in `section` of ParKat's korvo.ini; empty when missing.
  std::wstring ReadKey(const std::wstring& section, const std::wstring& key);

  // Directory of the program files.
  std::wstring ProgKat;
  // Directory of the common settings (Kodfil.dat, korvo.ini, calibration files).
  std::wstring ParKat;
  // A date of the installation.
  std::wstring IniDatum;
};

class KORVO_EXPORT CKorvoInst {
 public:
  CKorvoInst();
  virtual ~CKorvoInst();

  // Binds the reader to the installation and the project; either may be null.
  int Init(CAutoIni* ini, CProjPath* proj);
  // The value of `key` in section `name`: the project directory's korvo.ini
  // first, then ParKat's; empty when missing in both.
  std::wstring ReadKey(const wchar_t* name, const wchar_t* key);

 private:
  CAutoIni* ini_ = nullptr;
  CProjPath* proj_ = nullptr;
};

#endif  // KORVO_CONTEXT_AUTO_INI_H_
