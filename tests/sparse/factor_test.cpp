#include "sparse/analysis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#ifndef _WIN32
#include <signal.h>
#include <unistd.h>
#endif

#include "sparse/matrices.h"
#include "sparse/numeric.h"
#include "sparse/ordering.h"

using namespace zelvo;

using Lists = std::vector<std::vector<int>>;  // by numbers from 1

// Rows of each column of L by elimination on full rows of booleans.
static Lists eliminate(const SmallMatrix& m, const Vector<int>& invp) {
  Matrix<char> full(m.n, m.n);
  each_value(m, [&](int i, int j, int) { full(invp(i), invp(j)) = full(invp(j), invp(i)) = 1; });
  Lists rows(m.n + 1);
  for (int k = 1; k <= m.n; ++k) {
    for (int i = k; i <= m.n; ++i)
      if (full(i, k) || i == k) rows[k].push_back(i);
    for (const int i : rows[k])
      for (const int j : rows[k]) full(i, j) = 1;
  }
  return rows;
}

// Tree, lengths and supernodes.
static void expect_columns(const FactorStructure& f, const Lists& rows) {
  int J = 0;
  std::vector<int> size(f.neqns + 1, 1);  // of each subtree
  for (int j = 1; j <= f.neqns; ++j) {
    const int parent = rows[j].size() > 1 ? rows[j][1] : 0;
    ASSERT_EQ(f.invp(f.perm(j)), j);
    ASSERT_EQ(f.colcnt(j), std::ssize(rows[j])) << "column " << j;
    ASSERT_EQ(f.parent(j), parent) << "column " << j;
    size[parent] += size[j];
    // Postorder: the subtree of j ends with j.
    for (int k = j - size[j] + 1; k < j; ++k) ASSERT_LE(f.parent(k), j);
    const bool joins = j > 1 && f.parent(j - 1) == j && f.colcnt(j) + 1 == f.colcnt(j - 1) &&
                       j - f.xsuper(J) < PANEL_LIMIT;
    J += !joins;
    ASSERT_EQ(f.xsuper(J) == j, !joins) << "column " << j;
    ASSERT_EQ(f.snode(j), J);
  }
  ASSERT_EQ(f.nsuper, J);
  ASSERT_EQ(f.xsuper(J + 1), f.neqns + 1);
}

// Row lists, tree and orders of the supernodes. The places of columns and values show in the factor
// multiplied back.
static void expect_supernodes(const FactorStructure& f, const Lists& rows) {
  const TreeSchedule& t = f.schedule;
  std::int64_t index = 1;
  Lists children(f.nsuper + 1);
  std::vector<int> updates(f.nsuper + 1), up(f.nsuper + 1), down(f.nsuper + 1);
  for (int K = 1; K <= f.nsuper; ++K) {
    std::set<int> targets;
    for (const int row : rows[f.xsuper(K)]) {
      ASSERT_EQ(f.lindx(index++), row);
      if (f.snode(row) != K) targets.insert(f.snode(row));
    }
    ASSERT_EQ(f.xlindx(K + 1), index);
    for (const int J : targets) ++updates[J];
    const int parent = targets.empty() ? 0 : *targets.begin();
    ASSERT_EQ(f.sparent(K), parent);
    children[parent].push_back(K);
    up[t.snorder(K)] = down[t.topdown(K)] = K;
  }
  for (int K = 1; K <= f.nsuper; ++K) {
    ASSERT_EQ(t.ncolupd(K), updates[K]);
    ASSERT_EQ(children[K], std::vector<int>(t.child.begin() + t.xchild(K) - 1,
                                            t.child.begin() + t.xchild(K + 1) - 1));
    ASSERT_GT(std::min(up[K], down[K]), 0) << "supernode " << K << " is missing in an order";
    for (const int c : children[K]) {
      ASSERT_LT(up[c], up[K]) << "child " << c << " of " << K;
      ASSERT_GT(down[c], down[K]) << "child " << c << " of " << K;
    }
  }
}

