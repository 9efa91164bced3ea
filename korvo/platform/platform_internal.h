// Helpers shared by the platform sources of both operating systems. Not part
// of the library's surface.
#ifndef KORVO_PLATFORM_PLATFORM_INTERNAL_H_
#define KORVO_PLATFORM_PLATFORM_INTERNAL_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "korvo/platform/datetime.h"

namespace korvo {

// UTF-8 both ways, for wchar_t of 16 or 32 bits. A byte that is not part of a
// valid sequence becomes U+DC80 + (byte - 0x80) and goes back as that byte, so
// any file name read from a directory can be opened again.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view bytes);

// Whether two file names are the same when ASCII and Latin-1 letters (and the
// few letters of Windows-1252 above U+00FF) are folded to one case.
bool SameNameIgnoringCase(std::wstring_view a, std::wstring_view b);

// The text form of a UUID from its 16 bytes in network order, with the version
// and variant bits as they are: 36 lower-case characters.
std::wstring FormatUuid(const unsigned char bytes[16]);

// Seconds since 1970 UTC as a calendar time in the local zone.
LocalTime LocalTimeFromUnix(int64_t seconds);

// The position of the last path separator in `path` (either kind on Windows),
// or npos.
size_t LastSeparator(std::wstring_view path);

}  // namespace korvo

#endif  // KORVO_PLATFORM_PLATFORM_INTERNAL_H_
