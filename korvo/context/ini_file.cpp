#include "korvo/context/ini_file.h"

#include "korvo/context/file_names.h"
#include "korvo/context/no_case.h"
#include "korvo/platform/env.h"
#include "korvo/platform/file.h"

namespace korvo {
namespace {

std::wstring_view Trim(std::wstring_view s) {
  const auto blank = [](wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r'; };
  while (!s.empty() && blank(s.front())) s.remove_prefix(1);
  while (!s.empty() && blank(s.back())) s.remove_suffix(1);
  return s;
}

// A value in double quotes keeps its inner blanks; the quotes go.
std::wstring_view Unquote(std::wstring_view s) {
  if (s.size() >= 2 && s.front() == L'"' && s.back() == L'"') return s.substr(1, s.size() - 2);
  return s;
}

}  // namespace

bool ReadIniValue(const std::wstring& path, std::wstring_view section, std::wstring_view key,
                  std::wstring* value) {
  if (path.empty()) return false;
  CStdioFile file;
  if (!file.Open(path.c_str(), CFile::modeRead)) return false;
  std::wstring raw;
  bool in_section = false;
  while (file.ReadString(raw)) {
    const std::wstring_view line = Trim(raw);
    if (line.empty() || line.front() == L';' || line.front() == L'#') continue;
    if (line.front() == L'[') {
      const size_t close = line.find(L']');
      in_section =
          close != std::wstring_view::npos && EqualNoCase(Trim(line.substr(1, close - 1)), section);
      continue;
    }
    if (!in_section) continue;
    const size_t eq = line.find(L'=');
    if (eq == std::wstring_view::npos || !EqualNoCase(Trim(line.substr(0, eq)), key)) continue;
    *value = Unquote(Trim(line.substr(eq + 1)));
    return true;
  }
  return false;
}

std::wstring IniPathIn(const std::wstring& dir) {
  if (dir.empty()) return std::wstring();
  return dir + kPathSeparator + kSettingsFile;
}

}  // namespace korvo
