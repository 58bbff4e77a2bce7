#include "sparse/solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#ifndef _WIN32
#include <sys/resource.h>
#include <unistd.h>
#endif

#include "sparse/matrices.h"

#if defined(__SANITIZE_ADDRESS__)
constexpr bool SANITIZED = true;  // a memory limit would stop the sanitizer itself
#else
constexpr bool SANITIZED = false;
#endif

// Errors return their code, with their message.
constexpr std::uint32_t RETURNING = solver_termination_level(5);

static const SmallMatrix TINY = small_matrix(3, {{1, 2}, {2, 3}});

static int define(SolverHandle* h, const SmallMatrix& m, std::uint32_t options = 0) {
  return solver_define_structure(h, options, m.ia.data(), m.n, m.n, m.ja.data(), m.nnz());
}

// Runs a call and returns what it wrote behind its code.
template <class Run>
static std::string outcome(Run run) {
  testing::internal::CaptureStdout();
  const int code = run();
  return std::to_string(code) + " " + testing::internal::GetCapturedStdout();
}

// Factors, solves for two right-hand sides, and checks A x = b to rounding.
static void expect_solution(SolverHandle* h, const SmallMatrix& m, std::uint32_t factor) {
  ASSERT_EQ(solver_factor_real(h, factor, m.a.data()), 0);
  const auto n = static_cast<std::size_t>(m.n);
  std::vector<double> b(2 * n), x(2 * n), size(2 * n);
  for (std::size_t i = 0; i < 2 * n; ++i) b[i] = std::sin(1.0 + static_cast<double>(i));
  ASSERT_EQ(solver_solve_real(h, 0, b.data(), 2, x.data()), 0);
  const auto add = [&](std::size_t i, std::size_t j, double v) {
    b[i] -= v * x[j];
    size[i] += std::abs(v * x[j]);
  };
  for (std::size_t i = 0; i < 2 * n; ++i) {
    for (int t = m.ia[i % n]; t < m.ia[i % n + 1]; ++t) {
      const auto at = static_cast<std::size_t>(t) - 1;
      const std::size_t j = static_cast<std::size_t>(m.ja[at]) - 1 + (i < n ? 0 : n);
      add(i, j, m.a[at]);
      if (i != j) add(j, i, m.a[at]);
    }
  }
  for (std::size_t i = 0; i < 2 * n; ++i) ASSERT_LT(std::abs(b[i]), 1e-12 * (1 + size[i])) << i;
}

// The matrix, new values with diagonals of both signs, and with penalties, all on one analysis.
static void expect_solutions(SmallMatrix m, std::uint32_t order, const int* perm) {
  SolverHandle* h = nullptr;
  ASSERT_EQ(solver_create(h, 0), 0);
  ASSERT_EQ(define(h, m, SOLVER_SYMMETRIC), 0);
  ASSERT_EQ(solver_reorder(h, order, perm), 0);
  expect_solution(h, m, SOLVER_POSITIVE_DEFINITE);
  for (int i = 1; i <= m.n; i += 3) m.diagonal(i) *= -1;
  expect_solution(h, m, SOLVER_INDEFINITE);
  EXPECT_EQ(solver_factor_real(h, 0, m.a.data()), SOLVER_NUMERIC_FAILURE);
  for (int i = 1; i <= m.n; i += 3) m.diagonal(i) = 1.0e20;
  expect_solution(h, m, 0);
  expect_solution(h, m, SOLVER_INDEFINITE);
  ASSERT_EQ(solver_delete(h, 0), 0);
  EXPECT_EQ(h, nullptr);
}

TEST(Solver, SolvesMatricesOfManyShapesAndNewValuesOnOneAnalysis) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    const int n = 4 + static_cast<int>(seed) * 11;
    const Pairs pairs = random_pairs(n, 2 * n, seed);
    expect_solutions(small_matrix(n, pairs), 0, nullptr);
    expect_solutions(small_matrix(5 * n, blown_up(n, pairs, 5, seed % 2 == 0)), 0, nullptr);
  }
  const Pairs grid = grid_pairs(40, 10);
  expect_solutions(small_matrix(400, grid), SOLVER_MINIMUM_DEGREE, nullptr);
  expect_solutions(small_matrix(2000, blown_up(400, grid, 5, false)), 0, nullptr);
  std::vector<int> reversed;
  for (int i = 400; i >= 1; --i) reversed.push_back(i);
  expect_solutions(small_matrix(400, grid), SOLVER_USER_ORDER, reversed.data());
}

