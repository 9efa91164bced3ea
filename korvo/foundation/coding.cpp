#include "korvo/foundation/coding.h"

#include "korvo/platform/codepage.h"

namespace korvo {

void EncodeFixedText(uint8_t* dst, size_t width, std::wstring_view text) {
  const size_t n = text.size() < width ? text.size() : width - 1;
  size_t i = 0;
  for (; i < n; ++i) dst[i] = EncodeCp1252(text[i]);
  for (; i < width; ++i) dst[i] = 0;
}

void DecodeFixedText(const uint8_t* src, size_t width, wchar_t* out, size_t out_units) {
  size_t limit = width - 1;
  if (out_units - 1 < limit) limit = out_units - 1;
  size_t i = 0;
  // Names and dates are ASCII nearly always, which the code page keeps as is.
  for (; i < limit && src[i] != 0; ++i) {
    out[i] = src[i] < 0x80 ? static_cast<wchar_t>(src[i]) : DecodeCp1252(src[i]);
  }
  for (; i < out_units; ++i) out[i] = L'\0';
}

}  // namespace korvo
