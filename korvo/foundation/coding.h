// Fixed-width encoding of the binary files: numbers and single-byte texts.
//
// Fixed-length numbers are encoded with the least-significant byte first,
// whatever the machine. Floats and doubles travel as their IEEE 754 bit
// pattern. A text field of width n holds at most n - 1 Windows-1252 bytes and
// at least one zero byte behind them; the bytes behind the first zero have no
// meaning and are written as zeros.
//
// Encode... writes at a place in a buffer, Put... appends to a string, and
// Decode... reads from a place. Every binary format goes through these: a
// struct is never copied to or from a file as it lies in memory.
#ifndef KORVO_FOUNDATION_CODING_H_
#define KORVO_FOUNDATION_CODING_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "korvo/export.h"

namespace korvo {

inline void EncodeFixed16(uint8_t* dst, uint16_t value) {
  dst[0] = static_cast<uint8_t>(value);
  dst[1] = static_cast<uint8_t>(value >> 8);
}

inline void EncodeFixed32(uint8_t* dst, uint32_t value) {
  for (int i = 0; i < 4; ++i) dst[i] = static_cast<uint8_t>(value >> (8 * i));
}

inline void EncodeFixed64(uint8_t* dst, uint64_t value) {
  for (int i = 0; i < 8; ++i) dst[i] = static_cast<uint8_t>(value >> (8 * i));
}

inline uint16_t DecodeFixed16(const uint8_t* src) {
  return static_cast<uint16_t>(src[0] | (src[1] << 8));
}

// Written out byte by byte, so that compilers merge them into one load on a
// little-endian machine (a loop is not merged).
inline uint32_t DecodeFixed32(const uint8_t* src) {
  return static_cast<uint32_t>(src[0]) | (static_cast<uint32_t>(src[1]) << 8) |
         (static_cast<uint32_t>(src[2]) << 16) | (static_cast<uint32_t>(src[3]) << 24);
}

inline uint64_t DecodeFixed64(const uint8_t* src) {
  return static_cast<uint64_t>(DecodeFixed32(src)) |
         (static_cast<uint64_t>(DecodeFixed32(src + 4)) << 32);
}

inline void EncodeFloat(uint8_t* dst, float value) {
  EncodeFixed32(dst, std::bit_cast<uint32_t>(value));
}

inline void EncodeDouble(uint8_t* dst, double value) {
  EncodeFixed64(dst, std::bit_cast<uint64_t>(value));
}

inline float DecodeFloat(const uint8_t* src) {
  return std::bit_cast<float>(DecodeFixed32(src));
}

inline double DecodeDouble(const uint8_t* src) {
  return std::bit_cast<double>(DecodeFixed64(src));
}

inline void PutFixed16(std::string* dst, uint16_t value) {
  uint8_t buf[2];
  EncodeFixed16(buf, value);
  dst->append(reinterpret_cast<const char*>(buf), sizeof buf);
}

inline void PutFixed32(std::string* dst, uint32_t value) {
  uint8_t buf[4];
  EncodeFixed32(buf, value);
  dst->append(reinterpret_cast<const char*>(buf), sizeof buf);
}

inline void PutFixed64(std::string* dst, uint64_t value) {
  uint8_t buf[8];
  EncodeFixed64(buf, value);
  dst->append(reinterpret_cast<const char*>(buf), sizeof buf);
}

// The text of a fixed wide field: up to its first zero, or all `units` of it
// when it has none.
inline std::wstring_view FieldText(const wchar_t* field, size_t units) {
  size_t n = 0;
  while (n < units && field[n] != L'\0') ++n;
  return std::wstring_view(field, n);
}

template <size_t N>
std::wstring_view FieldText(const wchar_t (&field)[N]) {
  return FieldText(field, N);
}

// Writes `text` as a single-byte text field of `width` bytes: its first
// width - 1 characters in Windows-1252 ('?' for a character the code page
// lacks), then zeros to the end of the field.
// REQUIRES: width >= 1.
KORVO_EXPORT void EncodeFixedText(uint8_t* dst, size_t width, std::wstring_view text);

// Reads a single-byte text field of `width` bytes into the wide field `out`
// of `out_units` units: the bytes up to the first zero, at most width - 1 of
// them and at most out_units - 1, then zeros to the end of `out`.
// REQUIRES: out_units >= 1.
KORVO_EXPORT void DecodeFixedText(const uint8_t* src, size_t width, wchar_t* out, size_t out_units);

template <size_t N>
void DecodeFixedText(const uint8_t* src, size_t width, wchar_t (&out)[N]) {
  DecodeFixedText(src, width, out, N);
}

}  // namespace korvo

#endif  // KORVO_FOUNDATION_CODING_H_
