// The parts of the operating-system layer that are the same everywhere.
#include <string>

#include "korvo/platform/env.h"
#include "korvo/platform/platform_internal.h"

namespace korvo {
namespace {

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
