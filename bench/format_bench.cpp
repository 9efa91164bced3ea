// The number conversions against the C library on a typical data row.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cwchar>
#include <string>

#include "korvo/foundation/format.h"

namespace {

const wchar_t* const kRows[] = {L"  1.200   12 25", L"  13.675  104 3", L"  0.025    7 120",
                                L" 101.500 2048 0"};
const char* const kNarrowRows[] = {"  1.200   12 25", "  13.675  104 3", "  0.025    7 120",
                                   " 101.500 2048 0"};

void BM_ScanKorvo(benchmark::State& state) {
  float depth;
  int a, b;
  size_t i = 0;
  for (auto _ : state) {
    int n = korvo::Scan(kRows[i++ & 3], L"%f %d %d", &depth, &a, &b);
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(depth);
  }
}
BENCHMARK(BM_ScanKorvo);

void BM_ScanSwscanf(benchmark::State& state) {
  float depth;
  int a, b;
  size_t i = 0;
  for (auto _ : state) {
    int n = std::swscanf(kRows[i++ & 3], L"%f %d %d", &depth, &a, &b);
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(depth);
  }
}
BENCHMARK(BM_ScanSwscanf);

void BM_ScanSscanf(benchmark::State& state) {
  float depth;
  int a, b;
  size_t i = 0;
  for (auto _ : state) {
    int n = std::sscanf(kNarrowRows[i++ & 3], "%f %d %d", &depth, &a, &b);
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(depth);
  }
}
BENCHMARK(BM_ScanSscanf);

const double kDepths[] = {1.2, 13.675, 0.025, 101.5, 7.0004999, 2.25};
const long kCounts[] = {12, 104, 7, 2048, 3, 99999};

void BM_FormatKorvo(benchmark::State& state) {
  std::wstring out;
  size_t i = 0;
  for (auto _ : state) {
    out.clear();
    korvo::AppendFormat(out, L"%7.3f %4ld", kDepths[i % 6], kCounts[i % 6]);
    ++i;
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(BM_FormatKorvo);

void BM_FormatSwprintf(benchmark::State& state) {
  wchar_t buf[64];
  size_t i = 0;
  for (auto _ : state) {
    int n = std::swprintf(buf, 64, L"%7.3f %4ld", kDepths[i % 6], kCounts[i % 6]);
    ++i;
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(buf);
  }
}
BENCHMARK(BM_FormatSwprintf);

void BM_FormatSnprintf(benchmark::State& state) {
  char buf[64];
  size_t i = 0;
  for (auto _ : state) {
    int n = std::snprintf(buf, 64, "%7.3f %4ld", kDepths[i % 6], kCounts[i % 6]);
    ++i;
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(buf);
  }
}
BENCHMARK(BM_FormatSnprintf);

}  // namespace
