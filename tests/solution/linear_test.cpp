#include "solution/linear.h"

#include <gtest/gtest.h>

#include <string>

#include "support/models.h"

namespace {

// A chain of three nodes whose matrix has 2 on the diagonal and -1 between equal freedoms.
struct Chain {
  MatrixPattern pattern;
  Vector<double> K, F, U;
  std::string console;

  Chain() {
    Elements el;
    el.latconn = Matrix<int>(2, 2);
    el.latconn(1, 1) = 1;
    el.latconn(2, 1) = el.latconn(1, 2) = 2;
    el.latconn(2, 2) = 3;
    testing::internal::CaptureStdout();
    pattern = build_pattern(3, el);
    testing::internal::GetCapturedStdout();
    K = Vector<double>(pattern.nnz);
    F = U = Vector<double>(15);
    for (int r = 1; r <= 15; ++r)
      for (int t = pattern.ia(r); t < pattern.ia(r + 1); ++t)
        K(t) = pattern.ja(t) == r ? 2 : pattern.ja(t) == r + 5 ? -1 : 0;
  }
  void solve() {
    testing::internal::CaptureStdout();
    solve_linear(pattern, K, F, U);
    console = testing::internal::GetCapturedStdout();
  }
};

}  // namespace

TEST(LinearSolution, ReportsItsSixSteps) {
  Chain c;
  c.F(2) = 4;
  c.F(13) = 8;
  c.solve();
  EXPECT_EQ(c.console,
            " Solver Step 1 of 6 - Creation Completed\n"
            " Solver Step 2 of 6 - Definition Completed\n"
            " Solver Step 3 of 6 - Reordering Completed\n"
            " Solver Step 4 of 6 - Factorization Completed\n"
            " Solver Step 5 of 6 - Solution Completed\n"
            " Solver Step 6 of 6 - Deletion Completed\n");
  // Inverse of the chain: (3 2 1; 2 4 2; 1 2 3) / 4.
  const double expected[15] = {0, 3, 2, 0, 0, 0, 2, 4, 0, 0, 0, 1, 6, 0, 0};
  for (int i = 1; i <= 15; ++i) EXPECT_NEAR(c.U(i), expected[i - 1], 1e-14);
}

TEST(LinearSolution, OfAMechanismReportsTheCodeAndLeavesTheDisplacements) {
  Chain c;
  c.K(c.pattern.ia(5)) = 0;
  c.U(1) = 7;
  c.solve();
  EXPECT_EQ(c.console.find(" Solver Step 3"), c.console.rfind(" Solver Step"));
  EXPECT_NE(c.console.find(" Solver Returned Error Code "), std::string::npos);
  EXPECT_EQ(c.U(1), 7);
}

TEST(LinearSolution, OfNoLoadIsNoDisplacement) {
  Chain c;
  c.U(3) = 1;
  c.solve();
  for (const double u : c.U) EXPECT_EQ(u, 0);
}
