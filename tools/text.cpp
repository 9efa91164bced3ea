#include "text.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace korvo::cli {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsSurrogate(char32_t cp) {
  return cp >= 0xD800 && cp <= 0xDFFF;
}

void PutUtf8(std::string& out, char32_t cp) {
  if (cp > 0x10FFFF || IsSurrogate(cp)) cp = kReplacement;
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

void PutWide(std::wstring& out, char32_t cp) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out += static_cast<wchar_t>(0xD800 + (cp >> 10));
      out += static_cast<wchar_t>(0xDC00 + (cp & 0x3FF));
      return;
    }
  }
  out += static_cast<wchar_t>(cp);
}

// Decodes the sequence at `i`; returns its length, at least 1, with an
// invalid sequence giving one byte of U+FFFD.
size_t DecodeAt(std::string_view s, size_t i, char32_t* cp) {
  const auto byte = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
  const unsigned char lead = byte(i);
  size_t len = 0;
  char32_t value = 0;
  char32_t least = 0;
  if (lead < 0x80) {
    *cp = lead;
    return 1;
  } else if ((lead & 0xE0) == 0xC0) {
    len = 2, value = lead & 0x1F, least = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    len = 3, value = lead & 0x0F, least = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    len = 4, value = lead & 0x07, least = 0x10000;
  }
  if (len == 0 || i + len > s.size()) {
    *cp = kReplacement;
    return 1;
  }
  for (size_t k = 1; k < len; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) {
      *cp = kReplacement;
      return 1;
    }
    value = (value << 6) | (byte(i + k) & 0x3F);
  }
  // Overlong forms and surrogates are not characters.
  *cp = value < least || value > 0x10FFFF || IsSurrogate(value) ? kReplacement : value;
  return len;
}

}  // namespace

std::string Utf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    char32_t cp = static_cast<char32_t>(text[i]);
    if constexpr (sizeof(wchar_t) == 2) {
      cp &= 0xFFFF;
      const bool high = cp >= 0xD800 && cp <= 0xDBFF;
      if (high && i + 1 < text.size()) {
        const char32_t low = static_cast<char32_t>(text[i + 1]) & 0xFFFF;
        if (low >= 0xDC00 && low <= 0xDFFF) {
          cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
          ++i;
        }
      }
    }
    PutUtf8(out, cp);
  }
  return out;
}

std::wstring Wide(std::string_view utf8) {
  std::wstring out;
  out.reserve(utf8.size());
  for (size_t i = 0; i < utf8.size();) {
    char32_t cp = 0;
    i += DecodeAt(utf8, i, &cp);
    PutWide(out, cp);
  }
  return out;
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
