// The status of a point: what the parts of a document add up to, in the
// document's own flag bytes and in the point's database record.
//
// Parts whose classes have not joined the library yet (samples, pipes, vane
// borings, environmental data, core drilling, water loss, dynamic probing)
// already count as present by their pointer; what they would add beyond
// that is marked below with "Joins with".
#include <algorithm>
#include <cmath>
#include <cstring>

#include "korvo/database/dbs_guid.h"
#include "korvo/database/dbs_records.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/field_text.h"
#include "korvo/observations/korvo_tlk.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/korvo_cpt.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/soundings/rock_methods.h"

namespace {

using Flag = korvo::BhFlag;

// Stop codes that say how a sounding ended; anything else counts as the
// lowest, an ordinary stop.
constexpr int kStopLowest = 90;
constexpr int kStopHighest = 94;
// The interpretation tells rock met with at least this much drilling below.
constexpr float kDrilledIntoRock = 3.0f;
constexpr int kRockAssumed = 4;
constexpr int kRockDrilled = 5;
// A first row this little below the point's start depth starts the block there.
constexpr double kStartSlack = 0.05;
constexpr double kNearZero = 0.001;
constexpr double kPi = 3.14159265359;
constexpr int kVerticalDegrees = 90;

// The vertical share of a metre along the hole. An angle of exactly 0 is what
// files hold that never set one, and counts as vertical.
double VerticalShare(double lutning) {
  if (std::fabs(lutning) <= kNearZero) return 1.0;
  return std::cos((kVerticalDegrees - lutning) * kPi / 180.0);
}

// The angle rounded to whole degrees, as the flag Lutande sees it.
bool IsInclined(double lutning) {
  return static_cast<int>(lutning + 0.5) != kVerticalDegrees;
}

template <class Block>
void RaiseToLastDepth(Block* block, float* djup) {
  if (block != nullptr && block->End() == 0 && block->pael->djup > *djup) {
    *djup = block->pael->djup;
  }
}

template <class Block>
int StopOf(const Block* block) {
  if (block == nullptr) return kStopLowest;
  const int s = block->stopp;
  return s < kStopLowest || s > kStopHighest ? kStopLowest : s;
}

template <class Block>
bool IsDigitised(const Block* block) {
  return block != nullptr && block->digit > 0;
}

// The first block in the argument order that has a row coded "MY"; the
// others after it are not asked.
template <class Block, class... Rest>
bool FindMy(double* djup, Block* block, Rest*... rest) {
  if (block != nullptr && block->MyKod() == 0) {
    if (djup != nullptr) *djup = block->pael->djup;
    return true;
  }
  if constexpr (sizeof...(rest) > 0) {
    return FindMy(djup, rest...);
  } else {
    return false;
  }
}

bool HasRows(CKorvoTlk* tlk) {
  int rows = 0;
  tlk->Where(&rows);
  return rows > 0;
}

// A part's flag: cleared, and with the part present set together with Bh.
void MarkPart(::bhbit& bits, Flag flag, bool present) {
  bits.Clear(flag);
  if (present) {
    bits.Set(flag);
    bits.Set(::bhbit::Bh);
  }
}

// The kind of the document: Bh, a pipe, a measurement series or an Avp point.
void MarkKind(::bhbit& bits, const int* typ) {
  if (typ == nullptr) return;
  if (*typ == CKorvoSnd::Bh) {
    bits.Set(::bhbit::Bh);
  } else if (*typ == CKorvoSnd::Gvr) {
    bits.SetValue(::bhbit::Ror, ::bhbit::RorPz);
  } else if (*typ == CKorvoSnd::Mtn) {
    bits.SetValue(::bhbit::Ror, ::bhbit::RorMtn);
  } else if (*typ == CKorvoSnd::Avp) {
    bits.Set(::bhbit::Avp);
  }
}

// Where a block's rows start: not above the point's start depth, nor above
// where the blocks before it ended (`forra`), unless its first row says
// otherwise. A first row a hair below the point's start depth is taken as
// starting there, since the difference is rounding in the field.
template <class Block>
void SetBlockStart(Block* block, double point_start, double* forra, bool moves_forra) {
  block->startdjup = std::max(point_start, *forra);
  if (block->Home() != 0) return;
  const double first = block->pael->djup;
  if (block->startdjup > first) {
    const double below = first - point_start;
    block->startdjup = below > 0.0 && below < kStartSlack ? point_start : first;
  }
  block->End();
  if (moves_forra) *forra = std::max(static_cast<double>(block->pael->djup), *forra);
}

template <class Block>
void MarkSounding(::bhbit& bits, Flag flag, Block* block, double point_start, double* forra,
                  bool moves_forra = true) {
  MarkPart(bits, flag, block != nullptr);
  if (block != nullptr) SetBlockStart(block, point_start, forra, moves_forra);
}

// Enters GUIDs into the database's register, which exists only while the
// database is being rebuilt from the field files.
class GuidRegistrar {
 public:
  GuidRegistrar(CKorvoDbs* dbs, const wchar_t* id)
      : reg_(dbs != nullptr ? dbs->guidreg : nullptr), id_(id) {}

