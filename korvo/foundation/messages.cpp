#include "korvo/foundation/messages.h"

#include <cstdio>
#include <string>
#include <utility>

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

void AppendUtf8(std::string& out, unsigned long c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// Where wchar_t is 16 bits a character beyond the first plane comes as a
// surrogate pair; a lone surrogate or a value out of range becomes U+FFFD.
std::string ToUtf8(const std::wstring& text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    unsigned long c = static_cast<unsigned long>(text[i]) & 0xFFFFFFFFul;
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size()) {
      const unsigned long low = static_cast<unsigned long>(text[i + 1]) & 0xFFFFFFFFul;
      if (low >= 0xDC00 && low < 0xE000) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        ++i;
      }
    }
    if ((c >= 0xD800 && c < 0xE000) || c > 0x10FFFF) c = 0xFFFD;
    AppendUtf8(out, c);
  }
  return out;
}

bool IsQuestion(int buttons) {
  return (buttons & 0x0F) != MB_OK;
}

// Without a screen the box is written out, so that a program without a
// handler still shows why it stopped; a question gets the careful answer.
int AnswerWithoutScreen(const std::wstring& title, const std::wstring& text, int buttons) {
  const std::string line = ToUtf8(title) + ": " + ToUtf8(text) + "\n";
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
