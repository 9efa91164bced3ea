#include "session.h"

#include <cstdio>
#include <iostream>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <io.h>
#define KORVO_ISATTY _isatty
#else
#include <unistd.h>
#define KORVO_ISATTY isatty
#endif

#include "text.h"

namespace korvo::cli {
namespace fs = std::filesystem;

namespace {

std::string Lower(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
}

// The answers a question of `buttons` allows, as the keys the user types.
const char* Choices(int buttons) {
  if (buttons == MB_OKCANCEL) return "[o/c]";
  if (buttons == MB_YESNOCANCEL) return "[y/n/c]";
  return "[y/n]";
}

int Decline(int buttons) {
  return buttons == MB_OKCANCEL ? IDCANCEL : IDNO;
}
int Accept(int buttons) {
  return buttons == MB_OKCANCEL ? IDOK : IDYES;
}

const char* AnswerWord(int answer) {
  switch (answer) {
    case IDYES:
      return "yes";
    case IDOK:
      return "ok";
    case IDCANCEL:
      return "cancel";
    default:
      return "no";
  }
}

bool IsQuestion(int buttons) {
  return buttons == MB_YESNO || buttons == MB_YESNOCANCEL || buttons == MB_OKCANCEL;
}

}  // namespace

Terminal::Terminal(Fallback fallback) : fallback_(fallback), interactive_(KORVO_ISATTY(0) != 0) {
  old_status_ = SetStatusHandler(
      [](const std::wstring& text) { std::cerr << "korvo: " << OneLine(text) << '\n'; });
  old_message_ = SetMessageHandler([this](const std::wstring& title, const std::wstring& text, int,
                                          int buttons) { return OnMessage(title, text, buttons); });
}

Terminal::~Terminal() {
  Flush();
  SetStatusHandler(std::move(old_status_));
  SetMessageHandler(std::move(old_message_));
}

void Terminal::Hold() {
  holding_ = true;
}

void Terminal::Mute() {
  muted_ = true;
}

std::vector<std::string> Terminal::Release() {
  holding_ = false;
  muted_ = false;
  return std::exchange(held_, {});
}

void Terminal::Flush() {
  for (const std::string& line : Release()) std::cerr << "korvo: " << line << '\n';
}

void Terminal::Notice(const std::string& line) {
  if (holding_) {
    held_.push_back(line);
  } else {
    std::cerr << "korvo: " << line << '\n';
  }
}

int Terminal::OnMessage(const std::wstring& title, const std::wstring& text, int buttons) {
  if (muted_) return IsQuestion(buttons) ? Decline(buttons) : IDOK;
  std::string line = OneLine(text);
  // The library's own title says little to a user; a caller's says where.
  if (!title.empty() && title != kAppTitle) line = OneLine(title) + ": " + line;
  if (!IsQuestion(buttons)) {
    Notice(line);
    return IDOK;
  }
  const int answer = Ask(line, buttons);
  Notice(line + " -> " + AnswerWord(answer));
  return answer;
}

int Terminal::Ask(const std::string& question, int buttons) {
  if (!interactive_) return fallback_ == Fallback::kYes ? Accept(buttons) : Decline(buttons);
  for (;;) {
    std::cerr << "korvo: " << question << ' ' << Choices(buttons) << ' ' << std::flush;
    std::string reply;
    if (!std::getline(std::cin, reply)) return Decline(buttons);
    reply = Lower(reply);
    if (reply == "y" || reply == "yes" || reply == "j" || reply == "ja") return IDYES;
    if (reply == "n" || reply == "no" || reply == "nej") return IDNO;
    if (reply == "o" || reply == "ok") return IDOK;
    if (reply == "c" || reply == "cancel") return IDCANCEL;
  }
}

Project::Project(const std::string& dir) : dir_(dir) {
  while (dir_.size() > 1 && (dir_.back() == '/' || dir_.back() == '\\')) dir_.pop_back();
  std::error_code ec;
  const fs::file_status status = fs::status(dir_, ec);
  if (!fs::exists(status)) throw Failure("no such project directory: " + dir_);
  if (!fs::is_directory(status)) throw Failure("not a directory: " + dir_);
  proj_.SetPath(Wide(dir_).c_str());
}

Project::~Project() = default;

std::string Project::DatabasePath() const {
  return Utf8(proj_.DbsFil);
}

fs::path Project::FindFile(const fs::path& folder, const std::string& name) {
  std::error_code ec;
  if (fs::exists(folder / name, ec)) return folder / name;
  const std::string wanted = Lower(name);
  for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
    if (Lower(it->path().filename().string()) == wanted) return it->path();
  }
  return {};
}

CKorvoDbs& Project::Open(Access access, Terminal& terminal) {
  const std::string db_name = Utf8(CProjPath::AutoDbsNamn);
  if (FindFile(dir_, db_name).empty()) {
    throw Failure("no project database in " + dir_ + " (" + db_name + " is missing)");
  }
  dbs_ = std::make_unique<CKorvoDbs>(&proj_);
  terminal.Hold();
  const int result = dbs_->Init(access == Access::kReadOnly ? 1 : 0, 0, nullptr, nullptr);
  if (result != 0) FailOpening(result, terminal.Release());
  return *dbs_;
}

void Project::FailOpening(int result, const std::vector<std::string>& notices) const {
  const std::string db = DatabasePath();
  if (result == -4) throw Failure("damaged database " + db + ": the header is cut short");
  if (!FindFile(dir_, Utf8(CProjPath::AutoDbkNamn)).empty()) {
    throw Failure("project is locked: " + Utf8(CProjPath::AutoDbkNamn) + " exists in " + dir_ +
                  " (another user is at work, or a stale lock is left to delete)");
  }
  for (const std::string& notice : notices) {
    const std::string version_mark = "Felaktig version: ";
    const size_t at = notice.find(version_mark);
    if (at != std::string::npos) {
      const size_t from = at + version_mark.size();
      const std::string version = notice.substr(from, notice.find(' ', from) - from);
      throw Failure("damaged database " + db + ": unknown format version " + version);
    }
    if (notice.find("Lockfile") != std::string::npos) {
      throw Failure("cannot make the lock file in " + dir_ + " (no write access?)");
    }
  }
  throw Failure("cannot open " + db);
}

void Project::Create(const korvoprjdattype& header, Terminal& terminal) {
  const std::string db_name = Utf8(CProjPath::AutoDbsNamn);
  if (!FindFile(dir_, db_name).empty()) {
    throw Failure(dir_ + " already holds a project database (" + db_name + ")");
  }
  dbs_ = std::make_unique<CKorvoDbs>(&proj_);
  korvoprjdattype& h = dbs_->prjdat;
  const auto take = [](auto& to, const auto& from) {
    if (from[0] != L'\0') std::copy(std::begin(from), std::end(from), std::begin(to));
  };
  take(h.Prjnamn, header.Prjnamn);
  take(h.Uppdnr, header.Uppdnr);
  take(h.Uppdnamn, header.Uppdnamn);
  take(h.Handl, header.Handl);
  take(h.Ksyst, header.Ksyst);
  take(h.Datum, header.Datum);
  terminal.Hold();
  const int result = dbs_->Init(0, 1, nullptr, nullptr);
  const std::vector<std::string> notices = terminal.Release();
  if (result != 0) {
    if (!FindFile(dir_, Utf8(CProjPath::AutoDbkNamn)).empty()) FailOpening(-1, notices);
    throw Failure("cannot make " + DatabasePath() + " (no write access?)");
  }
}

}  // namespace korvo::cli
