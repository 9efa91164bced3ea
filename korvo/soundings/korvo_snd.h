// The document of one investigation point: its .SND file (position, free text,
// identity and the sounding method blocks) and the other field files that
// share the point's name, each read into an object that the document owns.
#ifndef KORVO_SOUNDINGS_KORVO_SND_H_
#define KORVO_SOUNDINGS_KORVO_SND_H_

#include <string>

#include "korvo/export.h"
#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/platform/file.h"
#include "korvo/soundings/code_table.h"

class CProjPath;
class CAutoIni;
class CKorvoDbs;
class CKorvoDreie;
class CKorvoFjell;
class CKorvoDtrykk;
class CKorvoEnkel;
class CKorvoRam;
class CKorvoTotal;
class CKorvoVb;
class CKorvoCpt;
class CKorvoDpt;
class CKorvoTlk;
class CKorvoPrv;
class CKorvoMil;
class CKorvoGvr;
class CKorvoMtn;
class CKarnborr;
class CVattenF;
struct bhdbstype;

class KORVO_EXPORT CKorvoSnd {
 public:
  // Document kinds.
  static const int Bh;
  static const int Gvr;
  static const int Mtn;
  static const int Avp;
  static const int Vb;
  static const int Stenlin;
  static const int Stenhall;
  // The chainage of a point that has none.
  static const double Seknoll;
  static int Vimfilter;
  // The code-system tag that new method blocks take; "SGF" unless changed.
  static const wchar_t* Kodtyp;
  // The code table of remark words (28 rows, Ikod1) and the load words of a
  // rotary sounding (9, Ivikt); see code_table.h.
  static kod Akod1[28];
  static const int Ikod1;
  static const wchar_t* const Vikter[9];
  static const int Ivikt;

  CKorvoSnd();
  CKorvoSnd(CProjPath* proj, CKorvoDbs* dbs);
  CKorvoSnd(CProjPath* proj, CKorvoDbs* dbs, CAutoIni* ini);
  CKorvoSnd(const CKorvoSnd&) = delete;
  CKorvoSnd& operator=(const CKorvoSnd&) = delete;
  virtual ~CKorvoSnd();

  // Makes the part of a block or file code (21 Dreie, 60 TLK, ...), replacing
  // one that exists. 1 on success, 0 for an unknown code or a part that
  // cannot be made.
  int New(int code);

  // Sets the names of all seven streams from a point name, or from any of the
  // point's file names when `path` is given (see SetFilePath in the .cpp).
  int SetFilePath(const wchar_t* id, const wchar_t* path);

  // Reads the point. A null `path` takes the file from the project's field
  // directory. 0 on success, -1 when a part of another file could not be made.
  int Init(const wchar_t* id, const wchar_t* path);
  int Init(const wchar_t* id, const std::wstring& path) { return Init(id, path.c_str()); }

  // Writes the point's files (or its memory form); result 0.
  int Uppdat(const wchar_t* id, const wchar_t* path);
  // Writes a ground-water point / a vane boring: 0, or -1 without the part or
  // when the file cannot be opened.
  int UppdatGvr(const wchar_t* id, const wchar_t* path);
  int UppdatVb(const wchar_t* id, const wchar_t* path);
  // A measurement series is written by its own object: sets the names, -1.
  int UppdatMtn(const wchar_t* id, const wchar_t* path);

  // Removes the .TLK (60), .MIL (45) or .PRV (40) file of the point; result 1.
  int DeleteFil(int code);

  // The memory side of the .SND stream, null unless memory mode is on.
  CMemFile* MemFile();
  // Memory mode for the .SND stream; turning it on also makes the file names
  // the fixed temporary ones for good.
  void SetMemFile(int flag);

  // The first row of the code table that a word of `text` names and that is
  // valid for `metod` (7, 21..26), or with `alla` 1 for any method; null when
  // there is none. The text is upper-cased, cut at the first "<", ">" or ","
  // and split into at most five words; `*antal` gets their number, -1 for an
  // empty text. `mod` chooses the words: n >= 1 the n-th only (null when there
  // are fewer), 0 all, -2 all but materials only, -1 whether the text holds
  // the code `nyckel` names. Row order decides, not word order. `kodtyp` has
  // no effect: codes are taken in digits and in letters under both systems.
  static kod* Findkod(int metod, const wchar_t* text, int mod, int* antal, const wchar_t* nyckel,
                      const wchar_t* kodtyp, int alla);
  static kod* FindkodSGF(int metod, const wchar_t* text, int mod, int* antal, const wchar_t* nyckel,
                         const wchar_t* kodtyp, int alla);
  // The index in Akod1 of the row the first word of `text` names and that is
  // valid for `metod` (or any method with `alla` 1); -1 when there is none.
  int FindkodOrderNo(int metod, const wchar_t* text, int alla);
  // 1..9, the place of `text` (any case) among Vikter; 0 when it is none.
  static int Findvikt(const wchar_t* text);

