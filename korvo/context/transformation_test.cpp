#include "korvo/context/transformation.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

template <class Numbers, class Names>
void ExpectOneRowPerSystem(const Numbers& numbers, const Names& names) {
  std::set<int> seen_numbers;
  std::set<std::wstring> seen_names;
  for (size_t i = 0; i < numbers.size(); ++i) {
    ASSERT_NE(names[i], nullptr);
    EXPECT_TRUE(seen_numbers.insert(numbers[i]).second) << "EPSG " << numbers[i] << " twice";
    EXPECT_TRUE(seen_names.insert(names[i]).second) << "row " << i;
    // EPSG codes of projected and vertical systems are four or five digits.
    EXPECT_GE(numbers[i], 1024);
    EXPECT_LT(numbers[i], 100000);
  }
}

TEST(TransformationTest, EveryRowIsADistinctSystem) {
  ExpectOneRowPerSystem(CTransformation::nrSystem, CTransformation::defSystem);
  ExpectOneRowPerSystem(CTransformation::nrSystemHeight, CTransformation::defSystemHeight);
}

// A stored index names a system for good: these rows must never move.
TEST(TransformationTest, StoredIndicesKeepTheirSystems) {
  struct Row {
    int index, epsg;
    const wchar_t* name;
  };
  for (const Row& r : {Row{0, 3006, L"SWEREF 99 TM"}, Row{1, 3007, L"SWEREF 99 12 00"},
                       Row{12, 3018, L"SWEREF 99 23 15"}, Row{15, 3021, L"RT 90 2.5 gon V"},
                       Row{23, 5105, L"EUREF89 NTM zone 5"}, Row{48, 5130, L"EUREF89 NTM zone 30"},
                       Row{19, 25832, L"ETRS89 (EUREF89) UTM zone 32N"}}) {
    EXPECT_EQ(CTransformation::nrSystem[r.index], r.epsg);
    EXPECT_STREQ(CTransformation::defSystem[r.index], r.name);
  }
  EXPECT_EQ(CTransformation::nrSystemHeight[0], 5613);
  EXPECT_STREQ(CTransformation::defSystemHeight[2], L"NN2000");
  EXPECT_EQ(CTransformation::nrSystemHeight[3], 5776);
}

}  // namespace
