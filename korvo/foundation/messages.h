// Status texts, notices and questions: the three ways the library reports.
//
// Both go through process-wide handlers that the calling program installs.
// With no handler a status text goes nowhere, a notice goes to standard error
// and a question is answered IDNO.
#ifndef KORVO_FOUNDATION_MESSAGES_H_
#define KORVO_FOUNDATION_MESSAGES_H_

#include <functional>
#include <string>

#include "korvo/export.h"

namespace korvo {

// The message box values of the platform.
inline constexpr int MB_OK = 0x00;
inline constexpr int MB_OKCANCEL = 0x01;
inline constexpr int MB_YESNOCANCEL = 0x03;
inline constexpr int MB_YESNO = 0x04;
inline constexpr int MB_ICONERROR = 0x10;
inline constexpr int MB_ICONQUESTION = 0x20;
inline constexpr int MB_ICONWARNING = 0x30;
inline constexpr int MB_ICONINFORMATION = 0x40;
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;

// The title of a notice for which no other is given.
inline constexpr const wchar_t* kAppTitle = L"Korvo";

using StatusHandler = std::function<void(const std::wstring& text)>;
using MessageHandler =
    std::function<int(const std::wstring& title, const std::wstring& text, int icon, int buttons)>;

// Each returns the handler it replaces.
KORVO_EXPORT StatusHandler SetStatusHandler(StatusHandler handler);
KORVO_EXPORT MessageHandler SetMessageHandler(MessageHandler handler);

// A line for the calling program's status bar; never stops anything.
KORVO_EXPORT void ShowStatus(const std::wstring& text);

// A modal notice or question; returns the answer (IDOK, IDYES, ...).
KORVO_EXPORT int ShowMessage(const std::wstring& text, int icon = MB_ICONWARNING,
                             int buttons = MB_OK, const std::wstring& title = kAppTitle);

}  // namespace korvo

#endif  // KORVO_FOUNDATION_MESSAGES_H_
