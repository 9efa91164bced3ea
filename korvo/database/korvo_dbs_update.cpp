// Changes reaching the database file: one record and the header written in
// place under the lock, records deleted, whole files rewritten, the Avp text
// file, and the record of a sounding document.
//
// There is no journal: the lock file and the update number in the header are
// all the protection. Whoever finds the file's number ahead of the one in
// memory merges the other user's changes (DbsSync) before writing.
#include <cwchar>
#include <string>

#include "korvo/context/dir_sort.h"
#include "korvo/context/proj_path.h"
#include "korvo/database/dbs_codec.h"
#include "korvo/database/dbs_format.h"
#include "korvo/database/dbs_internal.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/messages.h"
#include "korvo/foundation/versal_text.h"
#include "korvo/platform/env.h"
#include "korvo/platform/file.h"
#include "korvo/soundings/korvo_snd.h"

using namespace korvo::dbs;  // lock modes, notice titles, record forms

namespace {

// SaveDbs starts the bounds where any record narrows them. The maxima start
// at the smallest positive number, not at the most negative one, as the files
// of the suite always had it.
constexpr double kBoundsMin = 1.7976931348623157e308;
constexpr double kBoundsMax = 2.2250738585072014e-308;

void Warn(const std::wstring& text, const wchar_t* title) {
  korvo::ShowMessage(text, korvo::MB_ICONWARNING, korvo::MB_OK, title);
}

// The level of the bottom of a point, which minz holds the lowest of: the
// ground level less the depth reached. Points of kind Avp hold a code where
// the others hold the depth, and a point without a depth reached (0, or a
// value that is no depth) stands for its ground level.
double BottomLevel(const bhdbstype& rec) {
  if (rec.bit.Test(bhbit::Avp)) return rec.z;
  const double djup = rec.djup;
  return djup > 0.0 && djup < 1e6 ? rec.z - djup : rec.z;
}

double Min(double a, double b) {
  return b < a ? b : a;
}
double Max(double a, double b) {
  return b > a ? b : a;
}

// The counters of the header that follow a record's kind. The first kind
// that holds is the one counted, in the order each operation names them.
struct KindCount {
  korvo::BhFlag flag;
  int16_t korvoprjdattype::*count;
};

constexpr KindCount kCountOnSave[] = {
    {bhbit::Bh, &korvoprjdattype::antbh},   {bhbit::Avp, &korvoprjdattype::antavp},
    {bhbit::Lje, &korvoprjdattype::antlje}, {bhbit::Lad, &korvoprjdattype::antlad},
    {bhbit::Ror, &korvoprjdattype::antror}, {bhbit::Vb, &korvoprjdattype::antvb}};

constexpr KindCount kCountOnDelete[] = {
    {bhbit::Bh, &korvoprjdattype::antbh},   {bhbit::Ror, &korvoprjdattype::antror},
    {bhbit::Avp, &korvoprjdattype::antavp}, {bhbit::Lje, &korvoprjdattype::antlje},
    {bhbit::Lad, &korvoprjdattype::antlad}, {bhbit::Vb, &korvoprjdattype::antvb}};

template <size_t N>
void AddToKind(korvoprjdattype& h, const KindCount (&order)[N], const bhbit& bit, int delta) {
  for (const KindCount& kind : order) {
    if (bit.Test(kind.flag)) {
      h.*kind.count = static_cast<int16_t>(h.*kind.count + delta);
      break;
    }
  }
  if (bit.Test(bhbit::Mil)) h.antmil = static_cast<int16_t>(h.antmil + delta);
}

}  // namespace

std::wstring CKorvoDbs::ProjectDbsPath() const {
  if (proj == nullptr) return std::wstring();
  return proj->ProjKat + korvo::kPathSeparator + CProjPath::AutoDbsNamn;
}

