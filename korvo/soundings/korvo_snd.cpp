#include "korvo/soundings/korvo_snd.h"

#include <cstring>
#include <new>

#include "korvo/context/file_names.h"
#include "korvo/context/proj_path.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/field_file.h"
#include "korvo/foundation/field_text.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/messages.h"
#include "korvo/foundation/versal_text.h"
#include "korvo/observations/korvo_tlk.h"
#include "korvo/platform/env.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/korvo_cpt.h"
#include "korvo/soundings/rock_methods.h"

const int CKorvoSnd::Bh = 1;
const int CKorvoSnd::Gvr = 2;
const int CKorvoSnd::Mtn = 3;
const int CKorvoSnd::Avp = 4;
const int CKorvoSnd::Vb = 5;
const int CKorvoSnd::Stenlin = 6;
const int CKorvoSnd::Stenhall = 7;
const double CKorvoSnd::Seknoll = 9999999.9;
int CKorvoSnd::Vimfilter = 3;
const wchar_t* CKorvoSnd::Kodtyp = L"SGF";

namespace {

constexpr int kCodeCpt = 7;
constexpr int kCodeKarnborr = 13;
constexpr int kCodeVattenF = 14;
constexpr int kCodeVb = 20;
constexpr int kCodeDreie = 21;
constexpr int kCodeEnkel = 22;
constexpr int kCodeDtrykk = 23;
constexpr int kCodeRam = 24;
constexpr int kCodeTotal = 25;
constexpr int kCodeFjell = 26;
constexpr int kCodeDpt = 35;
constexpr int kCodePrv = 40;
constexpr int kCodeMil = 45;
constexpr int kCodeGvr = 50;
constexpr int kCodeTlk = 60;
constexpr int kCodeDocumentMark = 97;
constexpr int kCodeContinue = 98;
constexpr int kCodeIdentity = 99;
constexpr int kCodeCptHeader = 107;

constexpr double kVertical = 90.0;
constexpr unsigned kOpenWrite = 0x1001;

// The name of a part in the status text when it cannot be made.
const wchar_t* PartName(int code) {
  switch (code) {
    case kCodeDreie:
      return L"Dreie";
    case kCodeRam:
      return L"Ram";
    case kCodeTotal:
      return L"Totalsondering";
    case kCodeFjell:
      return L"Fjellsondering";
    case kCodeDtrykk:
      return L"Dreietrykksondering";
    case kCodeEnkel:
      return L"Enkelsondering";
    case kCodeCpt:
      return L"CPT";
    case kCodeDpt:
      return L"DPT";
    case kCodeKarnborr:
      return L"Kärnborr";
    case kCodeVattenF:
      return L"Vattenförlustmätning";
    case kCodeTlk:
      return L"TLK";
    case kCodePrv:
      return L"PRV";
    case kCodeMil:
      return L"MIL";
    case kCodeVb:
      return L"VB";
    case kCodeGvr:
      return L"GVR";
    default:
      return nullptr;
  }
}

void ReportPartNotMade(int code, const wchar_t* id) {
  korvo::ShowStatus(
      korvo::Format(L"Kan inte skapa klassinformation för %s (Id=%s)", PartName(code), id));
}

bool IsMethodCode(int code) {
  return PartName(code) != nullptr && code < kCodePrv;
}

// The date of a code line: behind the code and one blank. Codes 40, 45 and 60
// belong to other files and carry none here.
bool CodeLineDate(int code, std::wstring_view line, std::wstring& date) {
  size_t from;
  if (code >= 0 && code <= 9) {
    from = 2;
  } else if (code >= 10 && code <= 96 && code != kCodePrv && code != kCodeMil && code != kCodeTlk) {
    from = 3;
  } else {
    return false;
  }
  date.assign(line.size() > from ? line.substr(from) : std::wstring_view());
  korvo::NormaliseDate(date);
  return true;
}

// Where a file name begins in a path: behind the last separator of either kind.
size_t NameStart(const std::wstring& path) {
  const size_t sep = path.find_last_of(L"/\\");
  return sep == std::wstring::npos ? 0 : sep + 1;
}

// True when `what` stands in the name after its first character.
bool ContainsAfterFirst(const std::wstring& name, const wchar_t* what) {
  const size_t pos = name.find(what);
  return pos != std::wstring::npos && pos > 0;
}

}  // namespace

