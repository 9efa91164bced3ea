// Opening the project database: the version test, the repair of the file
// while it is read, and the two ways of noticing another user's writes.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <cwchar>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_codec.h"
#include "korvo/database/dbs_format.h"
#include "korvo/database/dbs_internal.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/coding.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/messages.h"
#include "korvo/foundation/versal_text.h"
#include "korvo/platform/env.h"

using namespace korvo::dbs;  // lock modes, notice titles, record forms

namespace {

// Versions that the reader takes although they are not the current one: a
// small step either way, and the old 2.0 to 2.4 files whose records have the
// current form.
constexpr double kVersionTolerance = 0.16;
constexpr double kOldReadableLow = 2.0;
constexpr double kOldReadableHigh = 2.4;

int Warn(const std::wstring& text, const wchar_t* title = kReadTitle) {
  return korvo::ShowMessage(text, korvo::MB_ICONWARNING, korvo::MB_OK, title);
}

// Reads the header of `file` into `header`; what did not come reads as
// zeros. Returns the number of bytes read.
int ReadHeaderOf(CFile& file, korvoprjdattype* header) {
  uint8_t buf[korvo::dbs::kHeaderSize] = {};
  file.SeekToBegin();
  const unsigned got = file.Read(buf, sizeof buf);
  korvo::DecodeDbsHeader(buf, header);
  return static_cast<int>(got);
}

void WriteHeaderTo(CFile& file, const korvoprjdattype& header) {
  uint8_t buf[korvo::dbs::kHeaderSize];
  korvo::EncodeDbsHeader(header, buf);
  file.SeekToBegin();
  file.Write(buf, sizeof buf);
}

double NumberIn(const wchar_t* text, bool* readable) {
  double v = 0.0;
  const int got = korvo::Scan(text, L"%lf", &v);
  if (readable != nullptr) *readable = got == 1;
  return v;
}

// The kinds a record claims: Bh, Avp, a pipe, Lje, Lad, Vb.
int KindCount(const bhbit& bit) {
  return bit.Test(bhbit::Bh) + bit.Test(bhbit::Avp) + bit.Test(bhbit::Ror) + bit.Test(bhbit::Lje) +
         bit.Test(bhbit::Lad) + bit.Test(bhbit::Vb);
}

// A point name as it is compared: in capitals.
std::wstring IdKey(const wchar_t (&id)[9]) {
  std::wstring key(korvo::FieldText(id));
  VersalText(key);
  return key;
}

bool IsBlank(wchar_t c) {
  return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n' || c == L'\v' || c == L'\f';
}

std::wstring Trimmed(const std::wstring& text) {
  size_t first = 0;
  size_t last = text.size();
  while (first < last && IsBlank(text[first])) ++first;
  while (last > first && IsBlank(text[last - 1])) --last;
  return text.substr(first, last - first);
}

std::wstring DayMonthYear(int day, int month, int year) {
  return korvo::Format(L"%02d.%02d.%04d", day, month, year);
}

// month/day/year, the form with exactly two slashes, as day.month.year.
std::wstring SlashDateTurned(const std::wstring& text) {
  std::wstring blanks = text;
  int slashes = 0;
  for (wchar_t& c : blanks) {
    if (c == L'/') {
      c = L' ';
      ++slashes;
    }
  }
  int month = 0;
  int day = 0;
  int year = 0;
  if (slashes == 2 && korvo::Scan(blanks, L"%d %d %d", &month, &day, &year) == 3) {
    return DayMonthYear(day, month, year);
  }
  return text;
}

// yyyymmdd and yymmdd (years from 14 on in the 1900s) as day.month.year;
// other text is kept.
std::wstring NumericDateTurned(const std::wstring& text) {
  int n = 0;
  korvo::Scan(text, L"%d", &n);
  if (n >= 19000001 && n <= 20999999) return DayMonthYear(n % 100, n / 100 % 100, n / 10000);
  if (text.size() == 6 && n > 100) {
    const int century = n >= 140000 ? 1900 : 2000;
    return DayMonthYear(n % 100, n / 100 % 100, century + n / 10000);
  }
  return text;
}

}  // namespace

