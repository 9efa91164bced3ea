// One run of the program against one project: the library's status texts,
// notices and questions at the terminal, and the project database opened with
// a one-line reason when it cannot be.
#ifndef KORVO_TOOLS_SESSION_H_
#define KORVO_TOOLS_SESSION_H_

#include <korvo/korvo.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace korvo::cli {

// Ends a command; what() is the one line the user is told, without the
// program's name.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// How a question is answered when nobody is at the terminal.
enum class Fallback { kNo, kYes };

// Installs the library's message handlers for its lifetime. Status texts go
// to standard error at once. Notices go there too, unless held: a command
// holds them while it opens a project, so that a failure ends in one line and
// a check can report what the library repaired. Questions are put at the
// terminal when standard input is one, and answered by the fallback
// otherwise; either way the question and its answer join the notices.
class Terminal {
 public:
  explicit Terminal(Fallback fallback);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // From now on notices are kept rather than printed.
  void Hold();
  // From now on notices are dropped and questions answered no without
  // asking: for a reading whose only use is to look.
  void Mute();
  // Stops holding (and muting) and returns what was kept, each notice on one line.
  std::vector<std::string> Release();
  // Stops holding and prints what was kept to standard error.
  void Flush();

 private:
  int OnMessage(const std::wstring& title, const std::wstring& text, int buttons);
  int Ask(const std::string& question, int buttons);
  void Notice(const std::string& line);

  Fallback fallback_;
  bool interactive_;
  bool holding_ = false;
  bool muted_ = false;
  std::vector<std::string> held_;
  StatusHandler old_status_;
  MessageHandler old_message_;
};

enum class Access { kReadOnly, kReadWrite };

// A project directory, given as the user wrote it (UTF-8).
class Project {
 public:
  // Failure when `dir` does not exist or is not a directory.
  explicit Project(const std::string& dir);
  ~Project();
  Project(const Project&) = delete;
  Project& operator=(const Project&) = delete;

  // Reads the project database. A read-write opening is where the library
  // repairs and packs the file. Failure with the reason when the database is
  // missing, locked, damaged or cannot be opened; the library's notices of
  // the failed attempt are dropped for that one line.
  CKorvoDbs& Open(Access access, Terminal& terminal);
  // Makes a new, empty project database with the header fields of `header`
  // that are not empty. Failure when one exists or none can be made.
  void Create(const korvoprjdattype& header, Terminal& terminal);

  CProjPath& paths() { return proj_; }
  // The directory as given, and the database file in it, for messages.
  const std::string& dir() const { return dir_; }
  std::string DatabasePath() const;
  // The file `name` in `folder`, found whatever the case of its name (the
  // projects come from file systems that ignore case); empty when missing.
  static std::filesystem::path FindFile(const std::filesystem::path& folder,
                                        const std::string& name);

 private:
  [[noreturn]] void FailOpening(int result, const std::vector<std::string>& notices) const;

  std::string dir_;
  CProjPath proj_;
  std::unique_ptr<CKorvoDbs> dbs_;
};

}  // namespace korvo::cli

#endif  // KORVO_TOOLS_SESSION_H_
