// Windows-1252, the code page of every 8-bit text in a project's files.
//
// One table serves both directions over all 256 bytes. The five bytes the
// code page leaves unassigned (0x81, 0x8D, 0x8F, 0x90, 0x9D) map to the C1
// controls of the same value, so any byte sequence survives a round trip.
// A character with no byte is written as '?'.
#ifndef KORVO_PLATFORM_CODEPAGE_H_
#define KORVO_PLATFORM_CODEPAGE_H_

#include <string>
#include <string_view>

#include "korvo/export.h"

namespace korvo {

// The character that byte `b` stands for.
KORVO_EXPORT wchar_t DecodeCp1252(unsigned char b);

// The byte for `c`, or '?' when the code page has none.
KORVO_EXPORT unsigned char EncodeCp1252(wchar_t c);

// Appends the decoded/encoded form of the input; never allocates beyond
// growing `out`.
KORVO_EXPORT void AppendFromCp1252(std::wstring& out, std::string_view bytes);
KORVO_EXPORT void AppendToCp1252(std::string& out, std::wstring_view text);
// AppendToCp1252 with each "\n" written as "\r\n", as text files are kept.
KORVO_EXPORT void AppendLinesToCp1252(std::string& out, std::wstring_view text);

KORVO_EXPORT std::wstring FromCp1252(std::string_view bytes);
KORVO_EXPORT std::string ToCp1252(std::wstring_view text);

}  // namespace korvo

#endif  // KORVO_PLATFORM_CODEPAGE_H_
