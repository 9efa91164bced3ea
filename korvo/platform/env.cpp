// The parts of the operating-system layer that are the same everywhere.
#include <string>

#include "korvo/platform/env.h"
#include "korvo/platform/platform_internal.h"

namespace korvo {
namespace {

constexpr wchar_t kEscapeBase = 0xDC00;

void PutUtf8(std::string& out, unsigned long cp) {
  if (cp >= 0xDC80 && cp <= 0xDCFF) {
    out += static_cast<char>(cp - kEscapeBase);  // an escaped raw byte
  } else if (cp < 0x80) {
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

void PutWide(std::wstring& out, unsigned long cp) {
  if (cp >= 0x10000 && sizeof(wchar_t) == 2) {
    cp -= 0x10000;
    out += static_cast<wchar_t>(0xD800 + (cp >> 10));
    out += static_cast<wchar_t>(0xDC00 + (cp & 0x3FF));
  } else {
    out += static_cast<wchar_t>(cp);
  }
}

// Decodes one sequence at `bytes[i]`; returns its length, or 0 when it is not
// a valid, shortest-form sequence.
size_t DecodeUtf8At(std::string_view bytes, size_t i, unsigned long* cp) {
  const auto lead = static_cast<unsigned char>(bytes[i]);
  size_t len;
  unsigned long value;
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
  static constexpr unsigned long kMinimum[5] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kMinimum[len] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return 0;
  *cp = value;
  return len;
}

// One case for the letters that file names on a Windows share fold.
wchar_t FoldLetter(wchar_t c) {
  if (c >= L'a' && c <= L'z') return static_cast<wchar_t>(c - 0x20);
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return static_cast<wchar_t>(c - 0x20);
  switch (static_cast<unsigned long>(c)) {
    case 0xFF:
      return 0x178;
    case 0x161:
      return 0x160;
    case 0x153:
      return 0x152;
    case 0x17E:
      return 0x17D;
    default:
      return c;
  }
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    auto cp = static_cast<unsigned long>(text[i]);
    if (sizeof(wchar_t) == 2 && cp >= 0xD800 && cp <= 0xDBFF && i + 1 < text.size()) {
      const auto low = static_cast<unsigned long>(text[i + 1]);
      if (low >= 0xDC00 && low <= 0xDFFF) {
        cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
        ++i;
      }
    }
    PutUtf8(out, cp);
  }
  return out;
}

std::wstring FromUtf8(std::string_view bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  for (size_t i = 0; i < bytes.size();) {
    unsigned long cp;
    const size_t len = DecodeUtf8At(bytes, i, &cp);
    if (len == 0) {
      out += static_cast<wchar_t>(kEscapeBase + static_cast<unsigned char>(bytes[i]));
      ++i;
    } else {
      PutWide(out, cp);
      i += len;
    }
  }
  return out;
}

bool SameNameIgnoringCase(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (FoldLetter(a[i]) != FoldLetter(b[i])) return false;
  }
  return true;
}

std::wstring FormatUuid(const unsigned char bytes[16]) {
  static constexpr wchar_t kHex[] = L"0123456789abcdef";
  std::wstring out;
  out.reserve(36);
  for (int i = 0; i < 16; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) out += L'-';
    out += kHex[bytes[i] >> 4];
    out += kHex[bytes[i] & 0x0F];
  }
  return out;
}

std::string NativePath(const std::wstring& path) {
  return ToUtf8(path);
}
std::wstring FromNativePath(const std::string& path) {
  return FromUtf8(path);
}

}  // namespace korvo
