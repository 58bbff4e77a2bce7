#include "model/nodes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/models.h"

namespace {

using Vec3 = FixedVector<double, 3>;

void expect_column(const Matrix<double>& table, int n, const Vec3& expected, double tol) {
  for (int i = 1; i <= 3; ++i) EXPECT_NEAR(table(i, n), expected(i), tol) << "node " << n;
}

struct Place {
  int node;
  double x, y;
};
void expect_places(const Nodes& nodes, const std::vector<Place>& places) {
  for (const Place& p : places) expect_column(nodes.xyz, p.node, {{p.x, p.y, 0}}, 1e-12);
}

}  // namespace

TEST(Nodes, StandAtTheirPlacesInTheSection) {
  const Nodes one = generate(one_girder(24)).nodes;
  EXPECT_EQ(one.nnode, 162);
  expect_places(one, {{1, -72, 60},
                      {2, -66, 60},
                      {5, -48, 60},
                      {7, -42, 60},
                      {9, -36, 60},
                      {10, -18, 60},
                      {11, 0, 60},
                      {21, 72, 60},
                      {24, -39, 60},
                      {29, 48, 60},
                      {31, -41.25, 52.5},
                      {38, -36, 0},
                      {39, -27, 0},
                      {54, 42, 60}});
  expect_column(one.xyz, 55, {{-72, 60, -12}}, 1e-12);
  Model m = two_girders(24);
  m.secdim(5) = 300;
  m.offset = 150;
  const Nodes two = generate(m).nodes;
  EXPECT_EQ(two.nnode, 321);
  expect_places(two,
                {{1, -150, 60},  {5, -198, 60},  {7, -192, 60},  {9, -186, 60},  {10, -168, 60},
                 {11, -150, 60}, {13, -114, 60}, {15, -108, 60}, {17, -102, 60}, {18, -76.5, 60},
                 {21, 0, 60},    {41, 150, 60},  {42, -198, 60}, {49, -102, 60}, {50, -192, 60},
                 {58, -186, 0},  {62, -150, 0},  {75, 102, 60},  {91, 114, 0},   {107, 192, 60}});
}

TEST(Nodes, AxesFollowTheWebInsideItAndTheFlangesAtItsEnds) {
  const Nodes n = generate(two_girders(24)).nodes;
  for (const int m : {51, 57, 84, 90}) {
    expect_column(n.vt1, m, {{0.0995, -0.9950, 0}}, 5e-5);
    expect_column(n.vn, m, {{0.9950, 0.0995, 0}}, 5e-5);
  }
  for (const int m : {67, 73, 100, 106}) {
    expect_column(n.vt1, m, {{0.0995, 0.9950, 0}}, 5e-5);
    expect_column(n.vn, m, {{-0.9950, 0.0995, 0}}, 5e-5);
  }
  for (const int m : {1, 42, 50, 58, 62, 66, 74, 82, 83, 91, 107}) {
    expect_column(n.vn, m, {{0, 1, 0}}, 0);
    expect_column(n.vt1, m, {{1, 0, 0}}, 0);
    expect_column(n.vt2, m, {{0, 0, -1}}, 0);
  }
}

TEST(Nodes, OfACurvedGirderKeepTheirRadiusAndTurnTheirTriads) {
  const Nodes n = generate(one_girder(48, 1200)).nodes;
  const int node = 3 * 54 + 1;  // section x = -72: radius 1272, angle 0.03
  expect_column(n.xyz, node, {{-1272 * std::cos(0.03), 60, -1272 * std::sin(0.03)}}, 1e-12);
  expect_column(n.vt1, node, {{0.99955, 0, 0.03}}, 1e-5);
  expect_column(n.vt2, node, {{0.03, 0, -0.99955}}, 1e-5);
  for (int i = 1; i <= n.nnode; ++i) {
    const double *a = n.vt1.column(i), *b = n.vt2.column(i);
    EXPECT_NEAR(a[0] * b[0] + a[1] * b[1] + a[2] * b[2], 0, 1e-15);
    const Vec3 axb{
        {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]}};
    expect_column(n.vn, i, axb, 1e-15);
    EXPECT_NEAR(std::hypot(axb(1), axb(2), axb(3)), 1, 1e-15);
  }
}
