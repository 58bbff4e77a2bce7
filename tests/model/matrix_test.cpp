#include "model/matrix.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "base/failures.h"
#include "support/models.h"

namespace {

struct Patterned : Structure {
  MatrixPattern p;
  explicit Patterned(const Model& m)
      : Structure(generate(m)), p(build_pattern(nodes.nnode, elements)) {}
};

Model braced(Model m) {
  add_ibraces(m, {24, 48});
  add_laterals(m, {{1, 24, 48}, {2, 48, 72}});
  add_stiffeners(m, {24});
  if (m.ngird == 2) add_ebraces(m, {24});
  return m;
}

}  // namespace

TEST(MatrixPattern, CountsNodesElementsAndEntries) {
  const Patterned one(braced(one_girder(72))), two(braced(two_girders(72))), none(one_girder(0));
  EXPECT_EQ(one.nodes.nnode, 378);
  EXPECT_EQ(one.elements.nel(), 128);
  EXPECT_EQ(one.p.nnz, 69420);
  EXPECT_EQ(one.p.ia(1891), 69421);
  EXPECT_EQ(two.nodes.nnode, 749);
  EXPECT_EQ(two.elements.nel(), 259);
  EXPECT_EQ(two.p.nnz, 138810);
  EXPECT_EQ(none.p.nnz, 54 * 15 + 25 * (6 + 6));  // own blocks, studs, pairs of corners
}

TEST(MatrixPattern, RowsAscendFromTheirDiagonal) {
  const Patterned m(braced(one_girder(72)));
  for (int r = 1; r <= m.p.n; ++r) {
    EXPECT_EQ(m.p.ja(m.p.ia(r)), r);
    for (int t = m.p.ia(r) + 1; t < m.p.ia(r + 1); ++t) EXPECT_LT(m.p.ja(t - 1), m.p.ja(t));
  }
  ASSERT_EQ(m.p.ia(2) - m.p.ia(1), 45);  // node 1: eight neighbours
  ASSERT_EQ(m.p.ia(6) - m.p.ia(5), 41);
  for (int i = 0; i < 45; ++i) EXPECT_EQ(m.p.ja(1 + i), i % 15 + 1 + 270 * (i / 15));
}

TEST(MatrixPattern, RefusesABridgeWhoseEquationsAnIntCannotCount) {
  Model m = one_girder(24);
  m.lgbr = 2000000016;
  EXPECT_THROW(node_count(m), MemoryFailure);
}

// The lower triangle holds other numbers, which must not be read.
TEST(AddNodeBlocks, EqualsTheRuleByEquationsToTheLastBit) {
  const Patterned m(braced(one_girder(72)));
  std::mt19937 random(5);
  std::uniform_real_distribution<double> value(-1, 1);
  Vector<double> K(m.p.nnz), expected(m.p.nnz);
  const auto add = [&](const int* node, int nen, int ndof) {
    const int n = nen * ndof, ld = n + 2;
    Matrix<double> ke(ld, n);
    std::vector<int> dof;
    for (int i = 0; i < ld * n; ++i) ke.data()[i] = value(random);
    for (int a = 0; a < nen; ++a)
      for (int d = 1; d <= ndof; ++d) dof.push_back(5 * (node[a] - 1) + d);
    add_element(ke.data(), ld, dof.data(), n, m.p, expected);
    add_node_blocks(ke.data(), ld, node, nen, ndof, m.p, K);
  };
  for (int e = 1; e <= m.elements.nshell; ++e) add(m.elements.shconn.column(e), 9, 5);
  for (int e = 1; e <= m.elements.nibel; ++e) add(m.elements.ibconn.column(e), 4, 3);
  for (int e = 1; e <= m.elements.nlatel; ++e) add(m.elements.latconn.column(e), 2, 3);
  const int outside[3] = {370, 1, 5}, repeated[3] = {56, 2, 56};
  add(outside, 3, 3);
  add(repeated, 3, 5);
  for (int t = 1; t <= m.p.nnz; ++t) ASSERT_EQ(K(t), expected(t)) << "entry " << t;
}

TEST(AddElement, ReadsTheUpperTriangleAndTakesEquationsInAnyOrder) {
  const Patterned m(one_girder(24));
  Vector<double> K(m.p.nnz);
  const double ke[4] = {1, 99, 2, 3};                     // columns (1 99) and (2 3)
  const int dof[2] = {8, 2}, apart[2] = {2, 5 * 53 + 1};  // nodes 2 and 1; nodes 1 and 54
  add_element(ke, 2, dof, 2, m.p, K);
  add_element(ke, 2, apart, 2, m.p, K);
  EXPECT_EQ(K(m.p.ia(8)), 1);
  EXPECT_EQ(K(m.p.ia(2)), 3 + 1);
  EXPECT_EQ(K(m.p.ia(2) + 6), 2);  // columns 2, 3, ... 8
  EXPECT_EQ(K(m.p.ia(5 * 53 + 1)), 3);
}
