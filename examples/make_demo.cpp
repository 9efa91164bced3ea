// Makes the example project: a database, a dozen investigation points on a
// building site in Uppsala (SWEREF 99 TM, heights in RH 2000) and Info.prj.
// Every sounding is generated from the point's soil profile with a fixed
// pseudo-random sequence, so the rows look like field data and the numbers
// come out the same at every run; only the GUIDs are new each time.
//
//   korvo-make-demo DIR      DIR must not hold a project database yet
#include <korvo/korvo.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

enum class Soil { kFill, kDryCrust, kClay, kSilt, kSand, kTill, kRock };

struct Range {
  int low, high;
};

// How a soil answers the methods of the site, per 0.2 m.
struct SoilTraits {
  const wchar_t* old_name;  // its name in the .TLK file
  const wchar_t* load;      // the load of a weight sounding; null: sinking, "SL"
  Range turns;              // half-turns of a weight sounding
  Range count;              // blows or turns of the other soundings
  Range qc, fs, excess;     // CPT: cone, sleeve, pore pressure above hydrostatic, kPa
  int growth;               // kPa per metre of depth that cone and pore pressure gain
  Range force, flushing;    // total sounding: feed force (0.1 kN), flushing pressure (bar)
};

// By Soil, in the order of the enum.
constexpr SoilTraits kSoils[] = {
    {L"fyllning", L"100", {8, 30}, {6, 20}, {3000, 8000}, {40, 80}, {0, 10}, 0, {60, 150}, {0, 0}},
    {L"torrskorpa", L"100", {2, 9}, {3, 8}, {800, 1500}, {30, 50}, {0, 10}, 0, {30, 60}, {0, 0}},
    {L"lera", nullptr, {0, 0}, {0, 2}, {250, 310}, {5, 12}, {80, 110}, 15, {8, 25}, {0, 0}},
    {L"silt", L"75", {1, 6}, {2, 5}, {800, 1500}, {10, 20}, {30, 60}, 0, {20, 40}, {0, 5}},
    {L"sand", L"100", {12, 35}, {10, 28}, {6000, 15000}, {40, 90}, {-5, 5}, 0, {60, 140}, {5, 20}},
    {L"moraen",
     L"100",
     {40, 120},
     {30, 90},
     {15000, 30000},
     {100, 200},
     {-10, 20},
     0,
     {150, 400},
     {10, 30}},
    {L"berg",
     L"100",
     {300, 500},
     {150, 300},
     {40000, 50000},
     {300, 400},
     {0, 0},
     0,
     {500, 900},
     {40, 80}},
};

const SoilTraits& Traits(Soil soil) {
  return kSoils[static_cast<int>(soil)];
}

// One layer of a profile: its soil down to `bottom` metres below ground, and
// the remark that its first row carries, codes first.
struct Layer {
  Soil soil;
  double bottom;
  const wchar_t* remark;
};

enum Method : unsigned {
  kDreie = 1,
  kEnkel = 2,
  kDtrykk = 4,
  kRam = 8,
  kTlk = 16,
  kCpt = 32,
  kTotal = 64,
  kFjell = 128,
};

struct PointSpec {
  const wchar_t* id;
  double x, y, z;  // northing, easting, ground level
  double inclination;
  const wchar_t* date;
  unsigned methods;
  std::vector<Layer> layers;  // the last bottom is where every sounding stopped
  int stop;
  const wchar_t* stop_text;
  const wchar_t* stop_remark;
  std::vector<const wchar_t*> texts;
};

// A fixed sequence, so that the demo is the same at every run.
class Sequence {
 public:
  explicit Sequence(uint32_t seed) : state_(seed) {}
  // A whole number from `low` to `high`.
  int Between(int low, int high) {
    state_ = state_ * 1664525u + 1013904223u;
    return low + static_cast<int>((state_ >> 8) % static_cast<uint32_t>(high - low + 1));
  }
  int In(Range r) { return Between(r.low, r.high); }

 private:
  uint32_t state_;
};

