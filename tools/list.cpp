// list: the points of the project as the database holds them.
#include <cmath>

#include "commands.h"
#include "text.h"

namespace korvo::cli {
namespace {

struct NamedFlag {
  const char* name;
  bhbit::Flag flag;
};

// What a point may hold, in the order a list names it: the method blocks of
// its .SND file first, then its other field files.
constexpr NamedFlag kPresent[] = {
    {"Dreie", bhbit::Dreie},     {"Enkel", bhbit::Enkel}, {"Dtrykk", bhbit::Dtrykk},
    {"Ram", bhbit::Ram},         {"Total", bhbit::Total}, {"Fjell", bhbit::Fjell},
    {"Cpt", bhbit::Cpt},         {"Dpt", bhbit::Dpt},     {"Karnborr", bhbit::Karnborr},
    {"VattenF", bhbit::VattenF}, {"Prv", bhbit::Prv},     {"Mil", bhbit::Mil},
    {"Tlk", bhbit::Tlk},
};

bool HasChainage(double sekt) {
  return std::fabs(sekt - CKorvoDbs::m_sek_noll) > 0.001;
}

}  // namespace

const std::vector<SortKey>& SortKeys() {
  static const std::vector<SortKey> keys = {
      {"name", 1, "name: numbered names first, by number"},
      {"x", 2, "x"},
      {"y", 3, "y"},
      {"z", 4, "ground level"},
      {"chainage", 5, "chainage"},
      {"distance", 6, "distance from the line"},
      {"cpt", 7, "CPT first"},
      {"pipe", 8, "pipes first"},
      {"avp", 9, "points of kind Avp first"},
      {"vb", 10, "vane borings first"},
      {"fjell", 11, "rock control first"},
      {"total", 12, "total sounding first"},
      {"ram", 13, "ram sounding first"},
      {"enkel", 14, "simple sounding first"},
      {"dtrykk", 15, "rotary pressure sounding first"},
      {"dreie", 16, "rotary sounding first"},
      {"samples", 17, "plain samples first"},
      {"startvarde", 18, "samples starting below ground first"},
      {"prvtyp", 19, "special sample rows first"},
      {"skv", 20, "special samples only first"},
      {"tlk", 21, "interpreted layers first"},
  };
  return keys;
}

Json RecordJson(CKorvoDbs& dbs) {
  const bhdbstype& r = *dbs.pael;
  wchar_t kind[8] = {};
  dbs.Kod(kind);
  Json j;
  j["id"] = FieldText(r.id);
  j["kind"] = FieldText(kind);
  j["x"] = Rounded(r.x, 3);
  j["y"] = Rounded(r.y, 3);
  j["z"] = Rounded(r.z, 3);
  if (r.bit.Test(bhbit::Avp)) {
    j["depth"] = nullptr;
    j["code"] = FieldText(r.kod);
  } else {
    j["depth"] = Rounded(r.djup, 2);
  }
  j["stop"] = r.stopp;
  j["chainage"] = HasChainage(r.sekt) ? Json(Rounded(r.sekt, 3)) : Json(nullptr);
  j["distance"] = Rounded(r.avst, 3);
  Json present = Json::array();
  for (const NamedFlag& f : kPresent) {
    if (r.bit.Test(f.flag)) present.push_back(f.name);
  }
  j["present"] = present;
  if (r.datum[0] != L'\0') j["date"] = FieldText(r.datum);
  return j;
}

Json List(Project& project, Terminal& terminal, int key) {
  CKorvoDbs& dbs = project.Open(Access::kReadOnly, terminal);
  terminal.Flush();
  if (key != 0) dbs.Sortera(key);
  Json points = Json::array();
  if (dbs.Home() == 0) {
    do {
      points.push_back(RecordJson(dbs));
    } while (dbs++ != nullptr);
  }
  Json data;
  data["project"] = project.dir();
  data["points"] = points;
  return data;
}

std::string ListText(const Json& data) {
  std::string out = PadRight("ID", 9) + PadRight("KIND", 5) + PadLeft("X", 12) + PadLeft("Y", 13) +
                    PadLeft("Z", 9) + PadLeft("DEPTH", 8) + PadLeft("STOP", 6) + "  PRESENT\n";
  for (const Json& p : data["points"]) {
    const std::string depth =
        p["depth"].is_null() ? p.value("code", "") : Fixed(p["depth"].get<double>(), 2);
    std::string present;
    for (const Json& name : p["present"]) {
      present += (present.empty() ? "" : " ") + name.get<std::string>();
    }
    std::string line =
        PadRight(p["id"].get<std::string>(), 9) + PadRight(p["kind"].get<std::string>(), 5) +
        PadLeft(Fixed(p["x"].get<double>(), 3), 12) + PadLeft(Fixed(p["y"].get<double>(), 3), 13) +
        PadLeft(Fixed(p["z"].get<double>(), 3), 9) + PadLeft(depth, 8) +
        PadLeft(std::to_string(p["stop"].get<int>()), 6) + "  " + present;
    while (!line.empty() && line.back() == ' ') line.pop_back();
    out += line + '\n';
  }
  const size_t n = data["points"].size();
  out += std::to_string(n) + (n == 1 ? " point\n" : " points\n");
  return out;
}

}  // namespace korvo::cli