CKorvoSnd::CKorvoSnd() : m_proj(nullptr), m_dbs(nullptr), m_ini(nullptr) {
  Clear();
}

CKorvoSnd::CKorvoSnd(CProjPath* proj, CKorvoDbs* dbs) : m_proj(proj), m_dbs(dbs), m_ini(nullptr) {
  Clear();
}

CKorvoSnd::CKorvoSnd(CProjPath* proj, CKorvoDbs* dbs, CAutoIni* ini)
    : m_proj(proj), m_dbs(dbs), m_ini(ini) {
  Clear();
  ReadKod();
}

void CKorvoSnd::Clear() {
  id[0] = orgnamn[0] = datum[0] = skapad[0] = andrad[0] = L'\0';
  std::memset(bhbit, 0, sizeof bhbit);
  x = y = z = 0.0;
  sek = Seknoll;
  avst = 0.0;
  startdjup = 0.0f;
  lutning = kVertical;
  hdrtal = 0;
  metod = 0;
  typ = nullptr;
  decimaler = 3;
  konvflagga = 1;
  rensa = 0;
  samlagring = 0;
  andradflagga = 0;
  tempfiler = 0;
  m_dreie = nullptr;
  m_fjell = nullptr;
  m_dtrykk = nullptr;
  m_enkel = nullptr;
  m_ram = nullptr;
  m_total = nullptr;
  m_vb = nullptr;
  m_cpt = nullptr;
  m_dpt = nullptr;
  m_tlk = nullptr;
  m_prv = nullptr;
  m_mil = nullptr;
  m_gvr = nullptr;
  m_mtn = nullptr;
  m_karnborr = nullptr;
  m_vattenf = nullptr;
  own_proj_ = nullptr;
}

// Parts go in a fixed order: Dreie, Fjell, Dtrykk, Enkel, Ram, Vb, Total,
// Cpt, Dpt, Tlk, Prv, Mil, Gvr, Karnborr, VattenF.
CKorvoSnd::~CKorvoSnd() {
  delete m_dreie;
  delete m_fjell;
  delete m_dtrykk;
  delete m_enkel;
  delete m_ram;
  delete m_total;
  delete m_cpt;
  delete m_tlk;
  delete own_proj_;
}

namespace {

// A later block of the same code replaces the one before.
template <class Part>
int MakePart(Part*& part, int konv, int rensa, int samlagring) {
  delete part;
  part = new (std::nothrow) Part(konv, rensa, samlagring);
  return part != nullptr ? 1 : 0;
}

}  // namespace

int CKorvoSnd::New(int code) {
  switch (code) {
    case kCodeDreie:
      return MakePart(m_dreie, konvflagga, rensa, samlagring);
    case kCodeEnkel:
      return MakePart(m_enkel, konvflagga, rensa, samlagring);
    case kCodeDtrykk:
      return MakePart(m_dtrykk, konvflagga, rensa, samlagring);
    case kCodeRam:
      return MakePart(m_ram, konvflagga, rensa, samlagring);
    case kCodeTotal:
      return MakePart(m_total, konvflagga, rensa, samlagring);
    case kCodeFjell:
      return MakePart(m_fjell, konvflagga, rensa, samlagring);
    case kCodeCpt:
      return MakePart(m_cpt, konvflagga, rensa, samlagring);
    case kCodeTlk:
      return MakePart(m_tlk, konvflagga, rensa, samlagring);
    default:
      return 0;
  }
}

CStdioFileMem* CKorvoSnd::Stream(int index) {
  CStdioFileMem* streams[7] = {&m_snd,    &m_tlkfil, &m_prvfil, &m_gvrfil,
                               &m_mtnfil, &m_milfil, &m_vbfil};
  return streams[index];
}

