#include "korvo/soundings/code_table.h"

#include <cstring>
#include <string_view>

#include "korvo/context/auto_ini.h"
#include "korvo/context/proj_path.h"
#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/messages.h"
#include "korvo/foundation/versal_text.h"
#include "korvo/platform/env.h"
#include "korvo/soundings/korvo_snd.h"

namespace {

// Which methods a code is valid for before any setting is applied.
enum class Valid { kAll, kTotalFjell, kDtrykkTotal, kTotal };

// One row of the built-in table; every code has two digits.
constexpr kod Row(int material, int nummer, const wchar_t* text, const wchar_t* symbol,
                  Valid valid) {
  kod row{material, nummer, {}, {}, {}, {}};
  row.kod[0] = static_cast<wchar_t>(L'0' + nummer / 10);
  row.kod[1] = static_cast<wchar_t>(L'0' + nummer % 10);
  for (int i = 0; text[i] != L'\0'; ++i) row.text[i] = text[i];
  for (int i = 0; symbol[i] != L'\0'; ++i) row.symbol[i] = symbol[i];
  for (int entry = 0; entry < korvo::kMethodEntries; ++entry) {
    const int metod = entry == 0 ? 7 : entry + 20;
    switch (valid) {
      case Valid::kAll:
        row.metoder[entry] = 1;
        break;
      case Valid::kTotalFjell:
        row.metoder[entry] = metod == 25 || metod == 26;
        break;
      case Valid::kDtrykkTotal:
        row.metoder[entry] = metod == 23 || metod == 25;
        break;
      case Valid::kTotal:
        row.metoder[entry] = metod == 25;
        break;
    }
  }
  return row;
}

}  // namespace

// One row a line, in the order that decides between codes a remark names.
// clang-format off
kod CKorvoSnd::Akod1[28] = {
    Row(0, 10, L"10", L"", Valid::kAll),
    Row(0, 11, L"11", L">5", Valid::kAll),
    Row(1, 30, L"FY", L"\u00b1", Valid::kAll),
    Row(1, 31, L"T\u00d8", L"\u00de", Valid::kAll),
    Row(1, 32, L"LE", L"\u00b3", Valid::kAll),
    Row(1, 33, L"SI", L".", Valid::kAll),
    Row(1, 34, L"SA", L":", Valid::kAll),
    Row(1, 35, L"GR", L"o", Valid::kAll),
    Row(1, 36, L"MO", L"\u201d", Valid::kAll),
    Row(1, 37, L"TO", L"~", Valid::kAll),
    Row(1, 38, L"GY", L"|", Valid::kAll),
    Row(0, 40, L"ST", L"\u007f", Valid::kAll),
    Row(0, 41, L"B1", L"B1", Valid::kTotalFjell),
    Row(0, 42, L"B2", L"B2", Valid::kTotalFjell),
    Row(0, 43, L"F", L".", Valid::kTotalFjell),
    Row(0, 60, L"60", L"@", Valid::kAll),
    Row(0, 61, L"GV", L"GV", Valid::kAll),
    Row(0, 70, L"R1", L"R1", Valid::kDtrykkTotal),
    Row(0, 71, L"R2", L"R2", Valid::kDtrykkTotal),
    Row(0, 72, L"Y1", L"Y1", Valid::kTotal),
    Row(0, 73, L"Y2", L"Y2", Valid::kTotal),
    Row(0, 74, L"S1", L"S1", Valid::kTotal),
    Row(0, 75, L"S2", L"S2", Valid::kTotal),
    Row(0, 76, L"D1", L"D1", Valid::kTotal),
    Row(0, 77, L"D2", L"D2", Valid::kTotal),
    Row(0, 78, L"P1", L"P1", Valid::kDtrykkTotal),
    Row(0, 79, L"P2", L"P2", Valid::kDtrykkTotal),
    Row(0, 81, L"MY", L"\u00f0", Valid::kAll),
};
// clang-format on

const int CKorvoSnd::Ikod1 = korvo::kCodeRows;

