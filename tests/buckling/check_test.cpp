#include "buckling/check.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "buckling/quality.h"
#include "control/console_lines.h"
#include "support/dense.h"
#include "support/models.h"
#include "support/run.h"

using namespace zelvo;

namespace {

// What a check is given: a braced bit of girder under end couples.
struct Problem {
  SymmetricMatrix K, KG;
};

Problem make_problem(double load) {
  Model m = one_girder(48);
  brace_every(m, 24, Laterals::CROSSED);
  add_stiffeners(m, {0, 48});
  set_stages(m, {48}, 1, 0.1, 0.0001, load);
  m.load_pattern = 3;
  m.buckle = true;
  m.tol = 1e-12;
  m.solver_type = 1;
  Run run = std::move(analyse(m).run);
  for (double& v : run.KG.values) v = -v;  // the run's own check has turned it
  return {run.K, run.KG};
}

// What a check leaves.
struct Check {
  EigenOutcome outcome;
  BucklingModes modes;
  SymmetricMatrix KG;
  std::string console, warnings;  // as a stage writes them
  double factor(int m) const { return modes.eigval(m); }
};

// The factors begin with the value untouched.
Check run_check(const Problem& p, const EigenOptions& options, double untouched = 0) {
  Check c{{}, {Vector<double>(options.nev), Matrix<double>(p.K.n(), options.nev)}, p.KG, "", ""};
  for (double& v : c.modes.eigval) v = untouched;
  StepClock clock;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  c.outcome = buckling_solve(p.K, c.KG, options, console_steps(clock), c.modes);
  print_outcome(c.outcome);
  BucklingResults results{c.outcome, c.modes, {}, {}};
  if (c.outcome.found) results.quality = measure_pairs(p.K, c.KG, c.modes);
  warn_of_check(4, options, c.outcome, c.modes.eigval);
  warn_of_loose_pairs(4, options, results);
  c.warnings = testing::internal::GetCapturedStderr();
  c.console = testing::internal::GetCapturedStdout();
  return c;
}

// |cosine| of two shapes.
double likeness(const Check& a, const Check& b, int mode) {
  double xx = 0, xy = 0, yy = 0;
  for (int i = 1; i <= a.modes.eigvec.rows(); ++i) {
    const double x = a.modes.eigvec(i, mode), y = b.modes.eigvec(i, mode);
    xx += x * x;
    xy += x * y;
    yy += y * y;
  }
  return std::abs(xy) / std::sqrt(xx * yy);
}

}  // namespace

TEST(BucklingCheck, GivesTheFactorsOfADenseEigensolver) {
  const Problem p = make_problem(3);
  const std::vector<double> exact = dense_factors(p.K, p.KG, 3);
  const Check c = run_check(p, {3, 1, 1e-12, 0});
  for (int m = 1; m <= 3; ++m)
    EXPECT_NEAR(c.factor(m) / exact[static_cast<std::size_t>(m - 1)], 1, 1e-8) << m;
  EXPECT_EQ(c.warnings, "");
  // A shift between two factors: K + sigma KG is indefinite and needs L D L'.
  Check between = run_check(p, {2, 2, 1e-12, 0.4 * exact[0] + 0.6 * exact[1]});
  std::sort(between.modes.eigval.begin(), between.modes.eigval.end());
  for (int m = 1; m <= 2; ++m) EXPECT_NEAR(between.factor(m) / c.factor(m), 1, 1e-7) << m;
  EXPECT_EQ(between.warnings, "");
  // Beyond some factors, of which one is asked for: the matrix tells how many there are.
  const std::vector<double> more = dense_factors(p.K, p.KG, 8);
  const double beyond = 1.001 * exact[2];
  const auto below = std::count_if(more.begin(), more.end(), [&](double f) { return f < beyond; });
  const Check skips = run_check(p, {1, 2, 1e-12, beyond});
  ASSERT_LT(below, 8);
  EXPECT_EQ(skips.outcome.below_shift, below);
  EXPECT_NE(skips.warnings.find(formatted("analysis 4: %d buckling factors lie between 0 and the "
                                          "shift of %.6g, and 1 of them",
                                          skips.outcome.below_shift, beyond)),
            std::string::npos)
      << skips.warnings;
}

// A first factor below zero belongs to the reversed loads, and no shift is proposed about it.
TEST(BucklingCheck, ProposesKindOneWhereTheFirstFactorIsNoLoadFactor) {
  const Problem p = make_problem(3);
  const Check down = run_check(p, {1, 1, 1e-12, 0});
  Problem reversed = p;
  for (double& v : reversed.KG.values) v = -v;
  const Check c = run_check(reversed, {1, 2, 1e-1, -0.9 * down.factor(1)});
  ASSERT_LT(c.factor(1), 0);
  EXPECT_NE(c.warnings.find("the lowest positive one with solver \"1 1.0E-06\""), std::string::npos)
      << c.warnings;
  EXPECT_EQ(c.warnings.find("solver \"2"), std::string::npos) << c.warnings;
}

