#include "solution/nodal.h"

#include <gtest/gtest.h>

#include "model/pattern.h"
#include "support/models.h"

namespace {

Vector<double> lowered(const Structure& s, int nodes, int left, int right) {
  Vector<double> U(5 * s.nodes.nnode);
  for (int station = 0; station * nodes < s.nodes.nnode; ++station) {
    U(equation(station * nodes + left, 2)) = 0 - 0.125 * station;
    U(equation(station * nodes + right, 2)) = 0 - 0.375 * station;
  }
  return U;
}

}  // namespace

TEST(NodalResults, ListTheMeanAndTheDifferenceOfTheWebFeet) {
  const char* deflections =
      " run\n"
      "           3\n"
      "           3\n"
      "         0        0.00\n"
      "        24       -0.50\n"
      "        48       -1.00\n";
  const char* rotations =
      " run\n"
      "           3\n"
      "           3\n"
      "         0        0.000000\n"
      "        24        0.006944\n"
      "        48        0.013889\n";
  std::string def, rot, def_two, rot_two;
  const Vector<double> U = lowered(generate(one_girder(48)), 54, 38, 46);
  write_deflections(U, 48, 3, def);
  write_rotations(U, 48, 3, 72, rot);
  EXPECT_EQ(def, deflections);
  EXPECT_EQ(rot, rotations);
  const Vector<double> V = lowered(generate(two_girders(48)), 107, 58, 66);
  write_deflections_two(V, 48, 3, def_two);
  write_rotations_two(V, 48, 3, 72, rot_two);
  EXPECT_EQ(def_two, deflections);
  EXPECT_EQ(rot_two, rotations);
}

TEST(Reactions, AreThePenaltyForcesOfNineNodes) {
  Model m = two_girders(96);
  set_supports(m, {0, 72, 96});
  const Structure s = generate(m);
  Vector<double> U(5 * s.nodes.nnode);
  for (int i = 1; i <= 54; ++i)
    U(equation(s.elements.fixnode(i), 2)) = -1.0e-20 * ((i - 1) / 9 + 1);
  U(equation(72, 2)) = -1;  // no support
  std::string out;
  write_reactions(s.elements, U, 2, 10, out);
  EXPECT_EQ(out,
            " run 10\n"
            " Pinned\n    0\n    9.0000\n   18.0000\n"
            " Roller\n    6\n   27.0000\n   36.0000\n"
            " Roller\n    8\n   45.0000\n   54.0000\n");
}

TEST(Reactions, OfOneGirderAreOneToASupport) {
  const Structure s = generate(one_girder(24));
  Vector<double> U(5 * s.nodes.nnode);
  U(equation(42, 2)) = 2.5e-19;
  std::string out;
  write_reactions(s.elements, U, 1, 9, out);
  EXPECT_EQ(out, " run 9\n Pinned\n    0\n  -25.0000\n Roller\n    2\n    0.0000\n");
}
