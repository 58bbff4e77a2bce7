#include "sparse/analysis.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "sparse/matrices.h"

// Rows of each column of L by elimination on full rows of booleans; index 0 is not used.
static std::vector<std::vector<int>> eliminate(const SmallMatrix& m, const Vector<int>& invp) {
  const auto n = static_cast<std::size_t>(m.n);
  std::vector<std::vector<char>> full(n + 1, std::vector<char>(n + 1, 0));
  for (int i = 1; i <= m.n; ++i) {
    for (int t = m.ia[i - 1]; t < m.ia[i]; ++t) {
      const auto [p, q] = std::minmax(invp(i), invp(m.ja[t - 1]));
      full[p][q] = 1;
    }
  }
  std::vector<std::vector<int>> rows(n + 1);
  for (std::size_t k = 1; k <= n; ++k) {
    rows[k].push_back(static_cast<int>(k));
    for (std::size_t i = k + 1; i <= n; ++i) {
      if (full[k][i]) rows[k].push_back(static_cast<int>(i));
    }
    for (std::size_t p = 1; p < rows[k].size(); ++p) {
      for (std::size_t q = p + 1; q < rows[k].size(); ++q) full[rows[k][p]][rows[k][q]] = 1;
    }
  }
  return rows;
}

// Order, tree, lengths and supernodes.
static void expect_columns(const FactorStructure& f, const std::vector<std::vector<int>>& rows) {
  int J = 0;
  std::vector<int> size(rows.size(), 1);  // of each subtree
  for (int j = 1; j <= f.neqns; ++j) {
    ASSERT_EQ(f.invp(f.perm(j)), j);
    ASSERT_EQ(f.colcnt(j), static_cast<int>(rows[j].size())) << "column " << j;
    const int parent = rows[j].size() > 1 ? rows[j][1] : 0;
    ASSERT_EQ(f.parent(j), parent) << "column " << j;
    if (parent != 0) size[parent] += size[j];
    const bool joins = j > 1 && f.parent(j - 1) == j && f.colcnt(j) + 1 == f.colcnt(j - 1) &&
                       j - f.xsuper(J) < PANEL_LIMIT;
    J += !joins;
    ASSERT_EQ(f.xsuper(J) == j, !joins) << "column " << j;
    ASSERT_EQ(f.snode(j), J);
  }
  ASSERT_EQ(f.nsuper, J);
  ASSERT_EQ(f.xsuper(J + 1), f.neqns + 1);
  for (int j = 2; j <= f.neqns; ++j) {  // postorder: the subtree of j ends with j
    for (int k = j - size[j] + 1; k < j; ++k) ASSERT_LE(f.parent(k), j);
  }
}

static void expect_rectangles(const FactorStructure& f, const SmallMatrix& m,
                              const std::vector<std::vector<int>>& rows) {
  std::int64_t place = 1, index = 1;
  for (int J = 1; J <= f.nsuper; ++J) {
    ASSERT_EQ(f.xlindx(J), index);
    for (const int row : rows[f.xsuper(J)]) ASSERT_EQ(f.lindx(index++), row);
    for (int j = f.xsuper(J); j < f.xsuper(J + 1); ++j) {
      ASSERT_EQ(f.xlnz(j), place);
      place += f.colcnt(f.xsuper(J));
    }
  }
  ASSERT_EQ(f.xlindx(f.nsuper + 1), index);
  ASSERT_EQ(f.factor_size, place - 1);
  for (int i = 1; i <= m.n; ++i) {
    for (int t = m.ia[i - 1]; t < m.ia[i]; ++t) {
      const auto [column, row] = std::minmax(f.invp(i), f.invp(m.ja[t - 1]));
      const std::int64_t offset = f.luperm(t) - f.xlnz(column);
      ASSERT_EQ(f.lindx(f.xlindx(f.snode(column)) + offset), row) << "value " << t;
    }
  }
}

