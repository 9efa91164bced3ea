#include "korvo/observations/korvo_tlk.h"

#include <cmath>
#include <cwchar>

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/messages.h"
#include "korvo/foundation/field_file.h"
#include "korvo/platform/env.h"

namespace {

constexpr int kCodeTlk = 60;
constexpr unsigned kOpenWrite = 0x1001;
// The first row line carries its remark from this column; the second its
// comment from kCommentColumn. Both texts hold at most 25 characters.
constexpr size_t kRemarkColumn = 25;
constexpr size_t kCommentColumn = 10;
constexpr int kHighestSource = 5;
constexpr int kSourceAssumedRock = 4;
constexpr int kSourceRockDrilled = 5;
constexpr int kStopCodeRock = 4;
// Levels closer than this are the same level to AddTolkNiva.
constexpr double kSameLevel = 0.001;
// A rock row this close to the rounded rock level is left as it is.
constexpr double kRockTolerance = 0.01;
// A layer whose top lies at most this far above rock is taken down to it.
constexpr double kRockJoinGap = 0.201;

constexpr const wchar_t* kRock = L"berg";
constexpr const wchar_t* kBlock = L"block";
constexpr const wchar_t* kUnknown = L"X";

// Folds the letters of ASCII and Latin-1 to lower case, as names of
// materials are compared without regard to case.
wchar_t Fold(wchar_t c) {
  if ((c >= L'A' && c <= L'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) return c + 0x20;
  return c;
}

bool EqualNoCase(const wchar_t* a, const wchar_t* b) {
  for (; *a && *b; ++a, ++b) {
    if (Fold(*a) != Fold(*b)) return false;
  }
  return *a == *b;
}

bool Same(const wchar_t* a, const wchar_t* b) {
  return std::wcscmp(a, b) == 0;
}

bool IsGvyLine(const std::wstring& line) {
  return EqualNoCase(line.c_str(), L"gvy");
}

void TrimTrailingBlanks(std::wstring& line) {
  const size_t end = line.find_last_not_of(L" \t");
  line.erase(end == std::wstring::npos ? 0 : end + 1);
}

}  // namespace

CKorvoTlk::CKorvoTlk() {
  ClearFields();
}

CKorvoTlk::~CKorvoTlk() = default;

void CKorvoTlk::ClearFields() {
  hargvy = 0;
  gvy = 0.0f;
  skapad[0] = andrad[0] = L'\0';
  konvflagga = rensa = samlagring = 0;
}

int CKorvoTlk::Sortval(int key) {
  if (key == 1) return pmael->niva >= pael->niva ? 1 : 0;
  if (key == -1) return pmael->niva > pael->niva ? 1 : 0;
  return 0;
}

// ---- The vocabulary of old names ------------------------------------------

int CKorvoTlk::OldtextToIndex(const wchar_t* text) {
  if (text == nullptr) return 0;
  for (size_t place = 0; place < oldtext.size(); ++place) {
    if (EqualNoCase(oldtext[place].c_str(), text)) return oldindex[place];
  }
  return 0;
}

const std::wstring* CKorvoTlk::OldTextOf(int index) const {
  for (size_t place = 0; place < oldindex.size(); ++place) {
    if (oldindex[place] == index) return &oldtext[place];
  }
  return nullptr;
}

int CKorvoTlk::IndexToOldtext(int index, std::wstring& out) {
  const std::wstring* old = OldTextOf(index);
  out = old ? *old : kUnknown;
  return old ? 0 : -1;
}

// ---- Reading ---------------------------------------------------------------

int CKorvoTlk::Init(CStdioFileMem* fil, const wchar_t*, const wchar_t* path) {
  CStdioFileMem own;
  CStdioFileMem* in = fil;
  if (in == nullptr) {
    if (path == nullptr) return -1;
    own.SetFilePath(path);
    in = &own;
  }
  const std::wstring file = in->GetFilePath();
  if (!korvo::FileExists(file)) {
    korvo::ShowMessage(korvo::Format(L"Hittar inte filen\n%s\nAvbryter!", file),
                       korvo::MB_ICONWARNING);
    return -1;
  }
  korvo::TakeFileDates(file, korvo::FileDateForm::kObservation, skapad, andrad);
  if (in->strom == nullptr && !korvo::OpenFieldFile(*in, file)) return -1;
  const int result = ReadRows(*in);
  if (in == &own) own.Close();
  return result;
}

// Rows and the gvy block up to a marker or the end of the file. A file that
// begins with a marker holds nothing of this kind.
int CKorvoTlk::ReadRows(CStdioFileMem& in) {
  std::wstring& line = line_;
  if (!in.ReadString(line)) return -1;
  int result = -1;
  End();  // rows are appended, whatever the cursor's place
  while (!korvo::IsMarker(line)) {
    result = 0;
    if (IsGvyLine(line)) {
      if (in.ReadString(line)) korvo::Scan(line, L"%f", &gvy);
      hargvy = 1;
      in.ReadString(line);  // the empty line behind the level
    } else {
      ReadRow(in, line);
    }
    if (!in.ReadString(line)) break;
  }
  return result;
}

// One row from its three lines; `line` holds the first. An old file has only
// the name on the first line, and the index comes from the name.
void CKorvoTlk::ReadRow(CStdioFileMem& in, std::wstring& line) {
  Ny(1, nullptr);
  matetype& row = *pael;
  const int items = korvo::Scan(line, L"%s %d %d %d %s", &row.namn, &row.index, &row.kalla,
                                &row.kalla2, &row.anmarkning);
  if (items < 2) {
    row.index = OldtextToIndex(row.namn);
    row.kalla = row.kalla2 = 0;
  } else if (items >= 3 && line.size() > kRemarkColumn) {
    // The remark is free text: all of it, blanks included, not only a word.
    korvo::CopyField(row.anmarkning, korvo::RemarkAt(line, kRemarkColumn));
  }
  if (row.kalla < 0) row.kalla = 0;
  if (row.kalla > kHighestSource) row.kalla = kHighestSource;

  if (in.ReadString(line)) {
    korvo::Scan(line, L"%f", &row.niva);
    korvo::CopyField(row.kommentar, korvo::RemarkAt(line, kCommentColumn));
  }
  if (in.ReadString(line) && !line.empty()) {
    korvo::Scan(line, L"%f%f%f%f%f%f", &row.varde1, &row.varde2, &row.varde3, &row.varde4,
                &row.varde5, &row.varde6);
  }
}

// ---- Writing ---------------------------------------------------------------

int CKorvoTlk::Uppdat(CStdioFileMem* fil, const wchar_t* path) {
  if (samlagring) {
    if (fil == nullptr) {
      korvo::ShowMessage(L"Internt fel: Samlagring ej tillåten !", korvo::MB_ICONWARNING);
      return -1;
    }
    line_.clear();
    korvo::AppendFormat(line_, L"*\n%d\n", kCodeTlk);
    fil->WriteString(line_);
    WriteRows(*fil);
    return 0;
  }
  if (fil != nullptr) {
    WriteRows(*fil);
    return 0;
  }
  // A file of its own; one that will not open is left alone.
  CStdioFileMem own;
  if (path == nullptr || !own.Open(path, kOpenWrite)) return -1;
  WriteRows(own);
  own.Close();
  return 0;
}

void CKorvoTlk::WriteRows(CStdioFileMem& out) {
  if (gvy != 0.0f) {
    line_.clear();
    korvo::AppendFormat(line_, L"gvy\n%9.4f\n\n", gvy);
    out.WriteString(line_);
  }
  if (Home() != 0) return;
  do {
    WriteRow(out, *pael);
  } while ((*this)++);
  if (samlagring == 0) out.WriteString(L"*\n");
}

// A row is stored by its old name: a material that has none goes as "X"
// with its index, so that the index carries it.
void CKorvoTlk::WriteRow(CStdioFileMem& out, matetype& row) {
  if (row.index <= 0) {
    row.index = OldtextToIndex(row.namn);
  } else {
    const std::wstring* old = OldTextOf(row.index);
    korvo::CopyField(row.namn, old ? old->c_str() : kUnknown);
  }
  line_.clear();
  korvo::AppendFormat(line_, L"%s %d %d %d", row.namn, row.index, row.kalla, row.kalla2);
  if (row.anmarkning[0] != L'\0') {
    korvo::AppendRemark(line_, kRemarkColumn, row.anmarkning);
    TrimTrailingBlanks(line_);
  }
  korvo::AppendFormat(line_, L"\n%9.4f %s\n%6.2f %6.2f %6.2f %6.2f %6.2f %6.2f\n", row.niva,
                      row.kommentar, row.varde1, row.varde2, row.varde3, row.varde4, row.varde5,
                      row.varde6);
  out.WriteString(line_);
}

// ---- Changing the rows ------------------------------------------------------

void CKorvoTlk::AddDZ(double dz) {
  if (Home() != 0) return;
  do {
    pael->niva = static_cast<float>(pael->niva + dz);
  } while ((*this)++);
}

bool CKorvoTlk::AppendRow(const wchar_t* namn, float niva, int kalla, int kalla2) {
  matetype row{};
  korvo::CopyField(row.namn, namn);
  row.niva = niva;
  row.kalla = kalla;
  row.kalla2 = kalla2;
  return Ny(1, &row) >= 0;
}

// Rows are looked at from the bottom up; the new row goes behind the lowest
// row that lies above it.
int CKorvoTlk::AddTolkNiva(const wchar_t* namn, float niva) {
  matetype row{};
  korvo::CopyField(row.namn, namn ? namn : L"");
  row.niva = niva;
  if (End() != 0) return Ny(1, &row);
  for (bool last = true;; last = false) {
    if (std::fabs(static_cast<double>(pael->niva) - niva) < kSameLevel &&
        Same(pael->namn, row.namn)) {
      return -1;
    }
    if (pael->niva > niva) {
      if (last) return Ny(1, &row);
      (*this)++;
      return Ny(0, &row);  // before the row behind
    }
    if (!(*this)--) return Ny(0, &row);  // above the first row
  }
}

int CKorvoTlk::InsertBerg(float niva, int kod) {
  double scaled = niva * 100.0;
  scaled += scaled > 0.0 ? 0.5 : -0.5;
  // Truncated as an integer would be, without the overflow of a cast.
  const float cm = static_cast<float>(std::trunc(scaled));
  const float rounded = static_cast<float>(cm / 100.0);
  const int source = kod == kStopCodeRock ? kSourceAssumedRock : kSourceRockDrilled;

  if (antal == 0) {
    AppendRow(kRock, rounded, source, kod);
    return 0;
  }
  if (FindMtrl(kRock, 1)) {
    matetype& row = *pael;
    if (std::fabs(static_cast<double>(row.niva) - rounded) <= kRockTolerance && row.kalla != 0 &&
        row.kalla2 != 0) {
      return -1;
    }
    row.niva = rounded;
    if (row.kalla == 0) row.kalla = source;
    if (row.kalla2 == 0) row.kalla2 = kod;
    return 0;
  }
  return AppendRow(kRock, rounded, source, kod) ? 0 : -1;
}

int CKorvoTlk::FindMtrl(const wchar_t* namn, int mod) {
  if (namn == nullptr || End() != 0) return 0;
  do {
    const int index = pael->index;
    const wchar_t* name = mod == 1                                ? pael->namn
                          : (index >= 0 && index < AntalMaterial) ? NoMaterial[index]
                                                                  : nullptr;
    if (name != nullptr && EqualNoCase(name, namn)) return 1;
  } while ((*this)--);
  return 0;
}

int CKorvoTlk::IfFrikt(const wchar_t* namn) {
  if (namn == nullptr) return 0;
  for (const wchar_t* frikt : {L"friktjord", L"sand", L"sten", L"grus", L"moraen"}) {
    if (Same(namn, frikt)) return 1;
  }
  return 0;
}

// The cursor row lies between two friction layers. Of two different layers
// the lower one goes; of two equal ones the upper one goes, and a block row
// with it, so that the lower row carries the layer on.
int CKorvoTlk::BlockIFrikt() {
  if (antal == 0 || aktel == nullptr) return 0;
  if (!(*this)--) {
    (*this)++;
    return 0;
  }
  const matetype* before = pael;
  (*this)++;
  if (!(*this)++) return 0;
  const matetype* behind = pael;
  if (!IfFrikt(before->namn) || !IfFrikt(behind->namn)) return 0;
  if (!Same(before->namn, behind->namn)) {
    Set_mark();
    Delete();
    return 1;
  }
  (*this)--;
  (*this)--;
  Delete();
  if (pael != nullptr && Same(pael->namn, kBlock)) Delete();
  return 1;
}

int CKorvoTlk::TolkClean() {
  if (Home() != 0) return 1;
  // Block rows at the end, and within friction soil, go.
  for (;;) {
    int count = 0;
    const int place = Where(&count);
    Set_mark();
    if (Same(pael->namn, kBlock)) {
      if (count == 1) {
        Delete();
        break;
      }
      if (place == count) {
        Delete();
        End();
        continue;
      }
      if (BlockIFrikt() == 1) {
        Goto_mark();
        BlockIFrikt();
      }
      // Either way the cursor stands where the walk goes on: a block row
      // that stays, not being last, leaves it on the row below.
      continue;
    }
    if (!(*this)++) break;
  }
  if (End() != 0) return 1;

  // From the bottom up: the lowest layer is joined to rock below it, and of
  // each run of one material only the lowest row stays.
  wchar_t below[12];
  korvo::CopyField(below, pael->namn);
  const bool rock = Same(below, kRock);
  const float rock_level = pael->niva;
  if (!(*this)--) return 1;
  if (rock) JoinToRock(rock_level);
  for (;;) {
    if (Same(pael->namn, below)) DropRunAbove(below);
    if (antal == 0) return 1;
    korvo::CopyField(below, pael->namn);
    if (!(*this)--) return 1;
  }
}

// The row at the cursor is the first above rock: a small gap is closed by
// taking the row down; a larger one is filled with an unknown layer.
void CKorvoTlk::JoinToRock(float rock) {
  if (static_cast<double>(pael->niva) - rock <= kRockJoinGap) {
    pael->niva = rock;
  } else {
    AddTolkNiva(kUnknown, rock);
  }
}

// Deletes the row at the cursor and the rows above it while they are of the
// material `below`; the cursor ends on the first row that is not, or on the
// top row.
void CKorvoTlk::DropRunAbove(const wchar_t* below) {
  do {
    if (Delete() != 0 || !(*this)--) return;
  } while (Same(pael->namn, below));
}

int CKorvoTlk::DataCheck(int) {
  if (Home() != 0) return 0;
  std::wstring report = L"Fel och varningar:\n";
  int faults = 0;
  const matetype* above = pael;
  while ((*this)++) {
    if (Same(above->namn, kRock)) {
      korvo::AppendFormat(report, L"Material %s på nivå %.2lf är under berg på nivå %.2lf\n",
                          pael->namn, pael->niva, above->niva);
      ++faults;
    }
    above = pael;
  }
  if (faults > 0) korvo::ShowMessage(report, korvo::MB_ICONWARNING);
  return faults;
}