// What the reading of the records keeps track of. The records are read from
// one copy of the file's bytes; the repairs are made in that copy and go to
// the file in one write, which leaves the same bytes as writing each repair
// in turn would.
struct CKorvoDbs::OpenScan {
  static constexpr int kStart = korvo::dbs::kFirstRecordOffset;

  std::unique_ptr<uint8_t[]> bytes;  // the file from the first record to its end
  size_t loaded = 0;                 // bytes read into `bytes`
  int rpos = kStart;                 // where the next record is read
  int wpos = kStart;                 // where it goes while packing
  int nbh = 0;
  int nror = 0;
  int nvb = 0;
  int fraga = -1;  // the answer about line information: -1 not asked, 1 yes, 0 no
  bool packar = false;
  size_t dirty_from = SIZE_MAX;  // the bytes changed, as offsets into `bytes`
  size_t dirty_to = 0;

  int End() const { return kStart + static_cast<int>(loaded); }
  uint8_t* At(int pos) { return bytes.get() + (pos - kStart); }
  void Touched(int pos, int size) {
    dirty_from = std::min(dirty_from, static_cast<size_t>(pos - kStart));
    dirty_to = std::max(dirty_to, static_cast<size_t>(pos - kStart + size));
  }
  void Zero(int pos, int size) {
    std::memset(At(pos), 0, static_cast<size_t>(size));
    Touched(pos, size);
  }
  void Move(int from, int to, int size) {
    std::memmove(At(to), At(from), static_cast<size_t>(size));
    Touched(to, size);
  }
  void Load(CFile& file) {
    const uint64_t length = file.GetLength();
    if (length <= static_cast<uint64_t>(kStart)) return;
    const size_t want = static_cast<size_t>(length) - kStart;
    bytes.reset(new uint8_t[want]);  // not zeroed: only what is read is used
    file.Seek(kStart, CFile::begin);
    loaded = file.Read(bytes.get(), static_cast<unsigned>(want));
  }
  void WriteChanges(CFile& file) {
    if (dirty_from >= dirty_to) return;
    file.Seek(kStart + static_cast<int64_t>(dirty_from), CFile::begin);
    file.Write(bytes.get() + dirty_from, static_cast<unsigned>(dirty_to - dirty_from));
  }
};

int CKorvoDbs::Init(int read_only, int ny, wchar_t* namn, CFile* fil) {
  LocaleCheckAndFix();
  if (proj == nullptr) MakeOwnProjPath(namn);
  behorighet = read_only;
  const std::wstring path = namn != nullptr
                                ? std::wstring(namn)
                                : proj->ProjKat + korvo::kPathSeparator + CProjPath::AutoDbsNamn;
  if (namn != nullptr && antal > 0) {
    Warn(korvo::Format(L"Kan ikke lese database: %s\nListe ej tom!", path));
    return -1;
  }
  if (fil == nullptr) {
    dbsfil.SetFilePath(path.c_str());
    Dbs_rw(ny == 1 ? kModeCreate : kModeOpen);
  }
  CFile& file = fil != nullptr ? *fil : dbsfil;
  if (!file.IsOpen()) {
    Warn(korvo::Format(L"Kan ikke opne database: %s", file.GetFilePath()));
    return -1;
  }
  // The caller's own file keeps its lock: only a lock taken here is released.
  const auto release = [&] { return fil == nullptr ? Dbs_rw(kModeClose) : 0; };
  if (ny == 1 && fil == nullptr) {
    // An object made without a project has no header yet; a new database
    // gets that of the current version rather than zeros that nothing opens.
    if (prjdat.Dbsver[0] == L'\0') PrepareNewHeader();
    WriteHeaderTo(file, prjdat);
    return release();
  }
  if (ReadHeaderOf(file, &prjdat) < korvo::dbs::kHeaderSize) {
    Warn(korvo::Format(L"Feil vid innlesning av databas : %s", file.GetFilePath()));
    release();
    return -4;
  }
  if (CheckVersion(file.GetFilePath()) != 0) {
    release();
    return -1;
  }
  OpenScan scan;
  scan.Load(file);
  ReadRecords(&scan, namn != nullptr, prjdat.antrader > 0 && behorighet != 1 && fil == nullptr);
  scan.WriteChanges(file);
  if (behorighet == 0) CorrectCounts(file, scan);
  if (scan.packar) FinishPacking(file, scan);
  release();
  return 0;
}

