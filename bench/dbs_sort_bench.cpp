// Sorting the points of a large project by every key, both directions.
#include <benchmark/benchmark.h>

#include <cwchar>
#include <memory>
#include <random>
#include <string>

#include "korvo/database/korvo_dbs.h"

namespace {

constexpr int kPoints = 10000;

// Points named as projects name them (numbers, letters, both), with spread
// positions and a mix of kinds and methods.
void FillProject(CKorvoDbs& dbs, unsigned seed) {
  std::mt19937 random(seed);
  static const wchar_t* const kPrefixes[] = {L"", L"TP", L"K", L"GV"};
  for (int i = 0; i < kPoints; ++i) {
    bhdbstype rec{};
    const std::wstring id = kPrefixes[random() % 4] + std::to_wstring(random() % 99999);
    std::wcsncpy(rec.id, id.c_str(), 8);
    for (uint8_t& byte : rec.bit.b) byte = static_cast<uint8_t>(random());
    rec.x = 6500000.0 + static_cast<double>(random() % 100000) / 10.0;
    rec.y = 150000.0 + static_cast<double>(random() % 100000) / 10.0;
    rec.z = static_cast<double>(random() % 5000) / 100.0;
    rec.sekt = static_cast<double>(random() % 200000) / 10.0;
    rec.avst = static_cast<double>(random() % 2000) / 10.0 - 100.0;
    dbs.Ny(1, &rec);
  }
}

void BM_SortProject(benchmark::State& state) {
  const int key = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    auto dbs = std::make_unique<CKorvoDbs>();
    FillProject(*dbs, 42);
    state.ResumeTiming();
    benchmark::DoNotOptimize(dbs->Sortera(key));
    state.PauseTiming();
    dbs.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}
BENCHMARK(BM_SortProject)->DenseRange(-21, -1)->DenseRange(1, 21)->Unit(benchmark::kMillisecond);

}  // namespace
