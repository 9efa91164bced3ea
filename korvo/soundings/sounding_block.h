// What the sounding method blocks of a .SND file share: the head fields and
// their two lines, the code line with the block's date and the method line
//
//   flagga1 stopp digit 0 code-system metodtal stopptext GUID guid
//
// A block class derives from SoundingBlock over its row record and describes
// its rows by a small traits class (see ReadBlock) to read, write and search
// them with the operations here.
#ifndef KORVO_SOUNDINGS_SOUNDING_BLOCK_H_
#define KORVO_SOUNDINGS_SOUNDING_BLOCK_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/list0.h"
#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/soundings/korvo_snd.h"

namespace korvo {

// `StopWidth` is the capacity of `stopptext`, its terminating zero included.
template <class Row, size_t StopWidth>
class SoundingBlock : public list0<Row> {
 public:
  wchar_t kodsystem[4] = {};          // code system of the remarks, "KRV" or "SGF"
  int stopp = 0;                      // stop code of the sounding
  wchar_t datum[12] = {};             // date of the block, from its code line
  int digit = 0;                      // above 0: digitised
  int metodtal = 0;                   // carried for the calling programs
  wchar_t stopptext[StopWidth] = {};  // one word
  int flagga1 = 0;                    // 0 or 1, carried for the calling programs
  int konvflagga = 0;                 // the character conversion flag of the owner
  int rensa = 0;                      // passed on by the owner; no effect here
  int samlagring = 0;                 // passed on by the owner; no effect here
  std::wstring guid;                  // identity of the block, made at its first save
  double startdjup = 0.0;             // where the rows start; set by the status summary

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
  // makes metodtal 0 and stopptext empty, and reads as "KRV". Returns 0, or
  // -1 when the stream has no line left. `line` is scratch.
  int ReadMethodLine(CStdioFileMem* fil, const wchar_t* date, std::wstring& line) {
    CopyField(datum, date ? std::wstring_view(date) : std::wstring_view());
    if (!fil->ReadString(line)) return -1;
    const std::wstring_view numbers = SplitGuidToken(line, guid);
    float flag = 0.0f;
    int unused = 0;
    int code_system = 0;
    const int assigned = Scan(numbers, L"%f%d%d%d%d%ld%s", &flag, &stopp, &digit, &unused,
                              &code_system, &metodtal, &stopptext);
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
    AppendFormat(out, L"%f %d %d %d %d %ld %s GUID %s\n", static_cast<float>(flagga1), stopp, digit,
                 0, CodeSystemNumber(kodsystem), metodtal, stopptext, guid);
  }

  // Reads the method line, then one row per line up to and including the
  // next marker line or to the end of the stream. `Rows` describes a row:
  //
  //   static constexpr int kCode;             block code, the method of the code table
  //   static constexpr size_t kRemarkColumn;  where the remark starts
  //   static void ScanLeft(std::wstring_view line, Row& row);
  //   static void PrepareForWrite(Row& row);  field rules applied before a row is written
  //   static void AppendLeft(const Row& row, std::wstring& out);
  //
  // and, where a row has more behind its remark, optionally
  //
  //   static std::wstring_view Remark(std::wstring_view line);  the remark's text
  //   static void ScanTail(std::wstring_view line, Row& row);
  //   static void AppendTail(const Row& row, std::wstring& out);  behind the remark
  //
  // Every line makes a row, filled from zeros. Returns 0, or -1 when the
  // stream ends right behind the code line.
  template <class Rows>
  int ReadBlock(CStdioFileMem* fil, const wchar_t* date) {
    std::wstring line;  // one buffer for the whole block
    if (ReadMethodLine(fil, date, line) < 0) return -1;
    while (fil->ReadString(line) && !IsMarker(line)) {
      this->Ny(1, nullptr);
      Row& row = this->sista->rec;
      const std::wstring_view text = CutAtNewline(line);
      Rows::ScanLeft(text, row);
      if constexpr (requires { Rows::Remark(text); }) {
        TakeRemark(Rows::Remark(text), Rows::kCode, row);
      } else {
        TakeRemark(RemarkAt(text, Rows::kRemarkColumn), Rows::kCode, row);
      }
      if constexpr (requires { Rows::ScanTail(text, row); }) Rows::ScanTail(text, row);
    }
    return 0;
  }

  // Writes head and rows; the rows go out in pieces of some thousand
  // characters rather than line by line. Returns 0.
  template <class Rows>
  int WriteBlock(CStdioFileMem* fil) {
    std::wstring out;
    AppendMethodHead(Rows::kCode, out);
    std::wstring line;
    if (this->Home() == 0) {
      do {
        Row& row = *this->pael;
        Rows::PrepareForWrite(row);
        line.clear();
        Rows::AppendLeft(row, line);
        AppendRemark(line, Rows::kRemarkColumn, row.anm);
        if constexpr (requires { Rows::AppendTail(row, line); }) Rows::AppendTail(row, line);
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
    if (this->Home() != 0) return -1;
    do {
      int words = 0;
      if (CKorvoSnd::Findkod(Rows::kCode, this->pael->anm, -1, &words, L"MY", kodsystem, 0)) {
        return 0;
      }
    } while (this->operator++(0) != nullptr);
    return -1;
  }

 private:
  static constexpr size_t kWriteChunk = 16384;
  static constexpr size_t kSymbolLength = 4;

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

}  // namespace korvo

#endif  // KORVO_SOUNDINGS_SOUNDING_BLOCK_H_
