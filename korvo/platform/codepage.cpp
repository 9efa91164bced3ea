#include "korvo/platform/codepage.h"

#include <array>

namespace korvo {
namespace {

// The characters of bytes 0x80 to 0x9F. The five bytes the code page leaves
// unassigned stand for the C1 control of the same value.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98
};

constexpr std::array<wchar_t, 256> MakeDecodeTable() {
  std::array<wchar_t, 256> table{};
  for (int b = 0; b < 256; ++b) {
    table[b] = (b >= 0x80 && b < 0xA0) ? static_cast<wchar_t>(kHighControls[b - 0x80])
                                       : static_cast<wchar_t>(b);
  }
  return table;
}

constexpr std::array<wchar_t, 256> kDecode = MakeDecodeTable();

// The 27 characters above U+00FF that have a byte.
unsigned char EncodeAboveLatin1(wchar_t c) {
  switch (c) {
    case 0x20AC:
      return 0x80;
    case 0x201A:
      return 0x82;
    case 0x0192:
      return 0x83;
    case 0x201E:
      return 0x84;
    case 0x2026:
      return 0x85;
    case 0x2020:
      return 0x86;
    case 0x2021:
      return 0x87;
    case 0x02C6:
      return 0x88;
    case 0x2030:
      return 0x89;
    case 0x0160:
      return 0x8A;
    case 0x2039:
      return 0x8B;
    case 0x0152:
      return 0x8C;
    case 0x017D:
      return 0x8E;
    case 0x2018:
      return 0x91;
    case 0x2019:
      return 0x92;
    case 0x201C:
      return 0x93;
    case 0x201D:
      return 0x94;
    case 0x2022:
      return 0x95;
    case 0x2013:
      return 0x96;
    case 0x2014:
      return 0x97;
    case 0x02DC:
      return 0x98;
    case 0x2122:
      return 0x99;
    case 0x0161:
      return 0x9A;
    case 0x203A:
      return 0x9B;
    case 0x0153:
      return 0x9C;
    case 0x017E:
      return 0x9E;
    case 0x0178:
      return 0x9F;
    default:
      return '?';
  }
}

bool IsHighSurrogate(wchar_t c) {
  return c >= 0xD800 && c <= 0xDBFF;
}
bool IsLowSurrogate(wchar_t c) {
  return c >= 0xDC00 && c <= 0xDFFF;
}

// Encodes `text` at `dst`, each "\n" as "\r\n" when `crlf`; returns the end.
char* EncodeCp1252To(char* dst, std::wstring_view text, bool crlf) {
  for (size_t i = 0; i < text.size(); ++i) {
    const wchar_t c = text[i];
    if (c == L'\n' && crlf) {
      *dst++ = '\r';
      *dst++ = '\n';
      continue;
    }
    // Field files are ASCII nearly throughout, which goes over unchanged.
    if (static_cast<unsigned long>(c) < 0x80) {
      *dst++ = static_cast<char>(c);
      continue;
    }
    // A character outside the basic plane is one '?', whatever the width of wchar_t.
    if (IsHighSurrogate(c) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) ++i;
    *dst++ = static_cast<char>(EncodeCp1252(text[i]));
  }
  return dst;
}

// Appends at most `room` bytes made by `encode` to `out`, in one resize.
template <typename Encode>
void AppendEncoded(std::string& out, size_t room, Encode encode) {
  const size_t start = out.size();
  out.resize(start + room);
  char* const end = encode(out.data() + start);
  out.resize(static_cast<size_t>(end - out.data()));
}

}  // namespace

wchar_t DecodeCp1252(unsigned char b) {
  return kDecode[b];
}

unsigned char EncodeCp1252(wchar_t c) {
  const auto u = static_cast<unsigned long>(c);
  if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) return static_cast<unsigned char>(u);
  if (u <= 0xFF) {
    // Of 0x80..0x9F only the unassigned bytes' controls come back as themselves.
    return kDecode[u] == c ? static_cast<unsigned char>(u) : '?';
  }
  return EncodeAboveLatin1(c);
}

void AppendFromCp1252(std::wstring& out, std::string_view bytes) {
  const size_t start = out.size();
  out.resize(start + bytes.size());
  wchar_t* dst = out.data() + start;
  for (char b : bytes) *dst++ = kDecode[static_cast<unsigned char>(b)];
}

void AppendToCp1252(std::string& out, std::wstring_view text) {
  AppendEncoded(out, text.size(), [&](char* dst) { return EncodeCp1252To(dst, text, false); });
}

void AppendLinesToCp1252(std::string& out, std::wstring_view text) {
  AppendEncoded(out, 2 * text.size(), [&](char* dst) { return EncodeCp1252To(dst, text, true); });
}

std::wstring FromCp1252(std::string_view bytes) {
  std::wstring out;
  AppendFromCp1252(out, bytes);
  return out;
}

std::string ToCp1252(std::wstring_view text) {
  std::string out;
  AppendToCp1252(out, text);
  return out;
}

}  // namespace korvo
