// The commands of the program. Each gathers its data as JSON, which --json
// prints as it stands and the plain form renders for a person; so both
// always show the same thing.
#ifndef KORVO_TOOLS_COMMANDS_H_
#define KORVO_TOOLS_COMMANDS_H_

#include <korvo/korvo.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "session.h"

namespace korvo::cli {

// Keys in the order written, so that the JSON reads like the plain form.
using Json = nlohmann::ordered_json;

// info: the project header and the Info.prj description, if the project
// has that file (it is not made here).
Json Info(Project& project, Terminal& terminal);
std::string InfoText(const Json& data);

// The orders of the database by name, with the key that gives each
// ascending; the descending order is the negative key.
struct SortKey {
  const char* name;
  int key;
  const char* meaning;
};
const std::vector<SortKey>& SortKeys();

// list: one entry per point, in file order when `key` is 0.
Json List(Project& project, Terminal& terminal, int key);
std::string ListText(const Json& data);

// show: one point read from its field files, with the database record.
// Failure when the project has no point `id`.
Json Show(Project& project, Terminal& terminal, const std::string& id);
std::string ShowText(const Json& data);

// new: a new, empty project database; the directory is made if needed.
Json New(const std::string& dir, const korvoprjdattype& header, Terminal& terminal);
std::string NewText(const Json& data);

// check: reads the database for reading and writing, which repairs and packs
// it, and reports what was repaired; with `dry_run` only what would be.
Json Check(Project& project, Terminal& terminal, bool dry_run);
std::string CheckText(const Json& data);

// The database record of a point, as list and show give it.
Json RecordJson(CKorvoDbs& dbs);

}  // namespace korvo::cli

#endif  // KORVO_TOOLS_COMMANDS_H_
