// The orders of the project's points, the searches for one point, and a
// point's kind code and map symbol.
#include "korvo/database/korvo_dbs.h"

#include <cstring>
#include <cwchar>
#include <string>

#include "korvo/context/no_case.h"
#include "korvo/context/vaglinje.h"
#include "korvo/database/dbs_guid.h"
#include "korvo/foundation/format.h"
#include "korvo/foundation/versal_text.h"

// The host of the symbol image server, a setting of the build: pass
// -DKORVO_SYMBOL_SERVER=L\"https://host\" to use another.
#ifndef KORVO_SYMBOL_SERVER
#define KORVO_SYMBOL_SERVER L"https://symbols.korvo.local"
#endif

namespace {

// Column keys of Sortval, by their size.
constexpr int kKeyName = 1;
constexpr int kKeyX = 2;
constexpr int kKeyY = 3;
constexpr int kKeyZ = 4;
constexpr int kKeySekt = 5;
constexpr int kKeyAvst = 6;
constexpr int kKeyFirstFlag = 7;
constexpr int kKeyLast = 21;

// The flag or kind that keys 7 to 21 sort by. A piece of several bits (Ror,
// Prvtyp) counts as set when any of its bits is.
constexpr korvo::BhFlag kFlagOfKey[kKeyLast - kKeyFirstFlag + 1] = {
    bhbit::Cpt,       bhbit::Ror,        bhbit::Avp,    bhbit::Vb,     bhbit::Fjell,
    bhbit::Total,     bhbit::Ram,        bhbit::Enkel,  bhbit::Dtrykk, bhbit::Dreie,
    bhbit::Prvvanlig, bhbit::Startvarde, bhbit::Prvtyp, bhbit::Skv,    bhbit::Tlk};

// Ascending: 1 when the right value is above the left; descending: 1 when
// the left value is the right one or above, so equal values answer 1.
int CompareValues(double left, double right, bool ascending) {
  return ascending ? (right > left ? 1 : 0) : (left >= right ? 1 : 0);
}

double ColumnValue(const bhdbstype& rec, int size) {
  switch (size) {
    case kKeyX:
      return rec.x;
    case kKeyY:
      return rec.y;
    case kKeyZ:
      return rec.z;
    case kKeySekt:
      return rec.sekt;
    default:
      return rec.avst;
  }
}

int CompareFlags(const bhdbstype& left, const bhdbstype& right, korvo::BhFlag flag,
                 bool ascending) {
  const bool fl = left.bit.Test(flag);
  const bool fr = right.bit.Test(flag);
  return ascending ? (fl && !fr ? 1 : 0) : (!fl && fr ? 1 : 0);
}

// The symbol number of a point: a bit pattern on a fixed base.
constexpr int kSymbolBase = 0x40000000;

int SymbolNumber(const bhbit& bit) {
  const int ror = bit.Get(bhbit::Ror);
  if (ror == bhbit::RorStud) return kSymbolBase + 512;
  if (ror != 0) return kSymbolBase + 256;
  if (bit.Test(bhbit::Vb)) return kSymbolBase + 8192;
  struct Part {
    korvo::BhFlag flag;
    int value;
  };
  static constexpr Part kMethods[] = {{bhbit::Total, 1},  {bhbit::Cpt, 2},     {bhbit::Karnborr, 4},
                                      {bhbit::Dtrykk, 8}, {bhbit::Fjell, 16},  {bhbit::Ram, 32},
                                      {bhbit::Dreie, 64}, {bhbit::Enkel, 128}, {bhbit::Mil, 16384}};
  int n = kSymbolBase;
  for (const Part& part : kMethods) {
    if (bit.Test(part.flag)) n += part.value;
  }
  const bool prv = bit.Test(bhbit::Prvvanlig);
  const bool skv = bit.Test(bhbit::Skv);
  if (prv) n += skv ? 2048 : 1024;
  if (skv && !prv) n += 4096;
  return n;
}

// The one text that NoSymb and SvSymb hand out.
std::wstring& SymbolText() {
  static std::wstring text;
  return text;
}

}  // namespace

int CKorvoDbs::Sortval(int key) {
  if (key == 0 || key > kKeyLast || key < -kKeyLast) return 0;
  const int size = key < 0 ? -key : key;
  const bool ascending = key > 0;
  const bhdbstype& left = *pmael;
  const bhdbstype& right = *pael;
  if (size == kKeyName) return korvo::NameOrder(left.id, right.id, ascending ? 1 : -1);
  if (size >= kKeyFirstFlag) {
    return CompareFlags(left, right, kFlagOfKey[size - kKeyFirstFlag], ascending);
  }
  if ((size == kKeySekt || size == kKeyAvst) && vaglinje != nullptr) {
    return CompareAlongLine(size, ascending);
  }
  return CompareValues(ColumnValue(left, size), ColumnValue(right, size), ascending);
}