const wchar_t* const CKorvoSnd::Vikter[9] = {L"5",   L"15",  L"25",  L"50", L"75",
                                             L"100", L"SL1", L"SL2", L"SL"};
const int CKorvoSnd::Ivikt = korvo::kLoadWords;

namespace {

static_assert(sizeof(CKorvoSnd::Akod1) / sizeof(kod) == korvo::kCodeRows);

// A remark is at most 25 characters; a word of it at most 24.
constexpr size_t kTextBuffer = 26;
constexpr size_t kWordBuffer = 25;
constexpr int kMaxWords = 5;

// The modes of Findkod that are not a word number.
constexpr int kModeAllWords = 0;
constexpr int kModeHasKey = -1;
constexpr int kModeMaterials = -2;

// Kodfil.dat names a row by the first 3 characters of its digits or the first
// 9 of its letters.
constexpr size_t kKodfilDigits = 3;
constexpr size_t kKodfilLetters = 9;

// The words of a remark as the lookups see them.
struct Words {
  wchar_t word[kMaxWords][kWordBuffer];
  int count;  // -1 for a text with no word at all
};

// Upper-cases a copy of the text and cuts it at the first "<", then ">", then
// ",": what follows such a mark is a comment to the code, not a code.
void PrepareText(const wchar_t* text, wchar_t (&buffer)[kTextBuffer]) {
  korvo::CopyField(buffer, text ? std::wstring_view(text) : std::wstring_view());
  VersalText(buffer);
  for (wchar_t mark : {L'<', L'>', L','}) {
    if (wchar_t* at = std::wcschr(buffer, mark)) *at = L'\0';
  }
}

void SplitWords(const wchar_t* text, int max_words, Words& words) {
  wchar_t buffer[kTextBuffer];
  PrepareText(text, buffer);
  words.count =
      korvo::Scan(buffer, max_words == 1 ? L"%24s" : L"%24s %24s %24s %24s %24s", &words.word[0],
                  &words.word[1], &words.word[2], &words.word[3], &words.word[4]);
}

bool ValidFor(const kod& row, int metod, int alla) {
  if (alla == 1) return true;
  const int entry = korvo::MethodEntry(metod);
  return entry >= 0 && row.metoder[entry] == 1;
}

// Exact equality of two texts; most words differ from most codes at once.
bool Same(const wchar_t* a, const wchar_t* b) {
  while (*a == *b) {
    if (*a == L'\0') return true;
    ++a;
    ++b;
  }
  return false;
}

bool Names(const kod& row, const wchar_t* word) {
  return Same(word, row.kod) || Same(word, row.text);
}

// The index of the first row, in table order, that one of words[first..last]
// names and that counts for the method; -1 when there is none.
int SearchRows(const Words& words, int first, int last, int metod, int alla, bool materials) {
  for (int i = 0; i < korvo::kCodeRows; ++i) {
    const kod& row = CKorvoSnd::Akod1[i];
    if (materials && row.material != 1) continue;
    if (!ValidFor(row, metod, alla)) continue;
    for (int w = first; w <= last; ++w) {
      if (Names(row, words.word[w])) return i;
    }
  }
  return -1;
}

kod* RowAt(int index) {
  return index < 0 ? nullptr : &CKorvoSnd::Akod1[index];
}

}  // namespace

kod* CKorvoSnd::Findkod(int metod, const wchar_t* text, int mod, int* antal, const wchar_t* nyckel,
                        const wchar_t* kodtyp, int alla) {
  // Most rows carry no remark: no word, and so no row in any mode.
  if (text == nullptr || text[0] == L'\0') {
    if (antal != nullptr) *antal = -1;
    return nullptr;
  }
  Words words;
  SplitWords(text, kMaxWords, words);
  if (antal != nullptr) *antal = words.count;
  if (mod > words.count) return nullptr;
  if (mod >= 1) return RowAt(SearchRows(words, mod - 1, mod - 1, metod, alla, false));
  if (mod == kModeAllWords || mod == kModeMaterials) {
    return RowAt(SearchRows(words, 0, words.count - 1, metod, alla, mod == kModeMaterials));
  }
  if (mod != kModeHasKey) return nullptr;

  // Does the text hold the code that the key names, in either of its forms?
  int key_words = 0;
  const kod* key = Findkod(metod, nyckel, kModeAllWords, &key_words, L"", kodtyp, 0);
  if (key == nullptr) return nullptr;
  for (int w = 0; w < words.count; ++w) {
    if (Names(*key, words.word[w])) return RowAt(SearchRows(words, w, w, metod, alla, false));
  }
  return nullptr;
}

