#include "solution/nodal.h"

#include <gtest/gtest.h>

#include "model/pattern.h"
#include "support/models.h"

// Station s is lowered by s/8 at the left foot and 3s/8 at the right one.
TEST(NodalResults, ListTheMeanAndTheDifferenceOfTheWebFeet) {
  for (const SectionPattern* pattern : {&ONE_GIRDER, &TWO_GIRDERS}) {
    Vector<double> U(5 * 5 * pattern->nodes);
    for (int s = 0; s < 5; ++s) {
      U(equation(s * pattern->nodes + pattern->girder[0].left_foot(), 2)) = 0 - 0.125 * s;
      U(equation(s * pattern->nodes + pattern->girder[0].right_foot(), 2)) = 0 - 0.375 * s;
    }
    std::string def, rot;
    const bool one = pattern->girders == 1;
    one ? write_deflections(U, 48, 3, def) : write_deflections_two(U, 48, 3, def);
    one ? write_rotations(U, 48, 3, 72, rot) : write_rotations_two(U, 48, 3, 72, rot);
    const std::string head = " run\n           3\n           3\n";
    EXPECT_EQ(def, head +
                       "         0        0.00\n"
                       "        24       -0.50\n"
                       "        48       -1.00\n");
    EXPECT_EQ(rot, head +
                       "         0        0.000000\n"
                       "        24        0.006944\n"
                       "        48        0.013889\n");
  }
}

TEST(Reactions, AreThePenaltyForcesOfNineNodes) {
  Model m = two_girders(96);
  set_supports(m, {0, 72, 96});
  const Structure s = generate(m);
  Vector<double> U(5 * s.nodes.nnode);
  for (int i = 1; i <= 54; ++i)
    U(equation(s.elements.fixnode(i), 2)) = -1.0e-20 * ((i - 1) / 9 + 1);
  U(equation(72, 2)) = -1;  // no support
  std::string out, one;
  write_reactions(s.elements, U, 2, 10, out);
  EXPECT_EQ(out,
            " run 10\n"
            " Pinned\n    0\n    9.0000\n   18.0000\n"
            " Roller\n    6\n   27.0000\n   36.0000\n"
            " Roller\n    8\n   45.0000\n   54.0000\n");
  const Structure girder = generate(one_girder(24));
  U.clear();
  U(equation(42, 2)) = 2.5e-19;
  write_reactions(girder.elements, U, 1, 9, one);
  EXPECT_EQ(one, " run 9\n Pinned\n    0\n  -25.0000\n Roller\n    2\n    0.0000\n");
}
