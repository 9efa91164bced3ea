// What the sounding method blocks of a .SND file share: the head fields and
// their two lines, the code line with the block's date and the method line
//
//   flagga1 stopp digit format code-system metodtal stopptext GUID guid
//
// A block class derives from SoundingBlock over its row record and describes
// its rows by a small traits class (see ReadBlock) to read, write and search
// them with the operations here. The fourth column is 0 in most blocks; the
// rock control and total soundings keep a number there in their field
// `format` (FormatColumn below).
#ifndef KORVO_SOUNDINGS_SOUNDING_BLOCK_H_
#define KORVO_SOUNDINGS_SOUNDING_BLOCK_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/list0.h"
#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/soundings/korvo_snd.h"

namespace korvo {

// The fourth column of the method line of a block that doesn't keep it: it
// takes no room, and the block writes 0 there.
struct NoFormatColumn {};
// The fourth column of a block that keeps it in its field `format`.
using FormatColumn = int;

// `StopWidth` is the capacity of `stopptext`, its terminating zero included.
template <class Row, size_t StopWidth, class Format = NoFormatColumn>
class SoundingBlock : public list0<Row> {
  static constexpr bool kKeepsFormat = std::is_same_v<Format, FormatColumn>;

 public:
  wchar_t kodsystem[4] = {};              // code system of the remarks, "KRV" or "SGF"
  int stopp = 0;                          // stop code of the sounding
  wchar_t datum[12] = {};                 // date of the block, from its code line
  int digit = 0;                          // above 0: digitised
  int metodtal = 0;                       // carried for the calling programs
  wchar_t stopptext[StopWidth] = {};      // one word
  int flagga1 = 0;                        // 0 or 1, carried for the calling programs
  [[no_unique_address]] Format format{};  // fourth column of the method line, where kept
  int konvflagga = 0;                     // the character conversion flag of the owner
  int rensa = 0;                          // passed on by the owner; no effect here
  int samlagring = 0;                     // passed on by the owner; no effect here
  std::wstring guid;                      // identity of the block, made at its first save
  double startdjup = 0.0;                 // where the rows start; set by the status summary

 protected:
  // A bare block, for classes that fill the head themselves.
  SoundingBlock() = default;
  // A new block takes the code system that the calling program chose.
  SoundingBlock(int konv, int rensa_flag, int samlagring_flag)
      : konvflagga(konv), rensa(rensa_flag), samlagring(samlagring_flag) {
    CopyField(kodsystem, CKorvoSnd::Kodtyp ? CKorvoSnd::Kodtyp : L"");
  }

  // Takes the block's date and reads the method line from `fil`, which stands
  // behind the code line. A short line leaves stopp and digit as they are,
  // makes metodtal 0 and stopptext empty, and reads as "KRV"; a kept
  // `format` is 0 when the line has fewer than four numbers. Returns 0, or
  // -1 when the stream has no line left. `line` is scratch.
  int ReadMethodLine(CStdioFileMem* fil, const wchar_t* date, std::wstring& line) {
    CopyField(datum, date ? std::wstring_view(date) : std::wstring_view());
    if (!fil->ReadString(line)) return -1;
    const std::wstring_view numbers = SplitGuidToken(line, guid);
    float flag = 0.0f;
    int fourth = 0;
    int code_system = 0;
    const int assigned = Scan(numbers, L"%f%d%d%d%d%ld%s", &flag, &stopp, &digit, &fourth,
                              &code_system, &metodtal, &stopptext);
    if constexpr (kKeepsFormat) format = assigned >= 4 ? fourth : 0;
    // The flag is written as a float; anything but a clear 1 reads as 0.
    flagga1 = flag > 0.99f && flag < 1.01f ? 1 : 0;
    if (assigned < 7) stopptext[0] = L'\0';
    if (assigned < 6) metodtal = 0;
    CodeSystemFromScan(kodsystem, assigned, code_system);
    return 0;
  }

  // Appends the marker, the code line and the method line to `out`, giving
  // the block a GUID first when it has none.
  void AppendMethodHead(int code, std::wstring& out) {
    EnsureGuid(guid);
    AppendFormat(out, L"*\n%d %s\n", code, datum);
    int fourth = 0;
    if constexpr (kKeepsFormat) fourth = format;
    AppendFormat(out, L"%f %d %d %d %d %ld %s GUID %s\n", static_cast<float>(flagga1), stopp, digit,
                 fourth, CodeSystemNumber(kodsystem), metodtal, stopptext, guid);
  }

