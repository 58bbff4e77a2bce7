#include "solution/supports.h"

#include <gtest/gtest.h>

#include <cmath>

#include "model/pattern.h"
#include "support/models.h"

namespace {

// A model's matrix with the largest value 4 off the diagonal, and -9, which must not count.
struct Supported {
  Structure s;
  MatrixPattern pattern;
  Vector<double> K;

  explicit Supported(const Model& m) : s(generate(m)) {
    pattern = build_pattern(s.nodes.nnode, s.elements);
    K = Vector<double>(pattern.nnz);
    K(pattern.ia(1)) = 3;
    K(pattern.ia(1) + 1) = 4;
    K(pattern.ia(2)) = -9;
    apply_supports(m, s.elements, pattern, K);
  }
  double own(int node, int d, int c) const { return K(pattern.ia(equation(node, d)) + c - d); }
  void expect(int node, double x, double y, double z, double xz) const {
    EXPECT_DOUBLE_EQ(own(node, 1, 1), x) << "node " << node;
    EXPECT_DOUBLE_EQ(own(node, 2, 2), y) << "node " << node;
    EXPECT_DOUBLE_EQ(own(node, 3, 3), z) << "node " << node;
    EXPECT_DOUBLE_EQ(own(node, 1, 3), xz) << "node " << node;
  }
};

}  // namespace

TEST(Supports, OfAStraightModelHoldEveryRollerNodeAcross) {
  Model m = one_girder(48);
  set_supports(m, {48, 0});  // the first row of the input is pinned, wherever it stands
  const Supported k(m);
  for (int n = 38; n <= 46; ++n) {
    k.expect(4 * 54 + n, n == 42 ? BIG : 0, BIG, n == 42 ? BIG : 0, 0);
    k.expect(n, 4000, BIG, 0, 0);
  }
  k.expect(37, 0, 0, 0, 0);
}

TEST(Supports, OfACurvedModelHoldTheRollerCentresAlongTheRadius) {
  Model m = two_girders(96, 600);
  set_supports(m, {0, 96});
  const Supported k(m);
  const double c = std::cos(0.16), s = std::sin(0.16);
  k.expect(62, BIG, BIG, BIG, 0);
  k.expect(95, BIG, BIG, BIG, 0);
  k.expect(58, 0, BIG, 0, 0);
  for (const int n : {62, 95}) k.expect(8 * 107 + n, 4000 * c * c, BIG, 4000 * s * s, 4000 * c * s);
  for (const int n : {58, 61, 63, 91, 99}) k.expect(8 * 107 + n, 0, BIG, 0, 0);
}

TEST(Supports, AtTheSameStationAddTheirPenaltiesTwice) {
  Model m = one_girder(24);
  set_supports(m, {24, 24});
  const Supported k(m);
  k.expect(108 + 38, 4000, 2 * BIG, 0, 0);
}
