#include <gtest/gtest.h>

#include <cmath>

#include "bars/forces.h"
#include "bars/gather.h"
#include "bars/geometric.h"

using namespace zelvo;

// Four corners of a section, 60 deep.
static const BraceCorners CORNERS{{-50, 60, 0, 50, 60, 0, -35, 0, 0, 35, 0, 0}};
static const BarProperty AREA_5{29600.0, 5.0, 1.0};

// Every triple of v turned by a rotation that leaves no axis where it was: columns of sevenths.
static BraceCorners turned(const BraceCorners& v) {
  const FixedMatrix<double, 3, 3> skew{{2, 3, 6, 3, -6, 2, 6, 2, -3}};
  BraceCorners out{};
  for (int k = 1; k <= 12; ++k)
    for (int j = 1; j <= 3; ++j) out(k) += skew((k - 1) % 3 + 1, j) / 7 * v((k - 1) / 3 * 3 + j);
  return out;
}

TEST(Brace, MatchesTheFiguresOfEachKind) {
  BraceMatrix internal, external;
  ibrace_stiffness(internal, CORNERS, AREA_5);
  ebrace_stiffness(external, CORNERS, AREA_5);
  const std::pair<double, double> figures[] = {
      {internal(1, 1), 1708.6801}, {internal(1, 4), -1251.3199}, {internal(7, 7), 228.6801},
      {external(1, 1), 1808.0577}, {external(1, 2), -393.6692},  {external(1, 4), -1151.9423}};
  for (const auto& [k, figure] : figures) EXPECT_NEAR(k, figure, 5e-5);
}

TEST(Brace, TurnsWithItsPlaneAndIsFreeAcrossIt) {
  const BraceCorners u{{1, -2, 3, 0.5, 4, -1, 2, 2, 1, -3, 1, 0.2}};
  for (const auto brace : {ibrace_stiffness, ebrace_stiffness}) {
    BraceMatrix k, kr;
    brace(k, CORNERS, AREA_5);
    brace(kr, turned(CORNERS), AREA_5);
    const BraceCorners f = turned(multiply(k, u)), fr = multiply(kr, turned(u));
    for (int i = 1; i <= 12; ++i) {
      EXPECT_NEAR(fr(i), f(i), 1e-6);
      for (int j = 1; j <= 12; ++j) EXPECT_NEAR(k(i, j), i % 3 && j % 3 ? k(j, i) : 0, 1e-9);
    }
  }
}

TEST(Brace, RigidMotionGivesNoForceInAnyBar) {
  const BraceCorners u{{1, -8, 11, 1, 2, 11, 7, -6.5, 11, 7, 0.5, 11}};
  const BraceCorners c12 = turned(CORNERS), u12 = turned(u);
  BraceMatrix k12;
  ibrace_stiffness(k12, c12, AREA_5);
  for (const double p : ibrace_forces(c12, multiply(k12, u12)).v) EXPECT_NEAR(p, 0, 2e-3);
  const PatchVector u15 = ebrace_displacements(c12, u12, AREA_5);
  for (const double p : ebrace_forces(c12, u15, AREA_5).v) EXPECT_NEAR(p, 0, 2e-3);
}

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

// By hand: the four bars of the external kind at M as q - q q'/s, and the strut P1 to P2 apart.
TEST(BraceGeometric, MatchesTheFiguresOfTheInternalKindAndTheExternalByHand) {
  const BraceMatrix internal = internal_under({{0.01}});
  const double diagonal[4] = {-0.144467, -0.144467, 0.072548, -0.058126};
  for (int i = 1; i <= 12; ++i) EXPECT_NEAR(internal(i, i), diagonal[(i - 1) / 3], 5e-7);

  const BraceCorners u{{0.01, 0.02, 0, -0.01, 0.03, 0, 0.02, 0, 0, 0, -0.01, 0}};
  const auto p = ebrace_forces(CORNERS, ebrace_displacements(CORNERS, u, AREA_5), AREA_5);
  const double slant = std::hypot(50, 60), strut = p(1) / 100;
  const double q[4] = {p(4) / slant, p(5) / slant, p(2) / 35, p(3) / 35};
  const double s = q[0] + q[1] + q[2] + q[3];
  const BraceMatrix external = external_under(u);
  for (int i = 1; i <= 3; ++i) {
    EXPECT_NEAR(external(i, i), q[0] - q[0] * q[0] / s + strut, 1e-12);
    EXPECT_NEAR(external(i, 3 + i), -q[0] * q[1] / s - strut, 1e-12);
    EXPECT_NEAR(external(6 + i, 3 + i), -q[2] * q[1] / s, 1e-12);
    EXPECT_NEAR(external(9 + i, 9 + i), q[3] - q[3] * q[3] / s, 1e-12);
  }

  // Racked, with the halves of the strut in balance, a brace adds nothing.
  const BraceCorners racked{{0.3, 0.1, 0, 0.3, -0.1, 0, -0.7, 0.2, 0, -0.7, -0.2, 0}};
  for (const BraceMatrix& kg : {internal_under(racked), external_under(racked)})
    for (const double value : kg.v) EXPECT_EQ(value, 0);
  // Out of balance by a hundred-thousandth it adds its matrix, by a thousand-millionth it does not.
  for (const auto& [out, adds] : {std::pair{1e-5, true}, {1e-9, false}}) {
    BraceCorners top = racked, foot = racked;
    top(1) += out;
    foot(7) += out;
    EXPECT_EQ(internal_under(top)(1, 1) != 0, adds) << out;
    EXPECT_EQ(external_under(foot)(1, 1) != 0, adds) << out;
  }
}
