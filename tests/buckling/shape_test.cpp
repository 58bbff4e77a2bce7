#include "buckling/shape.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "model/pattern.h"
#include "support/models.h"

namespace {

struct Shape {
  Model model;
  Nodes nodes;
  Vector<double> eigval;
  Matrix<double> eigvec;
  Shape(const Model& m, int nev) : model(m), eigval(nev) {
    m.ngird == 1 ? generate_nodes_one(m, nodes) : generate_nodes_two(m, nodes);
    eigvec = Matrix<double>(5 * nodes.nnode, nev);
  }
};

std::vector<std::string> lines(const Shape& s, int k) {
  std::string out;
  (s.model.ngird == 1 ? write_shape : write_shape_two)(s.model, s.nodes, s.eigval, s.eigvec, k,
                                                       out);
  std::vector<std::string> all;
  std::istringstream in(out);
  for (std::string line; std::getline(in, line);) all.push_back(line);
  return all;
}

}  // namespace

TEST(Shape, BlockOfOneGirderHasAHeadingAndForEachModeItsFactorAndSections) {
  Shape s(one_girder(48), 2);
  s.eigval(1) = 2.3789;
  const auto text = lines(s, 3);
  ASSERT_EQ(text.size(), 1u + 2u * (1u + 3u * (1u + 33u)));
  EXPECT_EQ(text[0], " run 3");
  EXPECT_EQ(text[1], "        2.379");
  EXPECT_EQ(text[2], "        0");
  EXPECT_EQ(text[3], "      -48.0000       60.0000");   // outer edge of the left top flange
  EXPECT_EQ(text[11], "      -42.0000       60.0000");  // left web top
  EXPECT_EQ(text[36], "        2");
  EXPECT_EQ(text[104], "        0.000");
  EXPECT_EQ(lines(s, 10)[0], " run 10");
}

TEST(Shape, BlockOfTwoGirdersHas66NodesPerSectionSeenFromTheMiddleOfTheDeck) {
  const auto text = lines(Shape(two_girders(24), 1), 1);
  ASSERT_EQ(text.size(), 1u + 1u + 2u * (1u + 66u));
  EXPECT_EQ(text[2], "           0");
  EXPECT_EQ(text[3], "     -138.0000       60.0000");
  EXPECT_EQ(text[3 + 33], "       42.0000       60.0000");
}

TEST(Shape, OfAStraightGirderAddsFiftyTimesTheDisplacementsInThePlane) {
  Shape s(one_girder(24), 1);
  const int n = ONE_GIRDER.nodes * 2 + 42;  // bottom flange centre of the second section
  s.eigvec(equation(n, 1), 1) = 0.02;
  s.eigvec(equation(n, 2), 1) = -0.03;
  s.eigvec(equation(n, 3), 1) = 0.5;  // along the girder: not seen
  const auto text = lines(s, 1);
  EXPECT_EQ(text[3 + 34 + 20], "        1.0000       -1.5000");
}

TEST(Shape, OfACurvedGirderTakesTheRadialDisplacement) {
  Shape s(two_girders(120, 1200), 1);
  const int station = 10, n = TWO_GIRDERS.nodes * station + 62;  // bottom flange centre, girder 1
  const double t = 12.0 * station / 1200;
  // Outwards along the radius (-cos t, -sin t) in x and z; the tangential part is not seen.
  s.eigvec(equation(n, 1), 1) = -0.01 * std::cos(t) + 0.7 * std::sin(t);
  s.eigvec(equation(n, 3), 1) = -0.01 * std::sin(t) - 0.7 * std::cos(t);
  const auto text = lines(s, 1);
  EXPECT_EQ(text[3 + 67 * 5 + 20], "      -92.5000        0.0000");  // -90 - 250 * 0.01
}
