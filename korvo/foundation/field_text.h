// The rules that all field files share: block markers, the GUID token of a
// header line, the normalisation of block dates, the code-system tag, remark
// columns and fixed text fields.
#ifndef KORVO_FOUNDATION_FIELD_TEXT_H_
#define KORVO_FOUNDATION_FIELD_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "korvo/export.h"

namespace korvo {

// A block opens with any line whose first character is '*'.
inline bool IsMarker(std::wstring_view line) {
  return !line.empty() && line[0] == L'*';
}

// The line up to its first "\n" (readers that cut a line at its end).
inline std::wstring_view CutAtNewline(std::wstring_view line) {
  return line.substr(0, line.find(L'\n'));
}

// Splits a header line at its GUID token. "GUID" counts only after the first
// character; the identifier is the text from five places behind it to the end.
// Returns the part of the line before the token (the whole line when there is
// no token) and sets `guid` (empty when there is none).
KORVO_EXPORT std::wstring_view SplitGuidToken(std::wstring_view line, std::wstring& guid);

// A block that is about to be written gets a new identifier when the one it
// holds is shorter than 36 characters.
KORVO_EXPORT void EnsureGuid(std::wstring& guid);

// Rewrites a date given year first ("2014-03-09", "2014/3/9") as "09.03.2014";
// any other text stays as it is.
KORVO_EXPORT void NormaliseDate(std::wstring& date);

// The code-system tag of a method block: "KRV" (0 in a file) or "SGF" (1).
inline constexpr const wchar_t* kCodeSystemOwn = L"KRV";
inline constexpr const wchar_t* kCodeSystemOther = L"SGF";
// The number written for a tag: 0 for exactly "KRV", 1 for anything else.
KORVO_EXPORT int CodeSystemNumber(const wchar_t* tag);
// The tag read back: "SGF" when at least five fields were assigned and the
// fifth is 1, else "KRV". `tag` holds at least 4 characters.
KORVO_EXPORT void CodeSystemFromScan(wchar_t* tag, int assigned, int fifth);

// Pads `line` with blanks to `column` characters (a longer line stays) and
// appends the remark.
KORVO_EXPORT void AppendRemark(std::wstring& line, size_t column, std::wstring_view remark);

// The remark of a row: the line from `column` on, empty for a shorter line.
inline std::wstring_view RemarkAt(std::wstring_view line, size_t column) {
  return line.size() > column ? line.substr(column) : std::wstring_view();
}

// Copies `text` into a fixed field of `capacity` characters, cutting it to
// capacity - 1 and ending it with a zero.
KORVO_EXPORT void CopyField(wchar_t* field, size_t capacity, std::wstring_view text);
template <size_t N>
void CopyField(wchar_t (&field)[N], std::wstring_view text) {
  CopyField(field, N, text);
}

}  // namespace korvo

#endif  // KORVO_FOUNDATION_FIELD_TEXT_H_
