#include "sparse/solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <string>
#ifndef _WIN32
#include <sys/resource.h>
#include <unistd.h>
#endif

#include "sparse/matrices.h"

using namespace zelvo;

constexpr std::uint32_t RETURNING = solver_termination_level(5);  // errors return their code

// A solver of one matrix, and its calls by letter.
struct Session {
  SmallMatrix m = small_matrix(3, {{1, 2}, {2, 3}});
  const int* order = nullptr;
  int rows = m.n, cols = m.n, nnz = m.nnz();
  std::vector<double> b = std::vector<double>(2 * m.n, 1.0), x = b;
  SolverHandle* h = nullptr;

  ~Session() { EXPECT_EQ(h == nullptr ? 0 : solver_delete(h, 0), 0); }
  int operator()(char call, std::uint32_t options = 0) {
    if (call == 'n') options = SOLVER_NONSYMMETRIC;
    if (call == 'd' || call == 'n')
      return solver_define_structure(h, options, m.ia.data(), rows, cols, m.ja.data(), nnz);
    if (call == 'r') return solver_reorder(h, options, order);
    if (call == 'f') return solver_factor_real(h, options, m.a.data());
    if (call == 's') return solver_solve_real(h, options, b.data(), 2, x.data());
    return solver_delete(h, options);
  }
  void create(std::uint32_t options, const std::string& calls) {
    ASSERT_EQ(solver_create(h, options), 0);
    for (const char call : calls) ASSERT_EQ((*this)(call), 0);
  }
  // The code of a call and what it wrote.
  std::string outcome(char call, std::uint32_t options = 0) {
    testing::internal::CaptureStdout();
    const int code = (*this)(call, options);
    return std::to_string(code) + " " + testing::internal::GetCapturedStdout();
  }
  // Factors, solves for two right-hand sides, and checks A x = b to rounding.
  void expect_solution(std::uint32_t factor) {
    for (int i = 0; i < 2 * m.n; ++i) b[i] = std::sin(1.0 + i);
    ASSERT_EQ((*this)('f', factor), 0);
    ASSERT_EQ((*this)('s'), 0);
    each_value(m, [&](int i, int j, int t) {
      for (const int q : {-1, m.n - 1}) {
        b[q + i] -= m.a[t - 1] * x[q + j];
        if (i != j) b[q + j] -= m.a[t - 1] * x[q + i];
      }
    });
    for (const double residual : b) ASSERT_NEAR(residual, 0, 1e-12);
  }
};

// The matrix, new values with diagonals of both signs, and with penalties, all on one analysis.
static void expect_solutions(const SmallMatrix& m, std::uint32_t order, const int* perm = nullptr) {
  Session s{m, perm};
  s.create(0, "d");
  ASSERT_EQ(s('r', order), 0);
  s.expect_solution(SOLVER_POSITIVE_DEFINITE);
  for (int i = 1; i <= m.n; i += 3) s.m.diagonal(i) *= -1;
  s.expect_solution(SOLVER_INDEFINITE);
  EXPECT_EQ(s.outcome('f'), "1 ");  // fails without words
  EXPECT_EQ(s.outcome('s'), "1 ");  // the handle reads factored, but there is no factor to use
  for (int i = 1; i <= m.n; i += 3) s.m.diagonal(i) = 1.0e20;
  s.expect_solution(0);
  s.expect_solution(SOLVER_INDEFINITE);
}

TEST(Solver, SolvesInEveryOrderAndWithNewValuesOnOneAnalysis) {
  expect_solutions(small_matrix(120, random_pairs(120, 240, 1), 5, true), SOLVER_AUTOMATIC_ORDER);
  const Pairs grid = grid_pairs(40, 10);
  expect_solutions(small_matrix(400, grid), SOLVER_MINIMUM_DEGREE);
  expect_solutions(small_matrix(400, grid, 5), 0);
  std::vector<int> reversed(400);
  std::iota(reversed.rbegin(), reversed.rend(), 1);
  expect_solutions(small_matrix(400, grid), SOLVER_USER_ORDER, reversed.data());
}

static const std::string PREFIX = "SPARSE-DSS-Error, ";

TEST(SolverSequence, AcceptsEachCallFromItsStatesOnly) {
  const std::pair<std::string, std::string> states[] = {
      {"", "dx"}, {"d", "rx"}, {"dr", "fx"}, {"drf", "fsx"}, {"drfs", "dfsx"}};
  for (const auto& [before, allowed] : states)
    for (const char call : std::string("drfsx")) {
      Session s;
      s.create(RETURNING, before);
      const bool legal = allowed.find(call) != std::string::npos;
      EXPECT_EQ(s.outcome(call), legal ? "0 " : "-9 " + PREFIX + "Invalid call sequence\n")
          << call << " after \"" << before << '"';
    }
}

// What the facade writes goes to standard output; a death test listens to standard error.
static void speak_on_stderr() { dup2(STDERR_FILENO, STDOUT_FILENO); }