template <size_t N>
void Put(wchar_t (&field)[N], const wchar_t* text) {
  size_t i = 0;
  for (; text != nullptr && text[i] != L'\0' && i + 1 < N; ++i) field[i] = text[i];
  field[i] = L'\0';
}

const Layer& LayerAt(const PointSpec& p, double depth) {
  for (const Layer& l : p.layers) {
    if (depth <= l.bottom + 1e-6) return l;
  }
  return p.layers.back();
}

// The remark of the row at `depth`: the layer's own at its first row, the
// stop remark at the last.
const wchar_t* RemarkAt(const PointSpec& p, double depth, double step) {
  if (depth >= p.layers.back().bottom - 1e-6) return p.stop_remark;
  const Layer& l = LayerAt(p, depth);
  const double top = &l == &p.layers.front() ? 0.0 : (&l - 1)->bottom;
  return depth - top <= step + 1e-6 ? l.remark : L"";
}

// Walks the profile in steps of `step` metres down to the stop.
template <class Visit>
void Walk(const PointSpec& p, double step, Visit visit) {
  const int n = static_cast<int>(std::lround(p.layers.back().bottom / step));
  for (int i = 1; i <= n; ++i) {
    const double depth = i * step;
    visit(static_cast<float>(depth), LayerAt(p, depth).soil, RemarkAt(p, depth, step));
  }
}

template <class Block>
void Head(Block& b, const PointSpec& p) {
  Put(b.datum, p.date);
  b.stopp = p.stop;
  Put(b.stopptext, p.stop_text);
}

// Weight sounding: half-turns per 0.2 m under a load, or sinking ("SL")
// where the clay gives way under the load alone.
void AddDreie(CKorvoDreie& b, const PointSpec& p, Sequence& s) {
  Head(b, p);
  Walk(p, 0.2, [&](float depth, Soil soil, const wchar_t* remark) {
    const SoilTraits& t = Traits(soil);
    dreietype row{};
    row.djup = depth;
    row.varv = t.load == nullptr ? -1 : s.In(t.turns);
    Put(row.vikt, t.load == nullptr ? L"SL" : t.load);
    Put(row.anm, remark);
    b.Ny(1, &row);
  });
}

template <class Block, class Row>
void AddCounts(Block& b, const PointSpec& p, Sequence& s) {
  Head(b, p);
  Walk(p, 0.2, [&](float depth, Soil soil, const wchar_t* remark) {
    Row row{};
    row.djup = depth;
    row.varv = s.In(Traits(soil).count);
    Put(row.anm, remark);
    b.Ny(1, &row);
  });
}

// Ram sounding: blows per 0.2 m and the torque after them.
void AddRam(CKorvoRam& b, const PointSpec& p, Sequence& s) {
  Head(b, p);
  Walk(p, 0.2, [&](float depth, Soil soil, const wchar_t* remark) {
    ramsondtype row{};
    row.djup = depth;
    row.tal1 = std::max(1, s.In(Traits(soil).count) / 2);
    row.tal2 = s.Between(0, 2) + static_cast<int>(depth / 2);
    Put(row.anm, remark);
    b.Ny(1, &row);
  });
}

// A cone penetration test every 0.2 m: cone resistance, sleeve friction
// and pore pressure in kPa. The pore pressure follows the ground water 1.5 m
// below ground, with an excess in the fine soils.
void AddCpt(CKorvoCpt& b, const PointSpec& p, Sequence& s) {
  Head(b, p);
  b.header.SpetsAreaFaktor(0.845);
  b.header.SondNummer(5127);
  Walk(p, 0.2, [&](float depth, Soil soil, const wchar_t* remark) {
    const SoilTraits& t = Traits(soil);
    const int water = depth > 1.5f ? static_cast<int>((depth - 1.5f) * 10.0f) : 0;
    const int growth = static_cast<int>(depth * static_cast<float>(t.growth));
    cpttype row{};
    row.djup = depth;
    row.matv1 = s.In(t.qc) + growth;
    row.matv2 = s.In(t.fs);
    row.matv3 = water + s.In(t.excess) + growth;
    Put(row.anm, remark);
    b.Ny(1, &row);
  });
}

