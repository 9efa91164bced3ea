// The two sounding method blocks that can say where rock was met: the rock
// control sounding (Fjell, code 26) and the total sounding (Total, code 25).
// They share the head of the simple blocks (sounding_block.h) and keep the
// fourth column of the method line in `format`. For a total sounding that
// column is the generation of its row format, which has changed over time
// (doc/snd_format.md):
//
//   generation 0, 1  depth, tal1, tal2 and the word "SL" or "TR" in `typ`
//   generation 2, 3  depth, tal1, tal2, tal3; tal3 in tenfold units
//   generation 4, 5  depth, tal1, tal2, tal3 in their present unit
//
// A block is written in the generation it holds; only ConvertToFormat4 moves
// it on.
#ifndef KORVO_SOUNDINGS_ROCK_METHODS_H_
#define KORVO_SOUNDINGS_ROCK_METHODS_H_

#include "korvo/export.h"
#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/soundings/sounding_block.h"

// One row of a rock control sounding.
struct fjelltype {
  float djup;         // depth in metres
  int varv;           // count
  wchar_t anm[26];    // remark
  wchar_t symbol[6];  // symbol of the code the remark names, at most 4 characters
};

// One row of a total sounding. Which columns a row has depends on the block's
// generation: `typ` in generations 0 and 1 only, `tal3` from 2 on.
struct totaltype {
  wchar_t typ[10];    // "SL" or "TR" in generations 0 and 1, else empty
  float djup;         // depth in metres
  int tal1;           // first integer column
  int tal3;           // third integer column, from generation 2 on
  int tal2;           // second integer column
  wchar_t anm[26];    // remark
  wchar_t symbol[6];  // symbol of the code the remark names, at most 4 characters
};

// Both blocks have the operations of the simple blocks (basic_methods.h):
// Init, Uppdat, MyKod, and the two constructors. A method line with fewer
// than four numbers reads `format` 0. And:
//
//   BergKontroll(djup)  0 with `*djup` the depth of the first row whose remark
//                       holds the rock code "F" (valid for the block's method
//                       in the code table), the cursor on that row. -1 when
//                       the block has no rows, when no row has the code, or
//                       when `stopp` is neither 93 nor 94.

// Rock control sounding, code 26. Rows: "%7.3f %4ld " and two blanks, the
// remark at column 22. `format` is carried from file to file, 0 in a new block.
class KORVO_EXPORT CKorvoFjell : public korvo::SoundingBlock<fjelltype, 256, korvo::FormatColumn> {
 public:
  CKorvoFjell() = default;
  CKorvoFjell(int konv, int rensa, int samlagring) : SoundingBlock(konv, rensa, samlagring) {}
  int Init(CStdioFileMem* fil, const wchar_t* datum);
  int Uppdat(CStdioFileMem* fil);
  int MyKod();
  int BergKontroll(float* djup);
};

// Total sounding, code 25. Rows of generations 0 and 1: "%7.3f %5ld %5ld %s"
// of depth, tal1, tal2 and typ, the word at column 20; of later generations
// "%7.3f %5ld %5ld %5ld" of depth, tal1, tal2, tal3. The remark at column 29.
// A new block is of generation 5.
class KORVO_EXPORT CKorvoTotal : public korvo::SoundingBlock<totaltype, 256, korvo::FormatColumn> {
 public:
  CKorvoTotal() = default;
  CKorvoTotal(int konv, int rensa, int samlagring) : SoundingBlock(konv, rensa, samlagring) {
    format = 5;
  }
  int Init(CStdioFileMem* fil, const wchar_t* datum);
  int Uppdat(CStdioFileMem* fil);
  int MyKod();
  int BergKontroll(float* djup);

  // Brings the rows to generation 4 or 5, raising `format` by 4 from 0 or 1
  // and by 2 from 2 or 3, also when there are no rows. From 0 or 1 a row "SL"
  // moves tal1 * 10 to tal3 and clears tal1; every row loses its word. From 2
  // or 3 tal3 is multiplied by 10. Generations 4 and above (and any negative
  // value) stay as they are.
  void ConvertToFormat4();
};

#endif  // KORVO_SOUNDINGS_ROCK_METHODS_H_