int CKorvoDbs::Init(const std::wstring& namn, int read_only, int ny, CFile* fil) {
  std::wstring copy = namn;
  return Init(read_only, ny, copy.empty() ? nullptr : copy.data(), fil);
}

// The project directory is the database's: everything before the last
// separator that is not the first character.
void CKorvoDbs::MakeOwnProjPath(const wchar_t* namn) {
  std::wstring dir = namn != nullptr ? namn : L"";
  const size_t last = dir.rfind(korvo::kPathSeparator[0]);
  if (last != std::wstring::npos && last > 0) dir.resize(last);
  owned_proj_ = std::make_unique<CProjPath>();
  owned_proj_->SetPath(dir.c_str());
  proj = owned_proj_.get();
}

// Decides postlangd by the version of the header just read. Returns 0 when
// the records can be read, else warns and returns -1. An old file of
// version 2.0 to 2.4 is taken as the current version in memory only.
int CKorvoDbs::CheckVersion(const std::wstring& path) {
  bool readable = false;
  const double v = NumberIn(prjdat.Dbsver, &readable) + prjdat.verdel;
  const bool long_form = v > kLongRecordVersion;
  const double c = NumberIn(long_form ? m_Dbsver40 : m_Dbsver, nullptr);
  postlangd = long_form ? postlangd4 : postlangd3;
  if (readable) {
    if (std::trunc(v) >= std::trunc(c) && v <= c) return 0;
    if (std::fabs(v - c) <= kVersionTolerance) return 0;
    if (v > kOldReadableLow && v < kOldReadableHigh) {
      SetCurrentVersion();
      return 0;
    }
  }
  Warn(
      korvo::Format(L"Feil vid innlesning av databas : %s\nFelaktig version: %.1lf\nNu gäller "
                    L"version: %.1lf\nVälj Konvertera i Arkiv !",
                    path, v, c));
  return -1;
}

// Reads every whole record of scan->bytes into the list. `named`: the file
// was named by the caller, so records behind slutpos are read as well.
// `pack`: deleted records are packed out on the way.
void CKorvoDbs::ReadRecords(OpenScan* scan, bool named, bool pack) {
  const int size = postlangd;
  Reserve((scan->End() - scan->rpos) / size);
  while (scan->rpos + size <= scan->End()) {
    bhdbstype rec;  // every field but pos is decoded
    korvo::DecodeDbsRecord(scan->At(scan->rpos), size, &rec);
    rec.pos = scan->rpos;
    const bool has_id = rec.id[0] != L'\0';
    if (!has_id || KindCount(rec.bit) == 0) {
      // A named slot without a kind behind the end is left-over junk: clear
      // it, so that it is not mistaken for a record when slutpos grows.
      if (scan->rpos >= prjdat.slutpos && behorighet != 1 && has_id) scan->Zero(scan->rpos, size);
      scan->rpos += size;
      continue;
    }
    if (rec.bit.Test(bhbit::Bh)) ++scan->nbh;
    if (rec.bit.Test(bhbit::Ror)) ++scan->nror;
    if (rec.bit.Test(bhbit::Vb)) ++scan->nvb;
    if (scan->rpos >= prjdat.slutpos && !named) {
      Warn(korvo::Format(L"Kontroll av database: stopp på id %8s", rec.id));
      return;
    }
    if (TakeRecord(scan, &rec)) {
      if (pack) {
        scan->packar = true;
        const int from = scan->rpos;
        rec.pos = scan->wpos;
        scan->Move(from, scan->wpos, size);
        // The flags as repaired, the other bytes as read.
        const int lje_byte = korvo::dbs::record::kBit.offset + bhbit::Lje.byte;
        scan->At(scan->wpos)[lje_byte] = rec.bit.b[bhbit::Lje.byte];
        if (from > scan->wpos) scan->Zero(from, size);
        scan->wpos += size;
      }
      Ny(1, &rec);
    }
    scan->rpos += size;
  }
}

