// Saving one point into a project of many: the lock, the header compared and
// written, the bounds walked over every record, one record written in place.
#include <benchmark/benchmark.h>

#include <cwchar>
#include <filesystem>
#include <string>

#include "korvo/context/proj_path.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/testutil/temp_dir.h"

namespace {

// A project database of `points` boreholes, written by SaveDbs.
void MakeProject(CKorvoDbs& dbs, int points) {
  dbs.ChangeReadWriteAccess(0);
  for (int i = 0; i < points; ++i) {
    dbs.Ny(1, nullptr);
    const std::wstring id = L"P" + std::to_wstring(i);
    std::wcsncpy(dbs.pael->id, id.c_str(), 8);
    dbs.pael->bit.Set(bhbit::Bh);
    dbs.pael->x = 6500000.0 + i;
    dbs.pael->y = 150000.0 + (i * 7919) % 1000;
    dbs.pael->z = 10.0 + i % 13;
    dbs.pael->djup = static_cast<float>(i % 17);
  }
  dbs.SaveDbs(nullptr, 1);
}

// Changes the depth of one point near the end, as a document's save does,
// and writes it: Findid, then Uppdat(1, null, 1).
void BM_SaveOnePoint(benchmark::State& state) {
  korvo::test::TempDir dir;
  CProjPath proj;
  proj.SetPath(dir.wpath().c_str());
  CKorvoDbs dbs(&proj);
  const int points = static_cast<int>(state.range(0));
  MakeProject(dbs, points);
  const std::wstring id = L"P" + std::to_wstring(points - 10);
  float djup = 0.0f;
  for (auto _ : state) {
    wchar_t name[9];
    std::wcsncpy(name, id.c_str(), 9);
    dbs.Findid(name, -1);
    dbs.pael->djup = djup += 0.01f;
    benchmark::DoNotOptimize(dbs.Uppdat(1, nullptr, 1));
  }
}
BENCHMARK(BM_SaveOnePoint)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

// The whole save of a document with a rotary sounding of 50 rows: its .SND
// file written, then its record rebuilt and written through SndUppdat.
void BM_SaveDocument(benchmark::State& state) {
  korvo::test::TempDir dir;
  std::filesystem::create_directory(dir.path() / "Dbf");
  CProjPath proj;
  proj.SetPath(dir.wpath().c_str());
  CKorvoDbs dbs(&proj);
  const int points = static_cast<int>(state.range(0));
  MakeProject(dbs, points);
  CKorvoSnd snd(&proj, &dbs);
  const std::wstring id = L"P" + std::to_wstring(points - 10);
  std::wcsncpy(snd.id, id.c_str(), 8);
  snd.New(21);
  for (int i = 0; i < 50; ++i) {
    dreietype row{};
    row.djup = 0.2f * static_cast<float>(i + 1);
    row.varv = i;
    snd.m_dreie->Ny(1, &row);
  }
  for (auto _ : state) benchmark::DoNotOptimize(snd.Uppdat(nullptr, nullptr));
}
BENCHMARK(BM_SaveDocument)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
