#include "korvo/context/projekt_status.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ProjektStatusTest, LoadGivesTheDefaultNamesInCodeOrder) {
  CProjektStatus s;
  EXPECT_EQ(s.GetStatus(), L"");  // nothing loaded yet
  s.Load();
  s.Load();  // a second load replaces, it does not add
  int n = 0;
  s.Where(&n);
  EXPECT_EQ(n, 7);
  const wchar_t* names[] = {L"Active",  L"Avslutat",      L"Arkiverat",     L"Levererat",
                            L"Vilande", L"Ska arkiveras", L"Status unknown"};
  int code = 0;
  ASSERT_EQ(s.Home(), 0);
  do {
    EXPECT_EQ(s.pael->kod, code);
    EXPECT_STREQ(s.pael->namn, names[code]);
    ++code;
  } while (s++);
}

TEST(ProjektStatusTest, FindAndGetStatusGoBothWays) {
  CProjektStatus s;
  s.Load();
  EXPECT_EQ(s.GetStatus(), L"Status unknown");
  s.kod = s.Find(L"levererat");
  EXPECT_EQ(s.kod, CProjektStatus::kLevererat);
  EXPECT_EQ(s.GetStatus(), L"Levererat");
  EXPECT_EQ(s.Find(L"Ska arkiveras"), 5);
  EXPECT_EQ(s.Find(L"Levererad"), -1);
  s.kod = 42;
  EXPECT_EQ(s.GetStatus(), L"Status unknown");
}

}  // namespace