// Whether a record with an id and a kind is a point: exactly one kind, or a
// kind with line information that the user lets go. Warns about the others.
bool CKorvoDbs::TakeRecord(OpenScan* scan, bhdbstype* rec) {
  const int kinds = KindCount(rec->bit);
  if (kinds == 2 && rec->bit.Test(bhbit::Lje)) {
    if (scan->fraga == -1) {
      const int answer = korvo::ShowMessage(
          korvo::Format(L"Fel i databas: id %8s har också linjeinformation. Ta bort detta för "
                        L"samtliga felaktiga?",
                        rec->id),
          korvo::MB_ICONQUESTION, korvo::MB_YESNO, kCheckTitle);
      scan->fraga = answer == korvo::IDYES ? 1 : 0;
    }
    if (scan->fraga != 1) return false;
    rec->bit.Clear(bhbit::Lje);
    return true;
  }
  if (kinds != 1) {
    Warn(korvo::Format(L"Feil i database: id %8s är feilaktig", rec->id));
    return false;
  }
  return true;
}

void CKorvoDbs::CorrectCounts(CFile& file, const OpenScan& scan) {
  if (prjdat.antbh == scan.nbh && prjdat.antror == scan.nror && prjdat.antvb == scan.nvb) return;
  const std::wstring text =
      korvo::Format(L"%s%d %d %d %d %d %d %s", L"Infomation i prosjektdata ej lika med inläst",
                    prjdat.antbh, scan.nbh, prjdat.antror, scan.nror, prjdat.antvb, scan.nvb,
                    L"Projektdata har korrigerats enligt inlästa värden");
  prjdat.antbh = static_cast<int16_t>(scan.nbh);
  prjdat.antror = static_cast<int16_t>(scan.nror);
  prjdat.antvb = static_cast<int16_t>(scan.nvb);
  WriteHeaderTo(file, prjdat);
  Warn(text, korvo::kAppTitle);
}

// The records now end at wpos. Slots that were skipped behind the end count
// as packed too, so a file with an old tail reports a difference.
void CKorvoDbs::FinishPacking(CFile& file, const OpenScan& scan) {
  const int packed = (scan.rpos - scan.wpos) / postlangd;
  if (packed != prjdat.antrader) {
    Warn(korvo::Format(L"Fel vid packning !\nPackade =%d\nRaderade=%d", packed, prjdat.antrader),
         korvo::kAppTitle);
  }
  prjdat.antrader = 0;
  prjdat.slutpos = scan.wpos;
  ++prjdat.uppdnrfil;
  WriteHeaderTo(file, prjdat);
}

int CKorvoDbs::DbsKoll() {
  if (proj == nullptr) return -2;
  dbsfil.SetFilePath((proj->ProjKat + korvo::kPathSeparator + CProjPath::AutoDbsNamn).c_str());
  if (Dbs_rw(kModeOpen) != 0) return -2;
  korvoprjdattype file_header{};
  const int got = ReadHeaderOf(dbsfil, &file_header);
  Dbs_rw(kModeClose);
  if (got < korvo::dbs::kHeaderSize) return -2;
  if (file_header.uppdnrfil > prjdat.uppdnrfil) return 1;
  return file_header.uppdnrfil == prjdat.uppdnrfil ? 0 : -1;
}

