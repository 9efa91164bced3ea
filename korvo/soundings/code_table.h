// The code table of remark words: the codes that the remark column of a
// sounding row may carry, in digits and in letters, with the sounding methods
// each is valid for, and the load words of a rotary sounding.
//
// The table itself (CKorvoSnd::Akod1) and the lookups (CKorvoSnd::Findkod and
// its kin) are statics of the point document, process-wide; the project's
// setting MTRLKOD narrows or widens the validity when a document is made with
// a settings object (see CKorvoSnd::ReadKod), and that change stays for the
// rest of the process.
#ifndef KORVO_SOUNDINGS_CODE_TABLE_H_
#define KORVO_SOUNDINGS_CODE_TABLE_H_

// One row of the code table.
struct kod {
  int material;       // 1: a soil material, 0: any other code
  int nummer;         // the code as a number
  wchar_t kod[4];     // the code in digits
  wchar_t text[10];   // the code in letters, upper case
  wchar_t symbol[6];  // the symbol shown for the code
  int metoder[10];    // validity per method (see korvo::MethodEntry): 1 valid
};

namespace korvo {

// Rows in CKorvoSnd::Akod1 and entries in CKorvoSnd::Vikter.
inline constexpr int kCodeRows = 28;
inline constexpr int kLoadWords = 9;
inline constexpr int kMethodEntries = 10;

// The entry of kod::metoder that belongs to a sounding method code: 7 (CPT)
// has entry 0, 21..29 have 1..9. -1 for any other code, which no entry covers.
constexpr int MethodEntry(int metod) {
  if (metod == 7) return 0;
  if (metod >= 21 && metod <= 29) return metod - 20;
  return -1;
}

}  // namespace korvo

#endif  // KORVO_SOUNDINGS_CODE_TABLE_H_
