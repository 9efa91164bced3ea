// Throughput of the code page and of reading and writing text lines, the
// inner loop of every field file.
#include <benchmark/benchmark.h>

#include <string>

#include "korvo/platform/codepage.h"
#include "korvo/platform/file.h"
#include "korvo/testutil/temp_dir.h"

namespace {

std::string SampleLines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    text += "  " + std::to_string(i % 97) + ".250   12.5 \xE5\xE4\xF6 \x80 Ler, siltig\r\n";
  }
  return text;
}

void BM_DecodeCp1252(benchmark::State& state) {
  const std::string bytes = SampleLines(1000);
  std::wstring out;
  for (auto _ : state) {
    out.clear();
    korvo::AppendFromCp1252(out, bytes);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_DecodeCp1252);

void BM_EncodeCp1252(benchmark::State& state) {
  const std::wstring text = korvo::FromCp1252(SampleLines(1000));
  std::string out;
  for (auto _ : state) {
    out.clear();
    korvo::AppendToCp1252(out, text);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_EncodeCp1252);

void BM_ReadLines(benchmark::State& state) {
  korvo::test::TempDir dir;
  const std::string bytes = SampleLines(20000);
  dir.Write("bench.snd", bytes);
  const std::wstring path = dir.File("bench.snd");
  std::wstring line;
  for (auto _ : state) {
    CStdioFile f;
    f.Open(path.c_str(), CFile::modeRead);
    while (f.ReadString(line)) benchmark::DoNotOptimize(line.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_ReadLines);

void BM_WriteLines(benchmark::State& state) {
  korvo::test::TempDir dir;
  const std::wstring path = dir.File("out.snd");
  const std::wstring line = L"  12.250   12.5 \x00E5\x00E4\x00F6 \x20AC Ler, siltig\n";
  for (auto _ : state) {
    CStdioFile f;
    f.Open(path.c_str(), CFile::modeCreate | CFile::modeWrite);
    for (int i = 0; i < 20000; ++i) f.WriteString(line);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * 20000 * (line.size() + 1)));
}
BENCHMARK(BM_WriteLines);

}  // namespace
