#include "model/nodes.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/models.h"

namespace {

void expect_at(const Nodes& nodes, int n, double x, double y, double z = 0) {
  EXPECT_NEAR(nodes.xyz(1, n), x, 1e-12) << "node " << n;
  EXPECT_NEAR(nodes.xyz(2, n), y, 1e-12) << "node " << n;
  EXPECT_NEAR(nodes.xyz(3, n), z, 1e-12) << "node " << n;
}

void expect_axis(const Matrix<double>& axis, int n, double x, double y, double z, double tol) {
  EXPECT_NEAR(axis(1, n), x, tol) << "node " << n;
  EXPECT_NEAR(axis(2, n), y, tol) << "node " << n;
  EXPECT_NEAR(axis(3, n), z, tol) << "node " << n;
}

}  // namespace

TEST(Nodes, OfOneGirderStandAtTheirPlacesInTheSection) {
  const Nodes n = generate(one_girder(24)).nodes;
  EXPECT_EQ(n.nnode, 162);
  expect_at(n, 1, -72, 60);
  expect_at(n, 2, -66, 60);
  expect_at(n, 5, -48, 60);
  expect_at(n, 7, -42, 60);
  expect_at(n, 9, -36, 60);
  expect_at(n, 10, -18, 60);
  expect_at(n, 11, 0, 60);
  expect_at(n, 21, 72, 60);
  expect_at(n, 24, -39, 60);
  expect_at(n, 29, 48, 60);
  expect_at(n, 31, -41.25, 52.5);
  expect_at(n, 38, -36, 0);
  expect_at(n, 39, -27, 0);
  expect_at(n, 54, 42, 60);
  expect_at(n, 55, -72, 60, -12);
}

TEST(Nodes, OfTwoGirdersStandAtTheirPlacesInTheSection) {
  Model m = two_girders(24);
  m.secdim(5) = 300;
  m.offset = 150;
  const Nodes n = generate(m).nodes;
  EXPECT_EQ(n.nnode, 321);
  const double x[][2] = {{1, -150},   {5, -198},  {7, -192},  {9, -186},  {10, -168},
                         {11, -150},  {12, -132}, {13, -114}, {15, -108}, {17, -102},
                         {18, -76.5}, {21, 0},    {24, 76.5}, {41, 150}};
  for (const auto& row : x) expect_at(n, static_cast<int>(row[0]), row[1], 60);
  expect_at(n, 42, -198, 60);
  expect_at(n, 49, -102, 60);
  expect_at(n, 50, -192, 60);
  expect_at(n, 58, -186, 0);
  expect_at(n, 62, -150, 0);
  expect_at(n, 75, 102, 60);
  expect_at(n, 91, 114, 0);
  expect_at(n, 107, 192, 60);
}

TEST(Nodes, AxesFollowTheWebInsideItAndTheFlangesAtItsEnds) {
  const Nodes n = generate(two_girders(24)).nodes;
  for (const int m : {51, 57, 84, 90}) {
    expect_axis(n.vt1, m, 0.0995, -0.9950, 0, 5e-5);
    expect_axis(n.vn, m, 0.9950, 0.0995, 0, 5e-5);
  }
  for (const int m : {67, 73, 100, 106}) {
    expect_axis(n.vt1, m, 0.0995, 0.9950, 0, 5e-5);
    expect_axis(n.vn, m, -0.9950, 0.0995, 0, 5e-5);
  }
  for (const int m : {1, 42, 50, 58, 62, 66, 74, 82, 83, 91, 107}) {
    expect_axis(n.vn, m, 0, 1, 0, 0);
    expect_axis(n.vt1, m, 1, 0, 0, 0);
    expect_axis(n.vt2, m, 0, 0, -1, 0);
  }
}

TEST(Nodes, OfACurvedGirderKeepTheirRadiusAndTurnTheirAxes) {
  const Nodes n = generate(one_girder(48, 1200)).nodes;
  const int node = 3 * 54 + 1;  // section x = -72: radius 1272, angle 0.03
  expect_at(n, node, -1272 * std::cos(0.03), 60, -1272 * std::sin(0.03));
  expect_axis(n.vt1, node, 0.99955, 0, 0.03, 1e-5);
  expect_axis(n.vt2, node, 0.03, 0, -0.99955, 1e-5);
}

TEST(Nodes, TriadsAreRightHandedAndOrthonormalEverywhere) {
  const Nodes n = generate(two_girders(72, 2400)).nodes;
  for (int i = 1; i <= n.nnode; ++i) {
    const double *a = n.vt1.column(i), *b = n.vt2.column(i);
    expect_axis(n.vn, i, a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                a[0] * b[1] - a[1] * b[0], 1e-15);
    EXPECT_NEAR(std::hypot(a[0], a[1], a[2]), 1, 1e-15);
    EXPECT_NEAR(std::hypot(b[0], b[1], b[2]), 1, 1e-15);
    EXPECT_NEAR(a[0] * b[0] + a[1] * b[1] + a[2] * b[2], 0, 1e-15);
  }
}
