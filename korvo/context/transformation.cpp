#include "korvo/context/transformation.h"

#include <cstddef>
#include <iterator>

namespace {

struct SystemRow {
  int epsg;
  const wchar_t* name;
};

// Plane systems. Sweden first (SWEREF 99 and its local zones from west to
// east, then RT 90), then the ETRS89 realisations used in Norway, Denmark and
// Finland, then WGS 84 and ED50 UTM, and Finland's own grids.
constexpr SystemRow kPlane[] = {
    {3006, L"SWEREF 99 TM"},
    {3007, L"SWEREF 99 12 00"},
    {3008, L"SWEREF 99 13 30"},
    {3012, L"SWEREF 99 14 15"},
    {3009, L"SWEREF 99 15 00"},
    {3013, L"SWEREF 99 15 45"},
    {3010, L"SWEREF 99 16 30"},
    {3014, L"SWEREF 99 17 15"},
    {3011, L"SWEREF 99 18 00"},
    {3015, L"SWEREF 99 18 45"},
    {3016, L"SWEREF 99 20 15"},
    {3017, L"SWEREF 99 21 45"},
    {3018, L"SWEREF 99 23 15"},
    {3019, L"RT 90 7.5 gon V"},
    {3020, L"RT 90 5 gon V"},
    {3021, L"RT 90 2.5 gon V"},
    {3022, L"RT 90 0 gon"},
    {3023, L"RT 90 2.5 gon O"},
    {3024, L"RT 90 5 gon O"},
    {25832, L"ETRS89 (EUREF89) UTM zone 32N"},
    {25833, L"ETRS89 (EUREF89) UTM zone 33N"},
    {25834, L"ETRS89 (EUREF89) UTM zone 34N"},
    {25835, L"ETRS89 (EUREF89) UTM zone 35N"},
    {5105, L"EUREF89 NTM zone 5"},
    {5106, L"EUREF89 NTM zone 6"},
    {5107, L"EUREF89 NTM zone 7"},
    {5108, L"EUREF89 NTM zone 8"},
    {5109, L"EUREF89 NTM zone 9"},
    {5110, L"EUREF89 NTM zone 10"},
    {5111, L"EUREF89 NTM zone 11"},
    {5112, L"EUREF89 NTM zone 12"},
    {5113, L"EUREF89 NTM zone 13"},
    {5114, L"EUREF89 NTM zone 14"},
    {5115, L"EUREF89 NTM zone 15"},
    {5116, L"EUREF89 NTM zone 16"},
    {5117, L"EUREF89 NTM zone 17"},
    {5118, L"EUREF89 NTM zone 18"},
    {5119, L"EUREF89 NTM zone 19"},
    {5120, L"EUREF89 NTM zone 20"},
    {5121, L"EUREF89 NTM zone 21"},
    {5122, L"EUREF89 NTM zone 22"},
    {5123, L"EUREF89 NTM zone 23"},
    {5124, L"EUREF89 NTM zone 24"},
    {5125, L"EUREF89 NTM zone 25"},
    {5126, L"EUREF89 NTM zone 26"},
    {5127, L"EUREF89 NTM zone 27"},
    {5128, L"EUREF89 NTM zone 28"},
    {5129, L"EUREF89 NTM zone 29"},
    {5130, L"EUREF89 NTM zone 30"},
    {32632, L"WGS 84 UTM zone 32N"},
    {32633, L"WGS 84 UTM zone 33N"},
    {32634, L"WGS 84 UTM zone 34N"},
    {32635, L"WGS 84 UTM zone 35N"},
    {23032, L"ED50 UTM zone 32N"},
    {23033, L"ED50 UTM zone 33N"},
    {23034, L"ED50 UTM zone 34N"},
    {23035, L"ED50 UTM zone 35N"},
    {3067, L"ETRS89 TM35FIN"},
    {2393, L"KKJ Finland Uniform Coordinate System"},
};

// Height systems.
constexpr SystemRow kHeight[] = {
    {5613, L"RH 2000"},   // Sweden
    {5718, L"RH 70"},     // Sweden, before RH 2000
    {5941, L"NN2000"},    // Norway
    {5776, L"NN1954"},    // Norway, before NN2000
    {3900, L"N2000"},     // Finland
    {5717, L"N60"},       // Finland, before N2000
    {5799, L"DVR90"},     // Denmark
    {5621, L"EVRF2007"},  // Europe
    {3855, L"EGM2008"},   // global geoid model
    {5773, L"EGM96"},     // global geoid model
};

static_assert(std::size(kPlane) == CTransformation::SIZE + 1);
static_assert(std::size(kHeight) == CTransformation::SIZEHEIGHT + 1);

template <size_t N>
constexpr std::array<int, N> Numbers(const SystemRow (&rows)[N]) {
  std::array<int, N> out{};
  for (size_t i = 0; i < N; ++i) out[i] = rows[i].epsg;
  return out;
}

template <size_t N>
constexpr std::array<const wchar_t*, N> Names(const SystemRow (&rows)[N]) {
  std::array<const wchar_t*, N> out{};
  for (size_t i = 0; i < N; ++i) out[i] = rows[i].name;
  return out;
}

}  // namespace

const std::array<int, CTransformation::SIZE + 1> CTransformation::nrSystem = Numbers(kPlane);
const std::array<const wchar_t*, CTransformation::SIZE + 1> CTransformation::defSystem =
    Names(kPlane);
const std::array<int, CTransformation::SIZEHEIGHT + 1> CTransformation::nrSystemHeight =
    Numbers(kHeight);
const std::array<const wchar_t*, CTransformation::SIZEHEIGHT + 1> CTransformation::defSystemHeight =
    Names(kHeight);