TEST(Solver, FailsWithoutWordsOnPivotsAndRecoversWithGoodValues) {
  SmallMatrix m = TINY;
  SolverHandle* h = nullptr;
  std::vector<double> b(3, 1.0), x(3, 7.0);
  ASSERT_EQ(solver_create(h, 0), 0);
  ASSERT_EQ(define(h, m), 0);
  ASSERT_EQ(solver_reorder(h, 0, nullptr), 0);
  std::fill(m.a.begin(), m.a.end(), 0.0);
  EXPECT_EQ(outcome([&] { return solver_factor_real(h, SOLVER_INDEFINITE, m.a.data()); }), "1 ");
  // The handle reads factored all the same; a solve has no factor to use.
  EXPECT_EQ(outcome([&] { return solver_solve_real(h, 0, b.data(), 1, x.data()); }), "1 ");
  EXPECT_EQ(x[0], 7.0);
  expect_solution(h, TINY, SOLVER_POSITIVE_DEFINITE);
  EXPECT_EQ(solver_delete(h, 0), 0);
}

TEST(SolverSequence, AcceptsEachCallFromItsStatesOnly) {
  std::vector<double> b(3, 1.0), x(3);
  const auto run = [&](SolverHandle*& h, char call) {
    if (call == 'd') return define(h, TINY);
    if (call == 'r') return solver_reorder(h, 0, nullptr);
    if (call == 'f') return solver_factor_real(h, 0, TINY.a.data());
    if (call == 's') return solver_solve_real(h, 0, b.data(), 1, x.data());
    return solver_delete(h, 0);
  };
  const std::vector<std::pair<std::string, std::string>> states = {
      {"", "dx"}, {"d", "rx"}, {"dr", "fx"}, {"drf", "fsx"}, {"drfs", "dfsx"}};
  for (const auto& [before, allowed] : states) {
    for (const char call : std::string("drfsx")) {
      SolverHandle* h = nullptr;
      ASSERT_EQ(solver_create(h, RETURNING), 0);
      for (const char done : before) ASSERT_EQ(run(h, done), 0);
      const bool legal = allowed.find(call) != std::string::npos;
      EXPECT_EQ(outcome([&] { return run(h, call); }),
                legal ? "0 " : "-9 SPARSE-DSS-Error, Invalid call sequence\n")
          << call << " after \"" << before << '"';
      EXPECT_EQ(h == nullptr ? 0 : solver_delete(h, 0), 0);
    }
  }
}

static const std::string PREFIX = "SPARSE-DSS-Error, ";

TEST(SolverMessages, NameEveryFailedCheckOfAStructureInOrder) {
  SolverHandle* h = nullptr;
  ASSERT_EQ(solver_create(h, RETURNING), 0);
  const auto defined = [&](int rows, int cols, int nnz, std::uint32_t options = 0) {
    return outcome([&] {
      return solver_define_structure(h, options, TINY.ia.data(), rows, cols, TINY.ja.data(), nnz);
    });
  };
  EXPECT_EQ(defined(1, 1, 1), "-5 " + PREFIX + "Number of columns less than one\n" + PREFIX +
                                  "Number of rows less than one\n" + PREFIX +
                                  "Number of non-zeros less than nRows\n");
  EXPECT_EQ(defined(3, 2, 5), "-8 " + PREFIX + "Not a square matrix\n");
  EXPECT_EQ(defined(3, 3, 3), "-6 " + PREFIX + "Number of non-zeros less than nRows\n");
  EXPECT_EQ(defined(3, 3, 10), "-7 " + PREFIX + "Number of non-zeros greater than nRows * nCols\n");
  EXPECT_EQ(defined(3, 3, 5, 0x20000000), "-14 " + PREFIX + "Invalid structure option\n");
  EXPECT_EQ(defined(3, 3, 5, SOLVER_USER_ORDER), "-10 " + PREFIX + "Invalid option\n");
  EXPECT_EQ(defined(46341, 46341, 2147483647), "0 ");  // rows x columns pass 2^31
  EXPECT_EQ(solver_delete(h, 0), 0);
}

