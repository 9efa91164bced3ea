#include "korvo/foundation/field_text.h"

#include <algorithm>

#include "korvo/foundation/format.h"
#include "korvo/platform/env.h"

namespace korvo {

namespace {
constexpr size_t kGuidLength = 36;
constexpr size_t kTokenSkip = 5;  // "GUID" and the one separator behind it
}  // namespace

std::wstring_view SplitGuidToken(std::wstring_view line, std::wstring& guid) {
  const size_t pos = line.find(L"GUID");
  // At the very start the word is no token: it stays in the text to scan.
  if (pos == std::wstring_view::npos || pos == 0) {
    guid.clear();
    return line;
  }
  const size_t from = std::min(pos + kTokenSkip, line.size());
  guid.assign(line.substr(from));
  return line.substr(0, pos);
}

void EnsureGuid(std::wstring& guid) {
  if (guid.size() < kGuidLength) guid = NewUuid();
}

void NormaliseDate(std::wstring& date) {
  int first = 0, second = 0, third = 0;
  if (Scan(date, L"%d%*c%d%*c%d", &first, &second, &third) != 3) return;
  if (first < 1801 || first > 2099) return;
  date.clear();
  AppendFormat(date, L"%02d.%02d.%04d", third, second, first);
}

int CodeSystemNumber(const wchar_t* tag) {
  return std::wstring_view(tag ? tag : L"") == kCodeSystemOwn ? 0 : 1;
}

void CodeSystemFromScan(wchar_t* tag, int assigned, int fifth) {
  const wchar_t* value = (assigned >= 5 && fifth == 1) ? kCodeSystemOther : kCodeSystemOwn;
  std::copy(value, value + 4, tag);
}

void AppendRemark(std::wstring& line, size_t column, std::wstring_view remark) {
  if (line.size() < column) line.append(column - line.size(), L' ');
  line.append(remark);
}

void CopyField(wchar_t* field, size_t capacity, std::wstring_view text) {
  if (capacity == 0) return;
  const size_t n = std::min(text.size(), capacity - 1);
  std::copy_n(text.data(), n, field);
  field[n] = L'\0';
}

}  // namespace korvo