// The header as the file holds it now, without touching prjdat. Bytes that
// did not come read as zeros. True when all 408 came.
bool CKorvoDbs::ReadFileHeader(korvoprjdattype* header) {
  uint8_t buf[korvo::dbs::kHeaderSize] = {};
  if (dbsfil.Seek(0, CFile::begin) != 0) return false;
  const unsigned got = dbsfil.Read(buf, sizeof buf);
  korvo::DecodeDbsHeader(buf, header);
  return got == sizeof buf;
}

// Told once the lock is given back, so that other users need not wait for
// the user to read it.
int CKorvoDbs::ReportWriteFailure(int error) {
  Warn(korvo::Format(L"Kan ikke skrive database : %s\n%s", dbsfil.GetFilePath(),
                     korvo::ErrorText(error)),
       kUpdateTitle);
  return -3;
}

// ---- Adding and writing -------------------------------------------------

int CKorvoDbs::Ny(int var, bhdbstype* rec) {
  if (rec != nullptr) return list0<bhdbstype>::Ny(var, rec);
  // An empty record is zeros but for the chainage, whose "none" is not 0.
  const int result = list0<bhdbstype>::Ny(var, nullptr);
  if (result == 0) pael->sekt = m_sek_noll;
  return result;
}

void CKorvoDbs::TakeBoundsFrom(const bhdbstype& rec) {
  prjdat.minx = prjdat.maxx = rec.x;
  prjdat.miny = prjdat.maxy = rec.y;
  prjdat.maxz = rec.z;
  prjdat.minz = BottomLevel(rec);
  prjdat.minsekt = prjdat.maxsekt = rec.sekt;
}

// Every record counts, deleted ones too, and a sekt of m_sek_noll like any
// other value. The cursor comes back to the record it stood on.
void CKorvoDbs::RecomputeBounds() {
  Set_mark();
  if (Home() == 0) {
    TakeBoundsFrom(*pael);
    korvoprjdattype& h = prjdat;
    do {
      const bhdbstype& r = *pael;
      h.minx = Min(h.minx, r.x);
      h.maxx = Max(h.maxx, r.x);
      h.miny = Min(h.miny, r.y);
      h.maxy = Max(h.maxy, r.y);
      h.maxz = Max(h.maxz, r.z);
      h.minz = Min(h.minz, BottomLevel(r));
      h.minsekt = Min(h.minsekt, r.sekt);
      h.maxsekt = Max(h.maxsekt, r.sekt);
    } while ((*this)++);
  }
  Goto_mark();
}

void CKorvoDbs::CountNew(const bhbit& bit) {
  AddToKind(prjdat, kCountOnSave, bit, 1);
}

void CKorvoDbs::CountDeleted(const bhbit& bit) {
  AddToKind(prjdat, kCountOnDelete, bit, -1);
}

// A new record (pos 0) takes the place at the end of the file and is
// counted. When the write fails the record and the header are as before.
int CKorvoDbs::WriteCurrentRecord() {
  VersalText(pael->id);
  const korvoprjdattype before = prjdat;
  const int32_t old_pos = pael->pos;
  if (pael->pos == 0) {
    pael->pos = prjdat.slutpos;
    prjdat.slutpos += postlangd;
    CountNew(pael->bit);
  }
  if (WriteRecord(*pael, pael->pos) == 0) return 0;
  prjdat = before;
  pael->pos = old_pos;
  return -3;
}

