#include "buckling/check.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "buckling/quality.h"
#include "buckling/stage.h"

extern "C" void dsygv_(const int* itype, const char* jobz, const char* uplo, const int* n,
                       double* a, const int* lda, double* b, const int* ldb, double* w,
                       double* work, const int* lwork, int* info);

namespace {

// A braced bit of girder under end couples.
Model short_girder(int lgbr, double load = 300) {
  Model m = one_girder(lgbr);
  add_ibraces(m, {lgbr / 2});
  add_laterals(m, {{1, 0, lgbr / 2}, {2, lgbr / 2, lgbr}});
  add_stiffeners(m, {0, lgbr});
  set_stages(m, {lgbr}, 1, 0.1, 0.0001, load);
  m.load_pattern = 3;
  return m;
}

const Stage& shared_stage() {
  static const Stage stage = make_stage(short_girder(48));
  return stage;
}

std::vector<double> dense(const MatrixPattern& p, const Vector<double>& values, double factor) {
  const auto n = static_cast<std::size_t>(p.n);
  std::vector<double> a(n * n);
  for (int r = 1; r <= p.n; ++r)
    for (int t = p.ia(r); t < p.ia(r + 1); ++t)
      a[static_cast<std::size_t>(r - 1) + n * static_cast<std::size_t>(p.ja(t) - 1)] =
          factor * values(t);
  return a;
}

// The largest mu of (-KG) x = mu K x, as factors 1/mu, smallest first.
std::vector<double> dense_factors(const Stage& s, std::size_t count) {
  std::vector<double> a = dense(s.pattern, s.KG, -1), b = dense(s.pattern, s.K, 1);
  const int n = s.pattern.n, itype = 1, lwork = 64 * n;
  std::vector<double> w(static_cast<std::size_t>(n)), work(static_cast<std::size_t>(lwork));
  int info = 0;
  dsygv_(&itype, "N", "U", &n, a.data(), &n, b.data(), &n, w.data(), work.data(), &lwork, &info);
  EXPECT_EQ(info, 0);
  std::vector<double> factors;
  for (std::size_t i = 1; i <= count; ++i) factors.push_back(1 / w[w.size() - i]);
  return factors;
}

double dot(const double* a, const double* b, int n) {
  double sum = 0;
  for (int i = 0; i < n; ++i) sum += a[i] * b[i];
  return sum;
}

// |cosine| of two shapes.
double likeness(const Check& a, const Check& b, int mode) {
  const int n = a.eigvec.rows();
  const double *x = a.eigvec.column(mode), *y = b.eigvec.column(mode);
  return std::abs(dot(x, y, n)) / std::sqrt(dot(x, x, n) * dot(y, y, n));
}

}  // namespace

TEST(BucklingCheck, GivesTheFactorsOfADenseEigensolver) {
  const Stage& s = shared_stage();
  const std::vector<double> exact = dense_factors(s, 3);
  const Check c = run_check(s, {3, 1, 1e-12, 0});
  for (int m = 1; m <= 3; ++m)
    EXPECT_NEAR(c.eigval(m) / exact[static_cast<std::size_t>(m - 1)], 1, 1e-8) << m;
  EXPECT_EQ(c.warnings, "");
  // One dot for each solve, on one line behind a blank.
  EXPECT_EQ(c.console.substr(0, 2), " .");
  EXPECT_EQ(c.console.find_first_not_of('.', 1), c.console.size() - 1);
  EXPECT_EQ(c.console.back(), '\n');
}

TEST(BucklingCheck, OfBothKindsGivesTheSameFactorsAndShapesWithSmallResiduals) {
  const Stage& s = shared_stage();
  const Check one = run_check(s, {2, 1, 1e-12, 0});
  const Check two = run_check(s, {2, 2, 1e-12, 0.5 * one.eigval(1)});
  const RowBundles rows = find_bundles(s.pattern.n, s.pattern.ia.data(), s.pattern.ja.data());
  for (int m = 1; m <= 2; ++m) {
    EXPECT_NEAR(two.eigval(m) / one.eigval(m), 1, 1e-6);
    EXPECT_GT(likeness(one, two, m), 1 - 1e-6);
    for (const Check* c : {&one, &two}) {
      const PairQuality q = measure_pair(rows, s.K, c->KG, c->eigval(m), c->eigvec.column(m));
      EXPECT_LT(q.residual, 1e-6);
      EXPECT_NEAR(q.rayleigh / c->eigval(m), 1, 1e-8);
    }
  }
  for (std::int64_t t = 1; t <= s.KG.size(); ++t) ASSERT_EQ(one.KG(t), -s.KG(t));
}

