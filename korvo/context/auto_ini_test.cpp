#include "korvo/context/auto_ini.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "korvo/context/proj_path.h"
#include "korvo/testutil/temp_dir.h"

namespace {

// A project directory and a settings directory side by side.
class SettingsTest : public ::testing::Test {
 protected:
  SettingsTest() {
    std::filesystem::create_directory(dir.path() / "proj");
    std::filesystem::create_directory(dir.path() / "par");
    proj.SetPath(dir.File("proj").c_str());
    ini.ParKat = dir.File("par");
  }
  void WriteProject(const std::string& text) { dir.Write("proj/korvo.ini", text); }
  void WriteParKat(const std::string& text) { dir.Write("par/korvo.ini", text); }

  korvo::test::TempDir dir;
  CProjPath proj;
  CAutoIni ini;
};

TEST_F(SettingsTest, ProjectSettingStandsBeforeParKat) {
  WriteProject("[KORVO]\r\nMTRLKOD=SGF\r\n");
  WriteParKat("[KORVO]\r\nMTRLKOD=STANDARD\r\nOTHER=par\r\n");
  CKorvoInst inst;
  inst.Init(&ini, &proj);
  EXPECT_EQ(inst.ReadKey(CProjPath::AutoParNamn, L"MTRLKOD"), L"SGF");
  // A key the project does not set comes from ParKat.
  EXPECT_EQ(inst.ReadKey(CProjPath::AutoParNamn, L"OTHER"), L"par");
  EXPECT_EQ(inst.ReadKey(CProjPath::AutoParNamn, L"MISSING"), L"");
  // The installation's reader never looks in the project.
  EXPECT_EQ(ini.ReadKey(L"KORVO", L"MTRLKOD"), L"STANDARD");
  // An empty value in the project still wins.
  WriteProject("[KORVO]\nMTRLKOD=\n");
  inst.Init(&ini, &proj);
  EXPECT_EQ(inst.ReadKey(L"KORVO", L"MTRLKOD"), L"");
}

TEST_F(SettingsTest, NamesMatchWithoutCaseAndBlanksDoNotCount) {
  WriteParKat(
      "; remark\r\n"
      "[other]\r\nlang=NO\r\n"
      "  [ system ]  \r\n"
      "# LANG=XX\r\n"
      "  Lang  =  SE  \r\n"
      "LANG=second\r\n"
      "QUOTED=\" a b \"\r\n"
      "NAMN=G\xf6teborg \x80\r\n");
  EXPECT_EQ(ini.ReadKey(L"SYSTEM", L"LANG"), L"SE");
  EXPECT_EQ(ini.ReadKey(L"System", L"quoted"), L" a b ");
  EXPECT_EQ(ini.ReadKey(L"SYSTEM", L"NAMN"), L"G\u00f6teborg \u20ac");
  EXPECT_EQ(ini.ReadKey(L"OTHER", L"LANG"), L"NO");
  EXPECT_EQ(ini.ReadKey(L"NONE", L"LANG"), L"");
  // The file is found whatever the case of its name.
  std::filesystem::remove(dir.path() / "par" / "korvo.ini");
  dir.Write("par/KORVO.INI", "[SYSTEM]\nLANG=DK\n");
  EXPECT_EQ(ini.ReadKey(L"SYSTEM", L"LANG"), L"DK");
}

TEST_F(SettingsTest, MissingFilesAndNullBindingsGiveEmptyText) {
  CKorvoInst inst;
  EXPECT_EQ(inst.ReadKey(L"KORVO", L"MTRLKOD"), L"");
  inst.Init(nullptr, &proj);
  EXPECT_EQ(inst.ReadKey(L"KORVO", L"MTRLKOD"), L"");
  // Without a project only ParKat is read.
  WriteParKat("[KORVO]\nMTRLKOD=ALLA\n");
  inst.Init(&ini, nullptr);
  EXPECT_EQ(inst.ReadKey(L"KORVO", L"MTRLKOD"), L"ALLA");
  CAutoIni no_dir;
  EXPECT_EQ(no_dir.ReadKey(L"KORVO", L"MTRLKOD"), L"");
}

}  // namespace
