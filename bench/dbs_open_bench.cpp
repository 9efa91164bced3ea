// Opening a project database of many points, against reading its bytes into
// memory, and bringing a list in line with a file that another user changed.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_codec.h"
#include "korvo/database/dbs_format.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/platform/file.h"
#include "korvo/testutil/temp_dir.h"

namespace {

class BenchDbs : public CKorvoDbs {
 public:
  using CKorvoDbs::CKorvoDbs;
  using CKorvoDbs::Dbs_rw;
  using CKorvoDbs::DbsSync;
};

// A version 4 database of `count` boreholes named from `first` on.
std::string DatabaseBytes(int count, int first = 0) {
  korvoprjdattype header{};
  header.Dbsver[0] = L'4';
  header.Dbsver[1] = L'.';
  header.Dbsver[2] = L'0';
  header.antbh = static_cast<int16_t>(count);
  header.slutpos = korvo::dbs::kFirstRecordOffset + count * korvo::dbs::kLongRecordSize;
  std::string bytes(static_cast<size_t>(header.slutpos), '\0');
  korvo::EncodeDbsHeader(header, reinterpret_cast<uint8_t*>(bytes.data()));
  for (int i = 0; i < count; ++i) {
    bhdbstype rec{};
    const std::wstring id = L"P" + std::to_wstring(first + i);
    id.copy(rec.id, 8);
    rec.bit.Set(bhbit::Bh);
    rec.bit.Set(bhbit::Dreie);
    rec.x = 6500000.0 + i;
    rec.y = 150000.0 + i;
    rec.sekt = CKorvoDbs::m_sek_noll;
    rec.djup = 12.5f;
    std::wcscpy(rec.datum, L"01.02.2024");
    const int at = korvo::dbs::kFirstRecordOffset + i * korvo::dbs::kLongRecordSize;
    korvo::EncodeDbsRecord(rec, korvo::dbs::kLongRecordSize,
                           reinterpret_cast<uint8_t*>(bytes.data()) + at);
  }
  return bytes;
}

void BM_ReadDatabaseBytes(benchmark::State& state) {
  korvo::test::TempDir dir;
  dir.Write("Korvodal.dbs", DatabaseBytes(static_cast<int>(state.range(0))));
  const std::wstring path = dir.File("Korvodal.dbs");
  std::vector<char> buf;
  for (auto _ : state) {
    CFile file;
    file.Open(path.c_str(), CFile::modeRead | CFile::typeBinary);
    buf.resize(file.GetLength());
    benchmark::DoNotOptimize(file.Read(buf.data(), static_cast<unsigned>(buf.size())));
    file.Close();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ReadDatabaseBytes)->Arg(10000);

// The whole of opening: the lock taken and given back, header, version,
// every record decoded into the list, and the list freed again.
void BM_OpenDatabase(benchmark::State& state) {
  korvo::test::TempDir dir;
  dir.Write("Korvodal.dbs", DatabaseBytes(static_cast<int>(state.range(0))));
  CProjPath proj;
  proj.SetPath(dir.wpath().c_str());
  for (auto _ : state) {
    CKorvoDbs dbs(&proj);
    benchmark::DoNotOptimize(dbs.Init(static_cast<int>(state.range(1)), 0, nullptr, nullptr));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_OpenDatabase)->Args({10000, 1})->Args({10000, 0});

// The part of opening that does not depend on the size: taking and giving
// back the lock, and opening and closing the file.
void BM_LockAndOpen(benchmark::State& state) {
  korvo::test::TempDir dir;
  dir.Write("Korvodal.dbs", DatabaseBytes(1));
  CProjPath proj;
  proj.SetPath(dir.wpath().c_str());
  BenchDbs dbs(&proj);
  for (auto _ : state) {
    benchmark::DoNotOptimize(dbs.Dbs_rw(1000));
    dbs.Dbs_rw(1001);
  }
}
BENCHMARK(BM_LockAndOpen);

// The list holds P0..P9999; the file has lost the first half and gained as
// many new points.
void BM_DbsSync(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  korvo::test::TempDir dir;
  CProjPath proj;
  proj.SetPath(dir.wpath().c_str());
  for (auto _ : state) {
    state.PauseTiming();
    dir.Write("Korvodal.dbs", DatabaseBytes(count));
    BenchDbs dbs(&proj);
    dbs.Init(0, 0, nullptr, nullptr);
    dir.Write("Korvodal.dbs", DatabaseBytes(count, count / 2));
    dbs.End();  // a point that both sides hold: no question about a new name
    dbs.ChangeReadWriteAccess(0);
    dbs.Dbs_rw(1000);
    state.ResumeTiming();
    benchmark::DoNotOptimize(dbs.DbsSync(&dbs.dbsfil));
    state.PauseTiming();
    dbs.Dbs_rw(1001);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_DbsSync)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
