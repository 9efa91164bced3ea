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

TEST_F(RoadLineTest, PointsAlongAndBesideTheFirstLeg) {
  double p, a;
  EXPECT_EQ(Where(50, 0, &p, &a), 0);
  EXPECT_DOUBLE_EQ(p, 1050);
  EXPECT_DOUBLE_EQ(a, 0);
  // East of a northward leg is to the right: positive.
  EXPECT_EQ(Where(30, 7, &p, &a), 0);
  EXPECT_DOUBLE_EQ(p, 1030);
  EXPECT_DOUBLE_EQ(a, 7);
  EXPECT_EQ(Where(30, -20, &p, &a), 0);
  EXPECT_DOUBLE_EQ(p, 1030);
  EXPECT_DOUBLE_EQ(a, -20);
  // The start point itself is on the line.
  EXPECT_EQ(Where(0, 0, &p, &a), 0);
  EXPECT_DOUBLE_EQ(p, 1000);
}

TEST_F(RoadLineTest, SecondLegCountsOnFromTheBend) {
  double p, a;
  // North of an eastward leg is to the left.
  EXPECT_EQ(Where(110, 50, &p, &a), 0);
  EXPECT_DOUBLE_EQ(p, 1150);
  EXPECT_DOUBLE_EQ(a, -10);
  EXPECT_EQ(Where(96, 25, &p, &a), 0);
  EXPECT_DOUBLE_EQ(p, 1125);
  EXPECT_DOUBLE_EQ(a, 4);
  // Outside the bend the corner is the nearest point of the line.
  EXPECT_EQ(Where(110, -10, &p, &a), 0);
  EXPECT_DOUBLE_EQ(p, 1100);
  EXPECT_DOUBLE_EQ(a, -std::sqrt(200.0));
}

TEST_F(RoadLineTest, BeforeTheStartAndBeyondTheEndLieOutside) {
  double p, a;
  EXPECT_EQ(Where(-10, 5, &p, &a), 1);
  EXPECT_DOUBLE_EQ(p, 990);
  EXPECT_DOUBLE_EQ(a, 5);
  EXPECT_EQ(Where(95, 130, &p, &a), 1);
  EXPECT_DOUBLE_EQ(p, 1230);
  EXPECT_DOUBLE_EQ(a, 5);
  // Just inside the last perpendicular.
  EXPECT_EQ(Where(95, 99.999, &p, &a), 0);
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
