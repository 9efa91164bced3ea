// The printf and scanf conversions that define the text of the field files,
// implemented once, without the C library and without the process locale.
//
// Output is what the C library gives under the "C" locale for the same format
// string and values. Supported: the flags "-+ #0", widths and precisions
// (also "*"), the length modifiers h, l, ll, L, and the conversions
// d i u x X o c s f F e E g G %. Scanning supports the same widths and length
// modifiers, assignment suppression "*", the conversions d i u x o c s f e g
// [ and %, blanks in the format matching any run of white space, and returns
// the number of assigned fields, or -1 when the input ends before the first
// conversion, as the C library does.
#ifndef KORVO_FOUNDATION_FORMAT_H_
#define KORVO_FOUNDATION_FORMAT_H_

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "korvo/export.h"

namespace korvo {

// One value handed to the formatter. The conversion in the format string
// decides how it is shown, as with printf; a mismatched kind is converted.
class FormatArg {
 public:
  enum Kind { kInt, kUnsigned, kDouble, kWideString, kChar };

  FormatArg(int v) : kind_(kInt), i_(v) {}
  FormatArg(long v) : kind_(kInt), i_(v) {}
  FormatArg(long long v) : kind_(kInt), i_(v) {}
  FormatArg(short v) : kind_(kInt), i_(v) {}
  FormatArg(unsigned v) : kind_(kUnsigned), u_(v) {}
  FormatArg(unsigned long v) : kind_(kUnsigned), u_(v) {}
  FormatArg(unsigned long long v) : kind_(kUnsigned), u_(v) {}
  FormatArg(unsigned short v) : kind_(kUnsigned), u_(v) {}
  FormatArg(float v) : kind_(kDouble), d_(v) {}
  FormatArg(double v) : kind_(kDouble), d_(v) {}
  FormatArg(long double v) : kind_(kDouble), d_(static_cast<double>(v)) {}
  FormatArg(wchar_t v) : kind_(kChar), i_(static_cast<long long>(v)) {}
  FormatArg(const wchar_t* v) : kind_(kWideString), s_(v ? v : L"(null)") {}
  FormatArg(const std::wstring& v) : kind_(kWideString), s_(v.c_str()) {}

  Kind kind() const { return kind_; }
  long long AsInt() const;
  unsigned long long AsUnsigned() const;
  double AsDouble() const;
  const wchar_t* AsString() const { return kind_ == kWideString ? s_ : L""; }

 private:
  Kind kind_;
  union {
    long long i_;
    unsigned long long u_;
    double d_;
    const wchar_t* s_;
  };
};

// Appends the formatted text to `out`.
KORVO_EXPORT void AppendFormatArgs(std::wstring& out, const wchar_t* format,
                                   std::initializer_list<FormatArg> args);

template <class... Args>
void AppendFormat(std::wstring& out, const wchar_t* format, const Args&... args) {
  AppendFormatArgs(out, format, {FormatArg(args)...});
}

template <class... Args>
std::wstring Format(const wchar_t* format, const Args&... args) {
  std::wstring out;
  AppendFormatArgs(out, format, {FormatArg(args)...});
  return out;
}

// One destination of the scanner. A string destination has a capacity in
// characters including the terminating zero; a longer word is cut to fit
// (where the C library would overrun).
class ScanArg {
 public:
  enum Kind {
    kShort,
    kInt,
    kLong,
    kLongLong,
    kUShort,
    kUInt,
    kULong,
    kULongLong,
    kFloat,
    kDouble,
    kLongDouble,
    kChars,
    kWString
  };

  ScanArg(short* p) : kind_(kShort), p_(p) {}
  ScanArg(int* p) : kind_(kInt), p_(p) {}
  ScanArg(long* p) : kind_(kLong), p_(p) {}
  ScanArg(long long* p) : kind_(kLongLong), p_(p) {}
  ScanArg(unsigned short* p) : kind_(kUShort), p_(p) {}
  ScanArg(unsigned* p) : kind_(kUInt), p_(p) {}
  ScanArg(unsigned long* p) : kind_(kULong), p_(p) {}
  ScanArg(unsigned long long* p) : kind_(kULongLong), p_(p) {}
  ScanArg(float* p) : kind_(kFloat), p_(p) {}
  ScanArg(double* p) : kind_(kDouble), p_(p) {}
  ScanArg(long double* p) : kind_(kLongDouble), p_(p) {}
  template <size_t N>
  ScanArg(wchar_t (*p)[N]) : kind_(kChars), p_(*p), capacity_(N) {}
  ScanArg(wchar_t* p, size_t capacity) : kind_(kChars), p_(p), capacity_(capacity) {}
  ScanArg(std::wstring* p) : kind_(kWString), p_(p) {}

  Kind kind() const { return kind_; }
  void* pointer() const { return p_; }
  size_t capacity() const { return capacity_; }

 private:
  Kind kind_;
  void* p_;
  size_t capacity_ = 0;
};

// Scans `input` by `format` into the destinations, in order.
KORVO_EXPORT int ScanArgs(std::wstring_view input, const wchar_t* format,
                          std::initializer_list<ScanArg> args);

// The same for a zero-terminated `input`, which is not measured first.
KORVO_EXPORT int ScanArgs(const wchar_t* input, const wchar_t* format,
                          std::initializer_list<ScanArg> args);

// Scan(line, L"%f %d %lf", &a, &b, &c). A fixed text array is passed as
// &array, so that its capacity is known.
template <class... Ptrs>
int Scan(std::wstring_view input, const wchar_t* format, Ptrs... ptrs) {
  return ScanArgs(input, format, {ScanArg(ptrs)...});
}

template <class... Ptrs>
int Scan(const wchar_t* input, const wchar_t* format, Ptrs... ptrs) {
  return ScanArgs(input, format, {ScanArg(ptrs)...});
}

}  // namespace korvo

#endif  // KORVO_FOUNDATION_FORMAT_H_
