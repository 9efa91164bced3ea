#include "korvo/foundation/format.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace korvo {
namespace {

std::string Narrow(std::wstring_view s) {
  return std::string(s.begin(), s.end());
}

std::wstring Widen(const std::string& s) {
  return std::wstring(s.begin(), s.end());
}

// The C library's text for a narrow format, as wide text.
template <class... Args>
std::wstring CFormat(const std::string& format, Args... args) {
  char buf[4096];
  int n = std::snprintf(buf, sizeof buf, format.c_str(), args...);
  return Widen(std::string(buf, n < 0 ? 0 : n));
}

template <class... Args>
void ExpectSameText(const std::string& format, Args... args) {
  EXPECT_EQ(Format(Widen(format).c_str(), args...), CFormat(format, args...)) << format;
}

// Integers of every size: random bits cut at a random length, either sign.
std::vector<long long> SampleIntegers() {
  std::vector<long long> values = {0,         1,         -1,          7,       -7,       127,
                                   128,       255,       32767,       32768,   -32768,   -32769,
                                   65535,     65536,     INT_MAX,     INT_MIN, UINT_MAX, LLONG_MAX,
                                   LLONG_MIN, 1LL << 32, -(1LL << 32)};
  std::mt19937_64 rng(42);
  for (int i = 0; i < 300; ++i) {
    long long v = static_cast<long long>(rng() >> (rng() % 64));
    values.push_back(i % 2 ? -v : v);
  }
  return values;
}

// Each format with the argument its length modifier asks for; without one
// the 64-bit value itself is passed, which the formatter must cut as the C
// library's cast does.
template <class Long, class Int, class LongLong, size_t N>
void ExpectSameForEach(const char* const (&formats)[N], LongLong v) {
  for (const std::string f : formats) {
    if (f.find("ll") != std::string::npos) {
      ExpectSameText(f, v);
    } else if (f.find('l') != std::string::npos) {
      ExpectSameText(f, static_cast<Long>(v));
    } else {
      EXPECT_EQ(Format(Widen(f).c_str(), v), CFormat(f, static_cast<Int>(v))) << f << v;
    }
  }
}

TEST(FormatTest, IntegersMatchTheCLibrary) {
  const char* signed_formats[] = {"%d",   "%i",    "%5d",  "%-8d",  "%+d",    "% d",     "%05d",
                                  "%.3d", "%8.3d", "%.0d", "%-+6d", "%02.2d", "%02d",    "%4d",
                                  "%hd",  "%hhd",  "%ld",  "%4ld",  "%lld",   "%-+20lld"};
  const char* unsigned_formats[] = {"%u",     "%x",    "%X",  "%#x", "%#X",  "%#o", "%o",  "%#.0o",
                                    "%08.3x", "%#08x", "%hu", "%lu", "%llx", "%lo", "%.0u"};
  for (long long v : SampleIntegers()) {
    ExpectSameForEach<long, int>(signed_formats, v);
    ExpectSameForEach<unsigned long, unsigned>(unsigned_formats,
                                               static_cast<unsigned long long>(v));
  }
}

std::vector<double> SampleDoubles() {
  std::vector<double> values = {0.0,      -0.0,     0.0005,    0.0015,       2.5,          0.5,
                                1.5,      -2.5,     0.125,     9.9995,       99.995,       1e-5,
                                123456.5, 1e15,     1e16,      1e21,         1e-300,       DBL_MAX,
                                -DBL_MAX, DBL_MIN,  4.9e-324,  0.1,          1.0 / 3.0,    999999.5,
                                9.5,      HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan("")};
  std::mt19937_64 rng(7);
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  for (int i = 0; i < 120; ++i) values.push_back(mantissa(rng) * std::pow(10.0, i % 34 - 12));
  for (int i = 0; i < 40; ++i) {
    double d = std::bit_cast<double>(rng());
    if (std::isfinite(d)) values.push_back(d);
  }
  // Values that lie on a rounding edge at three decimals.
  for (int i = 0; i < 40; ++i) values.push_back((2 * i + 1) * 0.0005);
  return values;
}

TEST(FormatTest, FloatsMatchTheCLibrary) {
  const char* formats[] = {"%f",    "%lf",    "%.0f",    "%.1f",  "%.3f",   "%.4lf",    "%5.2f",
                           "%7.3f", "%12.3f", "%-12.3f", "%+.2f", "% .2f",  "%012.3f",  "%#.0f",
                           "%F",    "%e",     "%.3e",    "%E",    "%#.0e",  "%+012.4e", "%g",
                           "%.3g",  "%G",     "%#g",     "%#.3g", "%.10g",  "%10.4g",   "%.17g",
                           "%.0g",  "%#.0g",  "%.20e",   "%.40f", "%-+9.1f"};
  for (double d : SampleDoubles()) {
    for (const char* f : formats) ExpectSameText(f, d);
  }
}

TEST(FormatTest, FloatArgumentsPrintAsTheirDoubleValue) {
  for (float f : {0.1f, 1e-20f, 3.4e38f, -2.5f}) {
    EXPECT_EQ(Format(L"%.12e", f), CFormat("%.12e", static_cast<double>(f)));
  }
}

TEST(FormatTest, PrecisionsBeyondTheExactDigitsAreZeros) {
  for (double d : {4.9e-324, 0.1, 1e300, -3.0}) {
    ExpectSameText("%.1200f", d);
    ExpectSameText("%.900e", d);
    ExpectSameText("%#.900g", d);
    ExpectSameText("%.900g", d);
  }
  ExpectSameText("%.600d|%#.600o", 42, 8u);
}

TEST(FormatTest, StarTakesWidthAndPrecisionFromTheArguments) {
  for (int w : {-12, -1, 0, 3, 15}) {
    for (int p : {-1, 0, 2, 5}) {
      ExpectSameText("[%*.*lf]", w, p, 3.14159);
      EXPECT_EQ(Format(L"[%*s]", w, L"ab"), CFormat("[%*s]", w, "ab"));
      EXPECT_EQ(Format(L"[%.*s]", p, L"abcd"), CFormat("[%.*s]", p, "abcd"));
      EXPECT_EQ(Format(L"[%*c]", w, L'x'), CFormat("[%*c]", w, 'x'));
    }
  }
}

TEST(FormatTest, TextsAndCharacters) {
  EXPECT_EQ(Format(L"[%-25s][%8s][%05s][%.3s]", L"left", L"right", L"ab", L"abcdef"),
            CFormat("[%-25s][%8s][%05s][%.3s]", "left", "right", "ab", "abcdef"));
  EXPECT_EQ(Format(L"[%c][%3c][%-3c]", L'a', L'b', L'c'), L"[a][  b][c  ]");
  EXPECT_EQ(Format(L"%s", std::wstring(L"\u00e5r \u20ac")), L"\u00e5r \u20ac");
  EXPECT_EQ(Format(L"%s", static_cast<const wchar_t*>(nullptr)), L"(null)");
  EXPECT_EQ(Format(L"100%% %d%%", 5), L"100% 5%");
  EXPECT_EQ(Format(L"*\n%d %s\n", 12, L"09.03.2014"), L"*\n12 09.03.2014\n");
  EXPECT_EQ(Format(L"Kontroll: stopp p\u00e5 id %8s", L"B12"),
            L"Kontroll: stopp p\u00e5 id      B12");
}

TEST(FormatTest, AppendsAndConvertsMismatchedArguments) {
  std::wstring out = L"x=";
  AppendFormat(out, L"%7.3f %4ld %s", 1.2, 12L, L"r");
  EXPECT_EQ(out, L"x=  1.200   12 r");
  EXPECT_EQ(Format(L"%d %f %u", 2.9, 3, -1), L"2 3.000000 4294967295");
  EXPECT_EQ(Format(L"%hd", 70000), CFormat("%hd", 70000));
  // A missing argument reads as zero; an unknown conversion stays as text.
  EXPECT_EQ(Format(L"%d|%y|%"), L"0|%y|%");
}

// ---------------------------------------------------------------- scanning

template <class T>
void Fill(T& v) {
  std::memset(static_cast<void*>(&v), 0x5a, sizeof v);
}

template <class T>
bool SameBytes(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// Scans `line` with both scanners into fresh destinations of the given types
// and expects the same count and the same bytes in every destination.
template <class... T>
void ExpectSameScan(const std::wstring& line, const wchar_t* format) {
  std::tuple<T...> mine, theirs;
  std::apply([](auto&... v) { (Fill(v), ...); }, mine);
  std::apply([](auto&... v) { (Fill(v), ...); }, theirs);
  int n_theirs =
      std::apply([&](auto&... v) { return std::swscanf(line.c_str(), format, &v...); }, theirs);
  // Both inputs: the view, and the zero-terminated text that is not measured.
  for (bool terminated : {false, true}) {
    std::apply([](auto&... v) { (Fill(v), ...); }, mine);
    int n_mine = std::apply(
        [&](auto&... v) {
          return terminated ? Scan(line.c_str(), format, &v...) : Scan(line, format, &v...);
        },
        mine);
    ASSERT_EQ(n_mine, n_theirs) << Narrow(format) << " line [" << Narrow(line) << "]";
    bool same = std::apply(
        [&](auto&... a) {
          return std::apply([&](auto&... b) { return (SameBytes(a, b) && ...); }, theirs);
        },
        mine);
    EXPECT_TRUE(same) << Narrow(format) << " line [" << Narrow(line) << "] terminated "
                      << terminated;
  }
}

// Lines of numbers in every spelling a field file may hold, good and bad.
std::vector<std::wstring> SampleLines() {
  // clang-format off
  const char* tokens[] = {
      "1.200", "12", "25", "-3", "+4.5", "0", "-0", ".5", "5.", "1e5", "1E-3", "-2.5e+2", "1e",
      "1e+", "12,5", "0x1A", "0x", "017", "inf", "-inf", "nan", "-nan", "infinity", "in", "abc",
      "-", "+", ".", "2014-03-09", "9/3-14", "1.5e400", "1e-400", "99999999999999999999",
      "-9223372036854775809", "4294967296", "3.4028236e38", "1.00000005960464477539062500000001",
      "7e-46", "000012.50", "16777216", "16777217", "1677721.7", "0.0000000001", "0.00000000001",
      "9007199254740993", "1234567890123456789", "12345678901234567890",
      "0.1234567890123456789012", "0.3000000119", "-0.0", "5.e3", "1.5x"};
  // clang-format on
  const char* separators[] = {" ", "  ", "\t", " \t ", ",", ""};
  std::mt19937 rng(3);
  std::vector<std::wstring> lines = {
      L"", L"   ", L"\t", L"  1.200   12 25", L"12,5 7", L"2014/3/9", L"120 09.03.2014"};
  for (int i = 0; i < 600; ++i) {
    std::string line = rng() % 3 ? " " : "";
    int n = 1 + rng() % 4;
    for (int k = 0; k < n; ++k) {
      line += tokens[rng() % std::size(tokens)];
      if (k + 1 < n || rng() % 4 == 0) line += separators[rng() % std::size(separators)];
    }
    lines.push_back(Widen(line));
  }
  return lines;
}

TEST(ScanTest, NumbersMatchTheCLibrary) {
  for (const std::wstring& line : SampleLines()) {
    ExpectSameScan<float, int, int>(line, L"%f %d %d");
    ExpectSameScan<double, double, double>(line, L"%lf%lf%lf");
    ExpectSameScan<double, double>(line, L"%lf,%lf");
    ExpectSameScan<int, int, int>(line, L"%d%*c%d%*c%d");
    ExpectSameScan<long, short, unsigned>(line, L"%ld %hd %u");
    ExpectSameScan<int, unsigned, unsigned>(line, L"%i %x %o");
    ExpectSameScan<int, float, long long>(line, L"%3d%2f%lld");
    ExpectSameScan<float, double, float>(line, L"%4f %3le %5g");
    ExpectSameScan<float, wchar_t[64], int>(line, L"%*ls %f %ls %d");
    ExpectSameScan<wchar_t[64], wchar_t[4]>(line, L"%l[0-9.+-]%3lc");
    ExpectSameScan<int, int>(line, L"%*d %d %% %d");
  }
}

// Plain decimals with every count of digits on both sides of the point,
// leading and trailing zeros: the exact fast conversions and the general
// one must agree with the C library to the last bit.
TEST(ScanTest, PlainDecimalsRoundAsTheCLibrary) {
  std::mt19937_64 rng(11);
  for (int i = 0; i < 20000; ++i) {
    std::string digits = std::to_string(rng() >> (rng() % 64));
    size_t zeros = rng() % 4;
    digits = std::string(zeros, '0') + digits + std::string(rng() % 3, '0');
    size_t point = rng() % (digits.size() + 1);
    std::string text =
        (rng() % 2 ? "-" : "") + digits.substr(0, point) + "." + digits.substr(point);
    if (rng() % 8 == 0) text.erase(text.find('.'), 1);
    std::wstring line = Widen(text + " " + text);
    ExpectSameScan<float, double>(line, L"%f %lf");
    ExpectSameScan<double, long double>(line, L"%lf%Lf");
  }
}

TEST(ScanTest, EndOfInputBeforeTheFirstAssignmentGivesMinusOne) {
  int a = 0, b = 0;
  EXPECT_EQ(Scan(L"", L"%d", &a), -1);
  EXPECT_EQ(Scan(L" \t ", L"%d", &a), -1);
  EXPECT_EQ(Scan(L"5", L"%*d%d", &a), -1);
  EXPECT_EQ(Scan(L"x", L"%d", &a), 0);
  EXPECT_EQ(Scan(L"7", L"%d %d", &a, &b), 1);
  EXPECT_EQ(a, 7);
  EXPECT_EQ(Scan(L"", L""), 0);
  EXPECT_EQ(Scan(std::wstring_view(), L"%d", &a), -1);
  EXPECT_EQ(Scan(std::wstring_view(L"12 34", 3), L"%d %d", &a, &b), 1);
  EXPECT_EQ(a, 12);
}

TEST(ScanTest, FixedArraysGetWhatFits) {
  wchar_t word[4];
  int n = 0;
  EXPECT_EQ(Scan(L"abcdef 5", L"%s %d", &word, &n), 2);
  EXPECT_STREQ(word, L"abc");
  EXPECT_EQ(n, 5);
  std::wstring whole;
  EXPECT_EQ(Scan(L"  abcdef", L"%s", &whole), 1);
  EXPECT_EQ(whole, L"abcdef");
  wchar_t chars[2] = {L'-', L'-'};
  EXPECT_EQ(Scan(L"xyz", L"%3c", &chars), 1);
  EXPECT_EQ(chars[0], L'x');
  EXPECT_EQ(chars[1], L'y');
}

TEST(ScanTest, FloatIsConvertedStraightFromTheText) {
  // Halfway between two floats plus a little: rounding through double
  // would land on the halfway point and then round down.
  float f = 0;
  EXPECT_EQ(Scan(L"1.00000005960464477539062500000001", L"%f", &f), 1);
  EXPECT_EQ(f, std::nextafter(1.0f, 2.0f));
}

}  // namespace
}  // namespace korvo
