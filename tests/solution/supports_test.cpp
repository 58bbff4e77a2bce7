#include "solution/supports.h"

#include <gtest/gtest.h>

#include "support/models.h"

using namespace zelvo;

namespace {

// The largest value is the 4 off the diagonal; the -9 must not count.
struct Supported {
  SymmetricMatrix K;

  explicit Supported(const Model& m) {
    const Structure s = generate_structure(m);
    K = matrix_of(s);
    K.own_value(1, 1, 1) = 3;
    K.own_value(1, 1, 2) = 4;
    K.own_value(1, 2, 2) = -9;
    apply_supports(m, s, K);
  }
  void expect(int node, double x, double y, double z) {
    const double values[3] = {x, y, z};
    for (int d = 1; d <= 3; ++d)
      EXPECT_DOUBLE_EQ(K.own_value(node, d, d), values[d - 1]) << "node " << node;
  }
};

}  // namespace

// The first row of the input is pinned, wherever it stands; rows at one station add up.
TEST(Supports, OfAStraightModelHoldEveryRollerNodeAcross) {
  Model m = one_girder(48);
  set_supports(m, {48, 0, 0});
  Supported k(m);
  for (int n = 38; n <= 46; ++n) {
    k.expect(4 * 54 + n, n == 42 ? BIG : 0, BIG, n == 42 ? BIG : 0);
    k.expect(n, 8000, 2 * BIG, 0);
  }
  k.expect(37, 0, 0, 0);
}
