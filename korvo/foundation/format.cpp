// The printf and scanf conversions, done without the C library: integers by
// hand, floating-point numbers by std::to_chars and std::from_chars, which are
// exact and never look at the locale. Where the C library's behaviour is odd
// (what a scan consumes before it fails, saturation of big numbers, "-nan"),
// the code follows it, since the field files were written and read by it.
#include "korvo/foundation/format.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

namespace korvo {

long long FormatArg::AsInt() const {
  switch (kind_) {
    case kInt:
    case kChar:
      return i_;
    case kUnsigned:
      return static_cast<long long>(u_);
    case kDouble:
      if (std::isnan(d_)) return 0;
      if (d_ <= static_cast<double>(LLONG_MIN)) return LLONG_MIN;
      if (d_ >= static_cast<double>(LLONG_MAX)) return LLONG_MAX;
      return static_cast<long long>(d_);
    case kWideString:
      break;
  }
  return 0;
}

unsigned long long FormatArg::AsUnsigned() const {
  if (kind_ == kUnsigned) return u_;
  if (kind_ == kDouble && d_ >= 0x1p63) {
    return d_ >= 0x1p64 ? ULLONG_MAX : static_cast<unsigned long long>(d_);
  }
  return static_cast<unsigned long long>(AsInt());
}

double FormatArg::AsDouble() const {
  switch (kind_) {
    case kDouble:
      return d_;
    case kUnsigned:
      return static_cast<double>(u_);
    case kInt:
    case kChar:
      return static_cast<double>(i_);
    case kWideString:
      break;
  }
  return 0;
}

namespace {

// The C locale's classes: nothing outside ASCII is a blank or a digit.
bool IsSpace(wchar_t c) {
  return c == L' ' || (c >= L'\t' && c <= L'\r');
}
bool IsDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}
wchar_t ToLower(wchar_t c) {
  return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c;
}

// The value of a decimal digit, or 10 and more for anything else.
unsigned DecimalDigit(wchar_t c) {
  return static_cast<unsigned>(c) - L'0';
}

int DigitValue(wchar_t c) {
  if (IsDigit(c)) return c - L'0';
  c = ToLower(c);
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  return 99;
}

enum class Length { kNone, kChar, kShort, kLong, kLongLong, kLongDouble };

// The length a single modifier letter names; kNone for any other letter.
Length LengthLetter(wchar_t c) {
  switch (c) {
    case L'h':
      return Length::kShort;
    case L'l':
      return Length::kLong;
    case L'L':
    case L'q':
      return Length::kLongDouble;
    case L'j':
    case L'z':
    case L't':
      return Length::kLongLong;
    default:
      return Length::kNone;
  }
}

// Reads the length modifier at `f`; returns the first character after it.
// Kept small: it is on the path of every conversion.
inline const wchar_t* ParseLength(const wchar_t* f, Length* length) {
  *length = LengthLetter(*f);
  if (*length == Length::kNone) return f;
  if ((*f == L'h' || *f == L'l') && f[1] == *f) {
    *length = *f == L'h' ? Length::kChar : Length::kLongLong;
    return f + 2;
  }
  return f + 1;
}

// Reads a run of decimal digits, saturating at INT_MAX.
const wchar_t* ParseCount(const wchar_t* f, int* n) {
  long long v = 0;
  for (; IsDigit(*f); ++f) v = std::min<long long>(v * 10 + (*f - L'0'), INT_MAX);
  *n = static_cast<int>(v);
  return f;
}

long long NarrowSigned(long long v, Length length) {
  switch (length) {
    case Length::kChar:
      return static_cast<signed char>(v);
    case Length::kShort:
      return static_cast<short>(v);
    case Length::kNone:
      return static_cast<int>(v);
    case Length::kLong:
      return static_cast<long>(v);
    default:
      return v;
  }
}

unsigned long long NarrowUnsigned(unsigned long long v, Length length) {
  switch (length) {
    case Length::kChar:
      return static_cast<unsigned char>(v);
    case Length::kShort:
      return static_cast<unsigned short>(v);
    case Length::kNone:
      return static_cast<unsigned>(v);
    case Length::kLong:
      return static_cast<unsigned long>(v);
    default:
      return v;
  }
}

// ---------------------------------------------------------------- formatting

struct FormatSpec {
  bool left = false;
  bool plus = false;
  bool space = false;
  bool alt = false;
  bool zero = false;
  int width = 0;
  int precision = -1;  // -1: none given
  Length length = Length::kNone;
  wchar_t conv = 0;
};

// A converted number in parts, so that padding can go between the sign and
// the digits and a very long precision needs no buffer of its own.
struct Pieces {
  std::string_view prefix;  // sign and "0x"
  size_t zeros = 0;         // between prefix and body
  std::string_view body;
  size_t inner_zeros = 0;  // digits past the exact ones of a long precision
  std::string_view tail;   // exponent, or the point that "#" asks for
};

// Writes the pieces into `out` grown once; std::wstring::append of narrow
// characters would build a temporary string.
wchar_t* PutNarrow(wchar_t* d, std::string_view s) {
  return std::copy(s.begin(), s.end(), d);
}

void EmitPieces(std::wstring& out, const FormatSpec& directive, const Pieces& p, bool zero_pad) {
  size_t zeros = p.zeros;
  size_t len = p.prefix.size() + zeros + p.body.size() + p.inner_zeros + p.tail.size();
  size_t width = static_cast<size_t>(directive.width);
  size_t pad = width > len ? width - len : 0;
  if (pad != 0 && !directive.left && zero_pad) {
    zeros += pad;
    len += pad;
    pad = 0;
  }
  size_t old = out.size();
  out.resize(old + len + pad);
  wchar_t* d = out.data() + old;
  if (!directive.left) d = std::fill_n(d, pad, L' ');
  d = PutNarrow(d, p.prefix);
  d = std::fill_n(d, zeros, L'0');
  d = PutNarrow(d, p.body);
  d = std::fill_n(d, p.inner_zeros, L'0');
  d = PutNarrow(d, p.tail);
  if (directive.left) std::fill_n(d, pad, L' ');
}

void EmitWide(std::wstring& out, const FormatSpec& directive, const wchar_t* s, size_t n) {
  size_t width = static_cast<size_t>(directive.width);
  size_t pad = width > n ? width - n : 0;
  if (!directive.left) out.append(pad, L' ');
  out.append(s, n);
  if (directive.left) out.append(pad, L' ');
}

std::string_view SignOf(bool negative, const FormatSpec& directive) {
  if (negative) return "-";
  if (directive.plus) return "+";
  if (directive.space) return " ";
  return {};
}

// Writes the digits of `v` backwards, ending at `end`; returns their start.
char* DigitsBackwards(char* end, unsigned long long v, unsigned base, bool upper) {
  if (base == 10) {
    do {
      *--end = static_cast<char>('0' + v % 10);
      v /= 10;
    } while (v != 0);
    return end;
  }
  const char* digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  do {
    *--end = digits[v % base];
    v /= base;
  } while (v != 0);
  return end;
}

void FormatInteger(std::wstring& out, const FormatSpec& directive, const FormatArg& arg) {
  bool is_signed = directive.conv == L'd' || directive.conv == L'i';
  bool negative = false;
  unsigned long long magnitude;
  if (is_signed) {
    long long v = NarrowSigned(arg.AsInt(), directive.length);
    negative = v < 0;
    magnitude = negative ? 0 - static_cast<unsigned long long>(v) : v;
  } else {
    magnitude = NarrowUnsigned(arg.AsUnsigned(), directive.length);
  }
  unsigned base = 10;
  if (directive.conv == L'o') base = 8;
  if (directive.conv == L'x' || directive.conv == L'X') base = 16;

  char buf[24];
  char* end = buf + sizeof buf;
  char* start = end;
  if (directive.precision != 0 || magnitude != 0) {
    start = DigitsBackwards(end, magnitude, base, directive.conv == L'X');
  }
  Pieces p;
  p.body = std::string_view(start, end - start);
  size_t digits = p.body.size();
  if (directive.precision > 0 && static_cast<size_t>(directive.precision) > digits) {
    p.zeros = directive.precision - digits;
  }
  if (is_signed) p.prefix = SignOf(negative, directive);
  if (directive.alt && base == 8 && p.zeros == 0 && (digits == 0 || p.body[0] != '0')) p.zeros = 1;
  if (directive.alt && base == 16 && magnitude != 0)
    p.prefix = directive.conv == L'X' ? "0X" : "0x";
  EmitPieces(out, directive, p, directive.zero && directive.precision < 0);
}

// Past these, the exact decimal expansion of a double has only zeros left:
// 1074 fractional digits at most, 767 significant digits at most.
constexpr int kMaxFixedPrecision = 1100;
constexpr int kMaxSignificant = 800;
constexpr size_t kFloatBuffer = 310 + kMaxFixedPrecision + 16;

struct FloatText {
  char* end;           // end of the text in the buffer
  size_t inner_zeros;  // zeros that the clamped precision left out
  bool needs_point;    // "#" with no digits after the point
};

// The exact product a * b as hi + lo (Dekker), for a and b far from the
// limits of the exponent range.
void TwoProduct(double a, double b, double* hi, double* lo) {
  auto split = [](double x, double* h, double* l) {
    double c = 134217729.0 * x;  // 2^27 + 1
    *h = c - (c - x);
    *l = x - *h;
  };
  double ah, al, bh, bl;
  split(a, &ah, &al);
  split(b, &bh, &bl);
  *hi = a * b;
  *lo = ((ah * bh - *hi) + ah * bl + al * bh) + al * bl;
}

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// "%.Nf" of a small number with few decimals, without std::to_chars: v
// scaled by 10^N is rounded to an integer, half to even on the exact
// product as the C library does, and printed. Returns null when v is out of
// this path's range.
char* SmallFixed(char* buf, double v, int precision) {
  if (precision > 9 || !(v < 1e15) || (v != 0 && v < 1e-300)) return nullptr;
  double hi, lo;
  TwoProduct(v, kPowersOfTen[precision], &hi, &lo);
  if (!(hi < 0x1p52)) return nullptr;
  // hi is neither negative nor beyond 2^52 here, so truncation is the floor.
  double n = static_cast<double>(static_cast<unsigned long long>(hi));
  double d = hi - n;  // exact
  // The low part is below half a unit of hi, and d and 0.5 are multiples of
  // that unit, so only a tie at 0.5 needs it.
  bool up = d > 0.5 || (d == 0.5 && (lo > 0 || (lo == 0 && std::fmod(n, 2.0) != 0)));
  auto scaled = static_cast<unsigned long long>(n) + (up ? 1 : 0);
  // All digits at once, then the point put in: no division by a variable.
  char digits[24];
  char* end = digits + sizeof digits;
  char* start = DigitsBackwards(end, scaled, 10, false);
  while (end - start < precision + 1) *--start = '0';
  char* point = end - precision;
  char* out = std::copy(start, point, buf);
  if (precision > 0) {
    *out++ = '.';
    out = std::copy(point, end, out);
  }
  return out;
}

FloatText FixedText(char* buf, double v, int precision) {
  if (char* end = SmallFixed(buf, v, precision)) {
    return {end, 0, precision == 0};
  }
  int p = std::min(precision, kMaxFixedPrecision);
  char* end = std::to_chars(buf, buf + kFloatBuffer, v, std::chars_format::fixed, p).ptr;
  return {end, static_cast<size_t>(precision - p), precision == 0};
}

FloatText ScientificText(char* buf, double v, int precision) {
  int p = std::min(precision, kMaxSignificant);
  char* end = std::to_chars(buf, buf + kFloatBuffer, v, std::chars_format::scientific, p).ptr;
  return {end, static_cast<size_t>(precision - p), precision == 0};
}

int ExponentOf(const char* buf, const char* end) {
  const char* e = std::find(buf, end, 'e');
  int x = 0;
  std::from_chars(e + (e[1] == '+' ? 2 : 1), end, x);
  return x;
}

// "%#g": the style of "%g" with its trailing zeros kept.
FloatText AltGeneralText(char* buf, double v, int significant) {
  int x = ExponentOf(buf, ScientificText(buf, v, significant - 1).end);
  if (significant > x && x >= -4) return FixedText(buf, v, significant - 1 - x);
  // The C library picks the style by the exponent before rounding; when
  // rounding carries into one more digit (99.7 at two digits), it shows the
  // exponent style with the fixed style's zero decimals: "1.e+02".
  if (x == significant &&
      ExponentOf(buf,
                 std::to_chars(buf, buf + kFloatBuffer, v, std::chars_format::scientific).ptr) ==
          x - 1) {
    return ScientificText(buf, v, 0);
  }
  return ScientificText(buf, v, significant - 1);
}

void FormatFloat(std::wstring& out, const FormatSpec& directive, double v) {
  bool upper = directive.conv >= L'A' && directive.conv <= L'Z';
  wchar_t conv = ToLower(directive.conv);
  Pieces p;
  p.prefix = SignOf(std::signbit(v), directive);
  if (!std::isfinite(v)) {
    p.body = std::isnan(v) ? (upper ? "NAN" : "nan") : (upper ? "INF" : "inf");
    EmitPieces(out, directive, p, false);
    return;
  }
  v = std::fabs(v);
  int precision = directive.precision < 0 ? 6 : directive.precision;
  char buf[kFloatBuffer];
  FloatText t{};
  if (conv == L'f') {
    t = FixedText(buf, v, precision);
  } else if (conv == L'e') {
    t = ScientificText(buf, v, precision);
  } else if (directive.alt) {
    t = AltGeneralText(buf, v, std::max(precision, 1));
  } else {
    int significant = std::min(std::max(precision, 1), kMaxSignificant);
    t.end = std::to_chars(buf, buf + kFloatBuffer, v, std::chars_format::general, significant).ptr;
  }
  char* e = std::find(buf, t.end, 'e');
  if (upper && e != t.end) *e = 'E';
  p.body = std::string_view(buf, e - buf);
  p.inner_zeros = t.inner_zeros;
  p.tail = std::string_view(e, t.end - e);
  // "#" keeps the point even with no digits after it: "3." and "3.e+00".
  char with_point[8];
  if (directive.alt && t.needs_point) {
    with_point[0] = '.';
    std::copy(p.tail.begin(), p.tail.end(), with_point + 1);
    p.tail = std::string_view(with_point, p.tail.size() + 1);
  }
  EmitPieces(out, directive, p, directive.zero);
}

void FormatString(std::wstring& out, const FormatSpec& directive, const FormatArg& arg) {
  const wchar_t* s = arg.AsString();
  size_t n = 0;
  size_t limit = directive.precision < 0 ? SIZE_MAX : static_cast<size_t>(directive.precision);
  while (n < limit && s[n] != 0) ++n;
  EmitWide(out, directive, s, n);
}

class ArgList {
 public:
  ArgList(const FormatArg* begin, const FormatArg* end) : next_(begin), end_(end) {}
  // A missing argument reads as zero, where the C library would read garbage.
  const FormatArg& Next() { return next_ != end_ ? *next_++ : zero_; }

