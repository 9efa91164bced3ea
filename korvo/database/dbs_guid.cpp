#include "korvo/database/dbs_guid.h"

#include <algorithm>
#include <cwchar>

#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/versal_text.h"

namespace {

// The standard text form: 8-4-4-4-12 hexadecimal digits.
constexpr size_t kGuidLength = 36;
constexpr bool IsHyphenPlace(size_t i) {
  return i == 8 || i == 13 || i == 18 || i == 23;
}

int HexValue(wchar_t c) {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  return -1;
}

// Reads `digits` hexadecimal digits from `text` at `*at`, passing a hyphen
// that stands there first. False when a digit is missing.
bool TakeHex(std::wstring_view text, size_t* at, int digits, uint32_t* value) {
  if (IsHyphenPlace(*at)) ++*at;
  uint32_t v = 0;
  for (int i = 0; i < digits; ++i, ++*at) {
    const int h = HexValue(text[*at]);
    if (h < 0) return false;
    v = v << 4 | static_cast<uint32_t>(h);
  }
  *value = v;
  return true;
}

// The eleven words of a GUID from its text form. False, and `words`
// untouched, for anything but the standard form.
bool ParseGuid(std::wstring_view text, uint32_t (&words)[11]) {
  if (text.size() != kGuidLength) return false;
  for (size_t i = 0; i < kGuidLength; ++i) {
    if (IsHyphenPlace(i) != (text[i] == L'-')) return false;
  }
  static constexpr int kDigits[11] = {8, 4, 4, 2, 2, 2, 2, 2, 2, 2, 2};
  uint32_t parsed[11];
  size_t at = 0;
  for (int w = 0; w < 11; ++w) {
    if (!TakeHex(text, &at, kDigits[w], &parsed[w])) return false;
  }
  std::copy(parsed, parsed + 11, words);
  return true;
}

// A key as Sortval compares it: a copy in capitals, and the number it begins
// with.
constexpr size_t kKeyWidth = 41;
constexpr long kNoNumber = 99999999;

long KeyNumber(wchar_t (&key)[kKeyWidth], const wchar_t* text) {
  korvo::CopyField(key, std::wstring_view(text ? text : L""));
  VersalText(key);
  long number = 0;
  if (korvo::Scan(key, L"%ld", &number) != 1) number = kNoNumber;
  return number;
}

}  // namespace

// ---- The project's GUID --------------------------------------------------

// The words are narrowed to the widths of their groups: whatever a damaged
// header holds above them is not shown.
std::wstring CKorvoDbs::GetGuidString() {
  if (prjdat.harguid != 1) return std::wstring();
  const uint32_t* w = prjdat.guid;
  return korvo::Format(L"%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", w[0], w[1] & 0xFFFFu,
                       w[2] & 0xFFFFu, w[3] & 0xFFu, w[4] & 0xFFu, w[5] & 0xFFu, w[6] & 0xFFu,
                       w[7] & 0xFFu, w[8] & 0xFFu, w[9] & 0xFFu, w[10] & 0xFFu);
}

void CKorvoDbs::SetGuidString(const std::wstring& guid_text) {
  ParseGuid(guid_text, prjdat.guid);
}

// ---- The register --------------------------------------------------------

int CDbsGUID::Sortval(int key) {
  return korvo::NameOrder(pmael->guid, pael->guid, key);
}

namespace korvo {

const wchar_t* GuidMethodName(int metod) {
  switch (metod) {
    case 0:
      return L"HfA";
    case 1:
      return L"Jb";
    case 2:
      return L"Slb";
    case 3:
      return L"Vim";
    case 4:
      return L"TrS";
    case 5:
      return L"Tr";
    case 6:
      return L"Sti";
    case 7:
      return L"CPT";
    case 8:
      return L"JB2";
    case 9:
      return L"JB3";
    case 11:
      return L"JB-total";
    case 13:
      return L"Core drilling";
    case 14:
      return L"Water loss";
    case 20:
      return L"Wane test";
    case 21:
      return L"Dreie";
    case 22:
      return L"Enkel";
    case 23:
      return L"Dreietrykk";
    case 24:
      return L"Ram";
    case 25:
      return L"Total";
    case 26:
      return L"Fjell";
    case 35:
      return L"DPT";
    case 40:
      return L"Soil test";
    case 45:
      return L"Env investigation";
    case 50:
      return L"Ground water";
    case 97:
      return L"Borehole";
    default:
      return L"Unknown method";
  }
}

void RegisterGuid(CDbsGUID& reg, int metod, std::wstring_view guid, std::wstring_view id) {
  reg.Ny(1, nullptr);
  guidtype& entry = *reg.pael;
  entry.metod = metod;
  CopyField(entry.guid, guid);
  CopyField(entry.id, id);
}

// Runs in the inner loop of a quadratic sort: the copies live on the stack.
int NameOrder(const wchar_t* left, const wchar_t* right, int key) {
  if (key != 1 && key != -1) return 0;
  wchar_t l[kKeyWidth];
  wchar_t r[kKeyWidth];
  const long nl = KeyNumber(l, left);
  const long nr = KeyNumber(r, right);
  if (nl != nr) return (key == 1 ? nl < nr : nl > nr) ? 1 : 0;
  const int c = std::wcscmp(l, r);
  return (key == 1 ? c < 0 : c >= 0) ? 1 : 0;
}

}  // namespace korvo
