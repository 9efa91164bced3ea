// Catches every status line and notice the library gives while a test runs,
// and puts the handlers back at the end. A question is answered with
// `answer`, No unless the test says otherwise.
#ifndef KORVO_TESTUTIL_NOTICES_H_
#define KORVO_TESTUTIL_NOTICES_H_

#include <string>
#include <vector>

#include "korvo/foundation/messages.h"

namespace korvo::test {

class Notices {
 public:
  Notices()
      : old_status_(SetStatusHandler([this](const std::wstring& t) { status.push_back(t); })),
        old_message_(SetMessageHandler(
            [this](const std::wstring& title, const std::wstring& t, int icon, int buttons) {
              titles.push_back(title);
              messages.push_back(t);
              icons.push_back(icon);
              this->buttons.push_back(buttons);
              return buttons == MB_YESNO ? answer : IDOK;
            })) {}
  ~Notices() {
    SetStatusHandler(old_status_);
    SetMessageHandler(old_message_);
  }
  void Clear() {
    status.clear();
    messages.clear();
    titles.clear();
    icons.clear();
    buttons.clear();
  }
  Notices(const Notices&) = delete;
  Notices& operator=(const Notices&) = delete;

  std::vector<std::wstring> status;
  std::vector<std::wstring> messages;
  std::vector<std::wstring> titles;  // of each message, in the same order
  std::vector<int> icons;            // likewise
  std::vector<int> buttons;          // likewise
  int answer = IDNO;

 private:
  StatusHandler old_status_;
  MessageHandler old_message_;
};

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_NOTICES_H_