TEST(SolverMessages, NameBadOptionWords) {
  SolverHandle* h = nullptr;
  EXPECT_EQ(outcome([&] { return solver_create(h, RETURNING | 0x200); }),
            "-10 " + PREFIX + "Invalid option\n");
  ASSERT_EQ(solver_create(h, RETURNING), 0);
  // A bad level leaves the kept ones in force.
  EXPECT_EQ(outcome([&] { return define(h, TINY, 0x80000007); }),
            "-12 " + PREFIX + "Invalid message level\n");
  EXPECT_EQ(outcome([&] { return define(h, TINY, 0x40000038); }),
            "-13 " + PREFIX + "Invalid termination level\n");
  ASSERT_EQ(define(h, TINY), 0);
  EXPECT_EQ(outcome([&] { return solver_reorder(h, 0x10000000, nullptr); }),
            "-15 " + PREFIX + "Invalid reorder option\n");
  // Fails as analysis: no permutation was given.
  EXPECT_EQ(outcome([&] { return solver_reorder(h, SOLVER_USER_ORDER, nullptr); }),
            "-1 " + PREFIX + "Zero Pivot detected\n" + PREFIX + "Out of memory\n");
  const auto factored = [&](std::uint32_t options) {
    return outcome([&] { return solver_factor_real(h, options, TINY.a.data()); });
  };
  EXPECT_EQ(factored(SOLVER_USER_ORDER), "-10 " + PREFIX + "Invalid option\n");
  EXPECT_EQ(factored(0x080000C0), "-11 " + PREFIX + "Requested options conflict\n");
  EXPECT_EQ(factored(solver_message_level(4) | SOLVER_SYMMETRIC),
            "-10 " + PREFIX + "Invalid option\n");
  EXPECT_EQ(factored(solver_message_level(5) | 0x08000100), "-11 ");  // errors are silent now
  EXPECT_EQ(outcome([&] { return solver_solve_real(h, 8, nullptr, 1, nullptr); }), "-13 ");
  EXPECT_EQ(solver_delete(h, solver_message_level(0)), 0);
}

// What the facade writes goes to standard output; a death test listens to standard error.
static void speak_on_stderr() { dup2(STDERR_FILENO, STDOUT_FILENO); }

TEST(SolverDeathTest, MessagesEndTheProcessWithTheirCodeByDefault) {
  const auto exits = [](int code) { return testing::ExitedWithCode(code & 0xff); };
  SolverHandle* h = nullptr;
  ASSERT_EQ(solver_create(h, 0), 0);
  EXPECT_EXIT((speak_on_stderr(), solver_reorder(h, 0, nullptr)), exits(-9),
              "^SPARSE-DSS-Error, Invalid call sequence\n$");
  EXPECT_EXIT((speak_on_stderr(), define(h, TINY, SOLVER_SYMMETRIC | 0x40000000)), exits(-13),
              "Invalid termination level");
  ASSERT_EQ(define(h, TINY, SOLVER_NONSYMMETRIC), 0);
  EXPECT_EXIT((speak_on_stderr(), solver_reorder(h, 0, nullptr)), exits(-1), "Zero Pivot detected");
  ASSERT_EQ(solver_delete(h, 0), 0);
  EXPECT_EXIT((speak_on_stderr(), solver_delete(h, 0)), exits(-9), "Invalid call sequence");
  ASSERT_EQ(solver_create(h, RETURNING), 0);
  EXPECT_EXIT((speak_on_stderr(), solver_factor_real(h, 0x08000140, nullptr)), exits(-16),
              "^SPARSE-DSS-Fatal, Invalid factor option\n$");
  ASSERT_EQ(solver_delete(h, 0), 0);
}

#ifndef _WIN32
TEST(SolverDeathTest, MemoryThatCannotBeHadIsTold) {
  if (SANITIZED) GTEST_SKIP() << "no memory limit under the address sanitizer";
  // An arrow whose hub comes first fills up: 3.2 GB of factor, under a limit of 1 GB.
  constexpr int n = 28000;
  Pairs arrow;
  for (int i = 2; i <= n; ++i) arrow.insert({1, i});
  const SmallMatrix m = small_matrix(n, arrow);
  std::vector<int> order(n);
  for (int i = 0; i < n; ++i) order[static_cast<std::size_t>(i)] = i + 1;
  const auto factor = [&] {
    speak_on_stderr();
    const rlimit limit{1u << 30, 1u << 30};
    setrlimit(RLIMIT_AS, &limit);
    SolverHandle* h = nullptr;
    if (solver_create(h, 0) != 0 || define(h, m) != 0) return;
    if (solver_reorder(h, SOLVER_USER_ORDER, order.data()) != 0) return;
    std::fputs("analysed\n", stdout);
    solver_factor_real(h, 0, m.a.data());
  };
  EXPECT_EXIT(factor(), testing::ExitedWithCode(-2 & 0xff),
              "^analysed\nSPARSE-DSS-Error, Out of memory\n$");
}
#endif
