// info: the project's header and its Info.prj description.
#include <charconv>
#include <cstdio>

#include "commands.h"
#include "text.h"

namespace korvo::cli {
namespace {

// The version as the number of Dbsver plus verdel; Dbsver is read without
// the process locale.
double Version(const korvoprjdattype& h) {
  const std::string text = FieldText(h.Dbsver);
  double v = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), v);
  return v + h.verdel;
}

std::string GuidText(const korvoprjdattype& h) {
  const uint32_t* g = h.guid;
  char buf[40];
  std::snprintf(buf, sizeof buf, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                static_cast<unsigned>(g[0]), static_cast<unsigned>(g[1] & 0xFFFF),
                static_cast<unsigned>(g[2] & 0xFFFF), static_cast<unsigned>(g[3] & 0xFF),
                static_cast<unsigned>(g[4] & 0xFF), static_cast<unsigned>(g[5] & 0xFF),
                static_cast<unsigned>(g[6] & 0xFF), static_cast<unsigned>(g[7] & 0xFF),
                static_cast<unsigned>(g[8] & 0xFF), static_cast<unsigned>(g[9] & 0xFF),
                static_cast<unsigned>(g[10] & 0xFF));
  return buf;
}

Json Range(double low, double high) {
  return Json::array({Rounded(low, 3), Rounded(high, 3)});
}

template <size_t N>
void AddIfSet(Json& lines, const wchar_t (&field)[N]) {
  const std::string text = FieldText(field);
  if (!text.empty()) lines.push_back(text);
}

Json HeaderJson(CKorvoDbs& dbs) {
  const korvoprjdattype& h = dbs.prjdat;
  Json project;
  project["name"] = FieldText(h.Prjnamn);
  project["number"] = FieldText(h.Uppdnr);
  project["contractor"] = FieldText(h.Uppdnamn);
  project["date"] = FieldText(h.Datum);
  Json remarks = Json::array();
  AddIfSet(remarks, h.Rad1);
  AddIfSet(remarks, h.Rad2);
  project["remarks"] = remarks;
  project["designer"] = FieldText(h.Handl);
  project["drawings"] = FieldText(h.Ritare);
  project["coordinates"] = FieldText(h.Ksyst);
  project["separator"] =
      h.avskilj != 0 ? Utf8(std::wstring(1, static_cast<wchar_t>(h.avskilj))) : std::string();
  return project;
}

Json DatabaseJson(CKorvoDbs& dbs) {
  const korvoprjdattype& h = dbs.prjdat;
  int points = 0;
  dbs.Where(&points);
  Json db;
  db["file"] = Utf8(CProjPath::AutoDbsNamn);
  db["version"] = Fixed(Version(h), 1);
  db["record_size"] = dbs.postlangd;
  db["update_number"] = h.uppdnrfil;
  db["guid"] = h.harguid == 1 ? Json(GuidText(h)) : Json(nullptr);
  Json counts;
  counts["points"] = points;
  counts["boreholes"] = h.antbh;
  counts["avp"] = h.antavp;
  counts["pipes"] = h.antror;
  counts["vane_borings"] = h.antvb;
  counts["environmental"] = h.antmil;
  counts["lines"] = h.antlje;
  counts["slabs"] = h.antlad;
  counts["deleted"] = h.antrader;
  db["counts"] = counts;
  // Bounds of an empty project are the extremes the library starts from.
  Json bounds = nullptr;
  if (points > 0) {
    bounds = Json::object();
    bounds["x"] = Range(h.minx, h.maxx);
    bounds["y"] = Range(h.miny, h.maxy);
    bounds["z"] = Range(h.minz, h.maxz);
    const bool chainage = h.minsekt < CKorvoDbs::m_sek_noll - 0.001;
    bounds["chainage"] = chainage ? Range(h.minsekt, h.maxsekt) : Json(nullptr);
  }
  db["bounds"] = bounds;
  return db;
}

Json SystemJson(int index, int epsg, const wchar_t* name) {
  if (index < 0) return nullptr;
  Json s;
  s["index"] = index;
  s["epsg"] = epsg < 0 ? Json(nullptr) : Json(epsg);
  std::string text = name != nullptr ? Utf8(name) : "";
  while (!text.empty() && text.back() == ' ') text.pop_back();
  s["name"] = text;
  return s;
}

Json InfoPrjJson(Project& project) {
  if (Project::FindFile(project.dir(), "Info.prj").empty()) return nullptr;
  CInfoPrj info(&project.paths());
  Json j;
  j["company"] = Utf8(info.foretag);
  j["document"] = Utf8(info.dokument);
  Json lines = Json::array();
  for (const std::wstring& t : info.textrad) {
    if (!t.empty()) lines.push_back(Utf8(t));
  }
  j["text"] = lines;
  const bool known_plane = info.ksyst >= 0 && info.ksyst <= CTransformation::SIZE;
  j["plane_system"] = SystemJson(info.ksyst, CInfoPrj::EPGSsystem(info.ksyst),
                                 known_plane ? CTransformation::defSystem[info.ksyst] : nullptr);
  const bool known_height = info.hsyst >= 0 && info.hsyst <= CTransformation::SIZEHEIGHT;
  j["height_system"] =
      SystemJson(info.hsyst, CInfoPrj::EPGSsystemHeight(info.hsyst),
                 known_height ? CTransformation::defSystemHeight[info.hsyst] : nullptr);
  j["plane_remark"] = Utf8(info.ksysttext);
  j["height_remark"] = Utf8(info.hsysttext);
  j["latitude"] = Json::array({Rounded(info.latmin, 6), Rounded(info.latmax, 6)});
  j["longitude"] = Json::array({Rounded(info.lonmin, 6), Rounded(info.lonmax, 6)});
  j["centre"] = Json::array({Rounded(info.latmedel, 6), Rounded(info.lonmedel, 6)});
  Json trans = Json::array();
  for (const std::wstring& t : info.transrad) {
    if (!t.empty()) trans.push_back(Utf8(t));
  }
  j["transformation"] = trans;
  return j;
}