// Length of P A P' v - L D L' v for some v; D is one for Cholesky.
static double product_error(const SmallMatrix& m, const FactorStructure& s, const NumericWork& w,
                            bool ldl) {
  std::vector<double> v(m.n + 1), error(m.n + 1);
  for (int i = 1; i <= m.n; ++i) v[i] = std::sin(i);
  each_value(m, [&](int i, int j, int t) {
    error[s.invp(i)] += m.a[t - 1] * v[s.invp(j)];
    if (i != j) error[s.invp(j)] += m.a[t - 1] * v[s.invp(i)];
  });
  for (int j = 1; j <= m.n; ++j) {
    const std::int64_t first = s.xlindx(s.snode(j)), diagonal = first + j - s.xsuper(s.snode(j));
    const double d = ldl ? w.lnz(s.xlnz(j) + diagonal - first) : 1;
    const auto L = [&](std::int64_t t) {
      return ldl && t == diagonal ? 1 : w.lnz(s.xlnz(j) + t - first);
    };
    double y = 0;
    for (auto t = diagonal; t < s.xlindx(s.snode(j) + 1); ++t) y += L(t) * v[s.lindx(t)];
    for (auto t = diagonal; t < s.xlindx(s.snode(j) + 1); ++t) error[s.lindx(t)] -= L(t) * d * y;
  }
  return std::sqrt(std::inner_product(error.begin(), error.end(), error.begin(), 0.0));
}

// Factors m and its like with pivots of both signs, in the same storage.
static void expect_factors(const FactorStructure& f, SmallMatrix m) {
  NumericWork w;
  reserve_numeric(f, w);
  ASSERT_EQ(factor_cholesky(f, m.a.data(), w), FACTOR_DONE);
  ASSERT_LT(product_error(m, f, w, false), 1e-11);
  for (int i = 1; i <= m.n; i += 3) m.diagonal(i) *= -1.0;
  ASSERT_EQ(factor_cholesky(f, m.a.data(), w), FACTOR_BAD_PIVOT);
  ASSERT_EQ(factor_ldl(f, m.a.data(), w), FACTOR_DONE);
  ASSERT_LT(product_error(m, f, w, true), 1e-11);
}

// Analyses m and compares all of the structure with elimination by hand.
static FactorStructure checked(const SmallMatrix& m, const int* user_perm = nullptr) {
  FactorStructure f;
  EXPECT_EQ(analyse(m.n, m.nnz(), m.ia.data(), m.ja.data(), user_perm, f), 0);
  const Lists rows = eliminate(m, f.invp);
  expect_columns(f, rows);
  expect_supernodes(f, rows);
  expect_factors(f, m);
  return f;
}

static int group_count(const SmallMatrix& m) {
  Groups groups;
  Graph graph;
  EXPECT_EQ(build_graph(m.n, m.ia.data(), m.ja.data(), true, groups, graph), 0);
  return groups.count;
}

TEST(Analysis, AgreesWithEliminationByHandAndTheFactorWithTheMatrix) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    const int n = 2 + static_cast<int>(seed * 7 % 90);
    const Pairs sparse = random_pairs(n, static_cast<int>(seed * 13) % (3 * n), seed);
    checked(small_matrix(n, sparse));  // the sparsest fall apart into many blocks
    checked(small_matrix(n, sparse, 5));
    checked(small_matrix(n, sparse, 3, true));
  }
  checked(small_matrix(20 * 17, grid_pairs(20, 17)));
  checked(small_matrix(400, grid_pairs(1, 400)));  // a long chain
  EXPECT_EQ(checked(small_matrix(6, {})).nsuper, 6);
}

TEST(Analysis, CutsADenseBlockOf200ColumnsInto80And80And40) {
  const FactorStructure f = checked(small_matrix(1, {}, 200));
  EXPECT_EQ(std::vector<int>(f.xsuper.begin(), f.xsuper.end()),
            (std::vector<int>{1, 81, 161, 201}));
  EXPECT_EQ(f.max_cols, 80);
  EXPECT_EQ(f.max_rows, 200);
}

TEST(Analysis, TakesTheCallersOrderAndPlacesChildrenByTheLengthOfTheirColumns) {
  // Leaves 1 to 4 under the clique 5 to 8, with columns of 2, 4, 3 and 5; 9 stands alone. Taken
  // from the highest: 4; 3 behind it; 2, longer than 3, to the front; 1 to the end.
  const Pairs pairs{{1, 5}, {2, 5}, {2, 6}, {2, 7}, {3, 5}, {3, 6}, {4, 5}, {4, 6},
                    {4, 7}, {4, 8}, {5, 6}, {5, 7}, {5, 8}, {6, 7}, {6, 8}, {7, 8}};
  std::vector<int> order(90);
  std::iota(order.begin(), order.end(), 1);
  const FactorStructure f = checked(small_matrix(9, pairs), order.data());
  EXPECT_EQ(std::vector<int>(f.perm.begin(), f.perm.end()),
            (std::vector<int>{2, 4, 3, 1, 5, 6, 7, 8, 9}));
  std::reverse(order.begin(), order.end());
  checked(small_matrix(90, random_pairs(90, 200, 3)), order.data());
}

