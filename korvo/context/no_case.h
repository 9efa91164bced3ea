// Comparing names without regard to case, the way a Windows share and the
// settings files of an installation do: ASCII letters and the Latin letters
// of Windows-1252 fold to upper case, everything else stays as it is.
#ifndef KORVO_CONTEXT_NO_CASE_H_
#define KORVO_CONTEXT_NO_CASE_H_

#include <string_view>

namespace korvo {

// The upper-case form of `c` for comparing names.
constexpr wchar_t FoldCase(wchar_t c) {
  if (c >= L'a' && c <= L'z') return static_cast<wchar_t>(c - 0x20);
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return static_cast<wchar_t>(c - 0x20);
  switch (c) {
    case 0xFF:
      return static_cast<wchar_t>(0x178);  // y with diaeresis
    case 0x153:
      return static_cast<wchar_t>(0x152);  // oe
    case 0x161:
      return static_cast<wchar_t>(0x160);  // s with caron
    case 0x17E:
      return static_cast<wchar_t>(0x17D);  // z with caron
    default:
      return c;
  }
}

constexpr bool EqualNoCase(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (FoldCase(a[i]) != FoldCase(b[i])) return false;
  }
  return true;
}

}  // namespace korvo

#endif  // KORVO_CONTEXT_NO_CASE_H_
