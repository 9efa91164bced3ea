// show: one point, read from its field files: the head, every method block
// with its rows, and the interpretation.
#include <algorithm>
#include <cmath>
#include <map>

#include "commands.h"
#include "text.h"

namespace korvo::cli {
namespace {

// Row keys left to the JSON: the code's symbol is a glyph of a map font,
// and the old name repeats the material.
bool JsonOnly(const std::string& key) {
  return key == "symbol" || key == "name";
}

// Decimals of the number columns in the plain form; whole numbers otherwise.
const std::map<std::string, int>& Decimals() {
  static const std::map<std::string, int> decimals = {
      {"depth", 3}, {"level", 2}, {"value1", 1}, {"value2", 3}, {"value3", 1}};
  return decimals;
}

std::string KindName(const int* typ) {
  if (typ == nullptr) return "";
  if (*typ == CKorvoSnd::Bh) return "BH";
  if (*typ == CKorvoSnd::Gvr) return "GVR";
  if (*typ == CKorvoSnd::Mtn) return "MTN";
  if (*typ == CKorvoSnd::Avp) return "AVP";
  if (*typ == CKorvoSnd::Vb) return "VB";
  return std::to_string(*typ);
}

// The head that every method block shares.
template <class Block>
Json BlockHead(const char* method, int code, const Block& b) {
  Json j;
  j["method"] = method;
  j["code"] = code;
  j["date"] = FieldText(b.datum);
  j["stop"] = b.stopp;
  j["stop_text"] = FieldText(b.stopptext);
  j["code_system"] = FieldText(b.kodsystem);
  j["digitised"] = b.digit > 0;
  j["guid"] = Utf8(b.guid);
  return j;
}

// Walks the rows of a block, each made into JSON by `row`.
template <class Block, class RowJson>
Json Rows(Block& b, RowJson row) {
  Json rows = Json::array();
  if (b.Home() == 0) {
    do {
      rows.push_back(row(*b.pael));
    } while (b++ != nullptr);
  }
  return rows;
}

template <class Row>
void Remark(Json& j, const Row& r) {
  j["remark"] = FieldText(r.anm);
  j["symbol"] = FieldText(r.symbol);
}

Json DreieRows(CKorvoDreie& b) {
  return Rows(b, [](const dreietype& r) {
    Json j;
    j["depth"] = Rounded(r.djup, 3);
    j["count"] = r.varv;
    j["load"] = FieldText(r.vikt);
    Remark(j, r);
    return j;
  });
}

template <class Block>
Json CountRows(Block& b) {
  return Rows(b, [](const auto& r) {
    Json j;
    j["depth"] = Rounded(r.djup, 3);
    j["count"] = r.varv;
    Remark(j, r);
    return j;
  });
}

Json RamRows(CKorvoRam& b) {
  return Rows(b, [](const ramsondtype& r) {
    Json j;
    j["depth"] = Rounded(r.djup, 3);
    j["tal1"] = r.tal1;
    j["tal2"] = r.tal2;
    Remark(j, r);
    return j;
  });
}

// A total sounding's third number exists from the second generation of its
// rows on, the word before it.
Json TotalRows(CKorvoTotal& b) {
  const bool word = b.format < 2;
  return Rows(b, [word](const totaltype& r) {
    Json j;
    j["depth"] = Rounded(r.djup, 3);
    j["tal1"] = r.tal1;
    j["tal2"] = r.tal2;
    if (word) {
      j["word"] = FieldText(r.typ);
    } else {
      j["tal3"] = r.tal3;
    }
    Remark(j, r);
    return j;
  });
}

Json CptRows(CKorvoCpt& b) {
  return Rows(b, [](const cpttype& r) {
    Json j;
    j["depth"] = Rounded(r.djup, 3);
    j["qc"] = r.matv1;
    j["fs"] = r.matv2;
    j["u"] = r.matv3;
    Remark(j, r);
    // The extra values stand only in rows that have them.
    if (r.tal4 != 0 || r.varde1 > 0.0 || r.varde2 != 0.0 || r.varde3 != 0.0) {
      j["tal4"] = r.tal4;
      j["value1"] = Rounded(r.varde1, 1);
      j["value2"] = Rounded(r.varde2, 3);
      j["value3"] = Rounded(r.varde3, 1);
    }
    return j;
  });
}

// The keywords of a CPT's header, in file order.
Json CptKeywords(CKorvoCptHeader& h) {
  return Rows(h, [](const cptheadertype& k) {
    Json j;
    j["key"] = FieldText(k.nyckel);
    j["value"] = FieldText(k.varde);
    return j;
  });
}

template <class Block, class RowsOf>
void AddBlock(Json& blocks, const char* method, int code, Block* b, RowsOf rows) {
  if (b == nullptr) return;
  Json j = BlockHead(method, code, *b);
  j["rows"] = rows(*b);
  blocks.push_back(j);
}

// The blocks in the order the .SND file holds them.
Json Blocks(CKorvoSnd& point) {
  Json blocks = Json::array();
  AddBlock(blocks, "Dreie", 21, point.m_dreie, DreieRows);
  AddBlock(blocks, "Ram", 24, point.m_ram, RamRows);
  AddBlock(blocks, "Total", 25, point.m_total, TotalRows);
  AddBlock(blocks, "Fjell", 26, point.m_fjell, CountRows<CKorvoFjell>);
  AddBlock(blocks, "Dtrykk", 23, point.m_dtrykk, CountRows<CKorvoDtrykk>);
  AddBlock(blocks, "Enkel", 22, point.m_enkel, CountRows<CKorvoEnkel>);
  AddBlock(blocks, "CPT", 7, point.m_cpt, CptRows);
  if (point.m_cpt != nullptr) blocks.back()["keywords"] = CptKeywords(point.m_cpt->header);
  return blocks;
}

std::string Trimmed(const wchar_t* text) {
  std::string s = text != nullptr ? Utf8(text) : "";
  const size_t first = s.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

Json Interpretation(CKorvoTlk* tlk) {
  if (tlk == nullptr) return nullptr;
  Json j;
  j["ground_water"] = tlk->gvy != 0.0f ? Json(Rounded(tlk->gvy, 2)) : Json(nullptr);
  j["rows"] = Rows(*tlk, [](const matetype& r) {
    Json row;
    row["level"] = Rounded(r.niva, 2);
    const bool known = r.index > 0 && r.index < CKorvoTlk::AntalMaterial;
    row["material"] = known ? Trimmed(CKorvoTlk::SvMaterial[r.index]) : FieldText(r.namn);
    row["name"] = FieldText(r.namn);
    row["remark"] = FieldText(r.anmarkning);
    row["comment"] = FieldText(r.kommentar);
    row["source"] = r.kalla;
    row["source2"] = r.kalla2;
    return row;
  });
  return j;
}

// The database record of `id`; null when there is none.
Json FindRecord(CKorvoDbs& dbs, std::wstring id) {
  return dbs.Findid(id.data(), -1) == 0 ? RecordJson(dbs) : Json(nullptr);
}

Json PointJson(CKorvoSnd& point) {
  Json j;
  j["id"] = FieldText(point.id);
  j["kind"] = KindName(point.typ);
  j["x"] = Rounded(point.x, 3);
  j["y"] = Rounded(point.y, 3);
  j["z"] = Rounded(point.z, 3);
  const bool chainage = std::fabs(point.sek - CKorvoSnd::Seknoll) > 0.001;
  j["chainage"] = chainage ? Json(Rounded(point.sek, 3)) : Json(nullptr);
  j["distance"] = Rounded(point.avst, 3);
  j["start_depth"] = Rounded(point.startdjup, 3);
  j["inclination"] = Rounded(point.lutning, 1);
  j["date"] = FieldText(point.datum);
  Json texts = Json::array();
  for (const std::wstring* t : {&point.text1, &point.text2, &point.text3, &point.text4}) {
    if (!t->empty()) texts.push_back(Utf8(*t));
  }
  j["texts"] = texts;
  j["guid"] = Utf8(point.guid);
  j["blocks"] = Blocks(point);
  j["interpretation"] = Interpretation(point.m_tlk);
  return j;
}

// Cells of one row in the plain form: numbers with their decimals.
std::string Cell(const std::string& key, const Json& v) {
  if (v.is_null()) return "";
  if (v.is_string()) return v.get<std::string>();
  if (v.is_boolean()) return v.get<bool>() ? "yes" : "no";
  const auto d = Decimals().find(key);
  if (d != Decimals().end()) return Fixed(v.get<double>(), d->second);
  return v.dump();
}

// The keys of all rows in the order they first appear, but for those left
// to the JSON.
std::vector<std::string> Keys(const Json& rows) {
  std::vector<std::string> keys;
  for (const Json& row : rows) {
    for (const auto& item : row.items()) {
      if (!JsonOnly(item.key()) && std::find(keys.begin(), keys.end(), item.key()) == keys.end()) {
        keys.push_back(item.key());
      }
    }
  }
  return keys;
}

// The rows as a table under a head line of their keys: numbers to the
// right, texts to the left, and a column that is empty in every row (or in
// no row at all) left out.
void Table(std::string& out, const Json& rows) {
  if (rows.empty()) {
    out += "  (no rows)\n";
    return;
  }
  const std::vector<std::string> keys = Keys(rows);
  const auto cell = [&](const Json& row, size_t k) {
    return row.contains(keys[k]) ? Cell(keys[k], row[keys[k]]) : std::string();
  };
  std::vector<size_t> width(keys.size(), 0);
  std::vector<bool> numeric(keys.size(), false);
  for (size_t k = 0; k < keys.size(); ++k) {
    for (const Json& row : rows) {
      width[k] = std::max(width[k], Columns(cell(row, k)));
      if (row.contains(keys[k])) numeric[k] = row[keys[k]].is_number();
    }
  }
  const auto line = [&](auto text_of) {
    std::string text = " ";
    for (size_t k = 0; k < keys.size(); ++k) {
      if (width[k] == 0) continue;
      const size_t w = std::max(width[k], Columns(keys[k]));
      text += "  " + (numeric[k] ? PadLeft(text_of(k), w) : PadRight(text_of(k), w));
    }
    while (!text.empty() && text.back() == ' ') text.pop_back();
    out += text + '\n';
  };
  line([&](size_t k) { return keys[k]; });
  for (const Json& row : rows) line([&](size_t k) { return cell(row, k); });
}

void HeadText(std::string& out, const Json& p) {
  out += "Point " + p["id"].get<std::string>();
  if (!p["kind"].get<std::string>().empty()) out += " (" + p["kind"].get<std::string>() + ")";
  out += '\n';
  out += "  x " + Fixed(p["x"].get<double>(), 3) + "  y " + Fixed(p["y"].get<double>(), 3) +
         "  z " + Fixed(p["z"].get<double>(), 3) + '\n';
  out += "  chainage " +
         (p["chainage"].is_null() ? std::string("none") : Fixed(p["chainage"].get<double>(), 3)) +
         "  distance " + Fixed(p["distance"].get<double>(), 3) + '\n';
  out += "  start depth " + Fixed(p["start_depth"].get<double>(), 3) + "  inclination " +
         Fixed(p["inclination"].get<double>(), 1) + '\n';
  if (!p["date"].get<std::string>().empty()) out += "  date " + p["date"].get<std::string>() + '\n';
  for (const Json& t : p["texts"]) out += "  text " + t.get<std::string>() + '\n';
  if (!p["guid"].get<std::string>().empty()) out += "  guid " + p["guid"].get<std::string>() + '\n';
}

void RecordText(std::string& out, const Json& r) {
  if (r.is_null()) {
    out += "  not in the project database\n";
    return;
  }
  std::string present;
  for (const Json& name : r["present"]) present += " " + name.get<std::string>();
  out += "  database: " + r["kind"].get<std::string>() + ", depth " +
         (r["depth"].is_null() ? r.value("code", "") : Fixed(r["depth"].get<double>(), 2)) +
         ", stop " + std::to_string(r["stop"].get<int>()) + ", present:" + present + '\n';
}

void BlockText(std::string& out, const Json& b) {
  out += '\n' + b["method"].get<std::string>() + " (" + std::to_string(b["code"].get<int>()) + ")";
  out += "  " + b["date"].get<std::string>();
  out += "  stop " + std::to_string(b["stop"].get<int>());
  if (!b["stop_text"].get<std::string>().empty()) out += " " + b["stop_text"].get<std::string>();
  out += "  codes " + b["code_system"].get<std::string>();
  if (b["digitised"].get<bool>()) out += "  digitised";
  out += '\n';
  if (b.contains("keywords") && !b["keywords"].empty()) {
    out += "  keywords";
    for (const Json& k : b["keywords"]) {
      out += "  " + k["key"].get<std::string>() + " " + k["value"].get<std::string>();
    }
    out += '\n';
  }
  Table(out, b["rows"]);
}

void InterpretationText(std::string& out, const Json& t) {
  if (t.is_null()) return;
  out += "\nInterpretation (.TLK)";
  if (!t["ground_water"].is_null()) {
    out += "  ground water " + Fixed(t["ground_water"].get<double>(), 2);
  }
  out += '\n';
  Table(out, t["rows"]);
}

}  // namespace

Json Show(Project& project, Terminal& terminal, const std::string& id) {
  std::wstring wid = Wide(id);
  VersalText(wid);
  if (wid.empty() || wid.size() > 8) throw Failure("not a point name: " + id);
  CKorvoDbs& dbs = project.Open(Access::kReadOnly, terminal);
  terminal.Flush();
  const Json record = FindRecord(dbs, wid);
  const bool has_file =
      !Project::FindFile(Utf8(project.paths().DbfKat), Utf8(wid) + ".SND").empty();
  if (record.is_null() && !has_file)
    throw Failure("no point " + Utf8(wid) + " in " + project.dir());
  CKorvoSnd point(&project.paths(), &dbs);
  point.Init(wid.c_str(), nullptr);
  Json data = PointJson(point);
  data["record"] = record;
  return data;
}

std::string ShowText(const Json& data) {
  std::string out;
  HeadText(out, data);
  RecordText(out, data["record"]);
  for (const Json& b : data["blocks"]) BlockText(out, b);
  InterpretationText(out, data["interpretation"]);
  return out;
}

}  // namespace korvo::cli
