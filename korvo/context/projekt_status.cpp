#include "korvo/context/projekt_status.h"

#include <iterator>

#include "korvo/context/no_case.h"
#include "korvo/foundation/field_text.h"

namespace {

// The names of the library's own resources, in the order of the codes.
constexpr const wchar_t* kDefaultNames[] = {L"Active",        L"Avslutat", L"Arkiverat",
                                            L"Levererat",     L"Vilande",  L"Ska arkiveras",
                                            L"Status unknown"};
static_assert(std::size(kDefaultNames) == CProjektStatus::kOkand + 1);

}  // namespace

CProjektStatus::CProjektStatus() : kod(kOkand) {}
CProjektStatus::~CProjektStatus() = default;

void CProjektStatus::SetHandle(korvo::ModuleHandle lang) {
  sprak_ = lang;
}

void CProjektStatus::Load() {
  while (Home() == 0) Delete();
  // Strings are not read from a module yet, whichever is named: the
  // library's own Swedish names serve every language.
  for (int code = kAktiv; code <= kOkand; ++code) {
    Ny(1, nullptr);
    pael->kod = code;
    korvo::CopyField(pael->namn, kDefaultNames[code]);
  }
}

std::wstring CProjektStatus::GetStatus() {
  std::wstring unknown;
  if (Home() != 0) return unknown;
  do {
    if (pael->kod == kod) return pael->namn;
    if (pael->kod == kOkand) unknown = pael->namn;
  } while ((*this)++);
  return unknown;
}

int CProjektStatus::Find(const std::wstring& name) {
  if (Home() != 0) return -1;
  do {
    if (korvo::EqualNoCase(pael->namn, name)) return pael->kod;
  } while ((*this)++);
  return -1;
}