// Any of a point's file names may be handed in: the extension of a .GVR,
// .PRV or .VB name is replaced by .SND, and the other six names are formed
// from its stem. Only the file name is upper-cased, never the directory.
int CKorvoSnd::SetFilePath(const wchar_t* pid, const wchar_t* path) {
  std::wstring name;
  if (path == nullptr) {
    name = m_proj ? m_proj->DbfKat : std::wstring();
    name += korvo::kPathSeparator;
    name += pid ? pid : L"";
    name += korvo::kExtSnd;
  } else {
    name = path;
  }
  const size_t start = NameStart(name);
  std::wstring file = name.substr(start);
  VersalText(file);
  if (ContainsAfterFirst(file, korvo::kExtGvr) || ContainsAfterFirst(file, korvo::kExtPrv)) {
    file.resize(file.size() - 4);
  } else if (ContainsAfterFirst(file, korvo::kExtVb)) {
    file.resize(file.size() - 3);
  }
  if (!ContainsAfterFirst(file, korvo::kExtSnd)) file += korvo::kExtSnd;
  name.replace(start, std::wstring::npos, file);

  const std::wstring stem = name.substr(0, name.size() >= 3 ? name.size() - 3 : 0);
  for (int i = 0; i < 7; ++i) {
    if (tempfiler == 1) {
      const std::wstring dir = m_proj ? m_proj->DbfKat : std::wstring();
      Stream(i)->SetFilePath(dir + korvo::kPathSeparator + korvo::kTempNames[i]);
    } else if (i == 0) {
      Stream(i)->SetFilePath(name);
    } else {
      Stream(i)->SetFilePath(stem + korvo::kStreamSuffixes[i]);
    }
  }
  return 0;
}

void CKorvoSnd::SetNamesFromId() {
  SetFilePath(id, nullptr);
}

// Without arguments a save keeps the names it has, unless there are none yet
// or they are the temporary ones.
void CKorvoSnd::SetNamesForSave(const wchar_t* pid, const wchar_t* path) {
  if (pid == nullptr && path == nullptr) {
    if (m_snd.GetFilePath().empty() || tempfiler == 1) SetNamesFromId();
  } else {
    SetFilePath(pid, path);
  }
}

// ---- Reading -------------------------------------------------------------

int CKorvoSnd::Init(const wchar_t* pid, const wchar_t* path) {
  SetFilePath(pid, path);
  korvo::CopyField(id, pid ? pid : L"");
  orgnamn[0] = L'\0';
  const std::wstring path_read = m_snd.GetFilePath();
  korvo::TakeFileDates(path_read, korvo::FileDateForm::kSounding, skapad, andrad);
  if (korvo::FileExists(path_read) && korvo::OpenFieldFile(m_snd, path_read)) {
    typ = &Bh;
    ReadHead();
    ReadBlocks();
  }
  if (ReadOtherFiles() < 0) return -1;
  CloseStreams();
  SetSndBhstat();
  return 0;
}

// The head: five numbers, line 6, and up to four free text lines. A line that
// is missing, empty or a marker leaves its field as it is.
void CKorvoSnd::ReadHead() {
  double* numbers[5] = {&x, &y, &z, &sek, &avst};
  bool more = true;
  for (double* field : numbers) {
    more = more && m_snd.ReadString(line_);
    if (more && !line_.empty() && !korvo::IsMarker(line_)) korvo::Scan(line_, L"%lf", field);
  }
  more = more && m_snd.ReadString(line_);
  const bool real_line = more && !line_.empty() && !korvo::IsMarker(line_);
  if (!real_line) {
    lutning = kVertical;
    startdjup = 0.0f;
    hdrtal = 0;
  } else if (korvo::Scan(line_, L"%f %d %lf", &startdjup, &hdrtal, &lutning) < 3) {
    lutning = kVertical;
    hdrtal = 0;
  }
  if (real_line) {
    std::wstring* texts[4] = {&text1, &text2, &text3, &text4};
    for (int place = 0; m_snd.ReadString(line_) && !korvo::IsMarker(line_); ++place) {
      if (place < 4) *texts[place] = line_;
    }
  }
  // Whatever the head held, the blocks start behind the first marker.
  m_snd.SeekToBegin();
  while (m_snd.ReadString(line_) && !korvo::IsMarker(line_)) {
  }
}

