// The project database in memory: every point record of the project as a
// list, the project header, and the database file with its lock file.
//
// The file is read whole on opening and is not held open between operations.
// Users on different machines are ordered by a lock file beside the database:
// whoever created it holds the database until it is deleted again.
#ifndef KORVO_DATABASE_KORVO_DBS_H_
#define KORVO_DATABASE_KORVO_DBS_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "korvo/database/dbs_records.h"
#include "korvo/export.h"
#include "korvo/foundation/list0.h"
#include "korvo/platform/file.h"

class CProjPath;
class CVaglinje;
class CDbsGUID;
class CKorvoSnd;

class KORVO_EXPORT CKorvoDbs : public list0<bhdbstype> {
 public:
  // No paths and no header: for opening with a path, which supplies them.
  CKorvoDbs();
  // An empty database of the project `proj` (not owned): a new header of
  // the current version dated today, and the paths of the database and its
  // lock file in the project directory. `proj` may be null: then no paths.
  explicit CKorvoDbs(CProjPath* proj);
  // Frees the records; the file objects close what they hold. The lock file
  // is left alone: only Dbs_rw(1001) ends a lock.
  ~CKorvoDbs() override;

  // The path now set on the database file.
  std::wstring GetDbsFileName();
  // The version that a new database gets: m_Dbsver.
  wchar_t* GetDbsverString();
  // Sets behorighet (1 read only, 0 read and write); nothing else happens.
  void ChangeReadWriteAccess(int behorighet);

  // Opening and checking (korvo_dbs_open.cpp).

  // Reads the database file into the list, repairing it on the way: records
  // that cannot be points are left out, wrong counts in the header are
  // corrected, and deleted records are packed out. Only with behorighet 0 is
  // the file changed. `namn` is the file (null: the project's database);
  // with ny 1 the file is made instead, as a header alone. `fil`, when not
  // null, is a file that the caller has open and locked: it is read instead,
  // left open, and never packed. Without a CProjPath the object makes one
  // for the directory of `namn` and owns it.
  // Returns 0; -1 when the file cannot be opened, when `namn` is given and
  // the list is not empty, or when the version is one it cannot read; -4 when the
  // header is short.
  int Init(int behorighet, int ny, wchar_t* namn, CFile* fil);
  // The same; an empty `namn` stands for the project's database.
  int Init(const std::wstring& namn, int behorighet, int ny, CFile* fil);
  // Whether another user has written since the list was read: 1 the file's
  // update number is ahead of the one in memory, 0 equal, -1 behind, -2 the
  // file could not be opened or its header not read. The list is not touched.
  int DbsKoll();
  // 1 when `rec` differs from the current record in name, position, depth
  // (or code, for kind Avp), stop code or flags; 0 when they agree. Numbers
  // agree within 0.001.
  int KollaPael(bhdbstype* rec);
  // Numbers are formatted without the process locale, so there is nothing to
  // fix: 0, and the locale is left alone.
  static int LocaleCheckAndFix();
  // Brings a date text in place to "dd.mm.yyyy": month/day/year,
  // yyyymmdd and yymmdd are turned; other text of digits, "-" and "." is cut
  // to 10 characters and kept. Returns 0, or -1 (and an empty text) when no
  // such characters begin it.
  // REQUIRES: `datum` holds at least 11 units.
  static int DatumFix(wchar_t* datum);
  // 0 when `id` is a valid point name: 1 to 8 characters out of A-Z (either
  // case), 0-9, "-" and "_", with "+" allowed as the last one. Else -1.
  int ValidIdNamn(const wchar_t* id);

  // The project's GUID in its text form, 36 characters in small letters;
  // empty when the header holds none (harguid not 1). See dbs_guid.cpp.
  std::wstring GetGuidString();
  // Stores a GUID given in its text form in the header's words. harguid is
  // not touched and nothing is written; a text that is no GUID leaves the
  // words as they were.
  void SetGuidString(const std::wstring& guid);

