// The automatic interpretation of a CPT: the materials that the remarks of its
// rows name become levels of the point's interpretation. The measured values
// play no part.
#include <cmath>

#include "korvo/observations/korvo_tlk.h"
#include "korvo/soundings/korvo_cpt.h"
#include "korvo/soundings/korvo_snd.h"

namespace {

constexpr int kCodeCpt = 7;
// A stretch without material closes with an unknown layer only when its last
// row lies below the surface; a row at depth 0 leaves nothing to close.
constexpr double kSurface = 0.0001;

// A material key of the code table and the material it stands for, as named
// and in coarse groups.
struct MaterialKey {
  const wchar_t* key;
  const wchar_t* named;
  const wchar_t* coarse;
};

// The order decides when a remark names several: the first key found wins,
// whatever the order of the words. Keys that the code table doesn't hold
// never match.
constexpr MaterialKey kMaterialKeys[] = {
    {L"MN", L"moraen", L"friktjord"},
    {L"F", L"fyllning", L"fyllning"},
    {L"MU", L"mylla", L"mylla"},
    {L"T", L"torv", L"torv"},
    {L"GY", L"gyttja", L"lera"},
    {L"LET", L"torrskorpa", L"torrskorpa"},
    {L"SI", L"silt", L"lera"},
    {L"LE", L"lera", L"lera"},
    {L"B", L"berg", L"berg"},
    {L"SA", L"sand", L"friktjord"},
    {L"FR", L"friktjord", L"friktjord"},
    {L"GR", L"grus", L"friktjord"},
    {L"ST", L"sten", L"friktjord"},
    {L"BL", L"block", L"block"},
};

// The material a remark names, or null when it names none.
const wchar_t* Material(const wchar_t* anm, const wchar_t* kodsystem, int grov) {
  for (const MaterialKey& m : kMaterialKeys) {
    int words = 0;
    if (CKorvoSnd::Findkod(kCodeCpt, anm, -1, &words, m.key, kodsystem, 0) != nullptr) {
      return grov != 0 ? m.coarse : m.named;
    }
  }
  return nullptr;
}

// A level below the ground, in 64 bits until it is handed on.
float Level(double z, double djup, double faktor) {
  return static_cast<float>(z - djup * faktor);
}

}  // namespace

int CKorvoCpt::AutoTolk(CKorvoSnd* snd, double faktor, int grov) {
  if (snd == nullptr || snd->m_tlk == nullptr) return -1;
  if (Home() != 0) return -1;
  Set_mark();
  CKorvoTlk& tlk = *snd->m_tlk;
  double start = pael->djup;
  const wchar_t* forra = nullptr;  // the material of the row above
  bool first = true;
  do {
    const wchar_t* material = Material(pael->anm, kodsystem, grov);
    if (material == nullptr) {
      forra = nullptr;
      start = pael->djup;
    } else {
      if (forra == nullptr && !first && std::fabs(start) > kSurface) {
        tlk.AddTolkNiva(L"X", Level(snd->z, start, faktor));
      }
      tlk.AddTolkNiva(material, Level(snd->z, pael->djup, faktor));
      forra = material;
    }
    first = false;
  } while (operator++(0) != nullptr);
  return 0;
}