static void expect_tree_orders(const FactorStructure& f) {
  std::vector<int> parent(f.nsuper + 1), updates(f.nsuper + 1), up(f.nsuper + 1),
      down(f.nsuper + 1);
  std::int64_t largest = 0;
  for (int K = 1; K <= f.nsuper; ++K) {
    std::vector<int> below(f.lindx.begin() + f.xlindx(K) - 1 + (f.xsuper(K + 1) - f.xsuper(K)),
                           f.lindx.begin() + f.xlindx(K + 1) - 1);
    if (!below.empty()) parent[K] = f.snode(below[0]);
    auto left = static_cast<std::int64_t>(below.size());
    for (int J = K + 1; J <= f.nsuper; ++J) {
      const auto w =
          std::count_if(below.begin(), below.end(), [&](int i) { return f.snode(i) == J; });
      if (w == 0) continue;
      ++updates[J];
      if (left > 1 && f.xlindx(J + 1) - f.xlindx(J) > left) {
        largest = std::max(largest, 2 * (left * w - (w - 1) * w / 2));
      }
      left -= w;
    }
    up[f.snorder(K)] = down[f.topdown(K)] = K;
  }
  ASSERT_EQ(f.update_size, largest);
  for (int K = 1; K <= f.nsuper; ++K) {
    ASSERT_EQ(f.sparent(K), parent[K]);
    ASSERT_EQ(f.ncolupd(K), updates[K]);
    ASSERT_NE(up[K], 0);
    ASSERT_NE(down[K], 0);
    std::vector<int> children;
    for (int c = 1; c < K; ++c) {
      if (parent[c] != K) continue;
      children.push_back(c);
      ASSERT_LT(up[c], up[K]);
      ASSERT_GT(down[c], down[K]);
    }
    ASSERT_EQ(children, std::vector<int>(f.child.begin() + f.xchild(K) - 1,
                                         f.child.begin() + f.xchild(K + 1) - 1));
  }
}

// Analyses m and compares all of the structure with elimination by hand.
static FactorStructure checked(const SmallMatrix& m, const int* user_perm = nullptr) {
  FactorStructure f;
  EXPECT_EQ(analyse(m.n, m.nnz(), m.ia.data(), m.ja.data(), user_perm, f), 0);
  const auto rows = eliminate(m, f.invp);
  expect_columns(f, rows);
  expect_rectangles(f, m, rows);
  expect_tree_orders(f);
  return f;
}

static int group_count(const SmallMatrix& m) {
  Groups groups;
  Graph graph;
  EXPECT_EQ(build_graph(m.n, m.ia.data(), m.ja.data(), true, groups, graph), 0);
  return groups.count;
}

TEST(Analysis, AgreesWithEliminationByHandOnRandomPatterns) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    const int n = 2 + static_cast<int>(seed * 7 % 90);
    const Pairs sparse = random_pairs(n, static_cast<int>(seed * 13) % (3 * n), seed);
    checked(small_matrix(n, sparse));  // the sparsest fall apart into many blocks
    checked(small_matrix(5 * n, blown_up(n, sparse, 5, false)));
    checked(small_matrix(3 * n, blown_up(n, sparse, 3, true)));
  }
}

TEST(Analysis, AgreesWithEliminationByHandOnRegularPatterns) {
  checked(small_matrix(20 * 17, grid_pairs(20, 17)));
  checked(small_matrix(5 * 63, blown_up(63, grid_pairs(9, 7), 5, false)));
  checked(small_matrix(400, grid_pairs(1, 400)));  // a long chain
  Pairs arrow;
  for (int i = 1; i < 150; ++i) arrow.insert({i, 150});
  checked(small_matrix(150, arrow));
  FactorStructure f = checked(small_matrix(6, {}));  // nothing coupled at all
  EXPECT_EQ(f.nsuper, 6);
  EXPECT_EQ(f.sparent(3), 0);
}

