#include "solution/linear.h"

#include <gtest/gtest.h>

#include <vector>

#include "sparse/solver.h"
#include "support/models.h"

using namespace zelvo;

TEST(LinearSolution, OfAMechanismReturnsTheCodeAndLeavesTheDisplacements) {
  SymmetricMatrix K = matrix_of(generate_structure(one_girder(24)));
  Vector<double> F(K.n()), U(K.n());
  for (int r = 1; r <= K.n(); ++r) K.values(K.pattern->ia(r)) = r == 8 ? -1 : 1;
  U(1) = 7;
  std::vector<Step> done;
  const Progress note = [&](Step step) { done.push_back(step); };
  EXPECT_EQ(solve_linear(K, F, note, U), SOLVER_NUMERIC_FAILURE);
  EXPECT_EQ(done,
            (std::vector{Step::SOLVER_CREATION, Step::SOLVER_DEFINITION, Step::SOLVER_REORDERING}));
  EXPECT_EQ(U(1), 7);
}
