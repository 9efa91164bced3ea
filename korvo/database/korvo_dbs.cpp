#include "korvo/database/korvo_dbs.h"

#include <cwchar>

#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_format.h"
#include "korvo/foundation/format.h"
#include "korvo/platform/datetime.h"
#include "korvo/platform/env.h"

wchar_t CKorvoDbs::m_Dbsver[4] = L"3.0";
wchar_t CKorvoDbs::m_Dbsver40[4] = L"4.0";

namespace {

// Copies `text` into a fixed wide field, cut to fit.
template <size_t N>
void SetField(wchar_t (&field)[N], const std::wstring& text) {
  size_t n = text.size() < N ? text.size() : N - 1;
  std::wmemcpy(field, text.data(), n);
  std::wmemset(field + n, L'\0', N - n);
}

}  // namespace

CKorvoDbs::CKorvoDbs()
    : prjdat{},
      vaglinje(nullptr),
      reserv(0),
      behorighet(1),
      guidreg(nullptr),
      postlangd(korvo::dbs::kShortRecordSize),
      postlangd3(korvo::dbs::kShortRecordSize),
      postlangd4(korvo::dbs::kLongRecordSize),
      proj(nullptr),
      uppdaterar(0),
      symbolstatus(-1) {}

CKorvoDbs::CKorvoDbs(CProjPath* proj_path) : CKorvoDbs() {
  proj = proj_path;
  PrepareNewHeader();
  if (proj != nullptr) {
    const std::wstring base = proj->ProjKat + korvo::kPathSeparator;
    dbkfil.SetFilePath((base + CProjPath::AutoDbkNamn).c_str());
    dbsfil.SetFilePath((base + CProjPath::AutoDbsNamn).c_str());
  }
}

CKorvoDbs::~CKorvoDbs() = default;

// The version text keeps one decimal of the whole part; the rest of the
// version number, if m_Dbsver ever has more, goes to verdel. The 0.001 keep
// the whole part from falling one short when the number is not exact.
void CKorvoDbs::SetCurrentVersion() {
  double v = 0.0;
  korvo::Scan(m_Dbsver, L"%lf", &v);
  const int whole = static_cast<int>(v + 0.001);
  SetField(prjdat.Dbsver, korvo::Format(L"%.1lf", whole + 0.001));
  prjdat.verdel = v - whole;
}

void CKorvoDbs::PrepareNewHeader() {
  SetCurrentVersion();
  prjdat.slutpos = korvo::dbs::kFirstRecordOffset;
  prjdat.uppdnrfil = 0;
  SetField(prjdat.Ksyst, L"LOK");
  const korvo::LocalTime today = korvo::NowLocal();
  SetField(prjdat.Datum, korvo::Format(L"%02d.%02d.%04d", today.day, today.month, today.year));
}

std::wstring CKorvoDbs::GetDbsFileName() {
  return dbsfil.GetFilePath();
}

wchar_t* CKorvoDbs::GetDbsverString() {
  return m_Dbsver;
}

void CKorvoDbs::ChangeReadWriteAccess(int read_only) {
  behorighet = read_only;
}
