#include "korvo/soundings/basic_methods.h"

#include <string>
#include <string_view>

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"

namespace {

// Rotary rows: "%7.3f %4ld %s" of depth, count and load word. The load word is
// read back by column, so a count of five digits shifts it out of place.
struct DreieRows {
  static constexpr int kCode = 21;
  static constexpr size_t kRemarkColumn = 22;
  static constexpr size_t kLoadWordColumn = 13;
  static constexpr size_t kLoadWordWidth = 9;

  static void ScanLeft(std::wstring_view line, dreietype& row) {
    korvo::Scan(line, L"%f%ld", &row.djup, &row.varv);
    std::wstring_view word = line.size() > kLoadWordColumn
                                 ? line.substr(kLoadWordColumn, kLoadWordWidth)
                                 : std::wstring_view();
    korvo::CopyField(row.vikt, word.substr(0, word.find(L' ')));
    // A negative count is a sinking under load, whatever word stands there.
    if (row.varv < 0) korvo::CopyField(row.vikt, L"SL");
  }
  static void PrepareForWrite(dreietype& row) {
    if (row.varv < 0) korvo::CopyField(row.vikt, L"SL");
  }
  static void AppendLeft(const dreietype& row, std::wstring& out) {
    korvo::AppendFormat(out, L"%7.3f %4ld %s", row.djup, row.varv, row.vikt);
  }
};

using EnkelRows = korvo::CountRows<enktype, 22, 22>;
using DtrykkRows = korvo::CountRows<dtrykktype, 23, 15>;

// Ram rows: depth, then tal1 and tal2 in that order, without widths.
struct RamRows {
  static constexpr int kCode = 24;
  static constexpr size_t kRemarkColumn = 22;

  static void ScanLeft(std::wstring_view line, ramsondtype& row) {
    korvo::Scan(line, L"%f%ld%ld", &row.djup, &row.tal1, &row.tal2);
  }
  static void PrepareForWrite(ramsondtype&) {}
  static void AppendLeft(const ramsondtype& row, std::wstring& out) {
    korvo::AppendFormat(out, L"%7.3f %ld %d", row.djup, row.tal1, row.tal2);
  }
};

}  // namespace

int CKorvoDreie::Init(CStdioFileMem* fil, const wchar_t* date) {
  return ReadBlock<DreieRows>(fil, date);
}
int CKorvoDreie::Uppdat(CStdioFileMem* fil) {
  return WriteBlock<DreieRows>(fil);
}
int CKorvoDreie::MyKod() {
  return FindMy<DreieRows>();
}

int CKorvoEnkel::Init(CStdioFileMem* fil, const wchar_t* date) {
  return ReadBlock<EnkelRows>(fil, date);
}
int CKorvoEnkel::Uppdat(CStdioFileMem* fil) {
  return WriteBlock<EnkelRows>(fil);
}
int CKorvoEnkel::MyKod() {
  return FindMy<EnkelRows>();
}

int CKorvoDtrykk::Init(CStdioFileMem* fil, const wchar_t* date) {
  return ReadBlock<DtrykkRows>(fil, date);
}
int CKorvoDtrykk::Uppdat(CStdioFileMem* fil) {
  return WriteBlock<DtrykkRows>(fil);
}
int CKorvoDtrykk::MyKod() {
  return FindMy<DtrykkRows>();
}

int CKorvoRam::Init(CStdioFileMem* fil, const wchar_t* date) {
  return ReadBlock<RamRows>(fil, date);
}
int CKorvoRam::Uppdat(CStdioFileMem* fil) {
  return WriteBlock<RamRows>(fil);
}
int CKorvoRam::MyKod() {
  return FindMy<RamRows>();
}
