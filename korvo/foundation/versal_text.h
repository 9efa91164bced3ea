// The in-place upper-casing of text that serves as a key: file names, code
// lookups, point names and sort keys.
#ifndef KORVO_FOUNDATION_VERSAL_TEXT_H_
#define KORVO_FOUNDATION_VERSAL_TEXT_H_

#include <string>

#include "korvo/export.h"

// Changes a-z to A-Z and six 16-bit values of the half-width range (0xFFE5,
// 0xFFE6, 0xFFF8, 0xFF86, 0xFF91, 0xFF9B) to their pairs; leaves everything
// else, the national letters of U+0080..U+00FF among them. Stops at the
// terminating zero; a null pointer is left alone.
KORVO_EXPORT void VersalText(wchar_t* text);
KORVO_EXPORT void VersalText(std::wstring& text);

#endif  // KORVO_FOUNDATION_VERSAL_TEXT_H_