// One "label  value" line, the labels in one column.
void Line(std::string& out, const std::string& label, const std::string& value) {
  if (!value.empty()) out += PadRight(label, 14) + value + '\n';
}

std::string RangeText(const Json& r, int decimals) {
  if (r.is_null()) return "none";
  return Fixed(r[0].get<double>(), decimals) + " .. " + Fixed(r[1].get<double>(), decimals);
}

std::string SystemText(const Json& s) {
  if (s.is_null()) return "unknown";
  std::string text = s["name"].get<std::string>();
  if (!s["epsg"].is_null()) text += " (EPSG:" + std::to_string(s["epsg"].get<int>()) + ")";
  return text;
}

void InfoPrjText(std::string& out, const Json& i) {
  out += "\nInfo.prj\n";
  Line(out, "Company", i["company"]);
  Line(out, "Document", i["document"]);
  for (const Json& t : i["text"]) Line(out, "Text", t);
  Line(out, "Plane system", SystemText(i["plane_system"]));
  Line(out, "", i["plane_remark"]);
  Line(out, "Height system", SystemText(i["height_system"]));
  Line(out, "", i["height_remark"]);
  Line(out, "Latitude", RangeText(i["latitude"], 6));
  Line(out, "Longitude", RangeText(i["longitude"], 6));
  Line(out, "Centre",
       Fixed(i["centre"][0].get<double>(), 6) + ", " + Fixed(i["centre"][1].get<double>(), 6));
  for (const Json& t : i["transformation"]) Line(out, "Transform", t);
}

}  // namespace

Json Info(Project& project, Terminal& terminal) {
  CKorvoDbs& dbs = project.Open(Access::kReadOnly, terminal);
  terminal.Flush();
  Json data;
  data["project"] = HeaderJson(dbs);
  data["database"] = DatabaseJson(dbs);
  data["info_prj"] = InfoPrjJson(project);
  return data;
}

std::string InfoText(const Json& data) {
  const Json& p = data["project"];
  const Json& d = data["database"];
  const Json& c = d["counts"];
  std::string out;
  Line(out, "Project", p["name"]);
  Line(out, "Number", p["number"]);
  Line(out, "Contractor", p["contractor"]);
  Line(out, "Date", p["date"]);
  for (const Json& r : p["remarks"]) Line(out, "Remarks", r);
  Line(out, "Designer", p["designer"]);
  Line(out, "Drawings", p["drawings"]);
  Line(out, "Coordinates", p["coordinates"]);
  Line(out, "Separator", p["separator"]);
  out += '\n';
  Line(out, "Database",
       d["file"].get<std::string>() + ", version " + d["version"].get<std::string>() + ", " +
           std::to_string(d["record_size"].get<int>()) + "-byte records");
  Line(out, "Update number", std::to_string(d["update_number"].get<int>()));
  Line(out, "GUID", d["guid"].is_null() ? "none" : d["guid"].get<std::string>());
  std::string counts = std::to_string(c["points"].get<int>()) + " points: ";
  counts += std::to_string(c["boreholes"].get<int>()) + " boreholes, ";
  counts += std::to_string(c["avp"].get<int>()) + " Avp, ";
  counts += std::to_string(c["pipes"].get<int>()) + " pipes, ";
  counts += std::to_string(c["vane_borings"].get<int>()) + " vane borings, ";
  counts += std::to_string(c["environmental"].get<int>()) + " with environmental data";
  Line(out, "Counts", counts);
  if (c["lines"].get<int>() + c["slabs"].get<int>() > 0) {
    Line(out, "",
         std::to_string(c["lines"].get<int>()) + " lines, " +
             std::to_string(c["slabs"].get<int>()) + " slab measurements");
  }
  if (c["deleted"].get<int>() > 0) {
    Line(out, "Deleted", std::to_string(c["deleted"].get<int>()) + " records to pack");
  }
  const Json& b = d["bounds"];
  if (!b.is_null()) {
    Line(out, "Bounds x", RangeText(b["x"], 3));
    Line(out, "Bounds y", RangeText(b["y"], 3));
    Line(out, "Bounds z", RangeText(b["z"], 3));
    Line(out, "Chainage", RangeText(b["chainage"], 3));
  }
  if (data["info_prj"].is_null()) {
    out += "\nInfo.prj      none\n";
  } else {
    InfoPrjText(out, data["info_prj"]);
  }
  return out;
}

}  // namespace korvo::cli
