#include "buckling/shape.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/models.h"

using namespace zelvo;

// What the reference runs leave out: curved girders.
TEST(BuckledSections, OfCurvedGirdersTakeTheRadialDisplacementAtTheirScale) {
  const Model m = two_girders(120, 1200);
  const Structure s = generate_structure(m);
  Matrix<double> eigvec(NDOF * s.nodes.nnode, 2);
  // Outwards along the radius (-cos t, -sin t) in x and z; the tangential part is not seen.
  const int station = 10, bottom = TWO_GIRDERS.nodes * station + 62;
  const double t = 12.0 * station / 1200;
  eigvec(equation(bottom, 1), 1) = -0.01 * std::cos(t) + 0.7 * std::sin(t);
  eigvec(equation(bottom, 3), 1) = -0.01 * std::sin(t) - 0.7 * std::cos(t);
  const BuckledSections b = buckled_sections(m, s, eigvec);
  ASSERT_EQ(b.across.extent1(), 66);
  ASSERT_EQ(b.across.extent2(), 6);
  EXPECT_NEAR(b.across(1, 1, 1), -138, 1e-9);
  EXPECT_NEAR(b.height(1, 1, 1), 60, 1e-9);
  EXPECT_NEAR(b.across(34, 1, 1), 42, 1e-9);
  EXPECT_NEAR(b.across(21, 6, 1), -90 - 250 * 0.01, 1e-9);
  EXPECT_NEAR(b.across(21, 6, 2), -90, 1e-9);
}
