#include "matrix/symmetric.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "support/models.h"

using namespace zelvo;

// A bridge with all kinds of bars.
static Structure bridge_of(Model m) {
  add_ibraces(m, {24, 48});
  add_laterals(m, {{1, 24, 48}, {2, 48, 72}});
  add_stiffeners(m, {24});
  if (m.ngird == 2) add_ebraces(m, {24});
  return generate_structure(m);
}

TEST(MatrixPattern, CountsNodesElementsAndEntriesInAscendingRows) {
  const auto counts = [](const Structure& s) {
    return std::vector<int>{s.nodes.nnode, s.elements.nel(), matrix_of(s).pattern->nnz};
  };
  const Structure one = bridge_of(one_girder(72));
  EXPECT_EQ(counts(one), (std::vector<int>{378, 128, 69420}));
  EXPECT_EQ(counts(bridge_of(two_girders(72))), (std::vector<int>{749, 259, 138810}));
  const auto pattern = matrix_of(one).pattern;
  ASSERT_EQ(pattern->ia(2) - pattern->ia(1), 45);  // node 1: eight neighbours
  for (int i = 0; i < 45; ++i) EXPECT_EQ(pattern->ja(1 + i), i % 15 + 1 + 270 * (i / 15));
}

// The lower triangle holds other numbers, which must not be read.
TEST(AddNodeBlocks, EqualsTheRuleByEquationsToTheLastBit) {
  const Structure m = bridge_of(one_girder(72));
  std::mt19937 random(5);
  std::uniform_real_distribution<double> value(-1, 1);
  SymmetricMatrix K = matrix_of(m), expected = K;
  const auto add = [&](const int* node, int nen, int ndof) {
    const int n = nen * ndof;
    Matrix<double> ke(n, n);
    std::vector<int> dof;
    for (int i = 0; i < n * n; ++i) ke.data()[i] = value(random);
    for (int a = 0; a < nen; ++a)
      for (int d = 1; d <= ndof; ++d) dof.push_back(5 * (node[a] - 1) + d);
    add_element(ke.data(), n, dof.data(), n, expected);
    add_node_blocks(ke.data(), n, node, nen, K);
  };
  for (int e = 1; e <= m.elements.nshell; ++e) add(m.elements.shconn.column(e), 9, 5);
  for (int e = 1; e <= m.elements.nibel; ++e) add(m.elements.ibconn.column(e), 4, 3);
  const int outside[3] = {370, 1, 5}, repeated[3] = {56, 2, 56};
  add(outside, 3, 3);
  add(repeated, 3, 5);
  for (int t = 1; t <= K.pattern->nnz; ++t)
    ASSERT_EQ(K.values(t), expected.values(t)) << "entry " << t;
}