// Total sounding of the present generation: feed force, flushing pressure
// and rotation speed; the drill goes on into rock.
void AddTotal(CKorvoTotal& b, const PointSpec& p, Sequence& s) {
  Head(b, p);
  Walk(p, 0.2, [&](float depth, Soil soil, const wchar_t* remark) {
    const SoilTraits& t = Traits(soil);
    totaltype row{};
    row.djup = depth;
    row.tal1 = s.In(t.force);
    row.tal2 = s.In(t.flushing);
    row.tal3 = s.Between(20, 40);
    Put(row.anm, remark);
    b.Ny(1, &row);
  });
}

// Rock control: turns per 0.2 m down to rock and through it.
void AddFjell(CKorvoFjell& b, const PointSpec& p, Sequence& s) {
  Head(b, p);
  Walk(p, 0.2, [&](float depth, Soil soil, const wchar_t* remark) {
    fjelltype row{};
    row.djup = depth;
    row.varv = s.In(Traits(soil).count);
    Put(row.anm, remark);
    b.Ny(1, &row);
  });
}

// The interpretation: one row per layer at the level of its top, from the
// sounding; the ground water stands 1.5 m below ground.
void AddTlk(CKorvoTlk& t, const PointSpec& p) {
  t.hargvy = 1;
  t.gvy = static_cast<float>(p.z - 1.5);
  double top = 0.0;
  for (const Layer& l : p.layers) {
    matetype row{};
    Put(row.namn, Traits(l.soil).old_name);
    row.niva = static_cast<float>(p.z - top);
    // Rock drilled 3 m into is a source of its own, with the stop code.
    row.kalla = l.soil == Soil::kRock ? 5 : 2;
    row.kalla2 = l.soil == Soil::kRock ? p.stop : 0;
    t.Ny(1, &row);
    top = l.bottom;
  }
}

void WritePoint(CProjPath& proj, CKorvoDbs& dbs, const PointSpec& p, uint32_t seed) {
  CKorvoSnd snd(&proj, &dbs);
  Put(snd.id, p.id);
  snd.x = p.x;
  snd.y = p.y;
  snd.z = p.z;
  snd.sek = CKorvoSnd::Seknoll;
  snd.avst = 0.0;
  snd.lutning = p.inclination;
  std::wstring* texts[4] = {&snd.text1, &snd.text2, &snd.text3, &snd.text4};
  for (size_t i = 0; i < p.texts.size() && i < 4; ++i) *texts[i] = p.texts[i];
  Sequence s(seed);
  if ((p.methods & kDreie) && snd.New(21)) AddDreie(*snd.m_dreie, p, s);
  if ((p.methods & kEnkel) && snd.New(22)) AddCounts<CKorvoEnkel, enktype>(*snd.m_enkel, p, s);
  if ((p.methods & kDtrykk) && snd.New(23)) {
    AddCounts<CKorvoDtrykk, dtrykktype>(*snd.m_dtrykk, p, s);
  }
  if ((p.methods & kRam) && snd.New(24)) AddRam(*snd.m_ram, p, s);
  if ((p.methods & kTotal) && snd.New(25)) AddTotal(*snd.m_total, p, s);
  if ((p.methods & kFjell) && snd.New(26)) AddFjell(*snd.m_fjell, p, s);
  if ((p.methods & kCpt) && snd.New(7)) AddCpt(*snd.m_cpt, p, s);
  if ((p.methods & kTlk) && snd.New(60)) AddTlk(*snd.m_tlk, p);
  snd.Uppdat(p.id, nullptr);
}

// A clay plain over till: the common profile of the site.
std::vector<Layer> ClayOverTill(double fill, double crust, double clay, double till) {
  return {{Soil::kFill, fill, L"FY grus och sand"},
          {Soil::kDryCrust, crust, L"TØ LE gråbrun, fast"},
          {Soil::kClay, clay, L"LE grå, lös, sulfidfläck"},
          {Soil::kTill, till, L"MO SA GR stenig"}};
}

