#include "text.h"

#include <korvo/platform/utf8.h>

#include <charconv>
#include <cmath>
#include <system_error>

namespace korvo::cli {

std::string Utf8(std::wstring_view text) {
  return Utf8FromWide(text);
}

std::wstring Wide(std::string_view utf8) {
  return WideFromUtf8(utf8);
}

std::string Fixed(double value, int decimals) {
  if (!std::isfinite(value)) return std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
  char buf[400];
  const auto result =
      std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, decimals);
  if (result.ec != std::errc()) return "?";
  return std::string(buf, result.ptr);
}

double Rounded(double value, int decimals) {
  const std::string text = Fixed(value, decimals);
  double back = value;
  std::from_chars(text.data(), text.data() + text.size(), back);
  return back;
}

size_t Columns(std::string_view utf8) {
  size_t n = 0;
  for (const char c : utf8) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++n;
  }
  return n;
}

std::string PadRight(std::string_view text, size_t width) {
  std::string out(text);
  const size_t n = Columns(text);
  if (n < width) out.append(width - n, ' ');
  return out;
}

std::string PadLeft(std::string_view text, size_t width) {
  const size_t n = Columns(text);
  std::string out(n < width ? width - n : 0, ' ');
  out += text;
  return out;
}

std::string FieldText(const wchar_t* field, size_t width) {
  size_t n = 0;
  while (n < width && field[n] != L'\0') ++n;
  while (n > 0 && field[n - 1] == L' ') --n;
  return Utf8(std::wstring_view(field, n));
}

std::string OneLine(std::wstring_view text) {
  std::wstring flat;
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find(L'\n', start);
    if (end == std::wstring_view::npos) end = text.size();
    std::wstring line(text.substr(start, end - start));
    for (wchar_t& c : line) {
      if (c == L'\r' || c == L'\t') c = L' ';
    }
    const size_t first = line.find_first_not_of(L' ');
    if (first != std::wstring::npos) {
      line = line.substr(first, line.find_last_not_of(L' ') - first + 1);
      if (!flat.empty()) flat += L" / ";
      flat += line;
    }
    start = end + 1;
  }
  return Utf8(flat);
}

}  // namespace korvo::cli
