// Reading and writing a .TLK file of many rows: the rows are parsed through
// one reused line, without an allocation per line.
#include <benchmark/benchmark.h>

#include <string>

#include "korvo/observations/korvo_tlk.h"
#include "korvo/testutil/temp_dir.h"

namespace {

std::string TlkRows(int count) {
  std::string text = "gvy\r\n  -1.2500\r\n\r\n";
  for (int i = 0; i < count; ++i) {
    text += (i % 3 ? "lera 11 2 0               sensitive\r\n" : "sand 20 1 4\r\n");
    text += "  " + std::to_string(100 - i * 0.01) + " comment\r\n";
    text += "  1.50  -2.25  10.00   0.00   0.00 123.46\r\n";
  }
  return text + "*\r\n";
}

void BM_ReadTlk(benchmark::State& state) {
  korvo::test::TempDir dir;
  const int rows = static_cast<int>(state.range(0));
  dir.Write("P.TLK", TlkRows(rows));
  const std::wstring path = dir.File("P.TLK");
  for (auto _ : state) {
    CKorvoTlk tlk(1, 0, 0);
    benchmark::DoNotOptimize(tlk.Init(nullptr, L"P", path.c_str()));
  }
  state.SetItemsProcessed(state.iterations() * rows);
}
BENCHMARK(BM_ReadTlk)->Arg(1000)->Arg(10000);

void BM_WriteTlk(benchmark::State& state) {
  korvo::test::TempDir dir;
  const int rows = static_cast<int>(state.range(0));
  dir.Write("P.TLK", TlkRows(rows));
  CKorvoTlk tlk(1, 0, 0);
  tlk.Init(nullptr, L"P", dir.File("P.TLK").c_str());
  const std::wstring out = dir.File("OUT.TLK");
  for (auto _ : state) {
    benchmark::DoNotOptimize(tlk.Uppdat(nullptr, out.c_str()));
  }
  state.SetItemsProcessed(state.iterations() * rows);
}
BENCHMARK(BM_WriteTlk)->Arg(1000)->Arg(10000);

}  // namespace
