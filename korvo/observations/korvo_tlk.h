// The interpretation of one investigation point: the materials of the ground,
// layer by layer, as rows in falling order of level, read from and written to
// the point's .TLK file; and the vocabulary of materials in three languages
// with the small set of older plain names that the file still uses.
#ifndef KORVO_OBSERVATIONS_KORVO_TLK_H_
#define KORVO_OBSERVATIONS_KORVO_TLK_H_

#include <string>
#include <vector>

#include "korvo/export.h"
#include "korvo/foundation/list0.h"
#include "korvo/foundation/stdio_file_mem.h"

// One interpreted layer.
struct matetype {
  wchar_t namn[12];  // the material's old plain name, such as "lera"
  float niva;        // level of the layer's top, in metres
  float varde1, varde2, varde3, varde4, varde5, varde6;  // values kept as they are
  int index;               // place in the material tables; 0 or less: not yet known
  wchar_t kommentar[26];   // second row line
  wchar_t anmarkning[26];  // first row line, behind the numbers
  int kalla2;              // second source number
  int kalla;               // where the level comes from, 0 to 5
};

class KORVO_EXPORT CKorvoTlk : public list0<matetype> {
 public:
  // Sizes of the constant tables.
  static const int AntalMaterial;  // 41
  static const int AntalKalla;     // 9
  // The names of the materials by `index`, in Swedish, Norwegian and English,
  // with their short names and plus codes ("BG" for rock). The texts are kept
  // exactly, blanks included.
  static const wchar_t* const SvMaterial[41];
  static const wchar_t* const NoMaterial[41];
  static const wchar_t* const EnMaterial[41];
  static const wchar_t* const KortNamn[41];
  static const wchar_t* const PlusKod[41];
  // The names of the source numbers of `kalla` and `kalla2`, by number.
  static const wchar_t* const SvKalla[9];
  static const wchar_t* const NoKalla[9];
  static const wchar_t* const EnKalla[9];

  // An empty interpretation with the vocabulary filled in. The three numbers
  // are the document's conversion flag, clean flag and combined-save flag.
  CKorvoTlk(int konv, int rensa, int samlagring);
  // An empty interpretation without vocabulary: no old names are known.
  CKorvoTlk();
  ~CKorvoTlk() override;

  // Appends the rows of a .TLK file. Reads from `fil` (opening it when it is
  // not open), or, with `fil` null, from a stream of its own on `path`. A
  // missing file gives a notice; a file that will not open asks whether to
  // try again. `id` is not used. 0 when rows were read; -1 for no file, an
  // empty file, one that begins with a marker, or when the user gave up.
  int Init(CStdioFileMem* fil, const wchar_t* id, const wchar_t* path);

  // Writes the rows to `fil`, or, with `fil` null, to a file of its own on
  // `path`. Rows without an index get it from their old name; rows with one
  // get their old name from it ("X" for a material without one). With the
  // combined-save flag set the rows must go to `fil`, behind the head of code
  // 60: without `fil` a notice goes out and nothing is written. 0 when
  // written; -1 when there was nothing to write to.
  int Uppdat(CStdioFileMem* fil, const wchar_t* path);

  // Moves every row by `dz` metres; the ground-water level stays.
  void AddDZ(double dz);

  // Adds a row of material `namn` at `niva` in its place by level, cursor on
  // it. -1, and nothing added, when a row of the same name stands less than
  // 0.001 from that level below the place.
  int AddTolkNiva(const wchar_t* namn, float niva);

  // Sets the rock row to `niva` rounded to centimetres, or adds one at the
  // end; `kod` is the rock's stop code (source 4 for code 4, else 5).
  // 0 when the list changed; -1 when a rock row within 0.01 with both source
  // numbers set was already there, or the row could not be added.
  int InsertBerg(float niva, int kod);

  // Looks for the lowest row of a material: `mod` 1 by old name, any other
  // by Norwegian name; both without regard to case. 1 with the cursor on it;
  // 0, the cursor on the first row, when there is none.
  int FindMtrl(const wchar_t* namn, int mod);

  // Tidies an automatic interpretation: removes "block" rows at the end and
  // within friction soil, joins the lowest layer to rock below it and keeps
  // only the lowest of each run of one material. Result 1.
  int TolkClean();

  // One cleaning step at the cursor, for a row between two friction layers.
  // 1 when rows were removed, else 0 with the cursor on the row below.
  int BlockIFrikt();

  // 1 for the friction materials "friktjord", "sand", "sten", "grus" and
  // "moraen" (exact names), else 0.
  int IfFrikt(const wchar_t* namn);

  // Reports each row that stands directly below a "berg" row in one notice.
  // Returns the number of such rows.
  int DataCheck(int);

  // The index of a material by its exact name in one language, in table
  // order; 0 when no name fits.
  int SvTextToIndex(const wchar_t* text);
  int NoTextToIndex(const wchar_t* text);
  int EnTextToIndex(const wchar_t* text);

  // The index of an old name, without regard to case; 0 when none fits.
  int OldtextToIndex(const wchar_t* text);
  // The old name of an index into `out`: 0; -1 and "X" when it has none.
  int IndexToOldtext(int index, std::wstring& out);

  int hargvy;                               // 1 after a "gvy" block was read
  float gvy;                                // the ground-water level; 0 when there is none
  wchar_t skapad[11];                       // local date the file was made, YYYY-MM-DD
  wchar_t andrad[11];                       // local date the file was last written
  std::vector<std::wstring> kandamaterial;  // the 14 known material names, capitals
  std::vector<int> oldindex;                // index of each old name, by place
  std::vector<std::wstring> oldtext;        // the 18 old names
  int konvflagga;
  int rensa;
  int samlagring;

 protected:
  // Key 1: 1 when the marked row's level is at or above the current one's;
  // key -1: when it is above. Both sort by falling level. Other keys: 0.
  int Sortval(int key) override;

 private:
  void ClearFields();
  int ReadRows(CStdioFileMem& in);
  void ReadRow(CStdioFileMem& in, std::wstring& line);
  void WriteRows(CStdioFileMem& out);
  void WriteRow(CStdioFileMem& out, matetype& row);
  const std::wstring* OldTextOf(int index) const;
  bool AppendRow(const wchar_t* namn, float niva, int kalla, int kalla2);
  void JoinToRock(float rock);
  void DropRunAbove(const wchar_t* below);

  std::wstring line_;  // one line, reused for every row read or written
};

#endif  // KORVO_OBSERVATIONS_KORVO_TLK_H_
