// UTF-8 for what leaves the library as readable text: terminals, logs and
// scripts. Field files are Windows-1252 (codepage.h); file names have their
// own round-trip form in the operating-system layer.
#ifndef KORVO_PLATFORM_UTF8_H_
#define KORVO_PLATFORM_UTF8_H_

#include <string>
#include <string_view>

#include "korvo/export.h"

namespace korvo {

// UTF-8 of wide text, whether wchar_t holds UTF-16 or UTF-32 units. A unit
// that is no character (a lone surrogate, a value beyond U+10FFFF) becomes
// U+FFFD.
KORVO_EXPORT std::string Utf8FromWide(std::wstring_view text);

// Wide text of UTF-8. Each byte that starts no valid shortest-form sequence
// becomes one U+FFFD, as most decoders do, so an overlong "/" never reads as
// "/".
KORVO_EXPORT std::wstring WideFromUtf8(std::string_view utf8);

}  // namespace korvo

#endif  // KORVO_PLATFORM_UTF8_H_
