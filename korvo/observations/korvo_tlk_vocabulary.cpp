// The vocabulary of interpreted materials: the 41 materials by index in three
// languages with their short names and plus codes, the names of the source
// numbers, and the older plain names that the .TLK file still stores.
#include <iterator>
#include <string_view>

#include "korvo/observations/korvo_tlk.h"

const int CKorvoTlk::AntalMaterial = 41;
const int CKorvoTlk::AntalKalla = 9;

const wchar_t* const CKorvoTlk::SvMaterial[41] = {
    L"Ospecificerat material ",
    L"Berg",
    L"Block",
    L"Breccia",
    L"Förmodad förorening",
    L"Dy",
    L"Block och stenmorän",
    L"Okänt material",
    L"Gyttja",
    L"Gyttjig lera",
    L"Jord",
    L"Lera",
    L"Matjord",
    L"Fyllning",
    L"Stenmorän",
    L"Grusmorän",
    L"Sandmorän",
    L"Siltmorän",
    L"Lermorän",
    L"Mylla",
    L"Sand",
    L"Silt",
    L"Skaljord",
    L"Skalgrus",
    L"Skalsand",
    L"Kol",
    L"Sulfid",
    L"Torv",
    L"Låghumifierad torv",
    L"Mellanhumifierad torv",
    L"Höghumifierad torv",
    L"Organisk jord",
    L"Grus",
    L"Torrskorpa",
    L"Kvicklera",
    L"Morän",
    L"Friktionsjord",
    L"Kohesionsjord",
    L"Växtdelar",
    L"Sten",
    L"Berg eller block",
};

const wchar_t* const CKorvoTlk::NoMaterial[41] = {
    L"Uspesifisert materiale",
    L"Berg",
    L"Blokk",
    L"Oppsprukket berg",
    L"Antatt forurensning",
    L"Dy",
    L"Blokk og steinmorene",
    L"Ukjent mater",
    L"Gytje",
    L" Leirblandet gytje",
    L"Jord",
    L"Leire",
    L"Matjord",
    L"Fyllmasse",
    L"Steinmorene",
    L"Grusmorene",
    L"Sandmorene",
    L"Siltmorene",
    L"Leiremorene",
    L"Humus",
    L"Sand",
    L"Silt",
    L"Skjell",
    L"Skjellgrus",
    L"Skjellsand",
    L"Kull",
    L"Suldidholdig sand",
    L"Torv",
    L"Lavforvitret torv",
    L"Mellomtorv",
    L"Forvitret torv",
    L"Annet organisk materiale",
    L"Grus",
    L"Tørrskorpe leire",
    L"Kvikkleire",
    L"Morene",
    L"Friksjonsjord",
    L"Kohesjonsjord",
    L"Planterester",
    L"Stein",
    L"Berg eller blokk",
};

const wchar_t* const CKorvoTlk::EnMaterial[41] = {
    L"Unspecified material",
    L"Rock",
    L"Boulders",
    L"Fragmented rock",
    L"Suspected contamination",
    L"Dy",
    L"Boulder and Cobble till",
    L"Unknown Material",
    L"Gyttja",
    L"Gyttja-clay",
    L"Soil",
    L"Clay",
    L"Topsoil",
    L"Fill",
    L"Cobble till",
    L"Gravel till",
    L"Sand till",
    L"Silt till",
    L"Clay till",
    L"Humus, topsoil",
    L"Sand",
    L"Silt",
    L"Shells",
    L"Shell gravel",
    L"Shell sand",
    L"Coal",
    L"Sulphide soil",
    L"Peat",
    L"Fibrous peat",
    L"Pseudo-fibrous peat",
    L"Amorphous peat",
    L"Organic Soil",
    L"Gravel",
    L"Dry-crust clay",
    L"Quick clay",
    L"Till",
    L"Non-cohesive soil",
    L"Cohesive soil",
    L"Plant (wood) remains",
    L"Cobbles",
    L"Rock and Boulders",
};

