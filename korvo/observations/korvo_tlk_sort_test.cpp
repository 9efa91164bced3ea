// The layers' order by level, sorted fast, is the order of the reference sorts.
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "korvo/observations/korvo_tlk.h"
#include "korvo/testutil/sort_check.h"

namespace korvo {
namespace {

using Probe = test::SortProbe<CKorvoTlk>;

TEST(TlkSortera, LevelOrdersAreThoseOfTheReferenceSorts) {
  const std::function<void(Probe&, std::mt19937&)> fill = [](Probe& tlk, std::mt19937& random) {
    const int rows = static_cast<int>(random() % 60);
    for (int i = 0; i < rows; ++i) {
      matetype row{};
      row.niva = static_cast<float>(random() % 7) * 0.5f;
      row.index = i;
      tlk.Ny(1, &row);
    }
  };
  EXPECT_EQ(test::FirstDisagreement<Probe>(fill, {1, -1, 0, 2}, 60), "");
}

}  // namespace
}  // namespace korvo
