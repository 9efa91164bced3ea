#include "korvo/foundation/messages.h"

#include <cstdio>
#include <string>
#include <utility>

#include "korvo/platform/utf8.h"

namespace korvo {
namespace {

// Process-wide, as the calling program installs them once for all objects.
StatusHandler& InstalledStatusHandler() {
  static StatusHandler handler;
  return handler;
}

MessageHandler& InstalledMessageHandler() {
  static MessageHandler handler;
  return handler;
}

bool IsQuestion(int buttons) {
  return (buttons & 0x0F) != MB_OK;
}

// Without a screen the box is written out, so that a program without a
// handler still shows why it stopped; a question gets the careful answer.
int AnswerWithoutScreen(const std::wstring& title, const std::wstring& text, int buttons) {
  const std::string line = Utf8FromWide(title) + ": " + Utf8FromWide(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
  return IsQuestion(buttons) ? IDNO : IDOK;
}

}  // namespace

StatusHandler SetStatusHandler(StatusHandler handler) {
  return std::exchange(InstalledStatusHandler(), std::move(handler));
}

MessageHandler SetMessageHandler(MessageHandler handler) {
  return std::exchange(InstalledMessageHandler(), std::move(handler));
}

void ShowStatus(const std::wstring& text) {
  // A copy, so that a handler may replace itself while it runs.
  const StatusHandler handler = InstalledStatusHandler();
  if (handler) handler(text);
}

int ShowMessage(const std::wstring& text, int icon, int buttons, const std::wstring& title) {
  const MessageHandler handler = InstalledMessageHandler();
  if (handler) return handler(title, text, icon, buttons);
  return AnswerWithoutScreen(title, text, buttons);
}

}  // namespace korvo
