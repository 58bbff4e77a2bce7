#include "buckling/product.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

// Upper triangle by rows from the neighbours of each node, node by node `freedoms` equations.
struct Pattern {
  std::vector<int> ia{1}, ja;
  int n = 0;
  Pattern(const std::vector<std::vector<int>>& higher, int freedoms) {
    for (int i = 0; i < static_cast<int>(higher.size()); ++i) {
      for (int q = 0; q < freedoms; ++q) {
        for (int d = q; d < freedoms; ++d) ja.push_back(freedoms * i + d + 1);
        for (const int j : higher[static_cast<std::size_t>(i)])
          for (int d = 0; d < freedoms; ++d) ja.push_back(freedoms * j + d + 1);
        ia.push_back(static_cast<int>(ja.size()) + 1);
        ++n;
      }
    }
  }
};

std::vector<double> numbers(std::size_t count, double seed) {
  std::vector<double> v(count);
  for (std::size_t i = 0; i < count; ++i) v[i] = std::sin(seed + 1.7 * static_cast<double>(i));
  return v;
}

// Both products against the definition: entry (r,c) acts at r and, off the diagonal, at c.
void expect_both_products_right(const Pattern& p, long bundles) {
  const auto values = numbers(p.ja.size(), 0.3), x = numbers(static_cast<std::size_t>(p.n), 2.0);
  std::vector<double> expected(x.size()), y(x.size(), 9.0), z(x.size(), 9.0);
  for (int r = 1; r <= p.n; ++r) {
    for (int t = p.ia[static_cast<std::size_t>(r - 1)]; t < p.ia[static_cast<std::size_t>(r)];
         ++t) {
      const auto i = static_cast<std::size_t>(r - 1), e = static_cast<std::size_t>(t - 1);
      const auto j = static_cast<std::size_t>(p.ja[e] - 1);
      expected[i] += values[e] * x[j];
      if (i != j) expected[j] += values[e] * x[i];
    }
  }
  sym_matvec(p.n, values.data(), p.ia.data(), p.ja.data(), x.data(), y.data());
  const RowBundles rows = find_bundles(p.n, p.ia.data(), p.ja.data());
  sym_matvec(rows, values.data(), x.data(), z.data());
  EXPECT_EQ(rows.first.size(), bundles);
  for (std::size_t i = 0; i < x.size(); ++i) {
    EXPECT_NEAR(y[i], expected[i], 1e-13);
    EXPECT_NEAR(z[i], expected[i], 1e-13);
  }
}

}  // namespace

TEST(SymMatvec, IsTheProductWithTheWholeMatrix) {  // by hand: [2 1 0; 1 3 4; 0 4 5] (1 2 3)'
  const int ia[] = {1, 3, 5, 6}, ja[] = {1, 2, 2, 3, 3};
  const double values[] = {2, 1, 3, 4, 5}, x[] = {1, 2, 3};
  double y[3];
  sym_matvec(3, values, ia, ja, x, y);
  EXPECT_EQ(y[0], 4);
  EXPECT_EQ(y[1], 19);
  EXPECT_EQ(y[2], 23);
}

TEST(SymMatvec, InBundlesIsTheSameProduct) {
  // Columns in runs and alone, counts of every remainder by 4, rows without higher neighbours.
  expect_both_products_right(
      {{{1, 3, 4}, {2}, {3, 5, 6, 7}, {}, {5, 6, 7, 8}, {8}, {}, {8}, {}}, 5}, 9);
  // Rows that are no bundle stand between, before and behind: 3 per node, then 7.
  expect_both_products_right({{{1, 2}, {3}, {}, {}}, 3}, 0);
  expect_both_products_right({{{1}, {2}, {}}, 7}, 3);
}
