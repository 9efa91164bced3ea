#include "korvo/platform/utf8.h"

#include "korvo/platform/platform_internal.h"

namespace korvo {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
// File names keep a byte that is no UTF-8 as U+DC80 + (byte - 0x80).
constexpr char32_t kEscapeBase = 0xDC00;

bool IsSurrogate(char32_t cp) {
  return cp >= 0xD800 && cp <= 0xDFFF;
}

void AppendUtf8(std::string& out, char32_t cp) {
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

void AppendWide(std::wstring& out, char32_t cp) {
  if (cp >= 0x10000 && sizeof(wchar_t) == 2) {
    cp -= 0x10000;
    out += static_cast<wchar_t>(0xD800 + (cp >> 10));
    out += static_cast<wchar_t>(0xDC00 + (cp & 0x3FF));
  } else {
    out += static_cast<wchar_t>(cp);
  }
}

size_t DecodeUtf8At(std::string_view bytes, size_t i, char32_t* cp) {
  const auto lead = static_cast<unsigned char>(bytes[i]);
  size_t len;
  char32_t value;
  if (lead < 0x80) {
    *cp = lead;
    return 1;
  } else if ((lead & 0xE0) == 0xC0) {
    len = 2, value = lead & 0x1F;
  } else if ((lead & 0xF0) == 0xE0) {
    len = 3, value = lead & 0x0F;
  } else if ((lead & 0xF8) == 0xF0) {
    len = 4, value = lead & 0x07;
  } else {
    return 0;
  }
  if (i + len > bytes.size()) return 0;
  for (size_t k = 1; k < len; ++k) {
    const auto next = static_cast<unsigned char>(bytes[i + k]);
    if ((next & 0xC0) != 0x80) return 0;
    value = (value << 6) | (next & 0x3F);
  }
  static constexpr char32_t kMinimum[5] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kMinimum[len] || value > 0x10FFFF || IsSurrogate(value)) return 0;
  *cp = value;
  return len;
}

size_t CodePointAt(std::wstring_view text, size_t i, char32_t* cp) {
  // Only where wchar_t is 16 bits does a surrogate pair stand for one character.
  const auto unit = static_cast<char32_t>(text[i]) & (sizeof(wchar_t) == 2 ? 0xFFFF : 0xFFFFFFFF);
  if (sizeof(wchar_t) == 2 && unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.size()) {
    const auto low = static_cast<char32_t>(text[i + 1]) & 0xFFFF;
    if (low >= 0xDC00 && low <= 0xDFFF) {
      *cp = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
      return 2;
    }
  }
  *cp = unit;
  return 1;
}

// Both forms, `raw_bytes` for file names: they escape what is no UTF-8 so
// that any name read from a directory opens again; text for people shows
// U+FFFD instead.
std::string EncodeUtf8(std::wstring_view text, bool raw_bytes) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    char32_t cp;
    i += CodePointAt(text, i, &cp);
    if (raw_bytes && cp >= kEscapeBase + 0x80 && cp <= kEscapeBase + 0xFF) {
      out += static_cast<char>(cp - kEscapeBase);
    } else if (!raw_bytes && (cp > 0x10FFFF || IsSurrogate(cp))) {
      AppendUtf8(out, kReplacement);
    } else {
      AppendUtf8(out, cp);
    }
  }
  return out;
}

std::wstring DecodeUtf8(std::string_view bytes, bool raw_bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  for (size_t i = 0; i < bytes.size();) {
    char32_t cp;
    size_t len = DecodeUtf8At(bytes, i, &cp);
    if (len == 0) {
      cp = raw_bytes ? kEscapeBase + static_cast<unsigned char>(bytes[i]) : kReplacement;
      len = 1;
    }
    AppendWide(out, cp);
    i += len;
  }
  return out;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  return EncodeUtf8(text, true);
}

std::wstring FromUtf8(std::string_view bytes) {
  return DecodeUtf8(bytes, true);
}

std::string Utf8FromWide(std::wstring_view text) {
  return EncodeUtf8(text, false);
}

std::wstring WideFromUtf8(std::string_view utf8) {
  return DecodeUtf8(utf8, false);
}

}  // namespace korvo
