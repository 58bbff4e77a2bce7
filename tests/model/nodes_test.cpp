#include "model/nodes.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/models.h"

using Vec3 = FixedVector<double, 3>;
static void expect_column(const Matrix<double>& table, int n, const Vec3& expected, double tol) {
  for (int i = 1; i <= 3; ++i) EXPECT_NEAR(table(i, n), expected(i), tol) << "node " << n;
}

TEST(Nodes, StandAtTheirPlacesInTheSection) {
  Model m = two_girders(24);
  m.secdim(5) = 300;
  m.offset = 150;
  const Nodes one = generate(one_girder(24)).nodes, two = generate(m).nodes;
  EXPECT_EQ(one.nnode, 162);
  EXPECT_EQ(two.nnode, 321);
  const struct {
    const Nodes& nodes;
    int node;
    double x, y;
  } places[] = {
      {one, 1, -72, 60},  {one, 2, -66, 60},       {one, 10, -18, 60},   {one, 24, -39, 60},
      {one, 29, 48, 60},  {one, 31, -41.25, 52.5}, {one, 39, -27, 0},    {one, 54, 42, 60},
      {two, 1, -150, 60}, {two, 5, -198, 60},      {two, 18, -76.5, 60}, {two, 50, -192, 60},
      {two, 58, -186, 0}, {two, 75, 102, 60},      {two, 91, 114, 0},    {two, 107, 192, 60}};
  for (const auto& [nodes, n, x, y] : places) expect_column(nodes.xyz, n, {{x, y, 0}}, 1e-12);
  expect_column(one.xyz, 55, {{-72, 60, -12}}, 1e-12);
}

TEST(Nodes, AxesFollowTheWebInsideItAndTheFlangesAtItsEnds) {
  const Nodes n = generate(two_girders(24)).nodes;
  const struct {
    int node;
    double x, y;  // vt1
  } rows[] = {{51, 0.0995, -0.9950}, {106, 0.0995, 0.9950}, {50, 1, 0}, {107, 1, 0}};
  for (const auto& [node, x, y] : rows) {
    expect_column(n.vt1, node, {{x, y, 0}}, 5e-5);
    expect_column(n.vn, node, {{-y, x, 0}}, 5e-5);
    expect_column(n.vt2, node, {{0, 0, -1}}, 0);
  }
}

TEST(Nodes, OfACurvedGirderKeepTheirRadiusAndTurnTheirTriads) {
  const Nodes n = generate(one_girder(48, 1200)).nodes;
  const int node = 3 * 54 + 1;  // section x = -72: radius 1272, angle 0.03
  expect_column(n.xyz, node, {{-1272 * std::cos(0.03), 60, -1272 * std::sin(0.03)}}, 1e-12);
  expect_column(n.vt1, node, {{0.99955, 0, 0.03}}, 1e-5);
  expect_column(n.vt2, node, {{0.03, 0, -0.99955}}, 1e-5);
  expect_column(n.vn, node, {{0, 1, 0}}, 1e-15);
}