int CKorvoDbs::Uppdat(int typ, wchar_t* namn, int oppna) {
  LocaleCheckAndFix();
  if (oppna == 1) dbsfil.SetFilePath(namn != nullptr ? namn : ProjectDbsPath().c_str());
  const std::wstring path = dbsfil.GetFilePath();
  if (behorighet == 1) {
    Warn(korvo::Format(L"Kan ikke opne database : %s\nBehörighet: Read only !", path),
         kUpdateTitle);
    return -3;
  }
  if (oppna == 1 && uppdaterar == 0) Dbs_rw(kModeOpen);
  if (!dbsfil.IsOpen()) {
    Warn(korvo::Format(L"Kan ikke opne database : %s", path), kUpdateTitle);
    return -3;
  }
  int32_t number_before = prjdat.uppdnrfil;
  if (oppna == 1) {
    korvoprjdattype file{};
    ReadFileHeader(&file);
    if (file.uppdnrfil > prjdat.uppdnrfil) {
      Warn(korvo::Format(L"Fel vid uppdatering av databasen (uppdnr=%d/%d)", file.uppdnrfil,
                         prjdat.uppdnrfil),
           kReadTitle);
      DbsSync(&dbsfil);
    }
    number_before = prjdat.uppdnrfil;
    ++prjdat.uppdnrfil;
  }
  double version = 0.0;
  korvo::Scan(prjdat.Dbsver, L"%lf", &version);
  postlangd = version + prjdat.verdel > kLongRecordVersion ? postlangd4 : postlangd3;

  int result = 0;
  if (pael != nullptr) {
    if (typ < 2 && prjdat.antavp + prjdat.antror + prjdat.antbh == 0 && pael->id[0] != L'\0') {
      TakeBoundsFrom(*pael);
    }
    if (typ >= 1 && typ <= 3) RecomputeBounds();
    if (typ < 2) result = WriteCurrentRecord();
  }
  if (oppna == 1) {
    if (result == 0 && typ > 0) {
      if (prjdat.harguid != 1) {
        SetGuidString(korvo::NewUuid());
        prjdat.harguid = 1;
      }
      result = WriteHeader();
    }
    // A record that did not reach the file leaves the number where the file
    // has it, so that nobody takes this list for newer than the file.
    if (result != 0) prjdat.uppdnrfil = number_before;
  }
  const int error = dbsfil.LastError();
  if (oppna == 1 && uppdaterar == 0) Dbs_rw(kModeClose);
  return result == 0 ? 0 : ReportWriteFailure(error);
}

int CKorvoDbs::Uppdat(int typ, std::wstring namn, int oppna) {
  return Uppdat(typ, namn.data(), oppna);
}

int CKorvoDbs::BeginUpdate() {
  uppdaterar = 1;
  behorighet = 0;
  dbsfil.SetFilePath(ProjectDbsPath().c_str());
  Dbs_rw(kModeOpen);
  return 0;
}

int CKorvoDbs::EndUpdate() {
  Dbs_rw(kModeClose);
  uppdaterar = 0;
  return 0;
}

// ---- Deleting -----------------------------------------------------------

int CKorvoDbs::Delete(const wchar_t* namn) {
  if (behorighet == 1 || pael == nullptr) return -1;
  const bhdbstype kept = *pael;
  const korvoprjdattype header = prjdat;
  pael->id[0] = L'\0';
  if (pael->pos > 0) {
    if (pael->pos == prjdat.slutpos - postlangd) {
      prjdat.slutpos = pael->pos;
    } else {
      ++prjdat.antrader;
    }
    CountDeleted(pael->bit);
    const int written = Uppdat(1, const_cast<wchar_t*>(namn), 1);
    if (written != 0) {
      *pael = kept;
      const int32_t number = prjdat.uppdnrfil;
      prjdat = header;
      prjdat.uppdnrfil = number;
      return written;
    }
  }
  return list0<bhdbstype>::Delete();
}

int CKorvoDbs::Delete() {
  return Delete(nullptr);
}

int CKorvoDbs::DeletePost() {
  return list0<bhdbstype>::Delete();
}

int CKorvoDbs::DeleteId() {
  if (pael == nullptr) return -1;
  const bhdbstype rec = *pael;
  if (Delete() < 0 && antal != 0) return -1;
  if (rec.bit.Test(bhbit::Avp)) {
    AvpFilUppdat();
    return 0;
  }
  if (proj == nullptr) return 0;
  const std::wstring dir = proj->DbfKat + korvo::kPathSeparator;
  CDirSort files;
  if (files.Init((dir + rec.id + L".*").c_str(), 0, 0, 0, 0) > 0 && files.Home() == 0) {
    do korvo::RemoveFile(dir + files.pael->namn);
    while (files++);
  }
  return 0;
}

