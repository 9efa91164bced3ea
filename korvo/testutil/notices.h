// The notices and questions the library shows while a test runs.
#ifndef KORVO_TESTUTIL_NOTICES_H_
#define KORVO_TESTUTIL_NOTICES_H_

#include <string>
#include <vector>

#include "korvo/foundation/messages.h"

namespace korvo::test {

// Collects every notice shown while it lives and answers each with `answer`.
class Notices {
 public:
  explicit Notices(int answer = IDOK) {
    old_ = SetMessageHandler(
        [this, answer](const std::wstring& title, const std::wstring& text, int, int) {
          titles.push_back(title);
          texts.push_back(text);
          return answer;
        });
  }
  ~Notices() { SetMessageHandler(old_); }
  Notices(const Notices&) = delete;
  Notices& operator=(const Notices&) = delete;

  std::vector<std::wstring> titles;
  std::vector<std::wstring> texts;

 private:
  MessageHandler old_;
};

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_NOTICES_H_