  // Reads the method line, then one row per line up to and including the
  // next marker line or to the end of the stream. `Rows` describes a row:
  //
  //   static constexpr int kCode;             block code, the method of the code table
  //   static constexpr size_t kRemarkColumn;  where the remark starts
  //   void ScanLeft(std::wstring_view line, Row& row);
  //   void PrepareForWrite(Row& row);         field rules applied before a row is written
  //   void AppendLeft(const Row& row, std::wstring& out);
  //
  // and, where a row has more behind its remark, optionally
  //
  //   std::wstring_view Remark(std::wstring_view line);  the remark's text
  //   void ScanTail(std::wstring_view line, Row& row);
  //   void AppendTail(const Row& row, std::wstring& out);  behind the remark
  //
  // The operations may be static; a block whose rows depend on its head
  // passes a `rows` object that looks at it (it is asked after the method line
  // has been read). Every line makes a row, filled from zeros. Returns 0, or
  // -1 when the stream ends right behind the code line.
  template <class Rows>
  int ReadBlock(CStdioFileMem* fil, const wchar_t* date, const Rows& rows = Rows()) {
    std::wstring line;  // one buffer for the whole block
    if (ReadMethodLine(fil, date, line) < 0) return -1;
    while (fil->ReadString(line) && !IsMarker(line)) {
      this->Ny(1, nullptr);
      Row& row = this->sista->rec;
      const std::wstring_view text = CutAtNewline(line);
      rows.ScanLeft(text, row);
      if constexpr (requires { rows.Remark(text); }) {
        TakeRemark(rows.Remark(text), Rows::kCode, row);
      } else {
        TakeRemark(RemarkAt(text, Rows::kRemarkColumn), Rows::kCode, row);
      }
      if constexpr (requires { rows.ScanTail(text, row); }) rows.ScanTail(text, row);
    }
    return 0;
  }

  // Writes head and rows; the rows go out in pieces of some thousand
  // characters rather than line by line. Returns 0.
  template <class Rows>
  int WriteBlock(CStdioFileMem* fil, const Rows& rows = Rows()) {
    std::wstring out;
    AppendMethodHead(Rows::kCode, out);
    std::wstring line;
    if (this->Home() == 0) {
      do {
        Row& row = *this->pael;
        rows.PrepareForWrite(row);
        line.clear();
        rows.AppendLeft(row, line);
        AppendRemark(line, Rows::kRemarkColumn, row.anm);
        if constexpr (requires { rows.AppendTail(row, line); }) rows.AppendTail(row, line);
        line += L'\n';
        out += line;
        if (out.size() >= kWriteChunk) {
          fil->WriteString(out);
          out.clear();
        }
      } while (this->operator++(0) != nullptr);
    }
    fil->WriteString(out);
    return 0;
  }

  // From the first row on, the first whose remark holds the code "MY": 0 with
  // the cursor on it; -1 when there is none or no rows.
  template <class Rows>
  int FindMy() {
    return FindCode(Rows::kCode, L"MY");
  }

  // Where the sounding met rock: 0 and `*djup` := the depth of the first row
  // whose remark holds the rock code "F", the cursor on it. -1 when the block
  // has no rows, when no row has the code, or when its stop code is neither
  // 93 nor 94: no other stop lets a rock mark count.
  template <class Rows>
  int FindRock(float* djup) {
    if (this->Home() != 0) return -1;
    if (stopp != 93 && stopp != 94) return -1;
    if (FindCode(Rows::kCode, L"F") != 0) return -1;
    *djup = this->pael->djup;
    return 0;
  }

 private:
  static constexpr size_t kWriteChunk = 16384;
  static constexpr size_t kSymbolLength = 4;

  // From the first row on, the first whose remark holds the code `key` valid
  // for `metod`: 0 with the cursor on it; -1 when there is none or no rows.
  int FindCode(int metod, const wchar_t* key) {
    if (this->Home() != 0) return -1;
    do {
      int words = 0;
      if (CKorvoSnd::Findkod(metod, this->pael->anm, -1, &words, key, kodsystem, 0)) return 0;
    } while (this->operator++(0) != nullptr);
    return -1;
  }

  // The remark (cut to the field), and the symbol of the first code that it
  // names, if any.
  void TakeRemark(std::wstring_view remark, int metod, Row& row) const {
    CopyField(row.anm, remark);
    int words = 0;
    const kod* code = CKorvoSnd::Findkod(metod, row.anm, 0, &words, L"", kodsystem, 0);
    if (code != nullptr) {
      CopyField(row.symbol, std::wstring_view(code->symbol).substr(0, kSymbolLength));
    }
  }
};

// Rows of a depth and a count with two blanks where the rotary rows have the
// load word: the simple, rotary-pressure and rock control soundings, which
// differ only in their code and remark column.
template <class Row, int Code, size_t RemarkColumn>
struct CountRows {
  static constexpr int kCode = Code;
  static constexpr size_t kRemarkColumn = RemarkColumn;

  static void ScanLeft(std::wstring_view line, Row& row) {
    Scan(line, L"%f%ld", &row.djup, &row.varv);
  }
  static void PrepareForWrite(Row&) {}
  static void AppendLeft(const Row& row, std::wstring& out) {
    AppendFormat(out, L"%7.3f %4ld %s", row.djup, row.varv, L"  ");
  }
};

}  // namespace korvo

#endif  // KORVO_SOUNDINGS_SOUNDING_BLOCK_H_
