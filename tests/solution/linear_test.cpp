#include "solution/linear.h"

#include <gtest/gtest.h>

#include <string>

#include "support/models.h"

namespace {

// A chain of three nodes: 2 on the diagonal, -1 between equal freedoms of neighbours.
struct Chain {
  MatrixPattern pattern;
  Vector<double> K, F{15}, U{15};

  Chain() {
    Elements el;
    el.latconn = Matrix<int>(2, 2);
    for (int e = 1; e <= 2; ++e) el.latconn(1, e) = e, el.latconn(2, e) = e + 1;
    pattern = build_pattern(3, el);
    K = Vector<double>(pattern.nnz);
    for (int r = 1; r <= 15; ++r)
      for (int t = pattern.ia(r); t < pattern.ia(r + 1); ++t)
        K(t) = pattern.ja(t) == r ? 2 : pattern.ja(t) == r + 5 ? -1 : 0;
  }
  std::string solve() {
    testing::internal::CaptureStdout();
    solve_linear(pattern, K, F, U);
    return testing::internal::GetCapturedStdout();
  }
};

}  // namespace

TEST(LinearSolution, ReportsItsSixSteps) {
  Chain c;
  c.F(2) = 4;
  c.F(13) = 8;
  EXPECT_EQ(c.solve(),
            " Solver Step 1 of 6 - Creation Completed\n"
            " Solver Step 2 of 6 - Definition Completed\n"
            " Solver Step 3 of 6 - Reordering Completed\n"
            " Solver Step 4 of 6 - Factorization Completed\n"
            " Solver Step 5 of 6 - Solution Completed\n"
            " Solver Step 6 of 6 - Deletion Completed\n");
  // Inverse of a chain: (3 2 1; 2 4 2; 1 2 3) / 4.
  const double expected[15] = {0, 3, 2, 0, 0, 0, 2, 4, 0, 0, 0, 1, 6, 0, 0};
  for (int i = 1; i <= 15; ++i) EXPECT_NEAR(c.U(i), expected[i - 1], 1e-14);
}

TEST(LinearSolution, OfAMechanismReportsTheCodeAndLeavesTheDisplacements) {
  Chain c;
  c.K(c.pattern.ia(5)) = -1;
  c.U(1) = 7;
  const std::string lines = c.solve();
  EXPECT_NE(lines.find("Step 3 of 6 - Reordering Completed\n Solver Returned Error Code "),
            std::string::npos);
  EXPECT_EQ(lines.find("Step 4"), std::string::npos);
  EXPECT_EQ(c.U(1), 7);
}