const wchar_t* const CKorvoTlk::KortNamn[41] = {
    L"NotSpecified", L"B",    L"Bl ",  L"Br", L"Cs",      L"Dy",       L"BlMn", L"X",
    L"Gy",           L"GyLe", L"J",    L"Le", L"Topsoil", L"F",        L"StMn", L"GrMn",
    L"SaMn",         L"SiMn", L"LeMn", L"Mu", L"Sa",      L"Si",       L"Sk",   L"Skgr",
    L"Sksa",         L"Coal", L"Su",   L"T",  L"Tl",      L"Tm",       L"Th",   L"Organic",
    L"Gr",           L"Let",  L"kLe",  L"Mn", L"Fr",      L"Cohesive", L"Vx",   L"St",
    L"BelBl",
};

const wchar_t* const CKorvoTlk::PlusKod[41] = {
    L"+?",  L"BG",  L"+Bl", L"+Br", L"+Cs", L"+Dy", L"+BM", L"+X",  L"+Gy", L"+GL", L"+JO",
    L"+Le", L"+TS", L"+Fy", L"+MS", L"+GM", L"+SM", L"+IM", L"+LM", L"+My", L"+Sa", L"+Si",
    L"+Sk", L"+SG", L"+SS", L"+Co", L"+Su", L"+T",  L"+Tl", L"+Tm", L"+Th", L"+Og", L"+Gr",
    L"+Lt", L"+Kv", L"+Mn", L"+Fr", L"+CH", L"+VX", L"+St", L"+BB",
};

const wchar_t* const CKorvoTlk::SvKalla[9] = {
    L"Odefinierad",      L"Från ritning", L"Från Sondering",   L"Från Lab",    L"Förmodat berg",
    L"Bergborrning +3m", L"Observation",  L"Beräknas från My", L"Prov i fält",
};

const wchar_t* const CKorvoTlk::NoKalla[9] = {
    L"Uspecifisert",
    L"Basert på en tegning",
    L"Basert på en Sondering",
    L"Basert på Lab-resultat",
    L"Antatt berg",
    L"Antatt berg, +3m borrning",
    L"Observasjon",
    L"Beregnet fra terreng",
    L"Fra prøve i felt",
};

const wchar_t* const CKorvoTlk::EnKalla[9] = {
    L"Undefined",
    L"From drawing",
    L"From Sounding",
    L"From Lab Test",
    L"Bedrock",
    L"Bedrock, +3m drilling",
    L"Observation",
    L"Calc. from terrain",
    L"From field sampling",
};

namespace {

// The capitalised names that evaluations test material names against.
constexpr const wchar_t* kKandaMaterial[] = {
    L"FYLLNING", L"MYLLA", L"TORV", L"GYTTJA", L"TORRSKORPA", L"LERA",  L"KVICKLERA",
    L"SILT",     L"SAND",  L"GRUS", L"STEN",   L"FRIKTJORD",  L"MORÄN", L"BERG"};

// The older plain names and the index each stands for.
struct OldName {
  const wchar_t* text;
  int index;
};
constexpr OldName kOldNames[] = {
    {L"fyllning", 13}, {L"mylla", 19},     {L"torv", 27},   {L"gyttja", 8}, {L"torrskorpa", 33},
    {L"lera", 11},     {L"kvicklera", 34}, {L"silt", 21},   {L"sand", 20},  {L"grus", 32},
    {L"sten", 39},     {L"friktjord", 36}, {L"moraen", 35}, {L"X", 7},      {L"BelBl", 40},
    {L"block", 2},     {L"berg", 1},       {L"geokonst", 0}};

int TableIndex(const wchar_t* const* table, const wchar_t* text) {
  if (text == nullptr) return 0;
  const std::wstring_view wanted(text);
  for (int i = 0; i < CKorvoTlk::AntalMaterial; ++i) {
    if (wanted == table[i]) return i;
  }
  return 0;
}

}  // namespace

CKorvoTlk::CKorvoTlk(int konv, int clean, int combined) : CKorvoTlk() {
  konvflagga = konv;
  rensa = clean;
  samlagring = combined;
  kandamaterial.assign(std::begin(kKandaMaterial), std::end(kKandaMaterial));
  for (const OldName& old : kOldNames) {
    oldtext.emplace_back(old.text);
    oldindex.push_back(old.index);
  }
}

int CKorvoTlk::SvTextToIndex(const wchar_t* text) {
  return TableIndex(SvMaterial, text);
}
int CKorvoTlk::NoTextToIndex(const wchar_t* text) {
  return TableIndex(NoMaterial, text);
}
int CKorvoTlk::EnTextToIndex(const wchar_t* text) {
  return TableIndex(EnMaterial, text);
}