  // The status of the point (borehole_status.cpp). All of these move the
  // cursors of the blocks they look at.
  //
  // Raises *djup to the deepest depth of any part; result 0.
  int GetMaxDjup(float* djup);
  // *stopp := the highest stop code of the parts, a missing part or a code
  // outside 90..94 counting as 90; so always 90..94. Result 0.
  int GetMaxStopp(int* stopp);
  // 0 when a block has a row coded "MY", else -1. The second form also sets
  // *djup to that row's depth (0 when there is none).
  int MyKod();
  int MyKod(double* djup);
  // 1 when a block (or the samples) is digitised, else 0.
  int IfDigitaliserad();
  // Adds a rock level to the interpretation, making one if there is none:
  // at `djup` along an inclined hole, or at the level `niva`. The result of
  // CKorvoTlk::InsertBerg (0 changed, -1 already there), or -1 when no
  // interpretation can be made.
  int TolkatBerg(float djup);
  int TolkatZBerg(double niva);
  // Fills the database record of the point: position, flags, deepest depth,
  // highest stop code, metres in rock, date, "MY" depth and map symbol, and
  // registers the GUIDs of the parts under rec->id while the database keeps
  // a register. A rock level that is new to the interpretation is added and
  // the document saved. REQUIRES: rec->id set. Result 0.
  int Snd2Bhbit(bhdbstype* rec);

  // Operations kept for the calling programs that have no effect here.
  void AddVbToPrv() {}
  int AutoTolk(int, int) { return 0; }
  int StoppKod(int code, wchar_t*) { return code; }
  int RensaKansligareMetod(std::wstring*) { return -1; }

  CProjPath* m_proj;
  CKorvoDbs* m_dbs;
  CAutoIni* m_ini;
  wchar_t id[9];
  wchar_t orgnamn[9];
  unsigned char bhbit[7];
  double x, y, z;
  double sek;
  double avst;
  float startdjup;
  wchar_t datum[14];
  double lutning;
  int hdrtal;
  int metod;
  wchar_t skapad[11];
  wchar_t andrad[11];
  const int* typ;
  int decimaler;
  int konvflagga;
  int rensa;
  int samlagring;
  int andradflagga;
  int tempfiler;
  std::wstring text1, text2, text3, text4;
  std::wstring guid;
  std::wstring guidrad1, guidrad2, guidrad3;
  CKorvoDreie* m_dreie;
  CKorvoFjell* m_fjell;
  CKorvoDtrykk* m_dtrykk;
  CKorvoEnkel* m_enkel;
  CKorvoRam* m_ram;
  CKorvoTotal* m_total;
  CKorvoVb* m_vb;
  CKorvoCpt* m_cpt;
  CKorvoDpt* m_dpt;
  CKorvoTlk* m_tlk;
  CKorvoPrv* m_prv;
  CKorvoMil* m_mil;
  CKorvoGvr* m_gvr;
  CKorvoMtn* m_mtn;
  CKarnborr* m_karnborr;
  CVattenF* m_vattenf;
  CStdioFile m_kodfil;
  CStdioFileMem m_snd, m_tlkfil, m_prvfil, m_gvrfil, m_mtnfil, m_milfil, m_vbfil;

 private:
  void Clear();
  void ReadHead();
  void ReadBlocks();
  void InitMethod(int code);
  void ReadCptHeader();
  void ReadIdentity(std::wstring& line);
  bool SkipToMarker(std::wstring& line);
  int ReadOtherFiles();
  void CloseStreams();
  bool HasSoundingBlock() const;
  void WriteHead();
  void WriteIdentity();
  void WriteMethods();
  void WriteOtherParts();
  void ReadTlk();
  void WriteTlk();
  void NotifyDatabase();
  void SetNamesFromId();
  void SetNamesForSave(const wchar_t* pid, const wchar_t* path);
  CStdioFileMem* Stream(int index);
  // Applies the project's code setting to the table; see code_table.cpp.
  int ReadKod();
  int ReadKodfil(const std::wstring& path);
  // Fills bhbit and the start depth of each block from the parts; result 1.
  int SetSndBhstat();

  // A CProjPath that Uppdat made for a document without one.
  CProjPath* own_proj_;
  std::wstring line_;
};

#endif  // KORVO_SOUNDINGS_KORVO_SND_H_