// Reads lines up to and including the next marker. False at the end of the file.
bool CKorvoSnd::SkipToMarker(std::wstring& line) {
  while (m_snd.ReadString(line)) {
    if (korvo::IsMarker(line)) return true;
  }
  return false;
}

void CKorvoSnd::ReadBlocks() {
  std::wstring date;
  bool have = m_snd.ReadString(line_);
  while (have) {
    if (korvo::IsMarker(line_) && !m_snd.ReadString(line_)) break;
    // A code line without a number leaves the code of the block before.
    korvo::Scan(line_, L"%d", &metod);
    const int code = metod;
    if (CodeLineDate(code, line_, date)) korvo::CopyField(datum, date);

    if (code == kCodeIdentity) {
      ReadIdentity(line_);
    } else if (code == kCodeDocumentMark) {
      SkipToMarker(line_);
    } else if (IsMethodCode(code)) {
      if (New(code)) {
        InitMethod(code);
      } else {
        ReportPartNotMade(code, id);
      }
    } else if (code == kCodeCptHeader) {
      ReadCptHeader();
    } else if (code != kCodeContinue) {
      korvo::ShowStatus(korvo::Format(L"Okänd metodkod (%d) för Id: %s", code, id));
      SkipToMarker(line_);
    }
    have = m_snd.ReadString(line_);
  }
}

// The block reads itself up to and including the marker that ends it.
void CKorvoSnd::InitMethod(int code) {
  switch (code) {
    case kCodeDreie:
      m_dreie->Init(&m_snd, datum);
      break;
    case kCodeEnkel:
      m_enkel->Init(&m_snd, datum);
      break;
    case kCodeDtrykk:
      m_dtrykk->Init(&m_snd, datum);
      break;
    case kCodeRam:
      m_ram->Init(&m_snd, datum);
      break;
    case kCodeTotal:
      m_total->Init(&m_snd, datum);
      break;
    case kCodeFjell:
      m_fjell->Init(&m_snd, datum);
      break;
    case kCodeCpt:
      m_cpt->Init(&m_snd, datum);
      break;
    default:
      break;
  }
}

// The keyword header of a CPT follows its block, and belongs to it.
void CKorvoSnd::ReadCptHeader() {
  if (m_cpt) {
    m_cpt->header.Init(&m_snd);
  } else {
    korvo::ShowStatus(korvo::Format(L"Kan inte skapa klassinformation för CPTHeader (Id=%s)", id));
  }
}

// Block 99: the first word (in present files "GUID") and the identity behind
// it, then up to three further lines kept as they are.
void CKorvoSnd::ReadIdentity(std::wstring& line) {
  std::wstring word;
  const bool have_line = m_snd.ReadString(line);
  if (have_line && korvo::Scan(line, L"%s", &word) == 1 && word[0] != L'*') {
    korvo::CopyField(orgnamn, word);
    const size_t word_end = line.find(word) + word.size();
    if (line.size() > word.size()) guid = line.substr(std::min(word_end + 1, line.size()));
  } else {
    korvo::ShowStatus(korvo::Format(L"Originalnamnet saknas (id=%s)!", id));
    korvo::CopyField(orgnamn, id);
  }
  if (!have_line) return;
  std::wstring* extra[3] = {&guidrad1, &guidrad2, &guidrad3};
  for (int place = 0; m_snd.ReadString(line) && !korvo::IsMarker(line); ++place) {
    if (place < 3) *extra[place] = line;
  }
}