TEST(Analysis, CutsADenseBlockOf200ColumnsInto80And80And40) {
  const SmallMatrix dense = small_matrix(200, blown_up(1, {}, 200, false));
  EXPECT_EQ(group_count(dense), 1);
  FactorStructure f = checked(dense);
  ASSERT_EQ(f.nsuper, 3);
  EXPECT_EQ(f.xsuper(2), 81);
  EXPECT_EQ(f.xsuper(3), 161);
  EXPECT_EQ(f.max_cols, 80);
  EXPECT_EQ(f.max_rows, 200);
}

TEST(Analysis, TakesTheCallersOrderAndPlacesChildrenByTheLengthOfTheirColumns) {
  // Leaves 1 to 4 under the clique 5 to 8, with columns of 2, 4, 3 and 5; 9 stands alone. Taken
  // from the highest: 4; 3 behind it; 2, longer than 3, to the front; 1 to the end.
  const Pairs pairs{{1, 5}, {2, 5}, {2, 6}, {2, 7}, {3, 5}, {3, 6}, {4, 5}, {4, 6},
                    {4, 7}, {4, 8}, {5, 6}, {5, 7}, {5, 8}, {6, 7}, {6, 8}, {7, 8}};
  const int order[] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  const FactorStructure f = checked(small_matrix(9, pairs), order);
  EXPECT_EQ(std::vector<int>(f.perm.begin(), f.perm.end()),
            (std::vector<int>{2, 4, 3, 1, 5, 6, 7, 8, 9}));
  std::vector<int> reversed(90);
  for (int i = 0; i < 90; ++i) reversed[static_cast<std::size_t>(i)] = 90 - i;
  checked(small_matrix(90, random_pairs(90, 200, 3)), reversed.data());
}

TEST(Analysis, RefusesWhatIsNoPermutationAndColumnsOutsideTheUpperTriangle) {
  const SmallMatrix m = small_matrix(4, {{1, 2}, {3, 4}});
  FactorStructure f;
  const int twice[] = {1, 2, 2, 4}, outside[] = {1, 2, 3, 5};
  EXPECT_EQ(analyse(4, m.nnz(), m.ia.data(), m.ja.data(), twice, f), BAD_PERMUTATION);
  EXPECT_EQ(analyse(4, m.nnz(), m.ia.data(), m.ja.data(), outside, f), BAD_PERMUTATION);
  std::vector<int> ja = m.ja;
  ja[1] = 5;
  EXPECT_EQ(analyse(4, m.nnz(), m.ia.data(), ja.data(), nullptr, f), BAD_COLUMN);
  ja[1] = 2, ja.back() = 3;
  EXPECT_EQ(analyse(4, m.nnz(), m.ia.data(), ja.data(), nullptr, f), BAD_COLUMN);
}

TEST(Groups, HoldEquationsWithTheSameNeighboursOnly) {
  EXPECT_EQ(group_count(small_matrix(5 * 12, blown_up(12, grid_pairs(3, 4), 5, false))), 12);
  EXPECT_EQ(group_count(small_matrix(5 * 12, blown_up(12, grid_pairs(3, 4), 5, true))), 12);
  EXPECT_EQ(group_count(small_matrix(12, grid_pairs(3, 4))), 12);
  // 1 and 2 are coupled with the same 3 and 4, but not with each other.
  EXPECT_EQ(group_count(small_matrix(4, {{1, 3}, {2, 3}, {1, 4}, {2, 4}})), 4);
  Pairs pairs = blown_up(2, {{1, 2}}, 3, false);
  EXPECT_EQ(group_count(small_matrix(6, pairs)), 1);
  pairs.erase({1, 6});  // one coupling less: 1 and 6 fall out of the group
  EXPECT_EQ(group_count(small_matrix(6, pairs)), 3);
}

TEST(Groups, AreNotLookedForInRowsThatDoNotAscend) {
  SmallMatrix m = small_matrix(5 * 12, blown_up(12, grid_pairs(3, 4), 5, false));
  for (int i = 1; i <= m.n; ++i) {
    std::reverse(m.ja.begin() + m.ia[i - 1], m.ja.begin() + m.ia[i] - 1);
  }
  EXPECT_EQ(group_count(m), 60);
  checked(m);
}
