#include "shell/stress.h"

#include <gtest/gtest.h>

#include "support/shells.h"

using StressOp = FixedMatrix<double, 6, 45>;

static double component(const StressOp& S, int row, const ShellVector& d) {
  double s = 0;
  for (int j = 1; j <= 45; ++j) s += S(row, j) * d(j);
  return s;
}

TEST(ShellStress, OfAStretchedAndABentSquareMatchesExactFigures) {
  StressOp S;
  ShellVector stretch{}, bend{};
  for (int iz = 1; iz <= 2; ++iz) {
    for (const double kind : {STEEL_PLATE, CONCRETE_DECK}) {
      const ShellWork w = flat_shell(29600, 0.3, 1, kind);
      for (int k = 1; k <= 9; ++k) {
        stretch(5 * k - 2) = 0.001 * w.exyz(3, k);
        bend(5 * k) = 0.001 * w.exyz(1, k);
      }
      shell_stress_op(w, 5, iz, S);
      EXPECT_NEAR(component(S, 1, stretch), 9.758241758, 1e-8);
      EXPECT_NEAR(component(S, 2, stretch), 32.527472527, 1e-8);
      for (const int row : {3, 4, 5, 6}) EXPECT_NEAR(component(S, row, stretch), 0, 1e-10);
      const bool below = kind == STEEL_PLATE && iz == 1;
      EXPECT_EQ(component(S, 1, bend) < 0, below) << "a deck lies above its nodes";
    }
  }
}

TEST(ShellStress, OperatorIsTheFactorInsideTheStiffness) {
  for (const double kind : {STEEL_PLATE, CONCRETE_DECK}) {
    const ShellWork w = skewed_shell(11, kind);
    const ShellVector rigid = rigid_motion(w, 5);
    ShellVector d{};
    for (int j = 1; j <= 45; ++j) d(j) = 0.01 * (j % 7 - 3);
    FixedMatrix<double, 6, 18> sig;
    shell_stresses(w, d, sig);
    StressOp S, expected;
    for (int p = 1; p <= 18; ++p) {
      const int ip = (p - 1) % 9 + 1, iz = (p - 1) / 9 + 1;
      shell_stress_op(w, ip, iz, S);
      reference_stress_op(reference_point(w, ip, iz), expected);
      for (int r = 1; r <= 6; ++r) {
        for (int j = 1; j <= 45; ++j) ASSERT_NEAR(S(r, j), expected(r, j), 1e-9);
        EXPECT_NEAR(component(S, r, rigid), 0, 1e-9);
        EXPECT_NEAR(sig(r, p), component(expected, r, d), 1e-9);
      }
    }
  }
}
