#include <gtest/gtest.h>

#include "bars/forces.h"
#include "bars/frame.h"
#include "support/models.h"

static const auto KINDS = {ibrace_stiffness, ebrace_stiffness};

TEST(Brace, MatchesTheFiguresOfEachKind) {
  BraceMatrix k;
  ibrace_stiffness(k, CORNERS, AREA_5);
  EXPECT_NEAR(k(1, 1), 1708.6801, 5e-5);
  EXPECT_NEAR(k(1, 4), -1251.3199, 5e-5);
  EXPECT_NEAR(k(7, 7), 228.6801, 5e-5);
  ebrace_stiffness(k, CORNERS, AREA_5);
  EXPECT_NEAR(k(1, 1), 1808.0577, 5e-5);
  EXPECT_NEAR(k(1, 2), -393.6692, 5e-5);
  EXPECT_NEAR(k(1, 4), -1151.9423, 5e-5);
}

TEST(Brace, TurnsWithItsPlaneAndIsFreeAcrossIt) {
  const BraceCorners u{{1, -2, 3, 0.5, 4, -1, 2, 2, 1, -3, 1, 0.2}};
  for (const auto brace : KINDS) {
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
  BraceCorners u;
  for (int c = 0; c < 4; ++c) {
    u(3 * c + 1) = 7 - CORNERS(3 * c + 2) / 10;
    u(3 * c + 2) = -3 + CORNERS(3 * c + 1) / 10;
    u(3 * c + 3) = 11;
  }
  const BraceCorners c12 = turned(CORNERS), u12 = turned(u);
  BraceMatrix k12;
  ibrace_stiffness(k12, c12, AREA_5);
  for (const double p : ibrace_forces(c12, multiply(k12, u12)).v) EXPECT_NEAR(p, 0, 2e-3);
  const PatchVector u15 = ebrace_displacements(c12, u12, AREA_5);
  for (const double p : ebrace_forces(c12, u15, AREA_5).v) EXPECT_NEAR(p, 0, 2e-3);
}

TEST(BraceForces, FilesHoldOneBlockPerAnalysisInFixedColumns) {
  Model m = one_girder(48);
  m.secdim = {{60, 70, 100, 12, 144, 8}};  // CORNERS at the first station
  add_ibraces(m, {0});
  add_laterals(m, {{2, 0, 0}});
  Structure f = generate(m);
  f.elements.ebconn = f.elements.ibconn;  // an external brace in the same place
  f.properties.ebprop = f.properties.ibprop;
  f.elements.nebel = 1;
  Vector<double> U(NDOF * f.nodes.nnode);
  U(equation(30, 1)) = 0.01;
  std::string ibr, ebr, axf;
  write_ibrace_forces(f.nodes, f.elements, f.properties, U, 2, ibr);
  write_ebrace_forces(f.nodes, f.elements, f.properties, U, 1, ebr);
  U(equation(30, 1)) = -10000;
  write_lateral_forces(f.nodes, f.elements, f.properties, U, 1, axf);
  const std::string head = " run\n           1\n           1\n    1";
  EXPECT_EQ(ibr,
            " run\n           2\n           1\n    1    -17.09    -12.51      4.54     -4.54\n");
  EXPECT_EQ(ebr, head + "    -14.80      3.28     -3.28     -5.12      5.12\n");
  EXPECT_EQ(axf, head + "  **********\n") << "wider than its field";
}