TEST(Analysis, PlacesGroupsByTheLengthOfTheirLastColumn) {
  // Under 5: the group 1 to 3, whose columns have 4, 3 and 2 entries, and 4, whose column has 3.
  const SmallMatrix m = small_matrix(
      7, {{1, 2}, {1, 3}, {2, 3}, {1, 5}, {2, 5}, {3, 5}, {4, 5}, {4, 6}, {5, 6}, {5, 7}, {6, 7}});
  Groups groups;
  Graph graph;
  GroupTree tree;
  ASSERT_EQ(build_graph(7, m.ia.data(), m.ja.data(), true, groups, graph), NO_DETAIL);
  ASSERT_EQ(groups.count, 5);
  tree.perm = tree.invp = Vector<int>(5);
  for (int g = 1; g <= 5; ++g) tree.perm(g) = tree.invp(g) = g;
  sfinit(graph, groups, tree);
  EXPECT_EQ(std::vector<int>(tree.perm.begin(), tree.perm.end()),
            (std::vector<int>{2, 1, 3, 4, 5}));
}

TEST(Analysis, RefusesWhatIsNoPermutationAndWhatIsNoUpperTriangle) {
  const int ia[] = {1, 3, 4}, ja[] = {1, 2, 2}, twice[] = {1, 1}, outside[] = {1, 3};
  const int from_0[] = {0, 3, 4}, descending[] = {1, 5, 4};
  const int beyond[] = {1, 3, 2}, below[] = {1, 2, 1};
  FactorStructure f;
  EXPECT_EQ(analyse(2, 3, ia, ja, twice, f), BAD_PERMUTATION);
  EXPECT_EQ(analyse(2, 3, ia, ja, outside, f), BAD_PERMUTATION);
  EXPECT_EQ(analyse(2, 3, ia, beyond, nullptr, f), BAD_COLUMN);
  EXPECT_EQ(analyse(2, 3, ia, below, nullptr, f), BAD_COLUMN);
  EXPECT_EQ(analyse(2, 3, from_0, ja, nullptr, f), BAD_ROW);
  EXPECT_EQ(analyse(2, 3, descending, ja, nullptr, f), BAD_ROW);
}

TEST(Groups, HoldEquationsWithTheSameNeighboursOnly) {
  EXPECT_EQ(group_count(small_matrix(12, grid_pairs(3, 4), 5, true)), 12);
  // 1 and 2 are coupled with the same 3 and 4, but not with each other.
  EXPECT_EQ(group_count(small_matrix(4, {{1, 3}, {2, 3}, {1, 4}, {2, 4}})), 4);
  SmallMatrix m = small_matrix(12, grid_pairs(3, 4), 5);
  EXPECT_EQ(group_count(m), 12);
  for (int i = 1; i <= m.n; ++i)
    std::reverse(m.ja.begin() + m.ia[i - 1], m.ja.begin() + m.ia[i] - 1);
  EXPECT_EQ(group_count(m), 60);  // not looked for in rows that do not ascend
  checked(m);
}

#ifndef _WIN32
TEST(OrderingDeathTest, EndsByTheSignalThatAsksForIt) {
  constexpr int n = 40000, width = 200;
  std::vector<int> ia{1}, ja;
  for (int i = 1; i <= n; ++i) {
    for (const int j : {i, i + 1, i + width})
      if (j <= n) ja.push_back(j);
    ia.push_back(static_cast<int>(ja.size()) + 1);
  }
  Groups groups;
  Graph graph;
  ASSERT_EQ(build_graph(n, ia.data(), ja.data(), false, groups, graph), NO_DETAIL);
  const auto order = [&] {
    if (fork() == 0) usleep(50000), kill(getppid(), SIGTERM), _exit(0);
    Vector<int> perm, invp;
    for (int times = 0; times < 100; ++times)
      if (!dissect(graph, groups, perm, invp)) break;
    _exit(0);
  };
  EXPECT_EXIT(order(), testing::KilledBySignal(SIGTERM), "");
}
#endif
