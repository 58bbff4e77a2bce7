#include "sparse/numeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "sparse/analysis.h"
#include "sparse/matrices.h"

// Largest entry of P A P' v - L D L' v for some v; D is one for Cholesky.
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
    const double* const column = &w.lnz(s.xlnz(j)) - first;
    const auto L = [&](std::int64_t t) { return ldl && t == diagonal ? 1 : column[t]; };
    double y = 0;
    for (auto t = diagonal; t < s.xlindx(s.snode(j) + 1); ++t) y += L(t) * v[s.lindx(t)];
    if (ldl) y *= column[diagonal];
    for (auto t = diagonal; t < s.xlindx(s.snode(j) + 1); ++t) error[s.lindx(t)] -= L(t) * y;
  }
  const auto [low, high] = std::minmax_element(error.begin(), error.end());
  return std::max(-*low, *high);
}

TEST(NumericFactor, MultipliedBackGivesTheMatrixWithPivotsOfBothSigns) {
  for (SmallMatrix m : {small_matrix(1, {}, 200),  // one supernode cut in three: the same rows
                        small_matrix(30, {}),      // all roots
                        small_matrix(40, grid_pairs(1, 40)),     // single columns
                        small_matrix(60, grid_pairs(6, 10), 5),  // runs of rows
                        small_matrix(150, random_pairs(150, 300, 5)),
                        small_matrix(40, random_pairs(40, 80, 9), 5, true)})
    for (const bool as_it_stands : {false, true}) {
      std::vector<int> order(m.n);
      std::iota(order.begin(), order.end(), 1);
      FactorStructure s;
      NumericWork w;
      const int* const perm = as_it_stands ? order.data() : nullptr;
      ASSERT_EQ(analyse(m.n, m.nnz(), m.ia.data(), m.ja.data(), perm, s), 0);
      reserve_numeric(s, s.update_size, w);
      const double* const storage = w.lnz.data();
      ASSERT_EQ(factor_cholesky(s, m.a.data(), w), FACTOR_DONE);
      EXPECT_LT(product_error(m, s, w, false), 1e-11) << m.n;
      for (int i = 1; i <= m.n; i += 3) m.diagonal(i) *= -1.0;
      EXPECT_EQ(factor_cholesky(s, m.a.data(), w), FACTOR_BAD_PIVOT);
      ASSERT_EQ(factor_ldl(s, m.a.data(), w), FACTOR_DONE);
      EXPECT_LT(product_error(m, s, w, true), 1e-11) << m.n;
      for (int i = 1; i <= m.n; i += 3) m.diagonal(i) *= -1.0;
      reserve_numeric(s, 0, w);  // what is large enough stays
      EXPECT_EQ(w.lnz.data(), storage);
      EXPECT_EQ(factor_cholesky(s, m.a.data(), w),
                s.update_size > 0 ? FACTOR_TEMP_SMALL : FACTOR_DONE);
    }
}