TEST(BucklingCheck, OfBothKindsGivesTheSameFactorsAndShapesInverseToTheLoad) {
  const Problem p = make_problem(3);
  const Check one = run_check(p, {2, 1, 1e-12, 0});
  const Check two = run_check(p, {2, 2, 1e-12, 0.5 * one.factor(1)});
  const Check twice = run_check(make_problem(6), {2, 1, 1e-12, 0});
  for (int m = 1; m <= 2; ++m) {
    EXPECT_NEAR(two.factor(m) / one.factor(m), 1, 1e-6);
    EXPECT_NEAR(twice.factor(m) / one.factor(m), 0.5, 1e-8);
    EXPECT_GT(likeness(one, two, m), 1 - 1e-6);
    EXPECT_GT(likeness(one, twice, m), 1 - 1e-6);
    for (const Check* c : {&one, &two}) {
      const PairQuality q = measure_pairs(p.K, c->KG, c->modes)(m);
      EXPECT_LT(q.residual, 1e-6);
      EXPECT_NEAR(q.rayleigh / c->factor(m), 1, 1e-8);
    }
  }
  for (int t = 1; t <= p.KG.pattern->nnz; ++t) ASSERT_EQ(one.KG.values(t), -p.KG.values(t));
}

TEST(BucklingCheck, ThatFailsSaysSoAndLeavesTheFactors) {
  const Problem sound = make_problem(3);
  Problem no_stiffness = sound, zero_diagonal = sound;
  no_stiffness.K.values.clear();  // the first pivot is zero: neither factorization takes it
  zero_diagonal.KG.values.clear();
  zero_diagonal.K.own_value(2, 1, 1) = 0;  // counts as negative
  const struct {
    const Problem& problem;
    EigenOptions options;
    const char* words;
  } cases[] = {
      {sound,
       {2, 2, 1e-9, 1e9},
       " negative terms on diagonal\n Eigensolver did not find solution\n"},
      {zero_diagonal, {2, 2, 1e-9, 1}, "           1 negative terms on diagonal\n Eigensolver did"},
      {no_stiffness, {2, 1, 1e-9, 0}, " Solver Returned Error Code "},
      {sound,
       {10, 1, 1e-9, 0},
       " \n  Error with dsaupd, info =           -3\n  Check the documentation of dsaupd\n\n"}};
  for (const auto& c : cases) {
    const Check check = run_check(c.problem, c.options, 7.5);
    EXPECT_NE(check.console.find(c.words), std::string::npos) << check.console;
    EXPECT_NE(check.warnings.find("no buckling factors, the results stand at 7.5 times the load: "),
              std::string::npos)
        << check.warnings;
    for (const double factor : check.modes.eigval) EXPECT_EQ(factor, 7.5) << c.words;
  }
}

// The factors of the stage before stay, and scale the stage; the next one finds its own.
TEST(BucklingCheck, OfAStageThatFailsKeepsTheFactorsOfTheStageBefore) {
  Model m = one_girder(48);
  set_stages(m, {48}, 3);
  m.load_pattern = 3;  // each stage its own load
  m.pour_load(2, 1) = 3e12;
  m.buckle = true;
  m.solver_type = 2;
  m.tol = 1e-10;
  m.sigma = 1;
  const Bridge b = analyse(m);
  const auto factor = [&](int k) { return b.results(k).buckling.modes.eigval(1); };
  EXPECT_GT(b.results(2).buckling.outcome.negative_terms, 0);
  EXPECT_EQ(factor(2), factor(1));
  EXPECT_NEAR(b.deflection(2, 24), 1e12 * b.deflection(1, 24), 1e4 * b.deflection(1, 24));
  EXPECT_NEAR(factor(3) / factor(1), 1, 1e-7);
}

TEST(BucklingCheck, WarnsOfModesThatAreLooseOrHaveNotConverged) {
  const Problem p = make_problem(3);
  const Check limit = run_check(p, {9, 1, 1e-30, 0});
  EXPECT_NE(limit.console.find(".\n  Maximum number of iterations reached.\n\n\n"),
            std::string::npos);
  EXPECT_NE(limit.warnings.find("modes have converged"), std::string::npos);
  const double first = run_check(p, {1, 1, 1e-12, 0}).factor(1);
  const Check loose = run_check(p, {2, 2, 1e-1, 0.001 * first});
  EXPECT_NE(loose.warnings.find("analysis 4, mode 1: "), std::string::npos) << loose.warnings;
  EXPECT_NE(loose.warnings.find("solver"), std::string::npos);
}