  void Add(int code, const std::wstring& guid) {
    if (reg_ != nullptr) korvo::RegisterGuid(*reg_, code, guid, id_);
  }

  // A method block's flag as MarkPart sets it, and its GUID under `code`.
  template <class Block>
  void MarkBlock(::bhbit& bits, Flag flag, Block* block, int code) {
    MarkPart(bits, flag, block != nullptr);
    if (block != nullptr) Add(code, block->guid);
  }

 private:
  CDbsGUID* reg_;
  const wchar_t* id_;
};

}  // namespace

int CKorvoSnd::GetMaxDjup(float* djup) {
  RaiseToLastDepth(m_cpt, djup);
  RaiseToLastDepth(m_dreie, djup);
  RaiseToLastDepth(m_ram, djup);
  RaiseToLastDepth(m_total, djup);
  RaiseToLastDepth(m_fjell, djup);
  RaiseToLastDepth(m_dtrykk, djup);
  RaiseToLastDepth(m_enkel, djup);
  // Joins with their classes: the last row's depth of m_prv and m_mil, djup
  // of m_vb's last row, z minus botniva of m_gvr (no rows needed), and the
  // last depth of m_karnborr and m_vattenf compared as doubles.
  return 0;
}

int CKorvoSnd::GetMaxStopp(int* stopp) {
  // Joins with their classes: m_karnborr, m_vattenf, m_prv and m_mil, which
  // until then count as missing, that is as 90.
  *stopp = std::max({StopOf(m_cpt), StopOf(m_dreie), StopOf(m_dtrykk), StopOf(m_enkel),
                     StopOf(m_ram), StopOf(m_total), StopOf(m_fjell)});
  return 0;
}

int CKorvoSnd::MyKod() {
  return FindMy(nullptr, m_dreie, m_ram, m_total, m_fjell, m_dtrykk, m_enkel, m_cpt) ? 0 : -1;
}

int CKorvoSnd::MyKod(double* djup) {
  *djup = 0.0;
  return FindMy(djup, m_ram, m_total, m_fjell, m_dtrykk, m_dreie, m_enkel, m_cpt) ? 0 : -1;
}

int CKorvoSnd::IfDigitaliserad() {
  const bool digitised = IsDigitised(m_cpt) || IsDigitised(m_dreie) || IsDigitised(m_total) ||
                         IsDigitised(m_enkel) || IsDigitised(m_ram) || IsDigitised(m_dtrykk) ||
                         IsDigitised(m_fjell);
  // Joins with the samples: m_prv with digit 1 or more.
  return digitised ? 1 : 0;
}

