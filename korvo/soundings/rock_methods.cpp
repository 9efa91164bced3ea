#include "korvo/soundings/rock_methods.h"

#include <string>
#include <string_view>

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"

namespace {

using FjellRows = korvo::CountRows<fjelltype, 26, 22>;

// The first generation with tal3 in place of the word.
constexpr int kFirstWithTal3 = 2;
// The first generation with tal3 in its present unit.
constexpr int kFirstPresentUnit = 4;
// tal3 of generations 2 and 3, and tal1 of an old "SL" row, are a tenth of
// the present unit.
constexpr int kOldUnitFactor = 10;

bool HasWordColumn(int format) {
  return format < kFirstWithTal3;
}

// Total rows change with the block's generation, which the method line gives:
// the rows look at the block's `format` while it is read.
struct TotalRows {
  static constexpr int kCode = 25;
  static constexpr size_t kRemarkColumn = 29;
  static constexpr size_t kWordColumn = 20;
  static constexpr size_t kWordWidth = 2;

  const int& format;

  void ScanLeft(std::wstring_view line, totaltype& row) const {
    if (!HasWordColumn(format)) {
      korvo::Scan(line, L"%f%ld%ld%ld", &row.djup, &row.tal1, &row.tal2, &row.tal3);
      row.typ[0] = L'\0';
      return;
    }
    korvo::Scan(line, L"%f%ld%ld", &row.djup, &row.tal1, &row.tal2);
    const std::wstring_view word =
        line.size() > kWordColumn ? line.substr(kWordColumn, kWordWidth) : std::wstring_view();
    // Only the two words are known; anything else stands for the ordinary one.
    korvo::CopyField(row.typ, word == L"SL" || word == L"TR" ? word : L"TR");
  }
  static void PrepareForWrite(totaltype&) {}
  void AppendLeft(const totaltype& row, std::wstring& out) const {
    if (HasWordColumn(format)) {
      korvo::AppendFormat(out, L"%7.3f %5ld %5ld %s", row.djup, row.tal1, row.tal2, row.typ);
    } else {
      korvo::AppendFormat(out, L"%7.3f %5ld %5ld %5ld", row.djup, row.tal1, row.tal2, row.tal3);
    }
  }
};

// An old row moves to the columns of generation 4: a sinking under load
// ("SL") keeps its measure in tal3, in the present unit.
void ConvertWordRow(totaltype& row) {
  if (std::wstring_view(row.typ) == L"SL") {
    row.tal3 = row.tal1 * kOldUnitFactor;
    row.tal1 = 0;
  }
  row.typ[0] = L'\0';
}

}  // namespace

int CKorvoFjell::Init(CStdioFileMem* fil, const wchar_t* date) {
  return ReadBlock<FjellRows>(fil, date);
}
int CKorvoFjell::Uppdat(CStdioFileMem* fil) {
  return WriteBlock<FjellRows>(fil);
}
int CKorvoFjell::MyKod() {
  return FindMy<FjellRows>();
}
int CKorvoFjell::BergKontroll(float* djup) {
  return FindRock<FjellRows>(djup);
}

int CKorvoTotal::Init(CStdioFileMem* fil, const wchar_t* date) {
  return ReadBlock(fil, date, TotalRows{format});
}
int CKorvoTotal::Uppdat(CStdioFileMem* fil) {
  return WriteBlock(fil, TotalRows{format});
}
int CKorvoTotal::MyKod() {
  return FindMy<TotalRows>();
}
int CKorvoTotal::BergKontroll(float* djup) {
  return FindRock<TotalRows>(djup);
}

void CKorvoTotal::ConvertToFormat4() {
  if (format < 0 || format >= kFirstPresentUnit) return;
  const bool word_rows = HasWordColumn(format);
  for (Node* n = forsta; n != nullptr; n = n->next) {
    if (word_rows) {
      ConvertWordRow(n->rec);
    } else {
      n->rec.tal3 *= kOldUnitFactor;
    }
  }
  format += word_rows ? kFirstPresentUnit : kFirstWithTal3;
}
