// Reading one value from a settings file of INI text: "[SECTION]" lines open
// a section, "KEY=value" lines give a value, lines beginning with ";" or "#"
// are remarks. The file is Windows-1252 with CR LF or LF line ends.
#ifndef KORVO_CONTEXT_INI_FILE_H_
#define KORVO_CONTEXT_INI_FILE_H_

#include <string>
#include <string_view>

namespace korvo {

// Looks for `key` in `section` of the file at `path`; section and key names
// match without regard to case, and blanks around names and values do not
// count. The first occurrence wins. Returns true and sets `value` when the
// key is there, even with an empty value; false when the file or the key is
// missing, leaving `value` alone.
bool ReadIniValue(const std::wstring& path, std::wstring_view section, std::wstring_view key,
                  std::wstring* value);

// The settings file `korvo.ini` in directory `dir`; empty when `dir` is.
std::wstring IniPathIn(const std::wstring& dir);

}  // namespace korvo

#endif  // KORVO_CONTEXT_INI_FILE_H_
