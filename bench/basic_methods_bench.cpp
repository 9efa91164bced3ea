// Reading and writing a sounding block of 100,000 rows through the field-file
// stream, the bulk of a long digitised sounding. Bytes are those of the file.
#include <benchmark/benchmark.h>

#include <string>

#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/testutil/temp_dir.h"

namespace {

constexpr int kRows = 100000;
const wchar_t* const kRemarks[] = {L"", L"", L"",        L"SA", L"", L"le, gr\u00e5",
                                   L"", L"", L"Sten 40", L"MY"};
const wchar_t* const kLoadWords[] = {L"5", L"25", L"100", L"SL1"};

template <class Row>
void FillCommon(Row& row, int i) {
  row.djup = static_cast<float>(i) * 0.02f;
  std::wstring_view remark = kRemarks[i % 10];
  remark.copy(row.anm, remark.size());
  row.anm[remark.size()] = L'\0';
}

void Fill(CKorvoDreie& block) {
  for (int i = 0; i < kRows; ++i) {
    dreietype row{};
    FillCommon(row, i);
    row.varv = i % 300;
    std::wstring_view word = kLoadWords[i % 4];
    word.copy(row.vikt, word.size());
    block.Ny(1, &row);
  }
}

void Fill(CKorvoRam& block) {
  for (int i = 0; i < kRows; ++i) {
    ramsondtype row{};
    FillCommon(row, i);
    row.tal1 = i % 200;
    row.tal2 = i % 7;
    block.Ny(1, &row);
  }
}

// Writes a filled block to `path`.
template <class Block>
void WriteBlock(Block& block, const std::wstring& path) {
  CStdioFileMem out;
  out.Open(path.c_str(), 0x1001);
  block.Uppdat(&out);
  out.Close();
}

template <class Block>
void BM_ReadBlock(benchmark::State& state) {
  korvo::test::TempDir dir;
  const std::wstring path = dir.File("block.snd");
  {
    Block source(1, 0, 0);
    Fill(source);
    WriteBlock(source, path);
  }
  const size_t bytes = dir.Read("block.snd").size();
  std::wstring code_line;
  for (auto _ : state) {
    CStdioFileMem in;
    in.Open(path.c_str(), 0);
    in.ReadString(code_line);  // the marker
    in.ReadString(code_line);
    Block block(1, 0, 0);
    block.Init(&in, L"09.03.2014");
    in.Close();
    benchmark::DoNotOptimize(block.pael);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_ReadBlock<CKorvoDreie>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadBlock<CKorvoRam>)->Unit(benchmark::kMillisecond);

template <class Block>
void BM_WriteBlock(benchmark::State& state) {
  korvo::test::TempDir dir;
  const std::wstring path = dir.File("block.snd");
  Block block(1, 0, 0);
  Fill(block);
  WriteBlock(block, path);
  const size_t bytes = dir.Read("block.snd").size();
  for (auto _ : state) WriteBlock(block, path);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_WriteBlock<CKorvoDreie>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteBlock<CKorvoRam>)->Unit(benchmark::kMillisecond);

}  // namespace