// The file's records are looked up by name and by offset through two
// indexes, so that a project of many points syncs in one pass over each list.
int CKorvoDbs::DbsSync(CFile* fil) {
  bhdbstype* const akt = pael;
  Set_mark();
  CKorvoDbs file_list(proj);
  file_list.Init(0, 1, nullptr, fil);

  std::unordered_map<std::wstring, const bhdbstype*> by_id;
  std::unordered_map<int32_t, const bhdbstype*> by_pos;
  by_id.reserve(static_cast<size_t>(file_list.antal));
  by_pos.reserve(static_cast<size_t>(file_list.antal));
  for (auto* n = file_list.forsta; n != nullptr; n = n->next) {
    by_id.emplace(IdKey(n->rec.id), &n->rec);
    by_pos.emplace(n->rec.pos, &n->rec);
  }

  bool changed = false;
  // Every record once: take the file's offset, or leave when the file has no
  // such point. The record about to be written stays whatever the file says.
  if (Home() == 0) {
    for (;;) {
      const auto found = by_id.find(IdKey(pael->id));
      if (found != by_id.end()) {
        if (found->second->pos != pael->pos) {
          pael->pos = found->second->pos;
          changed = true;
        }
      } else if (pael != akt) {
        const bool last = aktel->next == nullptr;
        changed = true;
        // Delete steps on to the next record by itself.
        if (list0<bhdbstype>::Delete() != 0 || last) break;
        continue;
      }
      if ((*this)++ == nullptr) break;
    }
  }

  // A record about to be written that the file lost by name may have been
  // renamed by the other user: the file's record at its offset tells. A
  // record whose name is already cleared is a deletion on its way out and
  // keeps its place.
  if (akt != nullptr && akt->id[0] != L'\0' && akt->pos != 0 && !by_id.contains(IdKey(akt->id))) {
    const auto at = by_pos.find(akt->pos);
    if (at == by_pos.end()) {
      akt->pos = 0;
    } else {
      const std::wstring old_id(korvo::FieldText(akt->id));
      const std::wstring new_id(korvo::FieldText(at->second->id));
      if (korvo::ShowMessage(korvo::Format(L"Hittar inte Id %s!\nDet tycks vara omdöpt till "
                                           L"%s.\nSka Id ändras från %s till %s?",
                                           old_id, new_id, old_id, new_id),
                             korvo::MB_ICONQUESTION, korvo::MB_YESNO,
                             kCheckTitle) == korvo::IDYES) {
        std::memcpy(akt->id, at->second->id, sizeof akt->id);
        akt->pos = at->second->pos;
      }
    }
  }

  std::unordered_set<std::wstring> held;
  held.reserve(static_cast<size_t>(antal));
  for (auto* n = forsta; n != nullptr; n = n->next) held.insert(IdKey(n->rec.id));
  End();
  for (auto* n = file_list.forsta; n != nullptr; n = n->next) {
    if (held.contains(IdKey(n->rec.id))) continue;
    Ny(1, &n->rec);
    changed = true;
  }

  if (changed) prjdat = file_list.prjdat;
  Goto_mark();
  Set_mark();
  return 0;
}

int CKorvoDbs::KollaPael(bhdbstype* rec) {
  const bhdbstype* cur = pael;
  if (cur == nullptr || rec == nullptr) return 1;
  const auto differs = [](double a, double b) { return std::fabs(a - b) > 0.001; };
  if (korvo::FieldText(cur->id) != korvo::FieldText(rec->id)) return 1;
  if (differs(cur->x, rec->x) || differs(cur->y, rec->y) || differs(cur->z, rec->z) ||
      differs(cur->sekt, rec->sekt) || differs(cur->avst, rec->avst)) {
    return 1;
  }
  if (cur->bit.Test(bhbit::Avp)) {
    if (korvo::FieldText(cur->kod) != korvo::FieldText(rec->kod)) return 1;
  } else if (differs(cur->djup, rec->djup)) {
    return 1;
  }
  if (cur->stopp != rec->stopp) return 1;
  return std::memcmp(cur->bit.b, rec->bit.b, sizeof cur->bit.b) != 0 ? 1 : 0;
}

int CKorvoDbs::LocaleCheckAndFix() {
  return 0;
}

int CKorvoDbs::DatumFix(wchar_t* datum) {
  if (datum == nullptr) return -1;
  std::wstring work = datum;
  if (work.size() == 1) work.clear();
  work = SlashDateTurned(Trimmed(work));
  work.resize(std::min(work.size(), work.find_first_not_of(L"0123456789-.")));
  if (work.empty()) {
    datum[0] = L'\0';
    return -1;
  }
  work = NumericDateTurned(work);
  work.resize(std::min<size_t>(work.size(), 10));
  std::wmemcpy(datum, work.c_str(), work.size() + 1);
  return 0;
}

int CKorvoDbs::ValidIdNamn(const wchar_t* id) {
  if (id == nullptr) return -1;
  std::wstring name = id;
  if (name.empty() || name.size() > 8) return -1;
  VersalText(name);
  for (size_t i = 0; i < name.size(); ++i) {
    const wchar_t c = name[i];
    const bool plain =
        (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'-' || c == L'_';
    if (!plain && !(c == L'+' && i + 1 == name.size())) return -1;
  }
  return 0;
}
