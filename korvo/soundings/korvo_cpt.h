// The cone penetration test of a .SND file (block 7): depth rows of three
// measured values with a remark and, when a row has them, extra values behind
// it; a keyword header stored as a block of its own (107) behind the rows; and
// the presentation settings in the point's .cpt file (cpt_presentation.h).
// The bytes are described in doc/snd_format.md.
#ifndef KORVO_SOUNDINGS_KORVO_CPT_H_
#define KORVO_SOUNDINGS_KORVO_CPT_H_

#include "korvo/export.h"
#include "korvo/foundation/list0.h"
#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/soundings/cpt_presentation.h"
#include "korvo/soundings/sounding_block.h"

// One row of a CPT.
struct cpttype {
  float djup;                     // depth in metres
  int matv1, matv2, matv3;        // the three measured values, whole numbers
  int tal4;                       // extra integer
  double varde1, varde2, varde3;  // extra values
  wchar_t anm[26];                // remark
  wchar_t symbol[6];              // symbol of the code the remark names, at most 4 characters
};

// One keyword of a CPT header.
struct cptheadertype {
  wchar_t nyckel[26];  // one word
  wchar_t varde[128];
};

// The keywords of a CPT, in file order. Keywords the class knows: "MA" (cone
// area factor), "MB" (sleeve area factor), "HN" (probe number); all others are
// carried as text for the calling programs.
class KORVO_EXPORT CKorvoCptHeader : public list0<cptheadertype> {
 public:
  // Reads keyword lines up to and including the next marker line; the stream
  // stands behind the code line. Every line makes a row, an empty one a row
  // with an empty keyword. Result 0.
  int Init(CStdioFileMem* fil);
  // Writes the marker, the code line "107 " and the keyword lines, also when
  // there are none. Result 0.
  int Uppdat(CStdioFileMem* fil);

  // 0 with the cursor on the first (Find) or last (FindReverse) keyword that
  // equals `nyckel` without regard to case; -1 when there is none.
  int Find(const wchar_t* nyckel);
  int FindReverse(const wchar_t* nyckel);
  // Gives `nyckel` the value `varde`, appending the keyword when it is new.
  // Both are cut to their fields. Result 0.
  int SetValue(const wchar_t* nyckel, const wchar_t* varde);

  // "MA", 1.0 when absent. The setter writes only a value more than 0.001
  // away from 1.0, so a value near 1.0 leaves an old one in place.
  double SpetsAreaFaktor();
  void SpetsAreaFaktor(double faktor);
  // "MB", -0.0 when absent. The setter writes only a value of a size above
  // 0.001.
  double MantelAreaFaktor();
  void MantelAreaFaktor(double faktor);
  // "HN", 0 when absent. The setter writes only a number other than 0.
  int SondNummer();
  void SondNummer(int nummer);
};

// CPT, block code 7. Rows: "%7.3f %6ld %6ld %6ld  " of depth and the measured
// values, the remark at column 30, and for a row with extra values (tal4 not
// 0, varde1 above 0, or varde2 or varde3 not 0) "%ld %7.1lf %7.3lf %7.1lf" of
// tal4 and the three values at column 56.
class KORVO_EXPORT CKorvoCpt : public korvo::SoundingBlock<cpttype, 256> {
 public:
  CKorvoCpt() = default;
  CKorvoCpt(int konv, int rensa, int samlagring) : SoundingBlock(konv, rensa, samlagring) {}

  // Reads the block up to and including the next marker line (the stream
  // stands behind the code line), then the .cpt file beside the stream's
  // file. The header block 107 that follows is read by the document. 0, or
  // -1 when the stream ends right behind the code line.
  int Init(CStdioFileMem* fil, const wchar_t* datum);
  // Writes the block and the header block; with presentation.andrad set, also
  // the .cpt file, which is made new only when rad7a, rad7b or rad7d differ
  // from their defaults. A .cpt file that cannot be read or written does not
  // stop the block. Result 0.
  int Uppdat(CStdioFileMem* fil);
  // 0 with the cursor on the first row whose remark holds the code "MY"; -1
  // when no row does or there are none.
  int MyKod();
  // Adds to the interpretation of `snd` (its m_tlk, at its ground level z) a
  // level for each row whose remark names a material, at z - djup * faktor;
  // a material below a stretch of rows without one first closes that stretch
  // with an unknown layer "X" at the level of its last row. `grov` not 0
  // names the materials in coarse groups. Only the remark codes count, never
  // the measured values. 0; -1 when the block has no rows or `snd` has no
  // interpretation.
  int AutoTolk(CKorvoSnd* snd, double faktor, int grov);

  CKorvoCptPresentation presentation;
  CKorvoCptHeader header;
};

#endif  // KORVO_SOUNDINGS_KORVO_CPT_H_
