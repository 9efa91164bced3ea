// korvo: a project of investigation points at the terminal.
//
//   korvo info DIR                       the project's header and Info.prj
//   korvo list DIR [--sort KEY] [--desc] the points, one line each
//   korvo show DIR ID                    one point with its blocks and rows
//   korvo new DIR                        a new project database
//   korvo check DIR [--dry-run]          repair and pack the database
//
// Data goes to standard output (UTF-8, or JSON with --json); status texts,
// notices and the reason of a failure go to standard error. Exit status: 0
// on success, 1 when the command failed, 2 for bad arguments.
#include <korvo/korvo.h>

#include <CLI/CLI.hpp>
#include <functional>
#include <iostream>
#include <string>

#include "commands.h"
#include "session.h"
#include "text.h"

namespace {

using korvo::cli::Json;

constexpr int kFailed = 1;
constexpr int kBadArguments = 2;

// What every command that prints data shares.
struct Output {
  bool json = false;

  void Print(const Json& data, const std::function<std::string(const Json&)>& text) const {
    if (json) {
      std::cout << data.dump(2) << '\n';
    } else {
      std::cout << text(data);
    }
  }
};

template <size_t N>
void PutField(wchar_t (&field)[N], const std::string& utf8) {
  const std::wstring text = korvo::cli::Wide(utf8).substr(0, N - 1);
  std::copy(text.begin(), text.end(), field);
  field[text.size()] = L'\0';
}

std::string SortKeyHelp() {
  std::string help = "order of the list, by name or number:";
  for (const auto& k : korvo::cli::SortKeys()) {
    help += "\n  " + std::to_string(k.key) + " " + k.name + ": " + k.meaning;
  }
  return help;
}

// The sort key of a name or number of the table; 0 when it is neither.
int SortKeyOf(const std::string& text) {
  for (const auto& k : korvo::cli::SortKeys()) {
    if (text == k.name || text == std::to_string(k.key)) return k.key;
  }
  return 0;
}

class Program {
 public:
  Program() : app_("Investigation points of a project directory: list, show, check.") {
    app_.require_subcommand(1);
    app_.fallthrough();
    auto* answer =
        app_.add_option_group("answers", "how questions are answered without a terminal");
    auto* yes = answer->add_flag("--yes,-y", yes_, "answer yes to the library's questions");
    auto* no = answer->add_flag("--no,-n", no_, "answer no (the default)");
    yes->excludes(no);
    AddInfo();
    AddList();
    AddShow();
    AddNew();
    AddCheck();
  }

  int Run(int argc, char** argv) {
    try {
      RejectUnknownCommand(argc, argv);
      app_.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
      return app_.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
      return app_.exit(e);
    } catch (const CLI::ParseError& e) {
      std::cerr << "korvo: " << e.what() << " (see korvo --help)\n";
      return kBadArguments;
    }
    korvo::cli::Terminal terminal(yes_ ? korvo::cli::Fallback::kYes : korvo::cli::Fallback::kNo);
    try {
      run_(terminal);
      return 0;
    } catch (const korvo::cli::Failure& e) {
      terminal.Release();
      std::cerr << "korvo: " << e.what() << '\n';
    } catch (const wchar_t* e) {
      std::cerr << "korvo: internal error: " << korvo::cli::OneLine(e) << '\n';
    } catch (const std::wstring& e) {
      std::cerr << "korvo: internal error: " << korvo::cli::OneLine(e) << '\n';
    } catch (const std::exception& e) {
      std::cerr << "korvo: " << e.what() << '\n';
    }
    return kFailed;
  }

 private:
  // A word where the command belongs is named as such, rather than reported
  // as a missing command.
  void RejectUnknownCommand(int argc, char** argv) {
    if (argc < 2 || argv[1][0] == '-') return;
    try {
      app_.get_subcommand(argv[1]);
    } catch (const CLI::OptionNotFound&) {
      throw CLI::ExtrasError("unknown command " + std::string(argv[1]),
                             CLI::ExitCodes::ExtrasError);
    }
  }

