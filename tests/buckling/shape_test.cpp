#include "buckling/shape.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "model/pattern.h"
#include "support/models.h"

using namespace zelvo;

// What the reference runs leave out: curved girders, and an analysis of two digits.
TEST(Shape, OfCurvedGirdersTakesFiftyTimesTheRadialDisplacement) {
  const Model m = two_girders(120, 1200);
  const Nodes nodes = generate(m).nodes;
  Vector<double> eigval(2);
  Matrix<double> eigvec(NDOF * nodes.nnode, 2);
  eigval(1) = 2.3789;
  // Outwards along the radius (-cos t, -sin t) in x and z; the tangential part is not seen.
  const int station = 10, bottom = TWO_GIRDERS.nodes * station + 62;
  const double t = 12.0 * station / 1200;
  eigvec(equation(bottom, 1), 1) = -0.01 * std::cos(t) + 0.7 * std::sin(t);
  eigvec(equation(bottom, 3), 1) = -0.01 * std::sin(t) - 0.7 * std::cos(t);
  std::string out;
  write_shape_two(m, nodes, eigval, eigvec, 10, out);
  std::istringstream in(out);
  std::vector<std::string> text;
  for (std::string line; std::getline(in, line);) text.push_back(line);
  ASSERT_EQ(text.size(), 1u + 2u * (1u + 6u * (1u + 66u)));
  EXPECT_EQ(text[0], " run 10");
  EXPECT_EQ(text[1], "        2.379");
  EXPECT_EQ(text[2], "           0");
  EXPECT_EQ(text[3], "     -138.0000       60.0000");
  EXPECT_EQ(text[3 + 33], "       42.0000       60.0000");
  EXPECT_EQ(text[3 + 67 * 5 + 20], "      -92.5000        0.0000");  // -90 - 250 * 0.01
}
