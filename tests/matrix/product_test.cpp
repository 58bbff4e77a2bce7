#include "matrix/product.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace zelvo;

// Upper triangle by rows from the higher neighbours of each node, with some equations per node:
// both products against the definition, entry (r,c) acting at r and, off the diagonal, at c.
static void expect_products_right(const std::vector<std::vector<int>>& higher, int freedoms,
                                  long bundles) {
  std::vector<int> ia{1}, ja;
  const int n = static_cast<int>(higher.size()) * freedoms;
  Vector<double> x(n), y(n), z(n), expected(n), values(100 * n);
  for (int i = 1; i <= n; ++i) {
    const int node = (i - 1) / freedoms;
    for (int c = i; c <= freedoms * (node + 1); ++c) ja.push_back(c);
    for (const int j : higher[static_cast<std::size_t>(node)])
      for (int d = 1; d <= freedoms; ++d) ja.push_back(freedoms * j + d);
    ia.push_back(static_cast<int>(ja.size()) + 1);
    x(i) = std::sin(2.0 * i), y(i) = z(i) = 9;
  }
  for (int r = 1, t = 0; r <= n; ++r) {
    for (; t < ia[static_cast<std::size_t>(r)] - 1; ++t) {
      const int c = ja[static_cast<std::size_t>(t)];
      const double v = values(t + 1) = std::cos(1.7 * t);
      expected(r) += v * x(c);
      if (c != r) expected(c) += v * x(r);
    }
  }
  const int nnz = static_cast<int>(ja.size());
  MatrixPattern pattern{n, nnz, Vector<int>(n + 1), Vector<int>(nnz)};
  std::copy(ia.begin(), ia.end(), pattern.ia.begin());
  std::copy(ja.begin(), ja.end(), pattern.ja.begin());
  SymmetricMatrix A = zero_matrix(std::make_shared<const MatrixPattern>(pattern), "a test");
  std::copy_n(values.begin(), nnz, A.values.begin());
  sym_matvec(A, x.data(), y.data());
  const RowBundles rows = find_bundles(A.pattern);
  sym_matvec(rows, A, x.data(), z.data());
  EXPECT_EQ(rows.first.size(), bundles);
  for (int i = 1; i <= n; ++i) {
    EXPECT_NEAR(y(i), expected(i), 1e-13);
    EXPECT_NEAR(z(i), expected(i), 1e-13);
  }
}

TEST(SymMatvec, IsTheProductWithTheWholeMatrixInBundlesToo) {
  // Columns in runs and alone, counts of every remainder by 4, rows without higher neighbours.
  expect_products_right({{1, 3, 4}, {2}, {3, 5, 6, 7}, {}, {5, 6, 7, 8}, {8}, {}, {8}, {}}, 5, 9);
  expect_products_right({{1, 2}, {3}, {}, {}}, 3, 0);  // no bundles
  expect_products_right({{1}, {2}, {}}, 7, 3);         // single rows between and behind
}
