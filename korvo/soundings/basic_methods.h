// The four simple sounding method blocks of a .SND file: rotary (Dreie, code
// 21), simple (Enkel, 22), rotary-pressure (Dtrykk, 23) and ram (Ram, 24).
// Each is a list of depth rows behind the head that all method blocks share
// (sounding_block.h); they differ in the row record and the columns of a row
// (doc/snd_format.md). A row's remark is cut out by column, and the symbol of
// the first code it names is looked up in the code table.
#ifndef KORVO_SOUNDINGS_BASIC_METHODS_H_
#define KORVO_SOUNDINGS_BASIC_METHODS_H_

#include "korvo/export.h"
#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/soundings/sounding_block.h"

// One row of a rotary sounding.
struct dreietype {
  wchar_t vikt[10];   // load word, one of CKorvoSnd::Vikter as a rule
  float djup;         // depth in metres
  int varv;           // count; negative for a sinking under load ("SL")
  wchar_t anm[26];    // remark
  wchar_t symbol[6];  // symbol of the code the remark names, at most 4 characters
};

// One row of a rotary-pressure sounding.
struct dtrykktype {
  float djup;
  int varv;
  wchar_t anm[26];
  wchar_t symbol[6];
};

// One row of a simple sounding.
struct enktype {
  float djup;
  int varv;
  wchar_t anm[26];
  wchar_t symbol[6];
};

// One row of a ram sounding. The file holds tal1 before tal2.
struct ramsondtype {
  float djup;
  int tal2;
  int tal1;
  wchar_t anm[26];
  wchar_t symbol[6];
};

// The operations of all four blocks:
//
//   Init(fil, datum)  reads the block from the stream, which stands behind the
//                     code line; `datum` is the date of that line. Reads up to
//                     and including the next marker line. Every line makes a
//                     row, an empty one a row of zeros. 0, or -1 when the
//                     stream ends right behind the code line.
//   Uppdat(fil)       writes the block (marker, code line, method line, rows),
//                     giving it a GUID first if it has none; result 0.
//   MyKod()           0 with the cursor on the first row whose remark holds
//                     the code "MY"; -1 when no row does or there are none.
//
// The default constructor makes a bare block for derived classes that fill
// the head themselves; the other takes the code system from CKorvoSnd::Kodtyp.

// Rotary sounding, code 21. Rows: "%7.3f %4ld %s" of depth, count and load
// word, the remark at column 22. A negative count is a sinking under load,
// whose load word is "SL".
class KORVO_EXPORT CKorvoDreie : public korvo::SoundingBlock<dreietype, 256> {
 public:
  CKorvoDreie() = default;
  CKorvoDreie(int konv, int rensa, int samlagring) : SoundingBlock(konv, rensa, samlagring) {}
  int Init(CStdioFileMem* fil, const wchar_t* datum);
  int Uppdat(CStdioFileMem* fil);
  int MyKod();
};

// Simple sounding, code 22. Rows: "%7.3f %4ld " and two blanks, the remark
// at column 22.
class KORVO_EXPORT CKorvoEnkel : public korvo::SoundingBlock<enktype, 256> {
 public:
  CKorvoEnkel() = default;
  CKorvoEnkel(int konv, int rensa, int samlagring) : SoundingBlock(konv, rensa, samlagring) {}
  int Init(CStdioFileMem* fil, const wchar_t* datum);
  int Uppdat(CStdioFileMem* fil);
  int MyKod();
};

// Rotary-pressure sounding, code 23. Rows as the simple sounding's, the
// remark at column 15.
class KORVO_EXPORT CKorvoDtrykk : public korvo::SoundingBlock<dtrykktype, 256> {
 public:
  CKorvoDtrykk() = default;
  CKorvoDtrykk(int konv, int rensa, int samlagring) : SoundingBlock(konv, rensa, samlagring) {}
  int Init(CStdioFileMem* fil, const wchar_t* datum);
  int Uppdat(CStdioFileMem* fil);
  int MyKod();
};

// Ram sounding, code 24. Rows: "%7.3f %ld %d" of depth, tal1 and tal2, the
// remark at column 22.
class KORVO_EXPORT CKorvoRam : public korvo::SoundingBlock<ramsondtype, 14> {
 public:
  CKorvoRam() = default;
  CKorvoRam(int konv, int rensa, int samlagring) : SoundingBlock(konv, rensa, samlagring) {}
  int Init(CStdioFileMem* fil, const wchar_t* datum);
  int Uppdat(CStdioFileMem* fil);
  int MyKod();
};

#endif  // KORVO_SOUNDINGS_BASIC_METHODS_H_
