#include "shell/sections.h"

#include <gtest/gtest.h>

#include "model/pattern.h"
#include "support/models.h"

// Strain 0.001 along the girder and shear 0.001 in plan. The bottom flange, 72 x 1 at 60 below the
// deck, makes a moment of 60 c1 A 0.001 and a torque of 60 G A 0.001; webs and deck are next to
// nothing and the top flanges have no arm.
TEST(SectionForces, OfTheBottomFlangeTurnAboutTheDeck) {
  Model m = one_girder(48);
  set_webs(m, {{48, 1e-6}});
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
