#include "model/matrix.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "base/failures.h"
#include "support/models.h"

namespace {

Model braced(Model m) {
  add_ibraces(m, {24, 48});
  add_laterals(m, {{1, 24, 48}, {2, 48, 72}});
  add_stiffeners(m, {24});
  return m;
}

MatrixPattern pattern_of(const Model& m) {
  const Structure s = generate(m);
  return build_pattern(s.nodes.nnode, s.elements);
}

// Two separate triangles of bars and a node that nothing joins.
Elements bars_of_seven_nodes() {
  Elements el;
  el.latconn = Matrix<int>(2, 6);
  const int ends[6][2] = {{5, 2}, {2, 7}, {7, 5}, {1, 6}, {6, 3}, {3, 1}};
  for (int e = 1; e <= 6; ++e)
    for (int a = 1; a <= 2; ++a) el.latconn(a, e) = ends[e - 1][a - 1];
  return el;
}

}  // namespace

TEST(MatrixPattern, CountsTheEntriesOfABracedGirder) {
  const Structure s = generate(braced(one_girder(72)));
  EXPECT_EQ(s.nodes.nnode, 378);
  EXPECT_EQ(s.elements.nel(), 128);
  const MatrixPattern p = build_pattern(s.nodes.nnode, s.elements);
  EXPECT_EQ(p.n, 1890);
  EXPECT_EQ(p.nnz, 69420);
  EXPECT_EQ(p.ia(1891), 69421);
}

TEST(MatrixPattern, CountsTheEntriesOfTwoBracedGirders) {
  Model m = braced(two_girders(72));
  add_ebraces(m, {24});
  const Structure s = generate(m);
  EXPECT_EQ(s.nodes.nnode, 749);
  EXPECT_EQ(s.elements.nel(), 259);
  EXPECT_EQ(build_pattern(s.nodes.nnode, s.elements).nnz, 138810);
}

TEST(MatrixPattern, RowsOfADeckCornerReachItsEightNeighbours) {
  const MatrixPattern p = pattern_of(braced(one_girder(72)));
  ASSERT_EQ(p.ia(2) - p.ia(1), 45);
  ASSERT_EQ(p.ia(6) - p.ia(5), 41);
  for (int i = 0; i < 45; ++i) EXPECT_EQ(p.ja(p.ia(1) + i), i % 15 + 1 + 270 * (i / 15));
  for (int i = 4; i < 45; ++i) EXPECT_EQ(p.ja(p.ia(5) + i - 4), p.ja(p.ia(1) + i));
}

TEST(MatrixPattern, RowsAscendFromTheirDiagonalAndLoneNodesKeepTheirOwnBlock) {
  const MatrixPattern p = build_pattern(7, bars_of_seven_nodes());
  EXPECT_EQ(p.nnz, 7 * 15 + 6 * 25);
  for (int q = 1; q <= 5; ++q)  // node 4
    EXPECT_EQ(p.ia(15 + q + 1) - p.ia(15 + q), 6 - q);
  for (int r = 1; r <= p.n; ++r) {
    EXPECT_EQ(p.ja(p.ia(r)), r);
    for (int t = p.ia(r) + 1; t < p.ia(r + 1); ++t) EXPECT_LT(p.ja(t - 1), p.ja(t));
  }
}

TEST(MatrixPattern, OfAGirderWithoutLengthHoldsStudsAndSupportsOnly) {
  const Structure s = generate(one_girder(0));
  EXPECT_EQ(s.elements.nshell, 0);
  // 54 own blocks, six links, one pair for each two corners (twice the same frame).
  EXPECT_EQ(build_pattern(s.nodes.nnode, s.elements).nnz, 54 * 15 + 25 * (6 + 6));
}

// A bridge of 3 * 10^7 inches has about 3 * 10^10 entries and its nodes alone pass an int.
TEST(MatrixPattern, RefusesABridgeWhoseEquationsAnIntCannotCount) {
  Model m = one_girder(24);
  m.lgbr = 2000000016;
  try {
    node_count(m);
    FAIL();
  } catch (const MemoryFailure& f) {
    EXPECT_STREQ(f.what, "the stiffness matrix");
  }
}

TEST(AddNodeBlocks, EqualsTheRuleByEquationsToTheLastBit) {
  const MatrixPattern p = pattern_of(braced(one_girder(72)));
  const Structure s = generate(braced(one_girder(72)));
  std::mt19937 random(5);
  std::uniform_real_distribution<double> value(-1, 1);
  Vector<double> K(p.nnz), expected(p.nnz);
  const auto compare = [&](const int* node, int nen, int ndof) {
    const int n = nen * ndof, ld = n + 2;
    Matrix<double> ke(ld, n);
    std::vector<int> dof;
    for (int j = 1; j <= n; ++j)  // the lower triangle differs: it must not be read
      for (int i = 1; i <= n; ++i) ke(i, j) = value(random);
    for (int a = 0; a < nen; ++a)
      for (int d = 1; d <= ndof; ++d) dof.push_back(5 * (node[a] - 1) + d);
    add_element(ke.data(), ld, dof.data(), n, p, expected);
    add_node_blocks(ke.data(), ld, node, nen, ndof, p, K);
  };
  for (int e = 1; e <= s.elements.nshell; ++e) compare(s.elements.shconn.column(e), 9, 5);
  for (int e = 1; e <= s.elements.nibel; ++e) compare(s.elements.ibconn.column(e), 4, 3);
  for (int e = 1; e <= s.elements.nlatel; ++e) compare(s.elements.latconn.column(e), 2, 3);
  const int outside[3] = {370, 1, 5}, repeated[3] = {56, 2, 56};
  compare(outside, 3, 3);
  compare(repeated, 3, 5);
  for (int t = 1; t <= p.nnz; ++t) ASSERT_EQ(K(t), expected(t)) << "entry " << t;
}

TEST(AddElement, ReadsTheUpperTriangleAndTakesEquationsInAnyOrder) {
  const MatrixPattern p = build_pattern(7, bars_of_seven_nodes());
  Vector<double> K(p.nnz);
  const double ke[4] = {1, 99, 2, 3};  // columns (1 99) and (2 3)
  const int dof[2] = {22, 10};         // v of node 5, beta of node 2
  add_element(ke, 2, dof, 2, p, K);
  EXPECT_EQ(K(p.ia(22)), 1);
  EXPECT_EQ(K(p.ia(10)), 3);
  EXPECT_EQ(K(p.ia(10) + 2), 2);  // row 10: column 10, then 21, 22
  const int apart[2] = {1, 10};   // nodes 1 and 2 share no element
  add_element(ke, 2, apart, 2, p, K);
  EXPECT_EQ(K(p.ia(1)), 1);
  EXPECT_EQ(K(p.ia(10)), 6);
}
