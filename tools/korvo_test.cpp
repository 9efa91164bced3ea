// The program as a user meets it: its commands on a copy of the example
// project compared with the expected output under testdata/, and every way a
// command can fail ending in one line and a non-zero status, never a crash.
//
// KORVO_UPDATE_GOLDEN=1 in the environment writes the expected output anew.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "korvo/testutil/temp_dir.h"

namespace {

namespace fs = std::filesystem;

// Offsets in the database file of the example project (version 3.0).
constexpr size_t kAntbh = 216;
constexpr size_t kAntrader = 222;
constexpr size_t kSlutpos = 324;
constexpr size_t kFirstRecord = 500;
constexpr size_t kRecordSize = 62;
constexpr size_t kBitOffset = 9;

struct Result {
  int status = -1;
  std::string out;
  std::string err;
};

std::string ReadFile(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void WriteFile(const fs::path& p, const std::string& bytes) {
  std::ofstream(p, std::ios::binary) << bytes;
}

int16_t I16At(const std::string& b, size_t at) {
  return static_cast<int16_t>(static_cast<uint8_t>(b[at]) | (static_cast<uint8_t>(b[at + 1]) << 8));
}

void PutI16(std::string& b, size_t at, int16_t v) {
  b[at] = static_cast<char>(v & 0xFF);
  b[at + 1] = static_cast<char>((v >> 8) & 0xFF);
}

int32_t I32At(const std::string& b, size_t at) {
  uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = (v << 8) | static_cast<uint8_t>(b[at + i]);
  return static_cast<int32_t>(v);
}

class KorvoProgram : public ::testing::Test {
 protected:
  // A copy of the example project as "demo" in the test's directory.
  void SetUp() override { fs::copy(KORVO_DEMO_DIR, Demo(), fs::copy_options::recursive); }

  fs::path Demo() const { return dir_.path() / "demo"; }
  fs::path Database() const { return Demo() / "Korvodal.dbs"; }

  // Runs korvo with `args` in the test's directory, nothing on its input.
  Result Run(const std::string& args) const {
    const fs::path out = dir_.path() / "stdout";
    const fs::path err = dir_.path() / "stderr";
    const std::string command = "cd '" + dir_.path().string() + "' && '" KORVO_CLI_PATH "' " +
                                args + " >stdout 2>stderr </dev/null";
    const int raw = std::system(command.c_str());
    Result r;
    EXPECT_FALSE(WIFSIGNALED(raw)) << "korvo " << args << " crashed";
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    r.out = ReadFile(out);
    r.err = ReadFile(err);
    return r;
  }

  // Runs a command that must succeed quietly and compares its output with
  // testdata/`golden`.
  void ExpectGolden(const std::string& args, const std::string& golden) const {
    const Result r = Run(args);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    const fs::path expected = fs::path(KORVO_GOLDEN_DIR) / golden;
    if (std::getenv("KORVO_UPDATE_GOLDEN") != nullptr) WriteFile(expected, r.out);
    EXPECT_EQ(r.out, ReadFile(expected)) << "korvo " << args << " differs from " << golden;
  }

  // Runs a command that must fail with one line, "korvo: " and `reason` in
  // it, and the exit status `status`.
  void ExpectFailure(const std::string& args, int status, const std::string& reason) const {
    const Result r = Run(args);
    EXPECT_EQ(r.status, status) << "korvo " << args;
    EXPECT_EQ(r.out, "") << "korvo " << args;
    ASSERT_FALSE(r.err.empty()) << "korvo " << args;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << "more than one line: " << r.err;
    EXPECT_EQ(r.err.rfind("korvo: ", 0), 0u) << r.err;
    EXPECT_NE(r.err.find(reason), std::string::npos) << "korvo " << args << ": " << r.err;
  }

  korvo::test::TempDir dir_;
};

TEST_F(KorvoProgram, CommandsOnTheExampleProject) {
  ExpectGolden("info demo", "info.txt");
  ExpectGolden("list demo", "list.txt");
  ExpectGolden("list demo --sort name --desc", "list_name_desc.txt");
  ExpectGolden("list demo --sort z", "list_z.txt");
  ExpectGolden("show demo 101", "show_101.txt");
  ExpectGolden("show demo gv1", "show_gv1.txt");
  ExpectGolden("check demo --dry-run", "check_dry_run.txt");
  ExpectGolden("check demo", "check.txt");
}

TEST_F(KorvoProgram, JsonForScripts) {
  ExpectGolden("info demo --json", "info.json");
  ExpectGolden("list demo --json", "list.json");
  ExpectGolden("show demo 104 --json", "show_104.json");
  ExpectGolden("check --json demo", "check.json");
}

TEST_F(KorvoProgram, ReadingChangesNothing) {
  const std::string before = ReadFile(Database());
  for (const char* args :
       {"info demo", "list demo --sort y", "show demo 102", "check demo --dry-run"}) {
    EXPECT_EQ(Run(args).status, 0) << args;
  }
  EXPECT_EQ(ReadFile(Database()), before);
  EXPECT_FALSE(fs::exists(Demo() / "Korvodal.dbk")) << "a lock was left behind";
}

TEST_F(KorvoProgram, HelpForEveryCommand) {
  for (const char* command : {"", "info ", "list ", "show ", "new ", "check "}) {
    const Result r = Run(std::string(command) + "--help");
    EXPECT_EQ(r.status, 0) << command;
    EXPECT_NE(r.out.find("Usage:"), std::string::npos) << command;
  }
  EXPECT_NE(Run("list --help").out.find("dtrykk"), std::string::npos) << "sort keys are named";
}

TEST_F(KorvoProgram, BadArguments) {
  ExpectFailure("", 2, "A subcommand is required");
  ExpectFailure("frobnicate demo", 2, "frobnicate");
  ExpectFailure("list", 2, "DIR is required");
  ExpectFailure("show demo", 2, "ID is required");
  ExpectFailure("list demo --sort colour", 2, "unknown sort key colour");
  ExpectFailure("list demo --yes --no", 2, "excludes");
  ExpectFailure("show demo NAMETOOLONG", 1, "not a point name: NAMETOOLONG");
}

TEST_F(KorvoProgram, MissingThings) {
  ExpectFailure("list nowhere", 1, "no such project directory: nowhere");
  ExpectFailure("info demo/Korvodal.dbs", 1, "not a directory");
  fs::create_directory(dir_.path() / "empty");
  ExpectFailure("check empty", 1, "no project database in empty");
  ExpectFailure("show demo 999", 1, "no point 999 in demo");
}

TEST_F(KorvoProgram, LockedProject) {
  WriteFile(Demo() / "Korvodal.dbk", "Database busy!");
  ExpectFailure("list demo", 1, "project is locked: Korvodal.dbk exists in demo");
  ExpectFailure("check demo", 1, "project is locked");
  EXPECT_TRUE(fs::exists(Demo() / "Korvodal.dbk")) << "somebody else's lock was removed";
}

TEST_F(KorvoProgram, DamagedDatabase) {
  const std::string whole = ReadFile(Database());
  WriteFile(Database(), whole.substr(0, 200));
  ExpectFailure("info demo", 1, "damaged database demo/Korvodal.dbs: the header is cut short");
  ExpectFailure("check demo", 1, "the header is cut short");

  std::string wrong = whole;
  wrong.replace(0, 4, std::string("7.5\0", 4));
  WriteFile(Database(), wrong);
  ExpectFailure("list demo", 1, "damaged database demo/Korvodal.dbs: unknown format version 7.5");
  EXPECT_FALSE(fs::exists(Demo() / "Korvodal.dbk"));
}

TEST_F(KorvoProgram, CheckCorrectsTheCountsAndSaysSo) {
  std::string bytes = ReadFile(Database());
  const int16_t real = I16At(bytes, kAntbh);
  PutI16(bytes, kAntbh, 40);
  WriteFile(Database(), bytes);

  Result dry = Run("check demo --dry-run");
  ASSERT_EQ(dry.status, 0) << dry.err;
  EXPECT_NE(dry.out.find("  to repair: header counts: boreholes 40 -> " + std::to_string(real)),
            std::string::npos)
      << dry.out;
  EXPECT_EQ(ReadFile(Database()), bytes) << "a dry run wrote";

  const Result fix = Run("check demo");
  ASSERT_EQ(fix.status, 0) << fix.err;
  EXPECT_NE(fix.out.find("  repaired: header counts: boreholes 40 -> " + std::to_string(real)),
            std::string::npos)
      << fix.out;
  EXPECT_EQ(I16At(ReadFile(Database()), kAntbh), real);
  EXPECT_NE(Run("check demo").out.find("nothing to repair"), std::string::npos);
}

TEST_F(KorvoProgram, CheckPacksDeletedRecords) {
  std::string bytes = ReadFile(Database());
  const int32_t end = I32At(bytes, kSlutpos);
  // The second record deleted as the library deletes: its name emptied, one
  // more deleted record in the header.
  bytes[kFirstRecord + kRecordSize] = '\0';
  PutI16(bytes, kAntrader, 1);
  PutI16(bytes, kAntbh, static_cast<int16_t>(I16At(bytes, kAntbh) - 1));
  WriteFile(Database(), bytes);

  const Result r = Run("check demo --json");
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("\"deleted records packed: 1\""), std::string::npos) << r.out;
  const std::string after = ReadFile(Database());
  EXPECT_EQ(I16At(after, kAntrader), 0);
  EXPECT_EQ(I32At(after, kSlutpos), end - static_cast<int32_t>(kRecordSize));
  EXPECT_EQ(Run("list demo").out.find("102 "), std::string::npos) << "the deleted point is listed";
}

TEST_F(KorvoProgram, QuestionsAnsweredByYesOrNo) {
  // A borehole that also claims to be a line: reading asks whether to clear
  // the line for every such record, or to leave them out.
  std::string bytes = ReadFile(Database());
  bytes[kFirstRecord + kBitOffset] = static_cast<char>(bytes[kFirstRecord + kBitOffset] | 0x08);
  WriteFile(Database(), bytes);

  const Result no = Run("list demo");
  ASSERT_EQ(no.status, 0) << no.err;
  EXPECT_NE(no.err.find("har också linjeinformation"), std::string::npos) << no.err;
  EXPECT_NE(no.err.find("-> no"), std::string::npos) << no.err;
  EXPECT_EQ(no.out.find("\n101 "), std::string::npos) << "left out on no";

  const Result yes = Run("list demo --yes");
  ASSERT_EQ(yes.status, 0) << yes.err;
  EXPECT_NE(yes.err.find("-> yes"), std::string::npos) << yes.err;
  EXPECT_NE(yes.out.find("\n101 "), std::string::npos) << "kept on yes";
}

TEST_F(KorvoProgram, NewProject) {
  const Result made = Run("new fresh --name 'Kv. Åkern' --number 77-1 --coordinates RAK");
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_NE(made.out.find("created fresh/Korvodal.dbs"), std::string::npos) << made.out;
  EXPECT_TRUE(fs::is_directory(dir_.path() / "fresh" / "Dbf"));
  EXPECT_EQ(fs::file_size(dir_.path() / "fresh" / "Korvodal.dbs"), 408u);

  const Result info = Run("info fresh");
  ASSERT_EQ(info.status, 0) << info.err;
  EXPECT_NE(info.out.find("Kv. \xC3\x85kern"), std::string::npos) << info.out;
  EXPECT_NE(info.out.find("77-1"), std::string::npos) << info.out;
  EXPECT_NE(info.out.find("0 points"), std::string::npos) << info.out;
  EXPECT_EQ(Run("list fresh").out, std::string("ID       KIND            X            Y        Z   "
                                               "DEPTH  STOP  PRESENT\n0 points\n"));

  ExpectFailure("new fresh", 1, "fresh already holds a project database");
  ExpectFailure("new fresh2 --coordinates XYZ", 2, "XYZ");
}

}  // namespace
