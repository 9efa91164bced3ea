#include "korvo/foundation/messages.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace korvo {
namespace {

// Every test starts and ends with no handler installed.
class Messages : public ::testing::Test {
 protected:
  void SetUp() override { Clear(); }
  void TearDown() override { Clear(); }
  static void Clear() {
    SetStatusHandler(nullptr);
    SetMessageHandler(nullptr);
  }
};

struct Box {
  std::wstring title, text;
  int icon, buttons;
};

TEST_F(Messages, WithoutHandlerStatusGoesNowhere) {
  testing::internal::CaptureStderr();
  ShowStatus(L"Okänd metodkod (55) för Id: A1");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Messages, WithoutHandlerNoticeGoesToStandardErrorAsUtf8) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(ShowMessage(L"Kan inte öppna protokollfilen:\nA1.SND\nAvbryter!"), IDOK);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Korvo: Kan inte \xC3\xB6ppna protokollfilen:\nA1.SND\nAvbryter!\n");

  testing::internal::CaptureStderr();
  EXPECT_EQ(ShowMessage(L"\u20ac \U0001F600", MB_ICONQUESTION | MB_ICONINFORMATION, MB_OK, L"T"),
            IDOK);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "T: \xE2\x82\xAC \xF0\x9F\x98\x80\n");

  // Every question is answered No.
  testing::internal::CaptureStderr();
  EXPECT_EQ(ShowMessage(L"Retry?", MB_ICONQUESTION, MB_YESNO), IDNO);
  EXPECT_EQ(ShowMessage(L"Retry?", MB_ICONQUESTION, MB_OKCANCEL), IDNO);
  EXPECT_EQ(ShowMessage(L"Retry?", MB_ICONWARNING, MB_YESNOCANCEL), IDNO);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Korvo: Retry?\nKorvo: Retry?\nKorvo: Retry?\n");
}

TEST_F(Messages, HandlerGetsTheBoxAndGivesTheAnswer) {
  std::vector<Box> boxes;
  SetMessageHandler(
      [&](const std::wstring& title, const std::wstring& text, int icon, int buttons) {
        boxes.push_back({title, text, icon, buttons});
        return buttons == MB_YESNO ? IDYES : IDCANCEL;
      });
  testing::internal::CaptureStderr();
  EXPECT_EQ(ShowMessage(L"Fortsätt?", MB_ICONQUESTION, MB_YESNO), IDYES);
  EXPECT_EQ(ShowMessage(L"Hittar inte filen", MB_ICONERROR, MB_OKCANCEL, L"Prov"), IDCANCEL);
  EXPECT_EQ(ShowMessage(L"Notis"), IDCANCEL);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  ASSERT_EQ(boxes.size(), 3u);
  EXPECT_EQ(boxes[0].title, L"Korvo");
  EXPECT_EQ(boxes[0].text, L"Fortsätt?");
  EXPECT_EQ(boxes[0].icon, MB_ICONQUESTION);
  EXPECT_EQ(boxes[1].title, L"Prov");
  EXPECT_EQ(boxes[1].icon, MB_ICONERROR);
  EXPECT_EQ(boxes[1].buttons, MB_OKCANCEL);
  EXPECT_EQ(boxes[2].icon, MB_ICONWARNING);
  EXPECT_EQ(boxes[2].buttons, MB_OK);
}

TEST_F(Messages, SettersHandBackThePreviousHandler) {
  std::vector<std::wstring> first, second;
  EXPECT_FALSE(SetStatusHandler([&](const std::wstring& t) { first.push_back(t); }));
  ShowStatus(L"a");
  StatusHandler old = SetStatusHandler([&](const std::wstring& t) { second.push_back(t); });
  ShowStatus(L"b");
  ASSERT_TRUE(old);
  old(L"c");
  EXPECT_EQ(first, (std::vector<std::wstring>{L"a", L"c"}));
  EXPECT_EQ(second, (std::vector<std::wstring>{L"b"}));

  EXPECT_FALSE(
      SetMessageHandler([](const std::wstring&, const std::wstring&, int, int) { return IDYES; }));
  MessageHandler prev = SetMessageHandler(nullptr);
  ASSERT_TRUE(prev);
  EXPECT_EQ(prev(L"", L"", 0, MB_YESNO), IDYES);
  testing::internal::CaptureStderr();
  EXPECT_EQ(ShowMessage(L"x", MB_ICONQUESTION, MB_YESNO), IDNO);
  testing::internal::GetCapturedStderr();
}

TEST_F(Messages, HandlerMayReplaceItselfWhileRunning) {
  int calls = 0;
  SetMessageHandler([&](const std::wstring&, const std::wstring& text, int, int) {
    ++calls;
    SetMessageHandler(nullptr);
    return text == L"once" ? IDYES : IDOK;  // still reads its own captures
  });
  EXPECT_EQ(ShowMessage(L"once", MB_ICONQUESTION, MB_YESNO), IDYES);
  testing::internal::CaptureStderr();
  EXPECT_EQ(ShowMessage(L"twice", MB_ICONQUESTION, MB_YESNO), IDNO);
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace korvo