// The rock is "drilled" when the sounding went on at least 3 metres below it.
int CKorvoSnd::TolkatBerg(float djup) {
  if (m_tlk == nullptr && !New(60)) return -1;
  float maxdjup = 0.0f;
  GetMaxDjup(&maxdjup);
  const float rest = maxdjup - djup;
  const float level = static_cast<float>(z - djup * VerticalShare(lutning));
  return m_tlk->InsertBerg(level, rest >= kDrilledIntoRock ? kRockDrilled : kRockAssumed);
}

int CKorvoSnd::TolkatZBerg(double niva) {
  if (m_tlk == nullptr && !New(60)) return -1;
  return m_tlk->InsertBerg(static_cast<float>(niva), kRockDrilled);
}

int CKorvoSnd::SetSndBhstat() {
  ::bhbit bits;
  std::memcpy(bits.b, bhbit, sizeof bits.b);
  MarkKind(bits, typ);

  double forra = 0.0;
  MarkSounding(bits, ::bhbit::Cpt, m_cpt, startdjup, &forra);
  MarkSounding(bits, ::bhbit::Dreie, m_dreie, startdjup, &forra);
  MarkSounding(bits, ::bhbit::Ram, m_ram, startdjup, &forra);
  MarkSounding(bits, ::bhbit::Enkel, m_enkel, startdjup, &forra);
  MarkSounding(bits, ::bhbit::Dtrykk, m_dtrykk, startdjup, &forra);
  MarkSounding(bits, ::bhbit::Total, m_total, startdjup, &forra);
  MarkSounding(bits, ::bhbit::Fjell, m_fjell, startdjup, &forra, false);
  MarkPart(bits, ::bhbit::Karnborr, m_karnborr != nullptr);
  MarkPart(bits, ::bhbit::VattenF, m_vattenf != nullptr);

  bits.Clear(::bhbit::Startvarde);
  bits.SetTo(::bhbit::Tlk, m_tlk != nullptr && HasRows(m_tlk));
  bits.SetTo(::bhbit::Mykod, MyKod() == 0);
  // Joins with the samples: Startvarde when the size of m_prv's startvarde
  // exceeds 0.001, then m_prv->PrvStat(&bits).
  MarkPart(bits, ::bhbit::Prv, m_prv != nullptr);
  // Joins with the environmental data: Startvarde when the size of the
  // first value of m_mil's header exceeds 0.001.
  MarkPart(bits, ::bhbit::Mil, m_mil != nullptr);
  bits.SetTo(::bhbit::Lutande, IsInclined(lutning));
  // Joins with the pipes: m_gvr->GvrStat(&bits) when m_gvr exists.

  std::memcpy(bhbit, bits.b, sizeof bits.b);
  return 1;
}

