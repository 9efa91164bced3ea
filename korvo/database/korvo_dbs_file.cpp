// The database file: its lock, and the header and records at their places.
#include "korvo/database/korvo_dbs.h"

#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_codec.h"
#include "korvo/database/dbs_format.h"
#include "korvo/database/dbs_internal.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/messages.h"
#include "korvo/platform/env.h"

using namespace korvo::dbs;  // lock modes, notice titles, record forms

namespace {

// Another user's lock is waited for this many times this long: about a
// second in all.
constexpr int kLockWaits = 10;
constexpr int kLockWaitMs = 100;

// The lock file's content is a mark only: its existence is the lock.
constexpr char kLockMark[] = "Database busy!";

}  // namespace

std::wstring CKorvoDbs::LockFilePath() const {
  if (proj == nullptr) return std::wstring();
  return proj->ProjKat + korvo::kPathSeparator + CProjPath::AutoDbkNamn;
}

int CKorvoDbs::Dbs_rw(int mode) {
  if (mode != kModeOpen && mode != kModeClose && mode != kModeCreate) return -1;
  dbkfil.SetFilePath(LockFilePath().c_str());
  if (mode == kModeClose) {
    if (dbsfil.IsOpen()) {
      if (behorighet != 1) dbsfil.Flush();
      dbsfil.Close();
    }
    ReleaseLock();
    return 0;
  }
  if (TakeLock() != 0) return -1;
  if (OpenDatabase(mode) != 0) {
    ReleaseLock();
    return -1;
  }
  return 0;
}

// The lock is taken by creating the lock file where none is: the operating
// system lets exactly one of several users who try at the same moment
// succeed, so a test for the file and its creation can never both pass for
// two of them. A user who loses that race waits as for any other lock.
// Creation comes first, so that an open without contention costs one call;
// its failure says whether the lock is held or cannot be made at all, with
// no second look that another user's release could fool.
int CKorvoDbs::TakeLock() {
  const std::wstring path = dbkfil.GetFilePath();
  for (int waited = 0;; ++waited) {
    const korvo::Created created =
        korvo::CreateFileExclusive(path, {kLockMark, sizeof kLockMark - 1});
    if (created == korvo::Created::kCreated) return 0;
    if (created == korvo::Created::kFailed) {
      korvo::ShowMessage(korvo::Format(L"Failed to create a Lockfile %s\nDo you have write "
                                       L"access in this folder?",
                                       path),
                         korvo::MB_ICONWARNING);
      return -1;
    }
    if (waited == kLockWaits) return -1;
    korvo::SleepMs(kLockWaitMs);
  }
}

void CKorvoDbs::ReleaseLock() {
  const std::wstring path = dbkfil.GetFilePath();
  if (!path.empty()) korvo::RemoveFile(path);
}

// Opens or creates the database file for a caller that holds the lock.
// Returns 0 with dbsfil open, else -1.
int CKorvoDbs::OpenDatabase(int mode) {
  const std::wstring path = dbsfil.GetFilePath();
  if (mode == kModeCreate && behorighet != 1) {
    if (korvo::CanReadWrite(path)) {
      korvo::ShowMessage(L"Databasen finns redan !", korvo::MB_ICONWARNING);
      return -1;
    }
    dbsfil.Open(path.c_str(),
                CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive | CFile::typeBinary);
    return dbsfil.IsOpen() ? 0 : -1;
  }
  if (!korvo::CanReadWrite(path)) return -1;
  const unsigned access = behorighet == 1 ? CFile::modeRead | CFile::shareDenyWrite
                                          : CFile::modeReadWrite | CFile::shareExclusive;
  dbsfil.Open(path.c_str(), access | CFile::typeBinary);
  return dbsfil.IsOpen() ? 0 : -1;
}

int CKorvoDbs::ReadHeader() {
  uint8_t buf[korvo::dbs::kHeaderSize] = {};
  dbsfil.SeekToBegin();
  const unsigned got = dbsfil.Read(buf, sizeof buf);
  korvo::DecodeDbsHeader(buf, &prjdat);
  return static_cast<int>(got);
}

int CKorvoDbs::WriteHeader() {
  uint8_t buf[korvo::dbs::kHeaderSize];
  korvo::EncodeDbsHeader(prjdat, buf);
  if (dbsfil.Seek(0, CFile::begin) != 0) return -3;
  return dbsfil.Write(buf, sizeof buf) ? 0 : -3;
}

int CKorvoDbs::ReadRecord(bhdbstype* rec) {
  uint8_t buf[korvo::dbs::kLongRecordSize];
  const int size = postlangd == postlangd4 ? postlangd4 : postlangd3;
  const uint64_t at = dbsfil.GetPosition();
  const int got = static_cast<int>(dbsfil.Read(buf, static_cast<unsigned>(size)));
  if (got == size) {
    korvo::DecodeDbsRecord(buf, size, rec);
    rec->pos = static_cast<int32_t>(at);
  }
  return got;
}

int CKorvoDbs::WriteRecord(const bhdbstype& rec, int pos) {
  uint8_t buf[korvo::dbs::kLongRecordSize];
  const int size = postlangd == postlangd4 ? postlangd4 : postlangd3;
  korvo::EncodeDbsRecord(rec, size, buf);
  if (dbsfil.Seek(pos, CFile::begin) != pos) return -3;
  return dbsfil.Write(buf, static_cast<unsigned>(size)) ? 0 : -3;
}
