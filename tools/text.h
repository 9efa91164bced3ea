// Text for the terminal and for scripts: the library's wide text as UTF-8,
// and numbers written the same way whatever the process locale says.
#ifndef KORVO_TOOLS_TEXT_H_
#define KORVO_TOOLS_TEXT_H_

#include <string>
#include <string_view>

namespace korvo::cli {

// UTF-8 of wide text, whether wchar_t holds UTF-16 or UTF-32 units. A unit
// that is no character (a lone surrogate, a value beyond U+10FFFF) becomes
// U+FFFD.
std::string Utf8(std::wstring_view text);
// Wide text of UTF-8, such as an argument of the command line. A byte that
// does not belong to a valid sequence becomes U+FFFD.
std::wstring Wide(std::string_view utf8);

// `value` with `decimals` digits after a decimal point, as "%.*f" gives it in
// the "C" locale.
std::string Fixed(double value, int decimals);
// `value` rounded to `decimals` digits, so that a float's 0.2 reaches a
// script as 0.2 and not as 0.20000000298023224.
double Rounded(double value, int decimals);

// The number of characters of UTF-8 text, for lining up columns.
size_t Columns(std::string_view utf8);
// `text` filled with blanks to `width` characters on the right (PadRight) or
// on the left (PadLeft); longer text stays whole.
std::string PadRight(std::string_view text, size_t width);
std::string PadLeft(std::string_view text, size_t width);

// A text of a fixed wide field, cut at its first zero and with blanks at the
// end removed.
std::string FieldText(const wchar_t* field, size_t width);
template <size_t N>
std::string FieldText(const wchar_t (&field)[N]) {
  return FieldText(field, N);
}

// Line breaks and tabs of a library text as " / " and blanks, so that a
// notice of several lines stays on one.
std::string OneLine(std::wstring_view text);

}  // namespace korvo::cli

#endif  // KORVO_TOOLS_TEXT_H_
