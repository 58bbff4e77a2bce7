#include "bars/stiffeners.h"

#include <gtest/gtest.h>

#include "bars/stiffener_geometric.h"

using namespace zelvo;

TEST(StiffenerTable, MatchesTheCondensedChain) {
  const double first[9] = {1.6076951,  -3.6461709, 2.5846834,  -0.6925626, 0.1855670,
                           -0.0497054, 0.0132548,  -0.0033137, 0.0005523};
  const double middle[5] = {0.1855670, -1.1134020, 4.4536080, -10.7010307, 14.3505154};
  for (int j = 1; j <= 9; ++j) {
    EXPECT_NEAR(C9(1, j), first[j - 1], 6e-8);
    EXPECT_NEAR(C9(5, j), middle[j <= 5 ? j - 1 : 9 - j], 6e-8);
    for (int i = 1; i <= 9; ++i) EXPECT_EQ(C9(i, j), static_cast<float>(C9(10 - i, 10 - j)));
  }
}

// Along x, webs normal y. How the frame is turned, rigid motions show on whole girders.
static const FixedVector<double, 27> ENDS{{0, 0, 0, 8, 0, 0}};
static const StiffenerFrame AXES{{{1, 0, 0}}, {{0, 1, 0}}, {{0, 0, 1}}};
static const StiffenerProperty PROP{29600.0, 6.0, 0.75};

static void expect_symmetry_and_free_ends(const StiffenerMatrix& k) {
  for (int j = 1; j <= 45; ++j) {
    EXPECT_EQ(k(4, j), 0) << "no torque on the first node";
    EXPECT_EQ(k(44, j), 0) << "no torque on the last node";
    for (int i = 1; i <= 45; ++i) EXPECT_NEAR(k(i, j), k(j, i), 1e-9);
  }
}

TEST(Stiffener, MatchesHandCalculation) {
  StiffenerMatrix ke;
  StiffenerTransform tm;
  stiffener_stiffness(ke, ENDS, AXES, PROP, tm);
  const double Is = 6.0 * 6 * 6 * 0.75 / 12, Iw = 0.75 * 0.75 * 0.75 * 6 / 12;
  EXPECT_NEAR(ke(1, 1), 16650.0, 1e-8);
  EXPECT_NEAR(ke(21, 21), 33300.0, 1e-8);
  EXPECT_NEAR(ke(42, 42), 12 * 29600.0 * Is / 512, 1e-8);
  EXPECT_NEAR(ke(23, 23), 29600.0 * Iw / 512 * 14.3505154, 1e-6);
  EXPECT_NEAR(ke(10, 15), 2 * 29600.0 * Is / 8, 1e-8);
  EXPECT_NEAR(ke(9, 9), 2 * 11400.0 * 0.84375 / 8, 1e-9);
  expect_symmetry_and_free_ends(ke);
}

static StiffenerMatrix geometric_under(const FixedMatrix<double, 6, 9>& f6) {
  StiffenerTransform tm;
  StiffenerMatrix kg;
  stiffener_geo_stiffness(kg, ENDS, AXES, PROP, tm, f6);
  return kg;
}

TEST(StiffenerGeometric, MatchesHandCalculationSegmentBySegment) {
  FixedMatrix<double, 6, 9> f6{};
  f6(1, 1) = f6(2, 4) = f6(3, 5) = f6(5, 6) = f6(1, 2) = 1;  // the last alone is used
  StiffenerMatrix kg = geometric_under(f6);
  const double nodes[10] = {0.125, 0.15, 0.15, 0,         1.0666667,
                            0.125, 0.15, 0.15, 0.0234375, 1.0666667};
  for (int i = 1; i <= 10; ++i) EXPECT_NEAR(kg(i, i), nodes[i - 1], 5e-8);
  EXPECT_NEAR(kg(5, 10), -8 / 30.0, 1e-12);
  EXPECT_NEAR(kg(2, 5), -0.1, 1e-12) << "strong-axis rotation is minus beta";

  for (int k = 1; k <= 9; ++k)
    for (int i = 1; i <= 6; ++i) f6(i, k) = i + 0.1 * k * k;
  kg = geometric_under(f6);
  expect_symmetry_and_free_ends(kg);
  EXPECT_NEAR(kg(8, 9), 0, 1e-12) << "bending moments of neighbours cancel at a node";
  EXPECT_NEAR(kg(8, 14), f6(6, 3) / 8, 1e-12);
  EXPECT_NEAR(kg(9, 13), -f6(6, 2) / 8, 1e-12);
  EXPECT_NEAR(kg(8, 15), f6(4, 3) / 8, 1e-12);
}