// A profile ending in rock drilled into by 3 m, for the rock methods.
std::vector<Layer> OnRock(double fill, double crust, double clay, double till) {
  std::vector<Layer> layers = ClayOverTill(fill, crust, clay, till);
  layers.push_back({Soil::kRock, till + 3.0, L"F berg, grå gnejs"});
  return layers;
}

// The points of the site, west to east in rows along the block.
std::vector<PointSpec> Points() {
  const wchar_t* client = L"Beställare: Uppsala kommun";
  // clang-format off
  return {
      {L"101", 6638712.430, 647418.250, 10.42, 90.0, L"12.05.2025", kDreie | kTlk,
       ClayOverTill(0.6, 1.8, 9.4, 11.2), 91, L"Sten", L"ST stopp mot sten",
       {L"Kv. Kvarnen 3, nordvästra hörnet", L"Asfalt 0,1 m", L"", client}},
      {L"102", 6638731.880, 647446.910, 10.57, 90.0, L"12.05.2025", kDreie | kRam,
       ClayOverTill(0.8, 2.0, 10.2, 12.4), 93, L"Fast", L"MO fast botten", {}},
      {L"103", 6638748.120, 647472.340, 10.81, 90.0, L"13.05.2025", kTotal | kTlk,
       OnRock(0.4, 1.6, 8.6, 9.8), 94, L"Berg", L"F borrat 3 m i berg",
       {L"Totalsondering till berg", L"Bergnivå för grundläggning"}},
      {L"104", 6638690.550, 647455.700, 10.18, 90.0, L"13.05.2025", kDtrykk | kTlk,
       ClayOverTill(0.5, 2.2, 11.6, 13.0), 93, L"Fast", L"MO fast, stopp",
       {L"Vid befintlig ledningsgrav", L"Grundvattenrör planerat"}},
      {L"105", 6638672.010, 647430.160, 9.96, 90.0, L"13.05.2025", kRam,
       {{Soil::kFill, 1.2, L"FY sprängsten, grus"},
        {Soil::kClay, 7.8, L"LE grå, lös"},
        {Soil::kSilt, 9.0, L"SI lerig, vattenmättad"},
        {Soil::kTill, 11.6, L"MO sandig, stenig"}},
       91, L"Sten", L"ST stopp mot block", {}},
      {L"106", 6638705.770, 647489.030, 10.63, 90.0, L"14.05.2025", kDreie | kDtrykk,
       ClayOverTill(0.7, 1.9, 10.8, 12.2), 93, L"Fast", L"MO fast botten", {}},
      {L"107", 6638766.300, 647431.480, 10.94, 90.0, L"14.05.2025", kEnkel | kRam | kTlk,
       {{Soil::kFill, 0.5, L"FY grus"},
        {Soil::kDryCrust, 1.4, L"TØ LE brun, torr"},
        {Soil::kClay, 6.2, L"LE grå, halvfast"},
        {Soil::kSand, 8.4, L"SA grå, vattenförande"},
        {Soil::kTill, 10.0, L"MO grusig"}},
       93, L"Fast", L"MO fast, ej genomslagen", {L"Mot Åsgatan, gångbana"}},
      {L"108", 6638655.940, 647468.820, 9.88, 80.0, L"14.05.2025", kDreie,
       ClayOverTill(0.6, 1.5, 12.1, 13.4), 91, L"Sten", L"ST stopp, lutande borrning",
       {L"Snedborrning under befintlig byggnad", L"Lutning 80°", L"", client}},
      {L"C1", 6638719.050, 647461.330, 10.52, 90.0, L"15.05.2025", kCpt | kTlk,
       ClayOverTill(0.6, 1.8, 10.0, 11.4), 93, L"Fast", L"MO fast, max spetstryck",
       {L"CPTU mitt i huskroppen", L"Filter: glycerin, mättat före start"}},
      {L"110", 6638724.180, 647503.550, 10.71, 90.0, L"15.05.2025", kFjell | kEnkel,
       OnRock(0.6, 1.7, 9.9, 11.0), 94, L"Berg", L"F berg, 3 m",
       {L"Söder om pumpstationen"}},
      {L"GV1", 6638698.400, 647412.900, 10.35, 90.0, L"15.05.2025", kDreie | kTlk,
       {{Soil::kFill, 0.9, L"FY grus, tegelrester"},
        {Soil::kDryCrust, 2.1, L"TØ LE gråbrun"},
        {Soil::kClay, 8.8, L"LE grå, lös, skikt av silt"},
        {Soil::kSand, 10.4, L"SA GV vattenförande"},
        {Soil::kTill, 12.0, L"MO stenig"}},
       91, L"Sten", L"ST stopp mot sten", {L"Blivande grundvattenrör, filter i sand"}},
      {L"C2", 6638742.900, 647425.600, 10.66, 90.0, L"16.05.2025", kCpt | kDreie,
       ClayOverTill(0.5, 1.6, 9.0, 10.6), 93, L"Fast", L"MO fast",
       {L"Kontrollsondering vid 101"}},
  };
  // clang-format on
}

