#include "korvo/context/vaglinje.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// x is northing, y easting. The line runs 100 m north from chainage 1000,
// turns right and runs 100 m east.
class RoadLineTest : public ::testing::Test {
 protected:
  RoadLineTest() {
    Add(0, 0, 1000);
    Add(100, 0, 0);
    Add(100, 100, 0);
  }
  void Add(double x, double y, double sekt) {
    kovltype p{x, y, 12.5, sekt};
    line.Ny(1, &p);
  }
  // PktIomr's answer with both outputs, which must agree with Vagstv.
  int Where(double x, double y, double* profil, double* avst) {
    double vp = -1, va = -1;
    EXPECT_EQ(line.Vagstv(x, y, &vp, &va, 0), 0);
    const int r = line.PktIomr(x, y, profil, avst, 1);
    EXPECT_DOUBLE_EQ(*profil, vp);
    EXPECT_DOUBLE_EQ(*avst, va);
    return r;
  }
  CVaglinje line;
};

TEST_F(RoadLineTest, ChainageAndOffsetInsideAndOutside) {
  const struct {
    double x, y;
    int outside;
    double profil, avst;
  } cases[] = {
      {50, 0, 0, 1050, 0},
      {30, 7, 0, 1030, 7},  // east of a northward leg is to the right: positive
      {30, -20, 0, 1030, -20},
      {0, 0, 0, 1000, 0},       // the start point itself is on the line
      {110, 50, 0, 1150, -10},  // north of an eastward leg is to the left
      {96, 25, 0, 1125, 4},
      {110, -10, 0, 1100, -std::sqrt(200.0)},  // outside the bend the corner is nearest
      {-10, 5, 1, 990, 5},                     // before the start
      {95, 130, 1, 1230, 5},                   // beyond the end
      {95, 99.999, 0, 1199.999, 5},            // just inside the last perpendicular
  };
  for (const auto& c : cases) {
    double p, a;
    EXPECT_EQ(Where(c.x, c.y, &p, &a), c.outside) << c.x << " " << c.y;
    EXPECT_NEAR(p, c.profil, 1e-9) << c.x << " " << c.y;
    EXPECT_NEAR(a, c.avst, 1e-9) << c.x << " " << c.y;
  }
}

TEST_F(RoadLineTest, NullOutputsOnlyAnswerTheAreaQuestion) {
  EXPECT_EQ(line.PktIomr(50, 3, nullptr, nullptr, 0), 0);
  EXPECT_EQ(line.PktIomr(150, 150, nullptr, nullptr, 0), 1);
  // The sort passes exactly one output.
  double v = 0;
  EXPECT_EQ(line.PktIomr(40, 3, nullptr, &v, 1), 0);
  EXPECT_DOUBLE_EQ(v, 3);
  EXPECT_EQ(line.PktIomr(40, 3, &v, nullptr, 1), 0);
  EXPECT_DOUBLE_EQ(v, 1040);
}

TEST(RoadLineEdgeTest, TooFewDistinctPointsGiveNoAnswer) {
  CVaglinje line;
  double p = 7, a = 8;
  EXPECT_EQ(line.Vagstv(1, 1, &p, &a, 0), -1);
  kovltype pt{5, 5, 0, 0};
  line.Ny(1, &pt);
  line.Ny(1, &pt);
  EXPECT_EQ(line.Vagstv(1, 1, &p, &a, 0), -1);
  EXPECT_EQ(line.PktIomr(1, 1, &p, &a, 0), -1);
  EXPECT_EQ(p, 7);
  EXPECT_EQ(a, 8);
  // A repeated point adds no length: the line is the one segment.
  kovltype end{5, 15, 0, 0};
  line.Ny(1, &end);
  EXPECT_EQ(line.Vagstv(3, 10, &p, &a, 0), 0);
  EXPECT_DOUBLE_EQ(p, 5);
  EXPECT_DOUBLE_EQ(a, 2);  // south of an eastward line: right
}

}  // namespace