TEST(SolverDeathTest, FailedChecksAreNamedInOrderAndTheFirstEndsTheProcessByDefault) {
  const std::string few = "Number of non-zeros less than nRows";
  const struct {
    const char* before;
    char call;
    std::uint32_t options;
    int code;
    std::string message, more = "";
    int rows = 3, cols = 3, nnz = 5;
  } cases[] = {
      {"", 'r', 0, -9, "Invalid call sequence"},
      {"", 'd', 0x80000007, -12, "Invalid message level"},
      {"", 'd', 0x40000038, -13, "Invalid termination level"},
      {"", 'd', 0x60000040, -13, "Invalid termination level"},
      {"", 'd', 0x20000000, -14, "Invalid structure option"},
      {"", 'd', SOLVER_USER_ORDER, -10, "Invalid option"},
      {"", 'd', 0, -5, "Number of columns less than one",
       PREFIX + "Number of rows less than one\n" + PREFIX + few + "\n", 1, 1, 1},
      {"", 'd', 0, -8, "Not a square matrix", "", 3, 2, 5},
      {"", 'd', 0, -6, few, "", 3, 3, 3},
      {"", 'd', 0, -7, "Number of non-zeros greater than nRows * nCols", "", 3, 3, 10},
      {"", 'd', 0, -3, "An unclassifiable error occurred", "", 3, 3, 6},  // rows end at 5
      {"d", 'r', 0x10000000, -15, "Invalid reorder option"},
      {"d", 'r', SOLVER_USER_ORDER, -1, "Zero Pivot detected", PREFIX + "Out of memory\n"},
      {"n", 'r', 0, -1, "Zero Pivot detected"},
      {"dr", 'f', SOLVER_USER_ORDER, -10, "Invalid option"},
      {"dr", 'f', 0x080000C0, -11, "Requested options conflict"},
      {"dr", 'f', solver_message_level(4) | SOLVER_SYMMETRIC, -10, "Invalid option"},
      {"drf", 's', 8, -13, "Invalid termination level"},
  };
  for (const auto& c : cases) {
    Session s{.rows = c.rows, .cols = c.cols, .nnz = c.nnz}, ending = s;
    s.create(RETURNING, c.before);
    ending.create(0, c.before);
    const std::string first = PREFIX + c.message + "\n";
    EXPECT_EQ(s.outcome(c.call, c.options), std::to_string(c.code) + " " + first + c.more);
    EXPECT_EXIT((speak_on_stderr(), ending(c.call, c.options)),
                testing::ExitedWithCode(c.code & 0xff),
                testing::Matcher<const std::string&>(first));
  }
}

TEST(SolverDeathTest, LevelsStayWithTheHandleAndFatalMessagesPassThem) {
  Session s{.rows = 46341, .cols = 46341, .nnz = 2147483646};
  s.m.ia.resize(46342, 2147483647);
  EXPECT_EQ(solver_create(s.h, solver_message_level(5) | RETURNING | 0x200), -10);
  s.create(RETURNING, "");
  EXPECT_EQ(s.outcome('d', solver_message_level(5) | SOLVER_USER_ORDER), "-10 ");
  EXPECT_EQ(s.outcome('d', 0x80000007), "-12 ");
  EXPECT_EQ(s.outcome('d'), "0 ");  // rows x columns pass 2^31
  EXPECT_EXIT((speak_on_stderr(), s('f', 0x08000140)), testing::ExitedWithCode(-16 & 0xff),
              "^SPARSE-DSS-Fatal, Invalid factor option\n$");
  EXPECT_EQ(s('x'), 0);
  EXPECT_EXIT((speak_on_stderr(), s('x')), testing::ExitedWithCode(-9 & 0xff), "call sequence");
}

TEST(Solver, IsReleasedByItsOwnerWithoutAWordInWhateverState) {
  testing::internal::CaptureStdout();
  for (const char* calls : {"", "d", "dr", "drf"}) {
    Session s;
    OwnedSolver owner;
    ASSERT_EQ(solver_create(s.h, 0), 0);
    owner.handle = s.h;
    for (const char* call = calls; *call != 0; ++call) EXPECT_EQ(s(*call), 0);
    s.h = nullptr;
  }  // what an owner lost would be a leak for the sanitizer
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

#if !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__)  // a limit would stop the sanitizer itself
TEST(SolverDeathTest, MemoryThatCannotBeHadIsTold) {
  // An arrow whose hub comes first fills up: 3.2 GB of factor, under a limit of 1 GB.
  constexpr int n = 28000;
  SmallMatrix arrow{n};
  for (int i = 1; i <= n; ++i) arrow.ia.push_back(n + i), arrow.ja.push_back(i);
  const std::vector<int> order = arrow.ja;
  arrow.ja.insert(arrow.ja.end(), order.begin() + 1, order.end());
  arrow.a.resize(arrow.ja.size(), 1.0);
  Session s{arrow, order.data()};
  s.create(0, "d");
  ASSERT_EQ(s('r', SOLVER_USER_ORDER), 0);
  const auto factor = [&] {
    speak_on_stderr();
    const rlimit limit{1u << 30, 1u << 30};
    setrlimit(RLIMIT_AS, &limit);
    s('f');
  };
  EXPECT_EXIT(factor(), testing::ExitedWithCode(-2 & 0xff),
              "^zelvo: no memory for the factor: .* MB asked for\n" + PREFIX + "Out of memory\n$");
}
#endif
