#include "solution/supports.h"

#include <gtest/gtest.h>

#include <cmath>

#include "model/pattern.h"
#include "support/models.h"

namespace {

// The largest value is the 4 off the diagonal; the -9 must not count.
struct Supported {
  MatrixPattern pattern;
  Vector<double> K;

  explicit Supported(const Model& m) {
    const Structure s = generate(m);
    pattern = build_pattern(s.nodes.nnode, s.elements);
    K = Vector<double>(pattern.nnz);
    K(1) = 3;
    K(2) = 4;
    K(pattern.ia(2)) = -9;
    apply_supports(m, s.elements, pattern, K);
  }
  void expect(int node, double x, double y, double z, double xz) const {
    const int row = pattern.ia(equation(node, 1));
    EXPECT_DOUBLE_EQ(K(row), x) << "node " << node;
    EXPECT_DOUBLE_EQ(K(pattern.ia(equation(node, 2))), y) << "node " << node;
    EXPECT_DOUBLE_EQ(K(pattern.ia(equation(node, 3))), z) << "node " << node;
    EXPECT_DOUBLE_EQ(K(row + 2), xz) << "node " << node;
  }
};

}  // namespace

// The first row of the input is pinned, wherever it stands; rows at one station add up.
TEST(Supports, OfAStraightModelHoldEveryRollerNodeAcross) {
  Model m = one_girder(48);
  set_supports(m, {48, 0, 0});
  const Supported k(m);
  for (int n = 38; n <= 46; ++n) {
    k.expect(4 * 54 + n, n == 42 ? BIG : 0, BIG, n == 42 ? BIG : 0, 0);
    k.expect(n, 8000, 2 * BIG, 0, 0);
  }
  k.expect(37, 0, 0, 0, 0);
}

TEST(Supports, OfACurvedModelHoldTheRollerCentresAlongTheRadius) {
  Model m = two_girders(96, 600);
  const Supported k(m);
  const double c = std::cos(0.16), s = std::sin(0.16);
  for (const int n : {62, 95}) {
    k.expect(n, BIG, BIG, BIG, 0);
    k.expect(8 * 107 + n, 4000 * c * c, BIG, 4000 * s * s, 4000 * c * s);
  }
  for (const int n : {58, 8 * 107 + 58, 8 * 107 + 61, 8 * 107 + 99}) k.expect(n, 0, BIG, 0, 0);
}
