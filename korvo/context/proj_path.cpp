#include "korvo/context/proj_path.h"

#include "korvo/platform/env.h"

const wchar_t* const CProjPath::AutoDbsNamn = L"Korvodal.dbs";
const wchar_t* const CProjPath::AutoDbkNamn = L"Korvodal.dbk";
const wchar_t* const CProjPath::AutoParNamn = L"KORVO";
const wchar_t* const CProjPath::AutoDbfKat = L"Dbf";
const wchar_t* const CProjPath::AvpNamn = L"Avp.txt";
const wchar_t* const CProjPath::Gvrref = L"Gvrref.txt";
const wchar_t* const CProjPath::KlippDbkNamn = L"Klippvik.dbk";
const wchar_t* const CProjPath::KlippDbfKat = L"Klipp";

CProjPath::CProjPath() = default;
CProjPath::~CProjPath() = default;

int CProjPath::SetPath(const wchar_t* dir) {
  ProjKat = dir ? dir : L"";
  // Both separators end a directory on Windows; only ours does elsewhere.
  while (ProjKat.size() > 1 &&
         (ProjKat.back() == korvo::kPathSeparator[0] || ProjKat.back() == L'/')) {
    ProjKat.pop_back();
  }
  const std::wstring base = ProjKat + korvo::kPathSeparator;
  DbsFil = base + AutoDbsNamn;
  DbfKat = base + AutoDbfKat;
  AvpFil = base + AvpNamn;
  return 0;
}