  // ---- Writing (korvo_dbs_update.cpp) ----
  //
  // A change reaches the file in place: the record at its offset, then the
  // header with the update number raised, under the lock. The field files of
  // a point are written before its record, so after a stop between the two
  // the database is what gives way (Restore builds it again).

  // Adds a record to the list only: `var` 1 appends a zeroed one, any other
  // value inserts before the current record. Its sekt is m_sek_noll unless
  // `rec` is given, which is then copied whole. Returns 0, or the list's
  // negative result.
  int Ny(int var, bhdbstype* rec);
  // Writes the current record and the header. `typ` 0 or less: the record
  // only; 1: the record, the bounds recomputed, the header; 2 and 3: bounds
  // and header; above 3: the header only. `oppna` 1 takes the lock and opens
  // the file `namn` (null: the project's database), compares the update
  // numbers, merging another user's changes when the file is ahead, and
  // closes again; the header is written only then. `oppna` 0 writes into the
  // file that the caller holds open, which looks after the header itself.
  // A new record (pos 0) goes to the end of the file and is counted. The
  // first header written gets a new project GUID.
  // Returns 0; -3, after a warning, when the database is read only, will not
  // open, or a seek or write fails (a record that did not reach the file
  // stays new, and the header in memory keeps the file's update number).
  int Uppdat(int typ, wchar_t* namn, int oppna);
  int Uppdat(int typ, std::wstring namn, int oppna);
  // Takes the lock and opens the project's database for reading and writing
  // until EndUpdate, so that many Uppdat(.., 1) take the lock once. A failure
  // shows at the next Uppdat. Returns 0.
  int BeginUpdate();
  // Closes the database and releases the lock of BeginUpdate. Returns 0.
  int EndUpdate();
  // Removes the current record from the list and, when it has a place in
  // the file `namn` (null: the project's database), empties its id there:
  // the last record of the file gives its place back, any other leaves a hole
  // that the next packing closes. Returns the result of the list's Delete
  // (-1 also when the last record went), -1 when read only, or -3 when the
  // file could not be written: then the record stays.
  int Delete(const wchar_t* namn);
  int Delete();
  // Delete() and removes the point's field files (for an Avp point, rewrites
  // the Avp text file instead). Returns 0, or -1.
  int DeleteId();
  // Removes the current record from the list alone; the file is not touched.
  int DeletePost();
  // Rewrites the file `namn` (null: the project's database) from the list,
  // records one after the other in list order, counts and bounds computed
  // afresh. `ny` 1 creates the file; else the file must not have changed
  // since it was read (same update number). The file is not shortened.
  // Returns 0, or -1 after a warning.
  int SaveDbs(wchar_t* namn, int ny);
  int SaveDbs(std::wstring namn, int ny);
  // Opens (`mode` 1000) or closes (1001) the selection file `namn` under the
  // lock, for a series of Uppdat(.., 0). Returns 1 whatever happened.
  int SaveSelection(int mode, const wchar_t* namn);
  // Writes the Avp text file from the records of kind Avp, in list order.
  // Returns 0, or -1 when it cannot be created or written.
  int AvpFilUppdat();
  // Makes the record of the point of `snd` from the document, adding it when
  // the list has none, and writes it with Uppdat(1, null, 1). Returns -1 for
  // a null `snd` or a document that cannot fill it; else Uppdat's result.
  int SndUppdat(CKorvoSnd* snd);

  // ---- Orders, searches and symbols (korvo_dbs_sort.cpp) ----

