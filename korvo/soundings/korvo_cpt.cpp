#include "korvo/soundings/korvo_cpt.h"

#include <cmath>
#include <string>
#include <string_view>

#include "korvo/context/no_case.h"
#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"

namespace {

constexpr int kCodeCpt = 7;
constexpr int kCodeCptHeader = 107;

// Up to `width` characters of `line` from `column` on, without the blanks on
// their right: a CPT row pads its remark towards the tail, and the blanks
// behind a keyword's value are no part of it.
std::wstring_view FieldAt(std::wstring_view line, size_t column, size_t width) {
  if (line.size() <= column) return {};
  std::wstring_view field = line.substr(column, width);
  const size_t last = field.find_last_not_of(L' ');
  return last == std::wstring_view::npos ? std::wstring_view() : field.substr(0, last + 1);
}

// CPT rows: depth and three measured values, the remark at column 30 and,
// for a row with extra values, a tail at column 56.
struct CptRows {
  static constexpr int kCode = kCodeCpt;
  static constexpr size_t kRemarkColumn = 30;
  static constexpr size_t kRemarkWidth = 25;
  static constexpr size_t kTailColumn = 56;

  static void ScanLeft(std::wstring_view line, cpttype& row) {
    korvo::Scan(line, L"%f%ld%ld%ld", &row.djup, &row.matv1, &row.matv2, &row.matv3);
  }
  static std::wstring_view Remark(std::wstring_view line) {
    return FieldAt(line, kRemarkColumn, kRemarkWidth);
  }
  // The row starts from zeros, so whatever the tail does not hold stays 0.
  static void ScanTail(std::wstring_view line, cpttype& row) {
    if (line.size() < kTailColumn) return;
    korvo::Scan(line.substr(kTailColumn), L"%ld %lf %lf %lf", &row.tal4, &row.varde1, &row.varde2,
                &row.varde3);
  }
  static void PrepareForWrite(cpttype&) {}
  static void AppendLeft(const cpttype& row, std::wstring& out) {
    korvo::AppendFormat(out, L"%7.3f %6ld %6ld %6ld  ", row.djup, row.matv1, row.matv2, row.matv3);
  }
  // A negative varde1 alone brings no tail, and is lost on a save.
  static bool HasExtraValues(const cpttype& row) {
    return row.tal4 != 0 || row.varde1 > 0 || row.varde3 != 0 || row.varde2 != 0;
  }
  static void AppendTail(const cpttype& row, std::wstring& out) {
    if (!HasExtraValues(row)) return;
    if (out.size() < kTailColumn) out.append(kTailColumn - out.size(), L' ');
    korvo::AppendFormat(out, L"%ld %7.1lf %7.3lf %7.1lf", row.tal4, row.varde1, row.varde2,
                        row.varde3);
  }
};

// Whether rad7a, rad7b or rad7d are set apart from their defaults: only then
// is a missing .cpt file worth making.
int PresentationWorthMaking(const CKorvoCptPresentation& p) {
  constexpr double kTolerance = 0.01;
  return std::fabs(p.rad7a - 1.0) > kTolerance || std::fabs(p.rad7d) > kTolerance ||
                 std::fabs(p.rad7b - 0.1) > kTolerance
             ? 1
             : 0;
}

}  // namespace

// ---- CKorvoCpt -------------------------------------------------------------

int CKorvoCpt::Init(CStdioFileMem* fil, const wchar_t* date) {
  const int result = ReadBlock<CptRows>(fil, date);
  presentation.Init(fil->GetFilePath());
  return result;
}

int CKorvoCpt::Uppdat(CStdioFileMem* fil) {
  WriteBlock<CptRows>(fil);
  header.Uppdat(fil);
  if (presentation.andrad == 1) {
    presentation.Uppdat(fil->GetFilePath(), PresentationWorthMaking(presentation));
  }
  return 0;
}

int CKorvoCpt::MyKod() {
  return FindMy<CptRows>();
}

// ---- CKorvoCptHeader -------------------------------------------------------

namespace {

constexpr size_t kValueColumn = 26;
constexpr size_t kValueWidth = 127;

const wchar_t* const kSpetsArea = L"MA";
const wchar_t* const kMantelArea = L"MB";
const wchar_t* const kSondNummer = L"HN";
constexpr double kFactorTolerance = 0.001;

}  // namespace

int CKorvoCptHeader::Init(CStdioFileMem* fil) {
  std::wstring line;
  while (fil->ReadString(line) && !korvo::IsMarker(line)) {
    Ny(1, nullptr);
    cptheadertype& row = sista->rec;
    const std::wstring_view text = korvo::CutAtNewline(line);
    korvo::Scan(text, L"%s", &row.nyckel);
    korvo::CopyField(row.varde, FieldAt(text, kValueColumn, kValueWidth));
  }
  return 0;
}

int CKorvoCptHeader::Uppdat(CStdioFileMem* fil) {
  // The keyword lines bypass the character conversion of the row writers.
  std::wstring out = korvo::Format(L"*\n%d \n", kCodeCptHeader);
  if (Home() == 0) {
    do {
      korvo::AppendFormat(out, L"%-25s %s\n", pael->nyckel, pael->varde);
    } while (operator++(0) != nullptr);
  }
  fil->WriteString(out);
  return 0;
}

int CKorvoCptHeader::Find(const wchar_t* nyckel) {
  if (Home() != 0) return -1;
  do {
    if (korvo::EqualNoCase(pael->nyckel, nyckel)) return 0;
  } while (operator++(0) != nullptr);
  return -1;
}

int CKorvoCptHeader::FindReverse(const wchar_t* nyckel) {
  if (End() != 0) return -1;
  do {
    if (korvo::EqualNoCase(pael->nyckel, nyckel)) return 0;
  } while (operator--(0) != nullptr);
  return -1;
}

int CKorvoCptHeader::SetValue(const wchar_t* nyckel, const wchar_t* varde) {
  cptheadertype* row = nullptr;
  if (Find(nyckel) == 0) {
    row = pael;
  } else {
    Ny(1, nullptr);
    row = &sista->rec;
    korvo::CopyField(row->nyckel, nyckel);
  }
  korvo::CopyField(row->varde, varde);
  return 0;
}

double CKorvoCptHeader::SpetsAreaFaktor() {
  double faktor = 1.0;
  if (Find(kSpetsArea) == 0) korvo::Scan(pael->varde, L"%lf", &faktor);
  return faktor;
}

void CKorvoCptHeader::SpetsAreaFaktor(double faktor) {
  if (std::fabs(faktor - 1.0) > kFactorTolerance) {
    SetValue(kSpetsArea, korvo::Format(L"%.3lf", faktor).c_str());
  }
}

double CKorvoCptHeader::MantelAreaFaktor() {
  double faktor = -0.0;
  if (Find(kMantelArea) == 0) korvo::Scan(pael->varde, L"%lf", &faktor);
  return faktor;
}

void CKorvoCptHeader::MantelAreaFaktor(double faktor) {
  if (std::fabs(faktor) > kFactorTolerance) {
    SetValue(kMantelArea, korvo::Format(L"%.3lf", faktor).c_str());
  }
}

int CKorvoCptHeader::SondNummer() {
  int nummer = 0;
  if (Find(kSondNummer) == 0) korvo::Scan(pael->varde, L"%ld", &nummer);
  return nummer;
}

void CKorvoCptHeader::SondNummer(int nummer) {
  if (nummer != 0) SetValue(kSondNummer, korvo::Format(L"%ld", nummer).c_str());
}
