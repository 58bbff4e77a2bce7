#include "sparse/numeric.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "sparse/analysis.h"
#include "sparse/matrices.h"

namespace {

// Factor and structure of a small matrix, in METIS order or in the order as it stands.
struct Factored {
  FactorStructure s;
  NumericWork w;
  int result = 0;
};

Factored factored(const SmallMatrix& m, bool ldl, bool as_it_stands = false) {
  Factored f;
  std::vector<int> natural;
  for (int i = 1; i <= m.n; ++i) natural.push_back(i);
  EXPECT_EQ(
      analyse(m.n, m.nnz(), m.ia.data(), m.ja.data(), as_it_stands ? natural.data() : nullptr, f.s),
      0);
  reserve_numeric(f.s, 2 * f.s.update_size, f.w);
  f.result = (ldl ? factor_ldl : factor_cholesky)(f.s, m.a.data(), f.w);
  return f;
}

// Entry of L in new numbers, i >= j, from its supernode's rectangle.
double entry(const Factored& f, int i, int j) {
  const int J = f.s.snode(j);
  for (auto t = f.s.xlindx(J); t < f.s.xlindx(J + 1); ++t)
    if (f.s.lindx(t) == i) return f.w.lnz(f.s.xlnz(j) + (t - f.s.xlindx(J)));
  return 0.0;
}

// Largest difference between L L' (or L D L') and P A P'.
double product_error(const SmallMatrix& m, const Factored& f, bool ldl) {
  Matrix<double> L(m.n, m.n), A(m.n, m.n);
  for (int j = 1; j <= m.n; ++j)
    for (int i = j; i <= m.n; ++i) L(i, j) = entry(f, i, j);
  for (int i = 1; i <= m.n; ++i)
    for (int t = m.ia[static_cast<std::size_t>(i) - 1]; t < m.ia[static_cast<std::size_t>(i)];
         ++t) {
      const int p = f.s.invp(i), q = f.s.invp(m.ja[static_cast<std::size_t>(t) - 1]);
      A(std::max(p, q), std::min(p, q)) = m.a[static_cast<std::size_t>(t) - 1];
    }
  double worst = 0;
  for (int j = 1; j <= m.n; ++j)
    for (int i = j; i <= m.n; ++i) {
      double sum = 0;
      for (int p = 1; p <= j; ++p) {
        const double lip = ldl && i == p ? 1.0 : L(i, p), ljp = ldl && j == p ? 1.0 : L(j, p);
        sum += lip * ljp * (ldl ? L(p, p) : 1.0);
      }
      worst = std::max(worst, std::abs(sum - A(i, j)));
    }
  return worst;
}

std::vector<double> times(const SmallMatrix& m, const std::vector<double>& x) {
  std::vector<double> y(x.size());
  for (std::size_t i = 0; i < x.size(); ++i)
    for (int t = m.ia[i]; t < m.ia[i + 1]; ++t) {
      const auto j = static_cast<std::size_t>(m.ja[static_cast<std::size_t>(t) - 1]) - 1;
      const double v = m.a[static_cast<std::size_t>(t) - 1];
      y[i] += v * x[j];
      if (j != i) y[j] += v * x[i];
    }
  return y;
}

// Patterns that reach every way an update can go.
std::vector<SmallMatrix> patterns() {
  Pairs dense, arrow, chain;
  for (int i = 1; i <= 200; ++i)
    for (int j = i + 1; j <= 200; ++j) dense.insert({i, j});
  for (int i = 1; i < 40; ++i) arrow.insert({i, 40}), chain.insert({i, i + 1});
  return {small_matrix(200, dense),  // one supernode cut in three: the same rows
          small_matrix(40, arrow),   // single columns
          small_matrix(40, chain),   // consecutive rows
          small_matrix(30, {}),      // all roots
          small_matrix(144, grid_pairs(12, 12)),
          small_matrix(300, blown_up(60, grid_pairs(6, 10), 5, false)),  // scattered rows
          small_matrix(150, random_pairs(150, 300, 5)),
          small_matrix(200, blown_up(40, random_pairs(40, 80, 9), 5, true))};
}

TEST(NumericFactor, MultipliedBackGivesTheMatrix) {
  for (const SmallMatrix& m : patterns())
    for (const bool natural : {false, true})
      EXPECT_LT(product_error(m, factored(m, false, natural), false), 1e-12) << m.n;
}

TEST(NumericFactor, LdlTakesNegativePivots) {
  for (SmallMatrix m : patterns()) {
    for (int i = 0; i < m.n; i += 3)
      m.a[static_cast<std::size_t>(m.ia[static_cast<std::size_t>(i)]) - 1] *= -1.0;
    EXPECT_EQ(factored(m, false).result, FACTOR_BAD_PIVOT);
    const Factored f = factored(m, true);
    ASSERT_EQ(f.result, FACTOR_DONE);
    EXPECT_LT(product_error(m, f, true), 1e-12) << m.n;
  }
}

TEST(NumericSolve, FindsEveryRightHandSideInPlaceToo) {
  for (const SmallMatrix& m : patterns())
    for (const bool ldl : {false, true}) {
      Factored f = factored(m, ldl);
      const auto n = static_cast<std::size_t>(m.n);
      std::vector<double> x(n), x2(n);
      for (std::size_t i = 0; i < n; ++i)
        x[i] = std::sin(1.0 + double(i)), x2[i] = 1.0 / double(i + 1);
      std::vector<double> b = times(m, x);
      const auto b2 = times(m, x2);
      b.insert(b.end(), b2.begin(), b2.end());
      (ldl ? solve_ldl : solve_cholesky)(f.s, f.w, b.data(), 2, b.data());
      for (std::size_t i = 0; i < n; ++i) {
        EXPECT_NEAR(b[i], x[i], 1e-12);
        EXPECT_NEAR(b[n + i], x2[i], 1e-12);
      }
    }
}

TEST(NumericFactor, NewValuesReuseTheStorageAndLeaveNoTraceOfTheOld) {
  SmallMatrix m = small_matrix(300, blown_up(60, grid_pairs(6, 10), 5, false));
  Factored f = factored(m, false);
  const auto first = std::vector<double>(f.w.lnz.begin(), f.w.lnz.begin() + f.s.factor_size);
  const double* storage = f.w.lnz.data();
  SmallMatrix other = m;
  for (double& v : other.a) v *= 3.0;
  reserve_numeric(f.s, 2 * f.s.update_size, f.w);
  ASSERT_EQ(factor_ldl(f.s, other.a.data(), f.w), FACTOR_DONE);
  ASSERT_EQ(factor_cholesky(f.s, m.a.data(), f.w), FACTOR_DONE);
  EXPECT_EQ(f.w.lnz.data(), storage);
  for (int j = 1; j <= m.n; ++j)
    for (int i = j; i < m.n; ++i) {
      const int J = f.s.snode(j);
      if (i - j >= f.s.xlnz(j + 1) - f.s.xlnz(j) - (j - f.s.xsuper(J))) break;
      const auto at = f.s.xlnz(j) + (j - f.s.xsuper(J)) + (i - j);
      ASSERT_EQ(f.w.lnz(at), first[static_cast<std::size_t>(at) - 1]);
    }
}

TEST(NumericFactor, APenaltyPassesAndHoldsItsEquation) {
  SmallMatrix m = small_matrix(144, grid_pairs(12, 12));
  m.a[static_cast<std::size_t>(m.ia[70]) - 1] = 1.0e20;
  Factored f = factored(m, false);
  ASSERT_EQ(f.result, FACTOR_DONE);
  std::vector<double> b(144, 1.0), x(144);
  solve_cholesky(f.s, f.w, b.data(), 1, x.data());
  EXPECT_LT(std::abs(x[70]), 1e-19);
  x[70] = 0;
  const auto back = times(m, x);
  for (std::size_t i = 0; i < 144; ++i) EXPECT_NEAR(back[i], i == 70 ? back[i] : 1.0, 1e-13);
}

TEST(NumericFactor, StopsAtPivotsAndAtAnUpdateThatDoesNotFit) {
  const auto with_first = [](double pivot) {
    SmallMatrix m = small_matrix(3, {});
    m.a[0] = pivot;
    return m;
  };
  EXPECT_EQ(factored(with_first(1.0e-300), false).result, FACTOR_DONE);
  EXPECT_EQ(factored(with_first(0.0), false).result, FACTOR_BAD_PIVOT);
  EXPECT_EQ(factored(with_first(std::numeric_limits<double>::quiet_NaN()), false).result,
            FACTOR_BAD_PIVOT);
  EXPECT_EQ(factored(with_first(0.0), true).result, FACTOR_BAD_PIVOT);
  const SmallMatrix m = small_matrix(300, blown_up(60, grid_pairs(6, 10), 5, false));
  Factored f = factored(m, false);
  ASSERT_GT(f.s.update_size, 0);
  reserve_numeric(f.s, f.s.update_size, f.w);  // what the analysis says is enough,
  EXPECT_EQ(factor_cholesky(f.s, m.a.data(), f.w), FACTOR_DONE);
  reserve_numeric(f.s, 24, f.w);  // less than one 5 x 5 block is not
  EXPECT_EQ(factor_cholesky(f.s, m.a.data(), f.w), FACTOR_TEMP_SMALL);
}

}  // namespace