// Chainage and distance by the road line. Points within its area are
// compared by value; those outside stand together behind them (before them
// when descending), in the order they had.
int CKorvoDbs::CompareAlongLine(int size, bool ascending) {
  double a = 0.0;
  double b = 0.0;
  const bool sekt = size == kKeySekt;
  const bool l_in =
      vaglinje->PktIomr(pmael->x, pmael->y, sekt ? &a : nullptr, sekt ? nullptr : &a, 1) == 0;
  const bool r_in =
      vaglinje->PktIomr(pael->x, pael->y, sekt ? &b : nullptr, sekt ? nullptr : &b, 1) == 0;
  if (!l_in && !r_in) return 0;
  if (l_in != r_in) return (ascending ? l_in : r_in) ? 1 : 0;
  return CompareValues(a, b, ascending);
}

int CKorvoDbs::Findid(wchar_t* id, long pos) {
  Set_mark();
  if (id != nullptr) VersalText(id);
  if (Home() == 0) {
    do {
      if ((id != nullptr && std::wcscmp(pael->id, id) == 0) || (pos >= 0 && pael->pos == pos)) {
        return 0;
      }
    } while ((*this)++);
  }
  Goto_mark();
  return -1;
}

int CKorvoDbs::FindNuel(uintptr_t rec) {
  Set_mark();
  if (Home() == 0) {
    do {
      if (reinterpret_cast<uintptr_t>(pael) == rec) return 0;
    } while ((*this)++);
  }
  Goto_mark();
  return -1;
}

int CKorvoDbs::Kod(wchar_t* kod) {
  const bhbit& bit = pael->bit;
  const int ror = bit.Get(bhbit::Ror);
  const wchar_t* code = L"BH";
  if (bit.Test(bhbit::Avp)) {
    code = pael->kod[0] != L'\0' ? pael->kod : L"AVP";
  } else if (bit.Test(bhbit::Vb)) {
    code = L"VB";
  } else if (ror == bhbit::RorStud) {
    code = L"DUB";
  } else if (ror == bhbit::RorMtn) {
    code = L"MTN";
  } else if (ror != 0) {
    code = L"GVR";
  }
  std::wcsncpy(kod, code, 3);
  kod[3] = L'\0';
  return 0;
}

int CKorvoDbs::ReadSymbols() {
  return 0;
}

wchar_t* CKorvoDbs::NoSymb(int val, int* nr) {
  std::wstring& text = SymbolText();
  if (val == 1 && symbolstatus == -1) {
    const int read = ReadSymbols();
    symbolstatus = read == -1 ? 0 : read == -2 ? -2 : 1;
  }
  if (symbolstatus == -2) {
    text = L" ";
    return text.data();
  }
  const int n = SymbolNumber(pael->bit);
  if (nr != nullptr) *nr = n;
  const std::wstring image = korvo::Format(L"%d.png", n);
  bool known = true;
  if (val == 1 && symbolstatus != 0) {
    known = false;
    for (const std::wstring& name : symboler) {
      if (korvo::EqualNoCase(name, image)) known = true;
    }
  }
  text = KORVO_SYMBOL_SERVER L"/static/BrenmarkSymbols/";
  text += known ? image : L"unknown.png";
  return text.data();
}

wchar_t* CKorvoDbs::SvSymb(int, int*) {
  std::wstring& text = SymbolText();
  text.clear();
  return text.data();
}

// ---- Selections ----------------------------------------------------------

int CKorvoDbs::UppdUrval(wchar_t* namn) {
  CKorvoDbs urval(proj);
  if (urval.Init(namn != nullptr ? std::wstring(namn) : std::wstring(), 0, 0, nullptr) != 0) {
    return 0;
  }
  bool changed = CarryProjectGuid(urval.prjdat);
  if (urval.Home() == 0) {
    for (;;) {
      wchar_t id[9];
      std::wmemcpy(id, urval.pael->id, 9);
      if (Findid(id, -1) != 0) {
        // The point left the project: it leaves the selection and its file.
        const bool last = urval.aktel->next == nullptr;
        if (urval.Delete(namn) < 0 || last) break;
        continue;  // the cursor stands on the following record already
      }
      if (KollaPael(urval.pael) == 1) {
        const int32_t pos = urval.pael->pos;
        *urval.pael = *pael;
        urval.pael->pos = pos;
        changed = true;
      }
      if (!urval++) break;
    }
  }
  if (changed) {
    urval.behorighet = 0;
    urval.SaveDbs(namn, 0);
  }
  return 0;
}

int CKorvoDbs::UppdUrval(std::wstring namn) {
  return UppdUrval(namn.data());
}

// The selection is of this project: it takes the project's GUID. True when
// anything of it differed.
bool CKorvoDbs::CarryProjectGuid(korvoprjdattype& to) const {
  const bool differs = to.harguid != prjdat.harguid ||
                       std::memcmp(to.reserv3, prjdat.reserv3, sizeof to.reserv3) != 0 ||
                       std::memcmp(to.guid, prjdat.guid, sizeof to.guid) != 0;
  to.harguid = prjdat.harguid;
  std::memcpy(to.reserv3, prjdat.reserv3, sizeof to.reserv3);
  std::memcpy(to.guid, prjdat.guid, sizeof to.guid);
  return differs;
}
