#include "shell/kernel.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "shell/points.h"
#include "support/shells.h"

extern "C" void dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda,
                       double* w, double* work, const int* lwork, int* info);

static ShellMatrix stiffness(const ShellWork& w) {
  ShellMatrix ke{};
  shell_stiffness(w, ke);
  return ke;
}

TEST(ShellStiffness, OfFlatSquaresMatchesExactFigures) {
  const ShellMatrix steel = stiffness(flat_shell(29600, 0.3, 1, STEEL_PLATE));
  EXPECT_NEAR(steel(1, 1), 13661.538461538, 1e-8);
  EXPECT_NEAR(steel(2, 2), 7083.760683761, 1e-8);
  EXPECT_NEAR(steel(3, 3), 13661.538461538, 1e-8);
  EXPECT_NEAR(steel(4, 4), 117716.923076923, 1e-8);
  EXPECT_NEAR(steel(5, 5), 117716.923076923, 1e-8);
  EXPECT_NEAR(steel(41, 41), 124905.494505494, 1e-8);
  EXPECT_NEAR(steel(1, 11), -487.912087912, 1e-8);
  EXPECT_NEAR(steel(1, 5), 0, 1e-9);

  const ShellMatrix deck = stiffness(flat_shell(3600, 0.2, 8, CONCRETE_DECK));
  EXPECT_NEAR(deck(1, 1), 13066.666666667, 1e-8);
  EXPECT_NEAR(deck(2, 2), 7466.666666667, 1e-8);
  EXPECT_NEAR(deck(4, 4), 401635.555555556, 1e-8);
  EXPECT_NEAR(deck(5, 5), 401635.555555556, 1e-8);
  EXPECT_NEAR(deck(1, 5), 52266.666666667, 1e-8) << "nodes on the lower face";
  EXPECT_NEAR(deck(3, 5), -18000, 1e-8);
  // Only a kind close to 2 is a deck.
  EXPECT_NEAR(stiffness(flat_shell(3600, 0.2, 8, 1.9f))(1, 5), 0, 1e-8);
}

TEST(ShellStiffness, OfSkewedShellsIsTheSumOverPointsInBothVectorWidths) {
  for (const double kind : {STEEL_PLATE, CONCRETE_DECK}) {
    const ShellWork w = skewed_shell(7, kind);
    ShellMatrix sum{}, plain;
    FixedMatrix<double, 6, 45> S;
    for (int p = 0; p < 18; ++p) {
      const ReferencePoint point = reference_point(w, p % 9 + 1, p / 9 + 1);
      reference_stress_op(point, S);
      for (int i = 0; i < 45; ++i)
        for (int j = 0; j < 45; ++j)
          for (int l = 0; l < 6; ++l)
            for (int m = 0; m < 6; ++m)
              sum(i + 1, j + 1) += point.weight * point.T[l][m] * point.B[m][i] * S(l + 1, j + 1);
    }
    const ShellData s = shell_data(w);
    PointFrames f;
    shell_plain::point_frames(lane_tables(), s, f);
    shell_plain::shell_product(lane_tables(), s, f, plain.data());
    const ShellMatrix ke = stiffness(w);
    const double scale = *std::max_element(sum.v, sum.v + 45 * 45);
    for (int j = 1; j <= 45; ++j) {
      for (int i = 1; i <= 45; ++i) {
        ASSERT_NEAR(ke(i, j), sum(i, j), 1e-13 * scale) << i << ' ' << j;
        ASSERT_NEAR(plain(i, j), sum(i, j), 1e-13 * scale) << i << ' ' << j;
        ASSERT_EQ(ke(i, j), ke(j, i));
      }
    }
  }
}

TEST(ShellStiffness, HasSixRigidMotionsAndNoOtherZeroEnergyMode) {
  const ShellWork w = skewed_shell(3, CONCRETE_DECK);
  ShellMatrix ke = stiffness(w);
  for (int mode = 1; mode <= 6; ++mode) {
    const ShellVector d = rigid_motion(w, mode);
    for (int i = 1; i <= 45; ++i) {
      double force = 0;
      for (int j = 1; j <= 45; ++j) force += ke(i, j) * d(j);
      EXPECT_NEAR(force, 0, 1e-7) << "motion " << mode;
    }
  }
  double eigenvalue[45], work[2048];
  const int n = 45, lwork = 2048;
  int info;
  dsyev_("N", "U", &n, ke.data(), &n, eigenvalue, work, &lwork, &info);
  EXPECT_LT(std::abs(eigenvalue[5]), 1e-12 * eigenvalue[44]);
  EXPECT_GT(eigenvalue[6], 1e-6 * eigenvalue[44]);
}

TEST(ShellStiffness, GoesOnWithTheLastInverseWhereTheMappingFails) {
  FixedMatrix<double, 3, 3> a{{2, 0, 0, 1, 4, 0, 0, 3, 5}}, ainv{};
  EXPECT_EQ(invert3(a, ainv), 40);
  EXPECT_DOUBLE_EQ(ainv(1, 2), -0.125);
  EXPECT_DOUBLE_EQ(ainv(1, 3), 0.075);

  ShellWork w = flat_shell(29600, 0.3, 1, STEEL_PLATE);
  const ShellMatrix upright = stiffness(w);
  for (double& v : w.evn.v) v = -v;
  testing::internal::CaptureStdout();
  const ShellMatrix inverted = stiffness(w);
  const std::string said = testing::internal::GetCapturedStdout();
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 18);
  EXPECT_EQ(said.substr(0, 19), " determinant error\n");
  // The inverse of the upright element serves all points; its membrane part changes sign with det.
  EXPECT_NEAR(inverted(1, 1), -upright(1, 1), 1e-8);
}