kod* CKorvoSnd::FindkodSGF(int metod, const wchar_t* text, int mod, int* antal,
                           const wchar_t* nyckel, const wchar_t* kodtyp, int alla) {
  return Findkod(metod, text, mod, antal, nyckel, kodtyp, alla);
}

int CKorvoSnd::FindkodOrderNo(int metod, const wchar_t* text, int alla) {
  Words words;
  SplitWords(text, 1, words);
  if (words.count < 1) return -1;
  return SearchRows(words, 0, 0, metod, alla, false);
}

int CKorvoSnd::Findvikt(const wchar_t* text) {
  wchar_t buffer[kTextBuffer];
  korvo::CopyField(buffer, text ? std::wstring_view(text) : std::wstring_view());
  VersalText(buffer);
  for (int i = 0; i < korvo::kLoadWords; ++i) {
    if (std::wcscmp(buffer, Vikter[i]) == 0) return i + 1;
  }
  return 0;
}

// ---- The project's code setting -------------------------------------------

// MTRLKOD in the project's settings: "STANDARD" keeps the built-in validity,
// "ALLA" (also an empty or missing value, the default) makes every code valid
// for every method, and any other value names a code set whose validity is
// read from Kodfil.dat in ParKat. What this sets stays for the process.
int CKorvoSnd::ReadKod() {
  if (m_ini == nullptr) return 0;
  CKorvoInst inst;
  inst.Init(m_ini, m_proj);
  const std::wstring setting = inst.ReadKey(CProjPath::AutoParNamn, L"MTRLKOD");
  if (setting == L"STANDARD") return 1;
  if (setting.empty() || setting == L"ALLA") {
    for (kod& row : Akod1) {
      for (int& valid : row.metoder) valid = 1;
    }
    return 1;
  }
  return ReadKodfil(m_ini->ParKat + korvo::kPathSeparator + L"Kodfil.dat");
}

namespace {

// The row that a word of Kodfil.dat names, compared exactly, as written.
kod* KodfilRow(const wchar_t* word) {
  for (kod& row : CKorvoSnd::Akod1) {
    if (std::wcsncmp(word, row.kod, kKodfilDigits) == 0 ||
        std::wcsncmp(word, row.text, kKodfilLetters) == 0) {
      return &row;
    }
  }
  return nullptr;
}

}  // namespace

// Lines "name code v1 .. v10" up to the end or a marker line; each names a row
// and overwrites as many validity entries as it gives.
int CKorvoSnd::ReadKodfil(const std::wstring& path) {
  if (!korvo::FileExists(path) || !m_kodfil.Open(path.c_str(), 0)) return 0;
  std::wstring first, word;
  int v[korvo::kMethodEntries];
  while (m_kodfil.ReadString(line_) && !korvo::IsMarker(line_)) {
    const int n = korvo::Scan(line_, L"%s%s%d%d%d%d%d%d%d%d%d%d", &first, &word, &v[0], &v[1],
                              &v[2], &v[3], &v[4], &v[5], &v[6], &v[7], &v[8], &v[9]);
    if (n < 2) continue;
    kod* row = KodfilRow(word.c_str());
    if (row == nullptr) {
      VersalText(first);
      korvo::ShowStatus(korvo::Format(L"Fel kod %s %s i %s", first, word, path));
      continue;
    }
    for (int i = 0; i < n - 2; ++i) row->metoder[i] = v[i];
  }
  m_kodfil.Close();
  return 1;
}
