#include "shell/sections.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "model/pattern.h"
#include "support/models.h"
#include "support/shells.h"

TEST(SectionForces, OfAnEdgeAreRowsOfTheStiffnessTimesDisplacements) {
  const ShellWork w = skewed_shell(2, CONCRETE_DECK);
  const SectionFrame frame{{{0.6, 0, 0.8}}, {{0.8, 0, -0.6}}, {{0, 1, 0}}};
  ShellVector d{}, f{};
  for (int j = 1; j <= 45; ++j) d(j) = 0.01 * (j % 7 - 3);
  ShellMatrix ke{};
  shell_stiffness(w, ke);
  for (int i = 1; i <= 45; ++i)
    for (int j = 1; j <= 45; ++j) f(i) += ke(i, j) * d(j);
  for (const bool near_edge : {true, false}) {
    EdgeForces edge;
    shell_edge_forces(w, d, near_edge, frame, edge);
    const int node[3] = {near_edge ? 1 : 3, near_edge ? 2 : 4, near_edge ? 5 : 7};
    for (int n = 1; n <= 3; ++n) {
      const int i = node[n - 1];
      const double* const F = &f(5 * i - 4);
      EXPECT_NEAR(edge.force(1, n), 0.6 * F[0] + 0.8 * F[2], 1e-6);
      EXPECT_NEAR(edge.force(2, n), 0.8 * F[0] - 0.6 * F[2], 1e-6);
      EXPECT_NEAR(edge.force(3, n), F[1], 1e-6);
      EXPECT_NEAR(edge.moment(3, n), F[3] * w.evt1(2, i) + F[4] * w.evt2(2, i), 1e-6);
    }
  }
}

TEST(SectionForces, VanishUnderRigidMotions) {
  const Model m = two_girders(48, 1200);
  const Structure s = generate(m);
  const Nodes& nodes = s.nodes;
  const double v[3] = {1, 2, 3}, r[3] = {1e-3, 2e-3, -1e-3};
  Vector<double> U(NDOF * nodes.nnode);
  for (int n = 1; n <= nodes.nnode; ++n)
    rigid_motion(v, r, nodes.xyz.column(n), nodes.vt1.column(n), nodes.vt2.column(n),
                 &U(5 * n - 4));
  std::string sec, str;
  section_forces_two(m, nodes, s.elements, s.properties, U, 1, sec, str);
  for (const std::string& text : {sec, str})
    for (const char* digit : {".1", ".2", ".5", ".9"}) EXPECT_EQ(text.find(digit), text.npos);
  EXPECT_EQ(str.substr(0, 31), " run\n           1\n           2\n");
  EXPECT_EQ(std::count(str.begin(), str.end(), '\n'), 3 + 2 * 8);
}

// Strain 0.001 along the girder and shear 0.001 in plan. The bottom flange, 72 x 1 at 60 below the
// deck, makes a moment of 60 c1 A 0.001 and a torque of 60 G A 0.001; webs and deck are next to
// nothing and the top flanges have no arm.
TEST(SectionForces, OfTheBottomFlangeTurnAboutTheDeck) {
  Model m = one_girder(48);
  set_webs(m, {48}, {1e-6});
  const Structure s = generate(m);
  Vector<double> U(NDOF * s.nodes.nnode);
  for (int n = 1; n <= s.nodes.nnode; ++n)
    U(equation(n, 1)) = U(equation(n, 3)) = 0.001 * s.nodes.xyz(3, n);
  std::string sec, str;
  section_forces_one(m, s.nodes, s.elements, s.properties, U, 1, sec, str);
  EXPECT_EQ(sec.substr(0, 31), " run\n           1\n           3\n");
  for (const char* position : {"\n       0  ", "\n      24  ", "\n      48  "}) {
    const auto at = sec.find(position);
    ASSERT_NE(at, sec.npos);
    EXPECT_EQ(sec.substr(at + 23, 29), "       11709.9        4098.4\n");
  }
  const std::string stress = "    32.53    32.53    32.53", shear = "   -11.38   -11.38   -11.38";
  EXPECT_NE(str.find("\n      12     0.00"), str.npos) << "deck strips first";
  EXPECT_NE(str.find(stress + "\n      12" + stress), str.npos);
  EXPECT_NE(str.find(shear + "\n      12   -11.38    -1.13"), str.npos);
}
