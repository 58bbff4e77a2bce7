#include "solution/linear.h"

#include <gtest/gtest.h>

#include "support/models.h"

using namespace zelvo;

TEST(LinearSolution, OfAMechanismReportsTheCodeAndLeavesTheDisplacements) {
  const Structure s = generate(one_girder(24));
  const MatrixPattern pattern = build_pattern(s.nodes.nnode, s.elements);
  Vector<double> K(pattern.nnz), F(pattern.n), U(pattern.n);
  for (int r = 1; r <= pattern.n; ++r) K(pattern.ia(r)) = r == 8 ? -1 : 1;
  U(1) = 7;
  testing::internal::CaptureStdout();
  solve_linear(pattern, K, F, U);
  EXPECT_NE(testing::internal::GetCapturedStdout().find(
                "Step 3 of 6 - Reordering Completed\n Solver Returned Error Code "),
            std::string::npos);
  EXPECT_EQ(U(1), 7);
}
