#include "buckling/shape.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "model/pattern.h"
#include "support/models.h"

// The block of two modes with one displaced node, line by line.
static std::vector<std::string> lines(const Model& m, int node, const double* u, int k) {
  const Nodes nodes = generate(m).nodes;
  Vector<double> eigval(2);
  Matrix<double> eigvec(NDOF * nodes.nnode, 2);
  eigval(1) = 2.3789;
  for (int d = 1; d <= 3; ++d) eigvec(equation(node, d), 1) = u[d - 1];
  std::string out;
  (m.ngird == 1 ? write_shape : write_shape_two)(m, nodes, eigval, eigvec, k, out);
  std::istringstream in(out);
  std::vector<std::string> all;
  for (std::string line; std::getline(in, line);) all.push_back(line);
  return all;
}

TEST(Shape, HasForEachModeItsFactorAndSectionsWithFiftyTimesTheDisplacements) {
  // Bottom flange centre of the second section; w, along the girder, is not seen.
  const double u[3] = {0.02, -0.03, 0.5};
  const auto text = lines(one_girder(48), ONE_GIRDER.nodes * 2 + 42, u, 10);
  ASSERT_EQ(text.size(), 1u + 2u * (1u + 3u * (1u + 33u)));
  EXPECT_EQ(text[0], " run 10");
  EXPECT_EQ(text[1], "        2.379");
  EXPECT_EQ(text[2], "        0");
  EXPECT_EQ(text[3], "      -48.0000       60.0000");   // outer edge of the left top flange
  EXPECT_EQ(text[11], "      -42.0000       60.0000");  // left web top
  EXPECT_EQ(text[36], "        2");
  EXPECT_EQ(text[3 + 34 + 20], "        1.0000       -1.5000");
  EXPECT_EQ(text[104], "        0.000");
}

TEST(Shape, OfCurvedGirdersTakesTheRadialDisplacementFromTheMiddleOfTheDeck) {
  const int station = 10;
  const double t = 12.0 * station / 1200;
  // Outwards along the radius (-cos t, -sin t) in x and z; the tangential part is not seen.
  const double u[3] = {-0.01 * std::cos(t) + 0.7 * std::sin(t), 0,
                       -0.01 * std::sin(t) - 0.7 * std::cos(t)};
  const auto text = lines(two_girders(120, 1200), TWO_GIRDERS.nodes * station + 62, u, 1);
  ASSERT_EQ(text.size(), 1u + 2u * (1u + 6u * (1u + 66u)));
  EXPECT_EQ(text[2], "           0");
  EXPECT_EQ(text[3], "     -138.0000       60.0000");
  EXPECT_EQ(text[3 + 33], "       42.0000       60.0000");
  EXPECT_EQ(text[3 + 67 * 5 + 20], "      -92.5000        0.0000");  // -90 - 250 * 0.01
}