// The other files of the point, each read only when it exists and its part
// does not exist yet.
int CKorvoSnd::ReadOtherFiles() {
  struct OtherFile {
    int code;
    CStdioFileMem* stream;
    bool exists;
  };
  const OtherFile files[] = {{kCodeTlk, &m_tlkfil, m_tlk != nullptr},
                             {kCodePrv, &m_prvfil, m_prv != nullptr},
                             {kCodeMil, &m_milfil, m_mil != nullptr},
                             {kCodeVb, &m_vbfil, m_vb != nullptr},
                             {kCodeGvr, &m_gvrfil, m_gvr != nullptr}};
  for (const OtherFile& f : files) {
    if (f.exists || !korvo::FileExists(f.stream->GetFilePath())) continue;
    if (f.code == kCodeVb) {
      typ = &Vb;
    } else if (f.code == kCodeGvr) {
      typ = &Gvr;
    } else if (f.code != kCodeTlk) {
      typ = &Bh;
    }
    if (!New(f.code)) {
      ReportPartNotMade(f.code, id);
      return -1;
    }
    if (f.code == kCodeTlk) ReadTlk();
  }
  return 0;
}

void CKorvoSnd::CloseStreams() {
  for (int i = 0; i < 7; ++i) {
    CStdioFileMem* s = Stream(i);
    if (s->strom) s->Close();
  }
}

// ---- Writing -------------------------------------------------------------

bool CKorvoSnd::HasSoundingBlock() const {
  return m_dreie || m_ram || m_cpt || m_total || m_enkel || m_fjell || m_dtrykk || m_dpt;
}

int CKorvoSnd::Uppdat(const wchar_t* pid, const wchar_t* path) {
  if (m_proj == nullptr) {
    own_proj_ = new CProjPath();
    own_proj_->SetPath(korvo::TempDirectory().c_str());
    m_proj = own_proj_;
    if (id[0] == L'\0') korvo::CopyField(id, L"x");
  }
  if (pid != nullptr && pid[0] == L'\0') pid = id;

  if (samlagring == 0 && (m_gvr || m_mtn || m_vb)) {
    if (m_gvr) {
      if (UppdatGvr(pid, path) == -1) {
        korvo::ShowMessage(
            korvo::Format(L"Kunde inte spara protokollet för id: %s\nAvbryter!", pid ? pid : id));
      }
    } else if (m_mtn) {
      if (UppdatMtn(pid, path) == -1) {
        korvo::ShowMessage(
            korvo::Format(L"Kunde inte spara protokollet för id: %s\nAvbryter!", pid ? pid : id));
      }
    } else if (UppdatVb(pid, path) == -1) {
      korvo::ShowMessage(
          korvo::Format(L"Kunde icke spare protokoll for id: %s\nAvbryter!", pid ? pid : id));
    }
    return 0;
  }

  SetNamesForSave(pid, path);

  const bool memory = m_snd.minne != 0;
  if (!m_snd.Open(m_snd.GetFilePath().c_str(), kOpenWrite)) {
    korvo::ShowMessage(
        korvo::Format(L"Kan inte öppna protokollfilen:\n%s\nAvbryter!", m_snd.GetFilePath()));
  } else {
    if (memory) m_snd.WriteString(korvo::kSectionSnd);
    WriteHead();
    WriteIdentity();
    WriteMethods();
    if (samlagring == 0) {
      if (HasSoundingBlock()) m_snd.WriteString(L"*\n");
      if (!memory) m_snd.Close();
      WriteOtherParts();
      if (memory) m_snd.Close();
    } else {
      if (HasSoundingBlock() || m_karnborr || m_vattenf) m_snd.WriteString(L"*\n");
      m_snd.Close();
      if (rensa) {
        for (CStdioFileMem* s : {&m_tlkfil, &m_prvfil, &m_milfil})
          korvo::RemoveFile(s->GetFilePath());
      }
    }
  }
  NotifyDatabase();
  return 0;
}

void CKorvoSnd::WriteHead() {
  line_.clear();
  korvo::AppendFormat(line_, L"%f\n%f\n%f\n%f\n%f\n%f %d %lf\n", x, y, z, sek, avst, startdjup,
                      hdrtal, lutning);
  if (!text1.empty() || !text2.empty() || !text3.empty() || !text4.empty()) {
    korvo::AppendFormat(line_, L"%s\n%s\n%s\n%s\n", text1, text2, text3, text4);
  }
  korvo::AppendFormat(line_, L"*\n%d\n40 %d\n", kCodeDocumentMark, samlagring);
  m_snd.WriteString(line_);
}