int CKorvoSnd::Snd2Bhbit(bhdbstype* rec) {
  GuidRegistrar guids(m_dbs, rec->id);
  ::bhbit& bits = rec->bit;
  rec->x = x;
  rec->y = y;
  rec->z = z;
  rec->sekt = sek;
  rec->avst = avst;
  if (m_mtn == nullptr) guids.Add(korvo::kGuidBorehole, guid);
  MarkKind(bits, typ);
  if (typ != nullptr && *typ == Vb) {
    bits.Set(::bhbit::Vb);
    // Joins with the vane borings: m_vb's GUID under korvo::kGuidVb.
  }

  rec->djup = 0.0f;
  GetMaxDjup(&rec->djup);
  int stopp = 0;
  GetMaxStopp(&stopp);
  rec->stopp = static_cast<int16_t>(stopp);

  // Joins with their classes: the GUIDs of m_dpt (korvo::kGuidDpt),
  // m_karnborr (kGuidKarnborr) and m_vattenf (kGuidVattenF).
  MarkPart(bits, ::bhbit::Dpt, m_dpt != nullptr);
  guids.MarkBlock(bits, ::bhbit::Cpt, m_cpt, korvo::kGuidCpt);
  guids.MarkBlock(bits, ::bhbit::Dreie, m_dreie, korvo::kGuidDreie);
  guids.MarkBlock(bits, ::bhbit::Ram, m_ram, korvo::kGuidRam);
  guids.MarkBlock(bits, ::bhbit::Total, m_total, korvo::kGuidTotal);
  guids.MarkBlock(bits, ::bhbit::Fjell, m_fjell, korvo::kGuidFjell);
  guids.MarkBlock(bits, ::bhbit::Dtrykk, m_dtrykk, korvo::kGuidDtrykk);
  guids.MarkBlock(bits, ::bhbit::Enkel, m_enkel, korvo::kGuidEnkel);
  MarkPart(bits, ::bhbit::Karnborr, m_karnborr != nullptr);
  MarkPart(bits, ::bhbit::VattenF, m_vattenf != nullptr);

  // Metres in rock, from the first row marked as rock. Each rock level that
  // is new to the interpretation is saved below, once.
  float berg = 0.0f;
  bool rock_is_new = false;
  float rock = 0.0f;
  if (m_total != nullptr && m_total->BergKontroll(&rock) == 0) {
    berg = std::max(rec->djup - rock, 0.0f);
    rock_is_new = TolkatBerg(rock) == 0 || rock_is_new;
  }
  if (m_fjell != nullptr && m_fjell->BergKontroll(&rock) == 0) {
    berg = std::max(rec->djup - rock, berg);
    rock_is_new = TolkatBerg(rock) == 0 || rock_is_new;
  }
  // Joins with core drilling, only when neither Total nor Fjell is set: if
  // m_karnborr->ZBerg(&niva) gives 0, rock_is_new from TolkatZBerg(niva) == 0
  // and berg := rec->djup - (z - niva) / f, f being VerticalShare(lutning)
  // and 1 when that is not above 0.
  rec->berg = berg;
  korvo::CopyField(rec->datum, datum);

  bits.Clear(::bhbit::Mykod);
  if (MyKod() == 0) {
    bits.Set(::bhbit::Mykod);
    MyKod(&rec->mykod);
  }

  bits.Clear(::bhbit::Startvarde);
  bits.SetTo(::bhbit::Tlk,
             m_tlk != nullptr && (HasRows(m_tlk) || std::fabs(m_tlk->gvy) > kNearZero));

  bits.Clear(::bhbit::Prvvanlig);
  bits.Clear(::bhbit::Prvtyp);
  bits.Clear(::bhbit::Skv);
  // Joins with the samples: m_prv's GUID under korvo::kGuidPrv, Startvarde
  // as in SetSndBhstat, and m_prv->PrvStat(&bits).
  MarkPart(bits, ::bhbit::Prv, m_prv != nullptr);
  // Joins with the environmental data: m_mil's GUID under korvo::kGuidMil,
  // Startvarde as in SetSndBhstat.
  MarkPart(bits, ::bhbit::Mil, m_mil != nullptr);

  bits.SetTo(::bhbit::Lutande, IsInclined(lutning));
  bits.SetTo(::bhbit::Kommentar, !text1.empty());
  // Joins with the pipes: m_gvr->GvrStat(&bits) and m_gvr's GUID under
  // korvo::kGuidGvr.

  // The save comes back here through the database; by then the rock stands
  // in the interpretation, InsertBerg has nothing to change, and no further
  // save follows.
  if (rock_is_new) Uppdat(nullptr, nullptr);

  // Only the long records of version 4 keep a symbol. Its number is that of
  // the database's current record, which is `rec` when the database asks.
  rec->symbol = -1;
  if (m_dbs != nullptr && m_dbs->prjdat.Dbsver[0] == L'4' && m_dbs->pael != nullptr) {
    int number = -1;
    m_dbs->NoSymb(0, &number);
    rec->symbol = number;
  }
  return 0;
}
