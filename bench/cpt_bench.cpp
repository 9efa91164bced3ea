// Reading and writing a point whose .SND file holds a CPT of 100,000 rows, the
// big field files of a project, beside the time `wc -l` takes to count the
// lines of the same file: the floor that any reader of it stands on. Bytes
// are those of the file.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "korvo/soundings/korvo_cpt.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/temp_dir.h"

namespace {

constexpr int kRows = 100000;
const wchar_t* const kRemarks[] = {
    L"", L"", L"", L"", L"", L"", L"", L"", L"Sa", L"le, gr\u00e5",
    L"", L"", L"", L"", L"", L"", L"", L"", L"",   L"F\u00f6rborrat"};

void FillRows(CKorvoCpt& cpt) {
  for (int i = 0; i < kRows; ++i) {
    cpttype row{};
    row.djup = static_cast<float>(i) * 0.02f;
    row.matv1 = 800 + (i * 37) % 15000;
    row.matv2 = 10 + (i * 13) % 240;
    row.matv3 = -40 + (i * 7) % 600;
    std::wstring_view remark = kRemarks[i % 20];
    remark.copy(row.anm, remark.size());
    // One row in four carries extra values.
    if (i % 4 == 0) {
      row.tal4 = i % 9;
      row.varde1 = 0.1 * (i % 300);
      row.varde2 = 0.001 * (i % 97);
      row.varde3 = 12.5;
    }
    cpt.Ny(1, &row);
  }
}

// A point with the CPT and a few keywords, written to `path`.
void MakePoint(CKorvoSnd& point, const std::wstring& path) {
  point.New(7);
  CKorvoCpt& cpt = *point.m_cpt;
  FillRows(cpt);
  cpt.header.SetValue(L"PROJEKT", L"Norra l\u00e4nken");
  cpt.header.SpetsAreaFaktor(0.8);
  cpt.header.SondNummer(4711);
  point.Uppdat(L"P1", path.c_str());
}

struct CptFile {
  korvo::test::TempDir dir;
  std::wstring path = dir.File("P1.SND");
  size_t bytes = 0;
  CptFile() {
    CKorvoSnd point;
    MakePoint(point, path);
    bytes = dir.Read("P1.SND").size();
  }
};

void BM_ReadCptPoint(benchmark::State& state) {
  CptFile file;
  for (auto _ : state) {
    auto point = std::make_unique<CKorvoSnd>();
    point->Init(L"P1", file.path.c_str());
    benchmark::DoNotOptimize(point->m_cpt);
    // Freeing the rows is no part of reading them.
    state.PauseTiming();
    point.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes));
}
BENCHMARK(BM_ReadCptPoint)->Unit(benchmark::kMillisecond);

void BM_WriteCptPoint(benchmark::State& state) {
  CptFile file;
  CKorvoSnd point;
  point.Init(L"P1", file.path.c_str());
  for (auto _ : state) point.Uppdat(L"P1", file.path.c_str());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes));
}
BENCHMARK(BM_WriteCptPoint)->Unit(benchmark::kMillisecond);

// The same file through `wc -l`, started as a process of its own; its time is
// wall time, since the work is not done by this process.
void BM_WcLinesCptPoint(benchmark::State& state) {
  CptFile file;
  const std::string command = "wc -l '" + file.dir.path().string() + "/P1.SND' > /dev/null";
  for (auto _ : state) {
    if (std::system(command.c_str()) != 0) state.SkipWithError("wc -l failed");
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * file.bytes));
}
BENCHMARK(BM_WcLinesCptPoint)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
