#include "sparse/numeric.h"

#include <gtest/gtest.h>

#include <numeric>

#include "sparse/analysis.h"
#include "sparse/matrices.h"

// Largest difference between L L' (or L D L') and P A P'.
static double product_error(const SmallMatrix& m, const FactorStructure& s, const NumericWork& w,
                            bool ldl) {
  Matrix<double> L(m.n, m.n), A(m.n, m.n);
  each_value(m, [&](int i, int j, int t) {
    A(s.invp(i), s.invp(j)) = A(s.invp(j), s.invp(i)) = m.a[t - 1];
  });
  for (int j = 1; j <= m.n; ++j)
    for (std::int64_t first = s.xlindx(s.snode(j)), t = first; t < s.xlindx(s.snode(j) + 1); ++t)
      if (s.lindx(t) >= j) L(s.lindx(t), j) = w.lnz(s.xlnz(j) + t - first);
  double worst = 0;
  for (int j = 1; j <= m.n; ++j)
    for (int i = j; i <= m.n; ++i) {
      double sum = 0;
      for (int p = 1; p <= j; ++p) {
        const double d = ldl ? L(p, p) : 1;
        sum += (ldl && i == p ? 1 : L(i, p)) * d * (ldl && j == p ? 1 : L(j, p));
      }
      worst = std::max(worst, std::abs(sum - A(i, j)));
    }
  return worst;
}

static std::vector<SmallMatrix> patterns() {
  Pairs arrow;
  for (int i = 1; i < 40; ++i) arrow.insert({i, 40});
  return {small_matrix(1, {}, 200),                // one supernode cut in three: the same rows
          small_matrix(40, arrow),                 // single columns
          small_matrix(40, grid_pairs(1, 40)),     // consecutive rows
          small_matrix(30, {}),                    // all roots
          small_matrix(60, grid_pairs(6, 10), 5),  // scattered rows
          small_matrix(150, random_pairs(150, 300, 5)),
          small_matrix(40, random_pairs(40, 80, 9), 5, true)};
}

TEST(NumericFactor, MultipliedBackGivesTheMatrixWithPivotsOfBothSigns) {
  for (SmallMatrix m : patterns())
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
      EXPECT_LT(product_error(m, s, w, false), 1e-12) << m.n;
      SmallMatrix other = m;
      for (int i = 1; i <= m.n; i += 3) other.diagonal(i) *= -1.0;
      reserve_numeric(s, s.update_size, w);  // what there is serves
      EXPECT_EQ(factor_cholesky(s, other.a.data(), w), FACTOR_BAD_PIVOT);
      ASSERT_EQ(factor_ldl(s, other.a.data(), w), FACTOR_DONE);
      EXPECT_LT(product_error(other, s, w, true), 1e-12) << m.n;
      EXPECT_EQ(w.lnz.data(), storage);
    }
}

TEST(NumericFactor, StopsAtAnUpdateThatDoesNotFit) {
  const SmallMatrix m = small_matrix(60, grid_pairs(6, 10), 5);
  FactorStructure s;
  NumericWork w;
  ASSERT_EQ(analyse(m.n, m.nnz(), m.ia.data(), m.ja.data(), nullptr, s), 0);
  reserve_numeric(s, 24, w);  // less than one 5 x 5 block
  EXPECT_EQ(factor_cholesky(s, m.a.data(), w), FACTOR_TEMP_SMALL);
}