  // Makes current the first record whose id is `id` (put into capitals in
  // place, in the caller's buffer), or, with `pos` 0 or more, whose file
  // offset is `pos`. Returns 0 and leaves the record current and the old one
  // marked; -1 when none is found, with the cursor back where it was.
  // `id` null with `pos` -1 finds nothing.
  int Findid(wchar_t* id, long pos);
  // Makes current the record that lies at the address `rec`, which a caller
  // kept as a number. Returns 0, or -1 with the cursor back where it was.
  int FindNuel(uintptr_t rec);
  // Writes the short kind code of the current record into `kod` (at least 4
  // characters): an Avp point's own code or "AVP", "VB", "DUB", "MTN", "GVR"
  // or "BH". Returns 0.
  int Kod(wchar_t* kod);
  // The address of the map symbol image of the current record, in a buffer
  // shared by every database and good until the next call. Stores the symbol
  // number in `*nr` when `nr` is not null. With `val` 1 only images named in
  // `symboler` are given by number; others give the "unknown" image.
  wchar_t* NoSymb(int val, int* nr);
  // An empty text, whatever the record and the arguments.
  wchar_t* SvSymb(int val, int* nr);
  // Brings the selection file `namn` up to date from this list: points that
  // left the project leave it, changed points are copied (keeping their
  // place in the file), and the project's GUID is carried over. The file is
  // rewritten only when a point or the GUID changed. Returns 0 whatever
  // happened; the opening and saving warnings are all that a user sees.
  int UppdUrval(wchar_t* namn);
  int UppdUrval(std::wstring namn);

  korvoprjdattype prjdat;  // the header
  CVaglinje* vaglinje;     // set by the caller, never owned; null: no line chosen
  int32_t reserv;
  int32_t behorighet;                  // 1 read only, 0 read and write
  CDbsGUID* guidreg;                   // the GUID register, set only while restoring
  int32_t postlangd;                   // record size of the open file, 62 or 93
  int32_t postlangd3;                  // 62, the record size before version 4
  int32_t postlangd4;                  // 93, the record size of version 4
  CProjPath* proj;                     // the paths
  CFile dbsfil;                        // the database file
  CFile dbkfil;                        // the lock file
  int32_t uppdaterar;                  // 1 between BeginUpdate and EndUpdate: file open and locked
  int32_t symbolstatus;                // state of the symbol list, -1 at first
  std::vector<std::wstring> symboler;  // names of symbol images

  static wchar_t m_Dbsver[4];    // "3.0", the version of a new database
  static wchar_t m_Dbsver40[4];  // "4.0", the format with the long record
  // The chainage of a point without one.
  static constexpr double m_sek_noll = 9999999.9;
  // For the calling programs; the library does not use it.
  static constexpr double m_sek_koll = 9999999.0;

 protected:
  // Plot flags, one bit each, for the calling programs.
  static constexpr int PL_NONE = 0;
  static constexpr int PL_ID = 1 << 0;
  static constexpr int PL_SON = 1 << 1;
  static constexpr int PL_SON_180 = 1 << 2;
  static constexpr int PL_TRI = 1 << 3;
  static constexpr int PL_LAB = 1 << 4;
  static constexpr int PL_FALT = 1 << 5;
  static constexpr int PL_VB = 1 << 6;
  static constexpr int PL_PG = 1 << 7;
  static constexpr int PL_PROV = 1 << 8;
  static constexpr int PL_PROV_180 = 1 << 9;
  static constexpr int PL_DUBB = 1 << 10;
  static constexpr int PL_90 = 1 << 11;
  static constexpr int PL_95 = 1 << 12;
  static constexpr int PL_94 = 1 << 13;
  static constexpr int PL_91 = 1 << 14;
  static constexpr int PL_91_180 = 1 << 15;
  static constexpr int PL_95_180 = 1 << 16;
  static constexpr int PL_90_180 = 1 << 17;
  static constexpr int PL_POR = 1 << 18;
  static constexpr int PL_AVP = 1 << 19;
  static constexpr int PL_96 = 1 << 20;
  static constexpr int PL_97 = 1 << 21;
  static constexpr int PL_98 = 1 << 22;
  static constexpr int PL_BG = 1 << 23;
  static constexpr int PL_PUMP = 1 << 24;
  static constexpr int PL_MTN = 1 << 25;
  static constexpr int PL_MTNR = 1 << 26;
  static constexpr int PL_BERGDAG = 1 << 27;
  static constexpr int PL_MATPOS = 1 << 28;

