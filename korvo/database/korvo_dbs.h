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

  int CompareAlongLine(int size, bool ascending);
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