// ---- Rewriting a whole file ---------------------------------------------

void CKorvoDbs::ResetForSave() {
  korvoprjdattype& h = prjdat;
  h.minsekt = h.minx = h.miny = h.minz = kBoundsMin;
  h.maxsekt = h.maxx = h.maxy = h.maxz = kBoundsMax;
  h.slutpos = korvo::dbs::kFirstRecordOffset;
  h.antbh = h.antavp = h.antror = h.antvb = h.antlje = h.antlad = h.antmil = 0;
}

int CKorvoDbs::SaveDbs(wchar_t* namn, int ny) {
  std::wstring path = namn != nullptr ? std::wstring(namn) : ProjectDbsPath();
  dbsfil.SetFilePath(path.c_str());
  if (Dbs_rw(ny == 1 ? kModeCreate : kModeOpen) != 0) {
    Warn(korvo::Format(L"Kan ikke opne database : %s\n", path),
         L"Uppdatering av ABrenmark - databas");
    return -1;
  }
  if (ny != 1) {
    korvoprjdattype file{};
    ReadFileHeader(&file);
    if (file.uppdnrfil != prjdat.uppdnrfil) {
      Warn(korvo::Format(L"Fel vid uppdatering av databasen (uppdnr=%d/%d)", file.uppdnrfil,
                         prjdat.uppdnrfil),
           kReadTitle);
      Dbs_rw(kModeClose);
      return -1;
    }
    ++prjdat.uppdnrfil;
  }
  ResetForSave();
  int result = 0;
  if (Home() == 0) {
    do {
      pael->pos = 0;
      result = Uppdat(1, path.data(), 0);
    } while (result == 0 && (*this)++);
  }
  // What was written stands in the header even after a failure, so that the
  // file stays readable.
  const int header = WriteHeader();
  const int error = dbsfil.LastError();
  Dbs_rw(kModeClose);
  if (header != 0 && result == 0) ReportWriteFailure(error);
  return result == 0 && header == 0 ? 0 : -1;
}

int CKorvoDbs::SaveDbs(std::wstring namn, int ny) {
  return SaveDbs(namn.data(), ny);
}

int CKorvoDbs::SaveSelection(int mode, const wchar_t* namn) {
  dbsfil.SetFilePath(namn);
  Dbs_rw(mode);
  uppdaterar = mode == kModeOpen ? 1 : 0;
  return 1;
}

// ---- The Avp text file and the document's record ----------------------

int CKorvoDbs::AvpFilUppdat() {
  if (proj == nullptr) return -1;
  CStdioFile out;
  if (!out.Open(proj->AvpFil.c_str(), CFile::modeCreate | CFile::modeWrite | CFile::typeText)) {
    return -1;
  }
  Node* const saved = aktel;
  const int32_t saved_plats = plats;
  std::wstring line;
  if (Home() == 0) {
    do {
      if (!pael->bit.Test(bhbit::Avp)) continue;
      line.clear();
      korvo::AppendFormat(line, L"%s %12.3f %12.3f %12.3f %12.3f %12.3f %s\n", pael->id, pael->x,
                          pael->y, pael->z, pael->sekt, pael->avst, pael->kod);
      out.WriteString(line);
    } while ((*this)++);
  }
  aktel = saved;
  plats = saved_plats;
  Set_pael();
  out.WriteString(L"*\n");
  const bool ok = out.Flush();
  out.Close();
  return ok ? 0 : -1;
}

int CKorvoDbs::SndUppdat(CKorvoSnd* snd) {
  if (snd == nullptr) return -1;
  wchar_t id[9];
  std::wcsncpy(id, snd->id, 8);
  id[8] = L'\0';
  if (Findid(id, -1) != 0) {
    Ny(1, nullptr);
    std::wcsncpy(pael->id, snd->id, 8);
    pael->id[8] = L'\0';
  }
  if (snd->Snd2Bhbit(pael) != 0) return -1;
  return Uppdat(1, nullptr, 1);
}
