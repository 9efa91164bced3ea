#include "korvo/context/dir_sort.h"

#include <algorithm>
#include <string>
#include <vector>

#include "korvo/context/no_case.h"
#include "korvo/foundation/field_text.h"
#include "korvo/platform/env.h"

namespace korvo {
namespace {

// Glob matching with one point of return: after a mismatch the last "*"
// takes one more character. Linear in practice for the masks used here.
bool MatchGlob(std::wstring_view mask, std::wstring_view name) {
  size_t m = 0, n = 0;
  size_t star = std::wstring_view::npos, resume = 0;
  while (n < name.size()) {
    if (m < mask.size() && mask[m] == L'*') {
      star = m++;
      resume = n;
    } else if (m < mask.size() && (mask[m] == L'?' || FoldCase(mask[m]) == FoldCase(name[n]))) {
      ++m;
      ++n;
    } else if (star != std::wstring_view::npos) {
      m = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (m < mask.size() && mask[m] == L'*') ++m;
  return m == mask.size();
}

bool IsSeparator(wchar_t c) {
  return c == kPathSeparator[0] || c == L'/';
}

bool NameOrder(const std::wstring& a, const std::wstring& b) {
  const auto fold_less = [](wchar_t x, wchar_t y) { return FoldCase(x) < FoldCase(y); };
  if (std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), fold_less)) {
    return true;
  }
  if (std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(), fold_less)) {
    return false;
  }
  return a < b;  // names that differ only in case keep a fixed order
}

}  // namespace

bool MatchFileMask(std::wstring_view mask, std::wstring_view name) {
  if (MatchGlob(mask, name)) return true;
  // "ABC.*" takes "ABC" as well: the extension may be absent altogether.
  if (mask.size() >= 2 && mask.substr(mask.size() - 2) == L".*" &&
      name.find(L'.') == std::wstring_view::npos) {
    return MatchGlob(mask.substr(0, mask.size() - 2), name);
  }
  return false;
}

}  // namespace korvo

CDirSort::CDirSort() = default;
CDirSort::~CDirSort() = default;

int CDirSort::Init(const wchar_t* pattern, int a, int b, int c, int d) {
  (void)a, (void)b, (void)c, (void)d;
  while (Home() == 0) Delete();
  const std::wstring_view whole = pattern ? pattern : L"";
  size_t cut = whole.size();
  while (cut > 0 && !korvo::IsSeparator(whole[cut - 1])) --cut;
  const std::wstring_view mask = whole.substr(cut);
  std::wstring dir = cut > 0 ? std::wstring(whole.substr(0, cut - 1)) : std::wstring(L".");
  if (dir.empty()) dir = korvo::kPathSeparator;  // a mask right below the root
  if (!korvo::DirectoryExists(dir)) return -1;

  std::vector<std::wstring> names = korvo::ListFiles(dir);
  std::erase_if(names, [&](const std::wstring& n) { return !korvo::MatchFileMask(mask, n); });
  std::sort(names.begin(), names.end(), korvo::NameOrder);
  for (const std::wstring& n : names) {
    Ny(1, nullptr);
    korvo::CopyField(pael->namn, n);
  }
  Home();
  return static_cast<int>(names.size());
}
