// check: the repairs that reading for writing makes, reported; and with
// --dry-run the same reading done read only, reporting what it would repair.
#include <string>
#include <vector>

#include "commands.h"
#include "text.h"

namespace korvo::cli {
namespace {

// What the header claims and what the list holds, for a before and after.
struct Tally {
  int points = 0;
  int boreholes = 0;
  int pipes = 0;
  int vane_borings = 0;
};

struct State {
  korvoprjdattype header;
  Tally listed;  // counted from the records read
};

State Capture(CKorvoDbs& dbs) {
  State s{dbs.prjdat, {}};
  if (dbs.Home() == 0) {
    do {
      const bhbit& bit = dbs.pael->bit;
      ++s.listed.points;
      if (bit.Test(bhbit::Bh)) ++s.listed.boreholes;
      if (bit.Get(bhbit::Ror) != 0) ++s.listed.pipes;
      if (bit.Test(bhbit::Vb)) ++s.listed.vane_borings;
    } while (dbs++ != nullptr);
  }
  return s;
}

void CompareCount(std::vector<std::string>& changes, const char* what, int from, int to) {
  if (from != to)
    changes.push_back(std::string(what) + " " + std::to_string(from) + " -> " + std::to_string(to));
}

// The header's counts against `listed`: what reading for writing corrects.
std::string CountRepair(const korvoprjdattype& h, const Tally& listed) {
  std::vector<std::string> changes;
  CompareCount(changes, "boreholes", h.antbh, listed.boreholes);
  CompareCount(changes, "pipes", h.antror, listed.pipes);
  CompareCount(changes, "vane borings", h.antvb, listed.vane_borings);
  if (changes.empty()) return "";
  std::string text = "header counts:";
  for (size_t i = 0; i < changes.size(); ++i) text += (i == 0 ? " " : ", ") + changes[i];
  return text;
}

std::string PackRepair(int deleted) {
  if (deleted <= 0) return "";
  return "deleted records packed: " + std::to_string(deleted);
}

void AddIfAny(Json& list, const std::string& text) {
  if (!text.empty()) list.push_back(text);
}

Json NoticesJson(const std::vector<std::string>& notices) {
  Json j = Json::array();
  for (const std::string& n : notices) j.push_back(n);
  return j;
}

}  // namespace

Json Check(Project& project, Terminal& terminal, bool dry_run) {
  // The read-only reading is the dry run, and for a real check the state
  // before, against which the repairs show; its questions are then left to
  // the reading that acts on the answers.
  if (!dry_run) terminal.Mute();
  const State before = Capture(project.Open(Access::kReadOnly, terminal));
  std::vector<std::string> notices = terminal.Release();
  Json repairs = Json::array();
  State after = before;
  if (dry_run) {
    AddIfAny(repairs, CountRepair(before.header, before.listed));
    AddIfAny(repairs, PackRepair(before.header.antrader));
  } else {
    after = Capture(project.Open(Access::kReadWrite, terminal));
    notices = terminal.Release();
    AddIfAny(repairs, CountRepair(before.header, after.listed));
    if (after.header.antrader == 0) AddIfAny(repairs, PackRepair(before.header.antrader));
  }
  Json data;
  data["project"] = project.dir();
  data["dry_run"] = dry_run;
  data["points"] = after.listed.points;
  data["repairs"] = repairs;
  data["notices"] = NoticesJson(notices);
  data["update_number"] = after.header.uppdnrfil;
  return data;
}

std::string CheckText(const Json& data) {
  const bool dry_run = data["dry_run"].get<bool>();
  std::string out = "checked " + data["project"].get<std::string>() + ": " +
                    std::to_string(data["points"].get<int>()) + " points" +
                    (dry_run ? ", read only\n" : "\n");
  for (const Json& n : data["notices"]) out += "  notice: " + n.get<std::string>() + '\n';
  for (const Json& r : data["repairs"]) {
    out += (dry_run ? "  to repair: " : "  repaired: ") + r.get<std::string>() + '\n';
  }
  if (data["repairs"].empty() && data["notices"].empty()) out += "  nothing to repair\n";
  return out;
}

}  // namespace korvo::cli
