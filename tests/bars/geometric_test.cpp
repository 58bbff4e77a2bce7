#include "bars/geometric.h"

#include <gtest/gtest.h>

#include <cmath>

#include "bars/forces.h"
#include "bars/frame.h"

static BraceMatrix internal_under(const BraceCorners& u12) {
  BraceMatrix k12, kg;
  ibrace_stiffness(k12, CORNERS, AREA_5);
  ibrace_geo_stiffness(kg, CORNERS, multiply(k12, u12));
  return kg;
}

static BraceMatrix external_under(const BraceCorners& u12) {
  BraceMatrix kg;
  ebrace_geo_stiffness(kg, CORNERS, AREA_5, ebrace_displacements(CORNERS, u12, AREA_5));
  return kg;
}

TEST(BraceGeometric, MatchesTheFigureOfTheInternalKind) {
  const BraceMatrix kg = internal_under({{0.01}});
  const double diagonal[4] = {-0.144467, -0.144467, 0.072548, -0.058126};
  for (int i = 1; i <= 12; ++i) EXPECT_NEAR(kg(i, i), diagonal[(i - 1) / 3], 5e-7);
}

// By hand: the four bars at M as q - q q'/s, and the strut P1 to P2 apart.
TEST(BraceGeometric, ExternalKindCondensesItsFourBarsAndKeepsTheStrut) {
  const BraceCorners u{{0.01, 0.02, 0, -0.01, 0.03, 0, 0.02, 0, 0, 0, -0.01, 0}};
  const auto p = ebrace_forces(CORNERS, ebrace_displacements(CORNERS, u, AREA_5), AREA_5);
  const double diagonal = std::sqrt(50.0 * 50 + 60 * 60);
  const double q[4] = {p(4) / diagonal, p(5) / diagonal, p(2) / 35, p(3) / 35};
  const double s = q[0] + q[1] + q[2] + q[3], strut = p(1) / 100;
  const BraceMatrix kg = external_under(u);
  for (int i = 1; i <= 3; ++i) {
    EXPECT_NEAR(kg(i, i), q[0] - q[0] * q[0] / s + strut, 1e-12);
    EXPECT_NEAR(kg(i, 3 + i), -q[0] * q[1] / s - strut, 1e-12);
    EXPECT_NEAR(kg(6 + i, 3 + i), -q[2] * q[1] / s, 1e-12);
    EXPECT_NEAR(kg(9 + i, 9 + i), q[3] - q[3] * q[3] / s, 1e-12);
  }
}

TEST(BraceGeometric, BraceWithBalancedForcesAddsNothing) {
  // At rest; racked, one half of the strut in tension and the other as much in compression.
  const BraceCorners racked{{0.3, 0.1, 0, 0.3, -0.1, 0, -0.7, 0.2, 0, -0.7, -0.2, 0}};
  for (const BraceCorners& u : {BraceCorners{}, racked}) {
    for (const double value : internal_under(u).v) EXPECT_EQ(value, 0);
    for (const double value : external_under(u).v) EXPECT_EQ(value, 0);
  }
}

static StiffenerMatrix stiffener_under(const FixedMatrix<double, 6, 9>& f6) {
  StiffenerTransform tm;
  StiffenerMatrix kg;
  stiffener_geo_stiffness(kg, {{0, 0, 0, 8, 0, 0}}, {{1, 0, 0}}, {{0, 1, 0}}, {{0, 0, 1}},
                          {{29600.0, 6.0, 0.75}}, tm, f6);
  return kg;
}

TEST(StiffenerGeometric, MatchesHandCalculationSegmentBySegment) {
  FixedMatrix<double, 6, 9> f6{};
  f6(1, 1) = f6(2, 4) = f6(3, 5) = f6(5, 6) = 1;  // none is used
  for (const double value : stiffener_under(f6).v) EXPECT_EQ(value, 0);
  f6(1, 2) = 1;
  StiffenerMatrix kg = stiffener_under(f6);
  const double nodes[10] = {0.125, 0.15, 0.15, 0,         1.0666667,
                            0.125, 0.15, 0.15, 0.0234375, 1.0666667};
  for (int i = 1; i <= 10; ++i) EXPECT_NEAR(kg(i, i), nodes[i - 1], 5e-8);
  EXPECT_NEAR(kg(5, 10), -8 / 30.0, 1e-12);
  EXPECT_NEAR(kg(2, 5), -0.1, 1e-12) << "strong-axis rotation is minus beta";

  for (int k = 1; k <= 9; ++k)
    for (int i = 1; i <= 6; ++i) f6(i, k) = i + 0.1 * k * k;
  kg = stiffener_under(f6);
  for (int j = 1; j <= 45; ++j) {
    for (int i = 1; i <= 45; ++i) EXPECT_NEAR(kg(i, j), kg(j, i), 1e-12);
    EXPECT_EQ(kg(4, j) == 0 && kg(44, j) == 0, true) << "no torque on the end nodes";
  }
  EXPECT_NEAR(kg(8, 9), 0, 1e-12) << "bending moments of neighbours cancel at a node";
  EXPECT_NEAR(kg(8, 14), f6(6, 3) / 8, 1e-12);
  EXPECT_NEAR(kg(9, 13), -f6(6, 2) / 8, 1e-12);
  EXPECT_NEAR(kg(8, 15), f6(4, 3) / 8, 1e-12);
}