  // The comparison of Sortera and Omsortera: 1 when the marked record goes
  // before the current one. The size of `key` chooses the column (1 name,
  // numbers first; 2 x; 3 y; 4 z; 5 chainage; 6 distance from the line; 7 to
  // 21 a flag or kind, see the .cpp), its sign the direction. Chainage and
  // distance come from `vaglinje` when one is set, points within its area
  // first. 0 for a key of 0 or beyond 21.
  int Sortval(int key) override;
  // Fills `symboler` with the names of the symbol images there are; no list
  // is kept here, so nothing is added. Returns 0.
  int ReadSymbols();

  // The lock protocol (korvo_dbs_file.cpp). The lock file is AutoDbkNamn in
  // the project directory, also when dbsfil points elsewhere.
  //   1000: take the lock and open the existing database at dbsfil's path,
  //         for reading (behorighet 1) or reading and writing, alone.
  //   1001: close the database (flushed unless read only), release the lock.
  //   1002: take the lock and create a new, empty database, alone; with
  //         behorighet 1, open an existing one for reading instead.
  // Taking the lock waits up to ten times 100 ms for another user's lock to
  // go. Returns 0, or -1; after -1 from 1000 or 1002 this object holds no
  // lock and no open file.
  int Dbs_rw(int mode);

  // Seeks to 0 and reads the header into prjdat; after a short read, what did
  // not come reads as zero bytes. Returns the number of bytes read.
  // REQUIRES: dbsfil is open.
  int ReadHeader();
  // Seeks to 0 and writes prjdat, the 408-byte form and nothing else.
  // Returns 0, or -3 when the file cannot be written.
  // REQUIRES: dbsfil is open for writing.
  int WriteHeader();
  // Reads a record of postlangd bytes at the file's position into `rec`,
  // with pos set to that position. Returns the number of bytes read; `rec` is
  // changed only when a whole record came.
  // REQUIRES: dbsfil is open.
  int ReadRecord(bhdbstype* rec);
  // Writes `rec` in the form of postlangd bytes at offset `pos`. Returns 0,
  // or -3 when the file cannot be written.
  // REQUIRES: dbsfil is open for writing.
  int WriteRecord(const bhdbstype& rec, int pos);

  // Brings the list in line with the file `fil`, which the caller has open
  // and locked, after another user wrote it: records take the file's
  // offsets, records gone from the file leave the list (the current one
  // excepted), and records new in the file are added. The current record is
  // the one about to be written; it stays current and marked. When anything
  // changed, the header becomes the file's. Returns 0.
  int DbsSync(CFile* fil);

 private:
  struct OpenScan;

  // Orders and selections (korvo_dbs_sort.cpp).
  int CompareAlongLine(int size, bool ascending);
  bool CarryProjectGuid(korvoprjdattype& to) const;
  // Writing (korvo_dbs_update.cpp).
  std::wstring ProjectDbsPath() const;
  bool ReadFileHeader(korvoprjdattype* header);
  void TakeBoundsFrom(const bhdbstype& rec);
  void RecomputeBounds();
  void CountNew(const bhbit& bit);
  void CountDeleted(const bhbit& bit);
  int WriteCurrentRecord();
  int ReportWriteFailure(int error);
  void ResetForSave();
  void PrepareNewHeader();
  // Dbsver and verdel of the version a new database gets.
  void SetCurrentVersion();
  // Opening (korvo_dbs_open.cpp).
  void MakeOwnProjPath(const wchar_t* namn);
  int CheckVersion(const std::wstring& path);
  void ReadRecords(OpenScan* scan, bool named, bool pack);
  bool TakeRecord(OpenScan* scan, bhdbstype* rec);
  void CorrectCounts(CFile& file, const OpenScan& scan);
  void FinishPacking(CFile& file, const OpenScan& scan);
  std::wstring LockFilePath() const;
  int TakeLock();
  void ReleaseLock();
  int OpenDatabase(int mode);

  // The paths that Init made when it was given none; proj points to them.
  std::unique_ptr<CProjPath> owned_proj_;
};

#endif  // KORVO_DATABASE_KORVO_DBS_H_