// An identity read from a file keeps its GUID and extra lines; any other
// document (new, or one whose block 99 began with another word) gets a new
// GUID at every save until it has been read back.
void CKorvoSnd::WriteIdentity() {
  line_.clear();
  if (std::wstring_view(orgnamn) == L"GUID") {
    korvo::AppendFormat(line_, L"*\n%d\n%s %s\n", kCodeIdentity, L"GUID", guid);
    for (const std::wstring* extra : {&guidrad1, &guidrad2, &guidrad3}) {
      if (extra->empty()) break;
      korvo::AppendFormat(line_, L"%s\n", *extra);
    }
  } else {
    guid = korvo::NewUuid();
    korvo::AppendFormat(line_, L"*\n%d\n%s %s\n", kCodeIdentity, L"GUID", guid);
  }
  m_snd.WriteString(line_);
}

void CKorvoSnd::WriteMethods() {
  // The remaining parts' writers are added here, in file order, as their
  // classes join the library: Dreie, Ram, Total, Fjell, Dtrykk, Enkel, CPT,
  // DPT, Kärnborr, Vattenförlust.
  if (m_dreie) m_dreie->Uppdat(&m_snd);
  if (m_ram) m_ram->Uppdat(&m_snd);
  if (m_total) m_total->Uppdat(&m_snd);
  if (m_fjell) m_fjell->Uppdat(&m_snd);
  if (m_dtrykk) m_dtrykk->Uppdat(&m_snd);
  if (m_enkel) m_enkel->Uppdat(&m_snd);
  if (m_cpt) m_cpt->Uppdat(&m_snd);
}

void CKorvoSnd::WriteOtherParts() {
  if (m_tlk) WriteTlk();
}

// An interpretation that does not read is no part of the point.
void CKorvoSnd::ReadTlk() {
  if (m_tlk->Init(&m_tlkfil, id, nullptr) != 0) {
    delete m_tlk;
    m_tlk = nullptr;
  }
}

// The interpretation always goes to a file of its own, in memory mode to the
// temporary one; a file that will not open is passed over.
void CKorvoSnd::WriteTlk() {
  if (!m_tlkfil.Open(m_tlkfil.GetFilePath().c_str(), kOpenWrite)) return;
  m_tlk->Uppdat(&m_tlkfil, nullptr);
  m_tlkfil.Close();
}

// The field files are written by now; the database record follows them, so
// that after a stop between the two the files are the newer.
void CKorvoSnd::NotifyDatabase() {
  if (m_dbs != nullptr && tempfiler == 0) m_dbs->SndUppdat(this);
  if (tempfiler == 1) {
    tempfiler = 0;
    SetNamesFromId();
    tempfiler = 1;
  } else {
    andradflagga = 0;
  }
}

int CKorvoSnd::UppdatGvr(const wchar_t* pid, const wchar_t* path) {
  SetNamesForSave(pid, path);
  // The ground-water part writes itself here once its class joins the
  // library; until then no document can hold one.
  return -1;
}

int CKorvoSnd::UppdatVb(const wchar_t* pid, const wchar_t* path) {
  SetNamesForSave(pid, path);
  // The vane-boring part writes itself here once its class joins the
  // library; until then no document can hold one.
  return -1;
}

int CKorvoSnd::UppdatMtn(const wchar_t* pid, const wchar_t* path) {
  SetNamesForSave(pid, path);
  return -1;
}

int CKorvoSnd::DeleteFil(int code) {
  SetNamesFromId();
  const CStdioFileMem* stream = code == kCodeTlk   ? &m_tlkfil
                                : code == kCodeMil ? &m_milfil
                                : code == kCodePrv ? &m_prvfil
                                                   : nullptr;
  if (stream && korvo::FileExists(stream->GetFilePath())) korvo::RemoveFile(stream->GetFilePath());
  return 1;
}

CMemFile* CKorvoSnd::MemFile() {
  return m_snd.MemFile();
}

void CKorvoSnd::SetMemFile(int flag) {
  m_snd.SetMemFile(flag);
  if (flag == 1) tempfiler = 1;
}