void FillHeader(korvoprjdattype& h) {
  Put(h.Prjnamn, L"Kv. Kvarnen 3, Uppsala");
  Put(h.Uppdnr, L"2025-0142");
  Put(h.Uppdnamn, L"Nybyggnad flerbostadshus");
  Put(h.Datum, L"16.05.2025");
  Put(h.Rad1, L"Geotekniska undersökningar");
  Put(h.Rad2, L"Fältarbete maj 2025");
  Put(h.Handl, L"Anna Lindqvist");
  Put(h.Ritare, L"Erik Sjöberg");
  Put(h.Ksyst, L"RAK");
  h.avskilj = L'+';
}

void WriteInfoPrj(CProjPath& proj) {
  CInfoPrj info(&proj);
  info.foretag = L"Geoteknik i Uppland AB";
  info.dokument = L"Rapporter\\PM Geoteknik Kv Kvarnen 3.pdf";
  info.textrad[0] = L"Markteknisk undersökningsrapport";
  info.textrad[1] = L"Nybyggnad av flerbostadshus, Kv. Kvarnen 3";
  info.textrad[2] = L"Höjder i RH 2000, koordinater i SWEREF 99 TM";
  info.latmin = 59.856890;
  info.latmax = 59.858120;
  info.lonmin = 17.631470;
  info.lonmax = 17.633220;
  info.latmedel = (info.latmin + info.latmax) / 2;
  info.lonmedel = (info.lonmin + info.lonmax) / 2;
  info.ksyst = 0;  // SWEREF 99 TM
  info.hsyst = 0;  // RH 2000
  info.ksysttext = L"SWEREF 99 TM";
  info.hsysttext = L"RH 2000";
  info.transrad[0] = L"Inmätt med GNSS (NRTK), Swepos";
  info.Uppdat();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: korvo-make-demo DIR\n");
    return 2;
  }
  const std::filesystem::path dir = argv[1];
  std::filesystem::create_directories(dir / "Dbf");
  CProjPath proj;
  proj.SetPath(dir.wstring().c_str());
  CKorvoDbs dbs(&proj);
  FillHeader(dbs.prjdat);
  if (dbs.Init(0, 1, nullptr, nullptr) != 0) {
    std::fprintf(stderr, "korvo-make-demo: cannot make a database in %s\n", argv[1]);
    return 1;
  }
  // Each point's record goes behind the header as the point is saved.
  uint32_t seed = 2025;
  for (const PointSpec& p : Points()) WritePoint(proj, dbs, p, seed++);
  WriteInfoPrj(proj);
  std::printf("korvo-make-demo: %zu points in %s\n", Points().size(), argv[1]);
  return 0;
}