 private:
  const FormatArg* next_;
  const FormatArg* end_;
  FormatArg zero_{0};
};

// Reads flags, width, precision and length of the conversion after '%'.
const wchar_t* ParseFormatSpec(const wchar_t* f, ArgList& args, FormatSpec* directive) {
  for (;; ++f) {
    if (*f == L'-') {
      directive->left = true;
    } else if (*f == L'+') {
      directive->plus = true;
    } else if (*f == L' ') {
      directive->space = true;
    } else if (*f == L'#') {
      directive->alt = true;
    } else if (*f == L'0') {
      directive->zero = true;
    } else {
      break;
    }
  }
  if (*f == L'*') {
    long long w = NarrowSigned(args.Next().AsInt(), Length::kNone);
    if (w < 0) directive->left = true;
    directive->width = static_cast<int>(std::min<long long>(w < 0 ? -w : w, INT_MAX));
    ++f;
  } else {
    f = ParseCount(f, &directive->width);
  }
  if (*f == L'.') {
    ++f;
    if (*f == L'*') {
      long long prec = NarrowSigned(args.Next().AsInt(), Length::kNone);
      directive->precision = prec < 0 ? -1 : static_cast<int>(prec);
      ++f;
    } else {
      f = ParseCount(f, &directive->precision);
    }
  }
  return ParseLength(f, &directive->length);
}

// Formats the conversion that starts after '%'; returns where the format
// goes on.
const wchar_t* FormatOne(std::wstring& out, const wchar_t* percent, ArgList& args) {
  FormatSpec directive;
  const wchar_t* f = ParseFormatSpec(percent + 1, args, &directive);
  directive.conv = *f;
  switch (directive.conv) {
    case L'd':
    case L'i':
    case L'u':
    case L'o':
    case L'x':
    case L'X':
      FormatInteger(out, directive, args.Next());
      break;
    case L'f':
    case L'F':
    case L'e':
    case L'E':
    case L'g':
    case L'G':
      FormatFloat(out, directive, args.Next().AsDouble());
      break;
    case L's':
    case L'S':
      FormatString(out, directive, args.Next());
      break;
    case L'c':
    case L'C': {
      wchar_t c = static_cast<wchar_t>(args.Next().AsInt());
      EmitWide(out, directive, &c, 1);
      break;
    }
    case L'%':
      out.push_back(L'%');
      break;
    default:
      // Not a conversion: the text stands as written.
      out.append(percent, f - percent);
      return f;
  }
  return f + 1;
}

// ------------------------------------------------------------------ scanning

struct ScanSpec {
  bool suppress = false;
  int width = -1;  // -1: no limit
  Length length = Length::kNone;
  wchar_t conv = 0;
  // "%[...]": the members between `set` and `set_end`.
  const wchar_t* set = nullptr;
  const wchar_t* set_end = nullptr;
  bool negate = false;
};

// How one step of the scan ended. kInputEnd before the first assignment
// makes the result -1.
enum class Step { kOk, kInputEnd, kMismatch };

template <class T>
void StoreNumber(const ScanArg& arg, T v) {
  void* p = arg.pointer();
  switch (arg.kind()) {
    case ScanArg::kShort:
      *static_cast<short*>(p) = static_cast<short>(v);
      break;
    case ScanArg::kInt:
      *static_cast<int*>(p) = static_cast<int>(v);
      break;
    case ScanArg::kLong:
      *static_cast<long*>(p) = static_cast<long>(v);
      break;
    case ScanArg::kLongLong:
      *static_cast<long long*>(p) = static_cast<long long>(v);
      break;
    case ScanArg::kUShort:
      *static_cast<unsigned short*>(p) = static_cast<unsigned short>(v);
      break;
    case ScanArg::kUInt:
      *static_cast<unsigned*>(p) = static_cast<unsigned>(v);
      break;
    case ScanArg::kULong:
      *static_cast<unsigned long*>(p) = static_cast<unsigned long>(v);
      break;
    case ScanArg::kULongLong:
      *static_cast<unsigned long long*>(p) = static_cast<unsigned long long>(v);
      break;
    case ScanArg::kFloat:
      *static_cast<float*>(p) = static_cast<float>(v);
      break;
    case ScanArg::kDouble:
      *static_cast<double*>(p) = static_cast<double>(v);
      break;
    case ScanArg::kLongDouble:
      *static_cast<long double*>(p) = static_cast<long double>(v);
      break;
    case ScanArg::kChars:
    case ScanArg::kWString:
      break;
  }
}

bool IsNumberKind(ScanArg::Kind kind) {
  return kind != ScanArg::kChars && kind != ScanArg::kWString;
}

// Stores a word; a fixed array gets what fits before its terminating zero,
// or, for "%c", the characters without a terminator.
void StoreText(const ScanArg& arg, const wchar_t* s, size_t n, bool terminate) {
  if (arg.kind() == ScanArg::kWString) {
    static_cast<std::wstring*>(arg.pointer())->assign(s, n);
    return;
  }
  size_t capacity = arg.capacity();
  if (capacity == 0) return;
  wchar_t* dest = static_cast<wchar_t*>(arg.pointer());
  if (terminate) {
    n = std::min(n, capacity - 1);
    dest[n] = 0;
  } else {
    n = std::min(n, capacity);
  }
  std::copy(s, s + n, dest);
}

// Clamps a number to the type the C library would store it in.
template <class T>
T ClampedToFloat(bool huge, bool negative) {
  T v = huge ? std::numeric_limits<T>::infinity() : T(0);
  return negative ? -v : v;
}

// Whether a decimal number that overflowed or underflowed was big: the
// position of its first significant digit plus its exponent.
bool DecimalIsHuge(const char* s, const char* end) {
  long long magnitude = 0;
  bool seen_point = false;
  bool significant = false;
  for (; s < end && *s != 'e' && *s != 'E'; ++s) {
    if (*s == '.') {
      seen_point = true;
    } else if (*s != '0' || significant) {
      significant = true;
      if (!seen_point) ++magnitude;
    } else if (seen_point) {
      --magnitude;
    }
  }
  long long exponent = 0;
  if (s < end) {
    ++s;
    bool negative = s < end && *s == '-';
    if (s < end && (*s == '-' || *s == '+')) ++s;
    for (; s < end && *s >= '0' && *s <= '9'; ++s)
      exponent = std::min(exponent * 10 + (*s - '0'), 1LL << 40);
    if (negative) exponent = -exponent;
  }
  return magnitude + exponent > 0;
}

// Converts the collected text of a floating-point number as strtod and its
// like would. Returns false when nothing in it is a number.
template <class T>
bool ParseFloatText(const char* s, const char* end, T* value) {
  bool negative = s < end && *s == '-';
  if (s < end && (*s == '-' || *s == '+')) ++s;
  T v{};
  if (end - s >= 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) {
    auto r = std::from_chars(s + 2, end, v, std::chars_format::hex);
    if (r.ec == std::errc::result_out_of_range) {
      const char* p = std::find_if(s, end, [](char c) { return c == 'p' || c == 'P'; });
      v = ClampedToFloat<T>(p + 1 < end && p[1] != '-', false);
    } else if (r.ec != std::errc()) {
      v = 0;  // only the "0" before the "x" is a number
    }
  } else {
    auto r = std::from_chars(s, end, v, std::chars_format::general);
    if (r.ec == std::errc::invalid_argument) return false;
    if (r.ec == std::errc::result_out_of_range)
      v = ClampedToFloat<T>(DecimalIsHuge(s, r.ptr), false);
  }
  *value = negative ? -v : v;
  return true;
}

// Reads the set of "%[" up to its closing ']'. A set without one ends the
// scan, as an unknown conversion does.
const wchar_t* ParseScanSet(const wchar_t* f, ScanSpec* directive) {
  directive->negate = *f == L'^';
  if (directive->negate) ++f;
  directive->set = f;
  if (*f == L']') ++f;  // a ']' first is a member
  while (*f != 0 && *f != L']') ++f;
  directive->set_end = f;
  if (*f == 0) {
    directive->conv = 0;
    return f;
  }
  return f + 1;
}

// Reads assignment suppression, width, length and conversion of the
// conversion after '%'; returns where the format goes on.
const wchar_t* ParseScanSpec(const wchar_t* f, ScanSpec* directive) {
  if (*f == L'*') {
    directive->suppress = true;
    ++f;
  }
  if (IsDigit(*f)) {
    f = ParseCount(f, &directive->width);
    if (directive->width == 0) directive->width = -1;
  }
  f = ParseLength(f, &directive->length);
  directive->conv = *f;
  if (directive->conv == 0) return f;
  if (directive->conv == L'[') return ParseScanSet(f + 1, directive);
  return f + 1;
}

// Up to 19 decimal digits cannot overflow: the common integer is read in
// one tight loop. Returns the end of the number, or null for anything else
// (no digits, more digits).
const wchar_t* ReadShortDecimal(const wchar_t* q, const wchar_t* end, bool* negative,
                                unsigned long long* magnitude) {
  *negative = *q == L'-';
  if (*q == L'-' || *q == L'+') ++q;
  const wchar_t* digits = q;
  unsigned long long m = 0;
  for (unsigned d; q != end && q - digits < 19 && (d = DecimalDigit(*q)) < 10; ++q) {
    m = m * 10 + d;
  }
  if (q == digits || (q != end && DecimalDigit(*q) < 10)) return nullptr;
  *magnitude = m;
  return q;
}

// What strtol and strtoll give for a magnitude and sign.
long long SaturatedSigned(bool negative, unsigned long long magnitude, bool overflow) {
  if (negative) {
    return overflow || magnitude > (1ULL << 63) ? LLONG_MIN : static_cast<long long>(0 - magnitude);
  }
  return overflow || magnitude > LLONG_MAX ? LLONG_MAX : static_cast<long long>(magnitude);
}

// A plain decimal: digits, at most one point, no exponent.
struct PlainNumber {
  unsigned long long mantissa = 0;
  int decimals = 0;
  bool negative = false;
};

// Reads a plain decimal ("-12.345", "7", ".5", "5.") of at most 19
// significant digits. Returns its end, or null where the general path must
// read the number (no digits, an exponent, hexadecimal, more digits).
const wchar_t* ReadPlainDecimal(const wchar_t* q, const wchar_t* end, PlainNumber* n) {
  n->negative = *q == L'-';
  if (*q == L'-' || *q == L'+') ++q;
  unsigned long long mantissa = 0;
  int significant = 0;  // leading zeros not counted: "0.025" has two
  int decimals = 0;
  bool any_digit = false;
  bool point = false;
  for (; q != end; ++q) {
    unsigned d = DecimalDigit(*q);
    if (d < 10) {
      any_digit = true;
      // Wraps only past 19 significant digits, which are refused below.
      mantissa = mantissa * 10 + d;
      significant += mantissa != 0;
      decimals += point;
    } else if (*q == L'.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  if (!any_digit || significant > 19) return nullptr;
  if (q != end && (ToLower(*q) == L'e' || ToLower(*q) == L'x')) return nullptr;
  n->mantissa = mantissa;
  n->decimals = decimals;
  return q;
}

// 10^-k rounded to double.
constexpr double kTenths[] = {1e0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7, 1e-8, 1e-9, 1e-10};

// Stores a plain decimal whose digits and power of ten are exact doubles:
// one correctly rounded division gives the value, as the C library's exact
// conversion would.
//
// A float needs no division. With m <= 2^24 and k <= 10, m / 10^k is never
// a midpoint between two floats and lies at least 2^-48 (relative) from
// any: a midpoint has 25 significant bits, so the distance is a nonzero
// multiple of 2^e / 5^k against a value below 2^(e+25). m times 10^-k in
// double is off by at most 2^-52, so it rounds to the same float.
//
// Returns false, storing nothing, for anything else (long mantissas, many
// decimals, a long double).
bool StorePlainDecimal(const ScanArg& dest, const PlainNumber& n) {
  ScanArg::Kind kind = dest.kind();
  if (kind == ScanArg::kFloat) {
    if (n.mantissa > (1u << 24) || n.decimals > 10) return false;
    auto v = static_cast<float>(static_cast<double>(n.mantissa) * kTenths[n.decimals]);
    *static_cast<float*>(dest.pointer()) = n.negative ? -v : v;
    return true;
  }
  if (n.mantissa > (1ULL << 53) || n.decimals > 22) return false;
  if (kind == ScanArg::kLongDouble || !IsNumberKind(kind)) return false;
  double v = static_cast<double>(n.mantissa) / kPowersOfTen[n.decimals];
  StoreNumber(dest, n.negative ? -v : v);
  return true;
}

// Whether the destination is the integer type that the length modifier
// names, so that a plain integer store is what the C library would do.
bool IsIntegerOfLength(ScanArg::Kind kind, Length length) {
  switch (length) {
    case Length::kNone:
      return kind == ScanArg::kInt;
    case Length::kLong:
      return kind == ScanArg::kLong;
    case Length::kShort:
      return kind == ScanArg::kShort;
    default:
      return false;
  }
}

class Scanner {
 public:
  // A null `end` scans up to the terminating zero.
  Scanner(const wchar_t* input, const wchar_t* end, const ScanArg* begin, const ScanArg* last)
      : p_(input), end_(end), next_(begin), last_(last) {}

  int Run(const wchar_t* f);

 private:
  void SkipSpace() {
    const wchar_t* p = p_;  // in a register, not in the object
    while (p != end_ && IsSpace(*p)) ++p;
    p_ = p;
  }
  // Loops that stop at any character outside a class (digits, blanks) need
  // only compare with end_: the terminating zero is in no class.
  bool Ends(const wchar_t* q) const { return q == end_ || (end_ == nullptr && *q == 0); }
  bool AtEnd() const { return Ends(p_); }
  // Takes one character within the field width.
  bool Take(int* width) {
    if (*width > 0) --*width;
    ++p_;
    return !AtEnd();
  }

  Step Convert(const ScanSpec& directive);
  Step ScanInteger(const ScanSpec& directive, unsigned base, bool is_signed);
  Step ScanFloat(const ScanSpec& directive);
  Step ScanWord(const ScanSpec& directive);
  Step ScanChars(const ScanSpec& directive);
  Step ScanSet(const ScanSpec& directive);
  Step StoreFloat(const ScanSpec& directive, const char* s, const char* end);
  Step ScanAnyInteger(const ScanSpec& directive, unsigned base, bool is_signed);
  const wchar_t* RunCommon(const wchar_t* f);
  Step StoreInteger(const ScanSpec& directive, bool is_signed, bool negative,
                    unsigned long long magnitude, bool overflow);
  bool PlainDecimal(const ScanSpec& directive);

  // The next destination, or null when the caller gave too few.
  const ScanArg* Destination() { return next_ != last_ ? next_++ : nullptr; }
  Step Assigned() {
    ++done_;
    return Step::kOk;
  }

  const wchar_t* p_;
  const wchar_t* end_;
  const ScanArg* next_;
  const ScanArg* last_;
  int done_ = 0;
};

// "%d", "%ld", "%hd", "%f" and "%lf" into their own types, and single
// blanks between them: the conversions of a data row, taken in one loop
// that keeps the position in a register. Stops at the first directive it
// does not take or number it cannot read, leaving the scanner's state for
// Run to go on from there.
const wchar_t* Scanner::RunCommon(const wchar_t* f) {
  const wchar_t* p = p_;
  const ScanArg* next = next_;
  int done = done_;
  for (;;) {
    if (*f == L' ') {
      while (p != end_ && IsSpace(*p)) ++p;
      ++f;
      continue;
    }
    if (*f != L'%' || next == last_) break;
    Length length = Length::kNone;
    const wchar_t* conv = f + 1;
    if (*conv == L'l' || *conv == L'h') length = LengthLetter(*conv++);
    const wchar_t* q = p;
    while (q != end_ && IsSpace(*q)) ++q;
    if (Ends(q)) break;
    if (*conv == L'd' && IsIntegerOfLength(next->kind(), length)) {
      bool negative;
      unsigned long long magnitude;
      q = ReadShortDecimal(q, end_, &negative, &magnitude);
      if (q == nullptr) break;
      StoreNumber(*next, NarrowSigned(SaturatedSigned(negative, magnitude, false), length));
    } else if (*conv == L'f' && length != Length::kShort) {
      PlainNumber n;
      q = ReadPlainDecimal(q, end_, &n);
      bool right_type =
          next->kind() == (length == Length::kLong ? ScanArg::kDouble : ScanArg::kFloat);
      if (q == nullptr || !right_type || !StorePlainDecimal(*next, n)) break;
    } else {
      break;
    }
    p = q;
    ++next;
    ++done;
    f = conv + 1;
  }
  p_ = p;
  next_ = next;
  done_ = done;
  return f;
}

int Scanner::Run(const wchar_t* f) {
  f = RunCommon(f);
  for (wchar_t c = *f; c != 0; c = *f) {
    if (c == L'%' && f[1] != L'%') {
      ScanSpec directive;
      f = ParseScanSpec(f + 1, &directive);
      if (directive.conv == 0) break;
      Step step = Convert(directive);
      if (step == Step::kInputEnd) return done_ == 0 ? -1 : done_;
      if (step == Step::kMismatch) break;
      continue;
    }
    if (IsSpace(c)) {
      SkipSpace();
      ++f;
      continue;
    }
    if (c == L'%') {
      SkipSpace();
      ++f;
    }
    if (AtEnd()) return done_ == 0 ? -1 : done_;
    if (*p_ != *f) return done_;
    ++p_;
    ++f;
  }
  return done_;
}

Step Scanner::Convert(const ScanSpec& directive) {
  if (directive.conv != L'c' && directive.conv != L'[') SkipSpace();
  switch (directive.conv) {
    case L'd':
      return ScanInteger(directive, 10, true);
    case L'i':
      return ScanInteger(directive, 0, true);
    case L'u':
      return ScanInteger(directive, 10, false);
    case L'x':
    case L'X':
      return ScanInteger(directive, 16, false);
    case L'o':
      return ScanInteger(directive, 8, false);
    case L'f':
    case L'F':
    case L'e':
    case L'E':
    case L'g':
    case L'G':
    case L'a':
    case L'A':
      return ScanFloat(directive);
    case L's':
    case L'S':
      return ScanWord(directive);
    case L'c':
    case L'C':
      return ScanChars(directive);
    case L'[':
      return ScanSet(directive);
    default:
      return Step::kMismatch;
  }
}

inline Step Scanner::ScanInteger(const ScanSpec& directive, unsigned base, bool is_signed) {
  if (AtEnd()) return Step::kInputEnd;
  bool negative = false;
  unsigned long long magnitude = 0;
  if (base == 10 && directive.width < 0) {
    if (const wchar_t* q = ReadShortDecimal(p_, end_, &negative, &magnitude)) {
      p_ = q;
      return StoreInteger(directive, is_signed, negative, magnitude, false);
    }
  }
  return ScanAnyInteger(directive, base, is_signed);
}

// Any base, any width, any number of digits.
Step Scanner::ScanAnyInteger(const ScanSpec& directive, unsigned base, bool is_signed) {
  int width = directive.width;
  bool negative = false;
  unsigned long long magnitude = 0;
  if (*p_ == L'-' || *p_ == L'+') {
    negative = *p_ == L'-';
    Take(&width);
  }
  bool any_digit = false;
  if (width != 0 && !AtEnd() && *p_ == L'0') {
    any_digit = true;
    if (Take(&width) && width != 0 && ToLower(*p_) == L'x') {
      if (base == 0) base = 16;
      if (base == 16) Take(&width);
    } else if (base == 0) {
      base = 8;
    }
  }
  if (base == 0) base = 10;
  bool overflow = false;
  for (; width != 0 && !AtEnd(); Take(&width)) {
    unsigned d = static_cast<unsigned>(DigitValue(*p_));
    if (d >= base) break;
    any_digit = true;
    // Sticky: once over, the value saturates whatever follows.
    if (__builtin_mul_overflow(magnitude, base, &magnitude) ||
        __builtin_add_overflow(magnitude, d, &magnitude)) {
      overflow = true;
    }
  }
  if (!any_digit) return Step::kMismatch;
  return StoreInteger(directive, is_signed, negative, magnitude, overflow);
}

inline Step Scanner::StoreInteger(const ScanSpec& directive, bool is_signed, bool negative,
                                  unsigned long long magnitude, bool overflow) {
  if (directive.suppress) return Step::kOk;
  const ScanArg* dest = Destination();
  if (dest == nullptr || !IsNumberKind(dest->kind())) return Step::kMismatch;
  // Big numbers saturate, as with strtol and strtoul, and are then cut to
  // the size the length modifier names.
  if (is_signed) {
    StoreNumber(*dest,
                NarrowSigned(SaturatedSigned(negative, magnitude, overflow), directive.length));
  } else {
    unsigned long long v = overflow ? ULLONG_MAX : negative ? 0 - magnitude : magnitude;
    StoreNumber(*dest, NarrowUnsigned(v, directive.length));
  }
  return Assigned();
}

// The characters of a floating-point number, taken as the C library takes
// them: greedily, so that "1e" or "1e+" are consumed whole although only the
// "1" is a number.
Step Scanner::ScanFloat(const ScanSpec& directive) {
  if (AtEnd()) return Step::kInputEnd;
  if (directive.width < 0 && PlainDecimal(directive))
    return directive.suppress ? Step::kOk : Assigned();
  const wchar_t* start = p_;
  int width = directive.width;
  size_t sign = 0;
  if (*p_ == L'-' || *p_ == L'+') {
    sign = 1;
    if (!Take(&width) || width == 0) return Step::kMismatch;
  }
  wchar_t c = ToLower(*p_);
  if (c == L'n' || c == L'i') {
    const wchar_t* word = c == L'n' ? L"nan" : L"infinity";
    size_t i = 0;
    for (; word[i] != 0; ++i) {
      if (AtEnd() || width == 0 || ToLower(*p_) != word[i]) break;
      Take(&width);
    }
    // "inf" may stand alone; a started "infinity" must be finished.
    if (i != 3 && word[i] != 0) return Step::kMismatch;
  } else {
    bool hex = false;
    bool got_digit = false;
    if (*p_ == L'0') {
      got_digit = true;
      // As the C library does, "0x" opens a hexadecimal number only when the
      // width leaves room for a digit after it.
      if (Take(&width) && width != 0 && width != 1 && ToLower(*p_) == L'x') {
        hex = true;
        got_digit = false;
        Take(&width);
      }
    }
    wchar_t exp_char = hex ? L'p' : L'e';
    bool got_e = false;
    bool got_dot = false;
    for (; width != 0 && !AtEnd(); Take(&width)) {
      wchar_t ch = *p_;
      if (IsDigit(ch) || (hex && !got_e && DigitValue(ch) < 16)) {
        got_digit = true;
      } else if (got_e && ToLower(p_[-1]) == exp_char && (ch == L'-' || ch == L'+')) {
      } else if (got_digit && !got_e && ToLower(ch) == exp_char) {
        got_e = got_dot = true;
      } else if (!got_dot && ch == L'.') {
        got_dot = true;
      } else {
        break;
      }
    }
    size_t taken = p_ - start;
    if (taken == sign || (hex && taken == sign + 2)) return Step::kMismatch;
  }
  // The text is ASCII by now: narrow it for std::from_chars.
  size_t n = p_ - start;
  char small[128];
  std::string large;
  char* text = small;
  if (n > sizeof small) {
    large.resize(n);
    text = large.data();
  }
  std::transform(start, p_, text, [](wchar_t ch) { return static_cast<char>(ch); });
  return StoreFloat(directive, text, text + n);
}

// Plain decimals in a float or double destination (see PlainDecimal).
// Returns false, consuming and storing nothing, where they do not apply.
inline bool Scanner::PlainDecimal(const ScanSpec& directive) {
  PlainNumber n;
  const wchar_t* q = ReadPlainDecimal(p_, end_, &n);
  if (q == nullptr) return false;
  if (!directive.suppress && (next_ == last_ || !StorePlainDecimal(*next_, n))) return false;
  if (!directive.suppress) ++next_;
  p_ = q;
  return true;
}

Step Scanner::StoreFloat(const ScanSpec& directive, const char* s, const char* end) {
  // A float destination is converted straight from the text: going through
  // double would round twice.
  const ScanArg* dest = directive.suppress ? nullptr : Destination();
  bool ok;
  if (dest != nullptr && dest->kind() == ScanArg::kFloat) {
    float v;
    ok = ParseFloatText(s, end, &v);
    if (ok) StoreNumber(*dest, v);
  } else if (dest != nullptr && dest->kind() == ScanArg::kLongDouble) {
    long double v;
    ok = ParseFloatText(s, end, &v);
    if (ok) StoreNumber(*dest, v);
  } else {
    double v;
    ok = ParseFloatText(s, end, &v);
    if (ok && dest != nullptr && IsNumberKind(dest->kind())) StoreNumber(*dest, v);
  }
  if (!ok) return Step::kMismatch;
  if (directive.suppress) return Step::kOk;
  if (dest == nullptr || !IsNumberKind(dest->kind())) return Step::kMismatch;
  return Assigned();
}

Step Scanner::ScanWord(const ScanSpec& directive) {
  if (AtEnd()) return Step::kInputEnd;
  const wchar_t* start = p_;
  int width = directive.width;
  while (width != 0 && !AtEnd() && !IsSpace(*p_)) Take(&width);
  if (directive.suppress) return Step::kOk;
  const ScanArg* dest = Destination();
  if (dest == nullptr || IsNumberKind(dest->kind())) return Step::kMismatch;
  StoreText(*dest, start, p_ - start, true);
  return Assigned();
}

Step Scanner::ScanChars(const ScanSpec& directive) {
  if (AtEnd()) return Step::kInputEnd;
  const wchar_t* start = p_;
  int width = directive.width < 0 ? 1 : directive.width;
  while (width != 0 && !AtEnd()) Take(&width);
  if (directive.suppress) return Step::kOk;
  const ScanArg* dest = Destination();
  if (dest == nullptr || IsNumberKind(dest->kind())) return Step::kMismatch;
  StoreText(*dest, start, p_ - start, false);
  return Assigned();
}

// Whether `c` is in the set written between `set` and `set_end`, where
// "a-z" is a range unless the '-' stands first or last.
bool InSet(wchar_t c, const wchar_t* set, const wchar_t* set_end) {
  for (const wchar_t* s = set; s < set_end; ++s) {
    if (s[0] == L'-' && s != set && s + 1 < set_end && s[-1] <= s[1]) {
      if (c >= s[-1] && c <= s[1]) return true;
    } else if (*s == c) {
      return true;
    }
  }
  return false;
}

Step Scanner::ScanSet(const ScanSpec& directive) {
  if (AtEnd()) return Step::kInputEnd;
  const wchar_t* start = p_;
  int width = directive.width;
  while (width != 0 && !AtEnd() && InSet(*p_, directive.set, directive.set_end) != directive.negate)
    Take(&width);
  if (p_ == start) return Step::kMismatch;
  if (directive.suppress) return Step::kOk;
  const ScanArg* dest = Destination();
  if (dest == nullptr || IsNumberKind(dest->kind())) return Step::kMismatch;
  StoreText(*dest, start, p_ - start, true);
  return Assigned();
}

}  // namespace

void AppendFormatArgs(std::wstring& out, const wchar_t* format,
                      std::initializer_list<FormatArg> args) {
  ArgList list(args.begin(), args.end());
  const wchar_t* f = format;
  while (*f != 0) {
    const wchar_t* run = f;
    while (*f != 0 && *f != L'%') ++f;
    out.append(run, f - run);
    if (*f == L'%') f = FormatOne(out, f, list);
  }
}

int ScanArgs(std::wstring_view input, const wchar_t* format, std::initializer_list<ScanArg> args) {
  // An empty view may have no data at all; a null end would then read it.
  const wchar_t* begin = input.empty() ? L"" : input.data();
  return Scanner(begin, begin + input.size(), args.begin(), args.end()).Run(format);
}

int ScanArgs(const wchar_t* input, const wchar_t* format, std::initializer_list<ScanArg> args) {
  return Scanner(input, nullptr, args.begin(), args.end()).Run(format);
}

}  // namespace korvo
