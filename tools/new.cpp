// new: a new, empty project database, and the directory for its field files.
#include <filesystem>
#include <system_error>

#include "commands.h"
#include "text.h"

namespace korvo::cli {

Json New(const std::string& dir, const korvoprjdattype& header, Terminal& terminal) {
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  if (ec) throw Failure("cannot make the directory " + dir + ": " + ec.message());
  Project project(dir);
  project.Create(header, terminal);
  std::filesystem::create_directories(Utf8(project.paths().DbfKat), ec);
  if (ec) throw Failure("cannot make the field directory: " + ec.message());
  Json data;
  data["created"] = project.DatabasePath();
  data["field_files"] = Utf8(project.paths().DbfKat);
  data["version"] = Utf8(CKorvoDbs::m_Dbsver);
  return data;
}

std::string NewText(const Json& data) {
  return "created " + data["created"].get<std::string>() + " (version " +
         data["version"].get<std::string>() + "), field files in " +
         data["field_files"].get<std::string>() + '\n';
}

}  // namespace korvo::cli