TEST(BucklingCheck, FactorIsInverseToTheLoadWithTheSameShape) {
  const Stage twice = make_stage(short_girder(48, 600));
  const Check a = run_check(shared_stage(), {2, 1, 1e-12, 0}),
              b = run_check(twice, {2, 1, 1e-12, 0});
  for (int m = 1; m <= 2; ++m) {
    EXPECT_NEAR(b.eigval(m) / a.eigval(m), 0.5, 1e-8);
    EXPECT_GT(likeness(a, b, m), 1 - 1e-6);
  }
}

TEST(BucklingCheck, WithAShiftBeyondTheFirstFactorFindsTheFactorsAroundIt) {
  const Stage& s = shared_stage();
  const std::vector<double> exact = dense_factors(s, 2);
  const double sigma = 0.4 * exact[0] + 0.6 * exact[1];  // K + sigma KG is indefinite: L D L'
  Check c = run_check(s, {2, 2, 1e-12, sigma});
  std::sort(c.eigval.begin(), c.eigval.end());
  EXPECT_NEAR(c.eigval(1) / exact[0], 1, 1e-7);
  EXPECT_NEAR(c.eigval(2) / exact[1], 1, 1e-7);
}

TEST(BucklingCheck, StopsAtDiagonalsThatAreNotPositiveAndLeavesTheFactors) {
  Stage s = shared_stage();
  const Check c = run_check(s, {2, 2, 1e-9, 1e9}, 7.5);
  EXPECT_NE(c.console.find(" negative terms on diagonal\n Eigensolver did not find solution\n"),
            std::string::npos);
  EXPECT_EQ(c.eigval(1), 7.5);
  // A zero counts as negative; here it is the only one.
  for (double& v : s.KG) v = 0;
  s.K(s.pattern.ia(6)) = 0;
  EXPECT_EQ(run_check(s, {2, 2, 1e-9, 1.0}).console,
            "           1 negative terms on diagonal\n Eigensolver did not find solution\n");
}

TEST(BucklingCheck, TellsTheCodeOfAMatrixThatNeitherFactorizationTakes) {
  Stage s = shared_stage();
  s.K.clear();  // the first pivot is exactly zero
  const Check c = run_check(s, {2, 1, 1e-9, 0}, 7.5);
  EXPECT_EQ(c.console.rfind(" Solver Returned Error Code ", 0), 0u);
  EXPECT_EQ(c.eigval(2), 7.5);
}

TEST(BucklingCheck, OfTenModesFailsAtOnceAndLeavesTheFactors) {
  const Check c = run_check(shared_stage(), {10, 1, 1e-9, 0}, 7.5);
  EXPECT_EQ(c.console,
            " \n  Error with dsaupd, info =           -3\n  Check the documentation of dsaupd\n\n");
  EXPECT_EQ(c.eigval(1), 7.5);
}

TEST(BucklingCheck, AtTheIterationLimitSaysSoAndWarnsOfModesThatHaveNotConverged) {
  const Check c = run_check(shared_stage(), {9, 1, 1e-30, 0});
  EXPECT_NE(c.console.find(".\n  Maximum number of iterations reached.\n\n\n"), std::string::npos)
      << c.console.substr(c.console.rfind('.'));
  EXPECT_NE(c.warnings.find("modes have converged"), std::string::npos);
}

TEST(BucklingCheck, WarnsOfALooseFactorWithTheRecordThatSharpensIt) {
  const Stage& s = shared_stage();
  const Check sharp = run_check(s, {2, 1, 1e-12, 0});
  EigenOptions loose{2, 2, 1e-1, 0.001 * sharp.eigval(1)};
  loose.stage = 4;
  const Check c = run_check(s, loose);
  EXPECT_NE(c.warnings.find("analysis 4, mode 1: "), std::string::npos) << c.warnings;
  EXPECT_NE(c.warnings.find("solver"), std::string::npos);
}