  CLI::App* Command(const char* name, const char* help, bool prints_data) {
    CLI::App* sub = app_.add_subcommand(name, help);
    sub->add_option("DIR", dir_, "the project directory")->required();
    if (prints_data) sub->add_flag("--json", output_.json, "print JSON for scripts");
    return sub;
  }

  void AddInfo() {
    Command("info", "the project's header (title, version, counts, bounds, GUID) and Info.prj",
            true)
        ->callback([this] {
          run_ = [this](korvo::cli::Terminal& t) {
            korvo::cli::Project project(dir_);
            output_.Print(korvo::cli::Info(project, t), korvo::cli::InfoText);
          };
        });
  }

  void AddList() {
    CLI::App* sub = Command("list", "the points, one line each", true);
    sub->add_option("--sort,-s", sort_, SortKeyHelp())
        ->check(CLI::Validator(
            [](const std::string& v) {
              return SortKeyOf(v) != 0 ? std::string() : "unknown sort key " + v;
            },
            "KEY"));
    sub->add_flag("--desc", desc_, "the descending order of --sort (alone: of the names)");
    sub->callback([this] {
      run_ = [this](korvo::cli::Terminal& t) {
        korvo::cli::Project project(dir_);
        // --desc alone turns the order of names.
        const int key = sort_.empty() ? (desc_ ? 1 : 0) : SortKeyOf(sort_);
        output_.Print(korvo::cli::List(project, t, desc_ ? -key : key), korvo::cli::ListText);
      };
    });
  }

  void AddShow() {
    CLI::App* sub = Command("show",
                            "one point: its head, every block with its rows, the "
                            "interpretation",
                            true);
    sub->add_option("ID", id_, "the point's name")->required();
    sub->callback([this] {
      run_ = [this](korvo::cli::Terminal& t) {
        korvo::cli::Project project(dir_);
        output_.Print(korvo::cli::Show(project, t, id_), korvo::cli::ShowText);
      };
    });
  }

  void AddNew() {
    CLI::App* sub =
        Command("new", "a new project database (the directory is made if needed)", true);
    sub->add_option("--name", name_, "name of the project");
    sub->add_option("--number", number_, "number of the assignment");
    sub->add_option("--contractor", contractor_, "name of the assignment");
    sub->add_option("--designer", designer_, "person in charge");
    sub->add_option("--coordinates", system_, "coordinate system kind")
        ->check(CLI::IsMember({"LOK", "RAK", "NGO"}));
    sub->callback([this] {
      run_ = [this](korvo::cli::Terminal& t) {
        korvoprjdattype header{};
        PutField(header.Prjnamn, name_);
        PutField(header.Uppdnr, number_);
        PutField(header.Uppdnamn, contractor_);
        PutField(header.Handl, designer_);
        PutField(header.Ksyst, system_);
        output_.Print(korvo::cli::New(dir_, header, t), korvo::cli::NewText);
      };
    });
  }

  void AddCheck() {
    CLI::App* sub = Command("check",
                            "open the database for writing, which repairs and packs it, "
                            "and say what was repaired",
                            true);
    sub->add_flag("--dry-run", dry_run_, "read only: say what would be repaired, change nothing");
    sub->callback([this] {
      run_ = [this](korvo::cli::Terminal& t) {
        korvo::cli::Project project(dir_);
        output_.Print(korvo::cli::Check(project, t, dry_run_), korvo::cli::CheckText);
      };
    });
  }

  CLI::App app_;
  std::function<void(korvo::cli::Terminal&)> run_;
  Output output_;
  bool yes_ = false;
  bool no_ = false;
  std::string dir_;
  std::string id_;
  std::string sort_;
  bool desc_ = false;
  bool dry_run_ = false;
  std::string name_, number_, contractor_, designer_, system_;
};

}  // namespace

int main(int argc, char** argv) {
  return Program().Run(argc, argv);
}
