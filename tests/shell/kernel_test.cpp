#include "shell/kernel.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "model/pattern.h"
#include "shell/geometric.h"
#include "shell/points.h"
#include "shell/stress.h"
#include "support/models.h"
#include "support/shells.h"

extern "C" void dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda,
                       double* w, double* work, const int* lwork, int* info);

static ShellMatrix stiffness(const ShellWork& w) {
  ShellMatrix ke{};
  shell_stiffness(w, ke);
  return ke;
}

struct Entry {
  int i, j;
  double value;
};
static void expect_entries(const ShellMatrix& m, std::initializer_list<Entry> entries) {
  for (const Entry& x : entries) EXPECT_NEAR(m(x.i, x.j), x.value, 1e-8) << x.i << ' ' << x.j;
}

TEST(Shell, StiffnessOfFlatSquaresMatchesExactFigures) {
  expect_entries(stiffness(flat_shell(29600, 0.3, 1, STEEL_PLATE)), {{1, 1, 13661.538461538},
                                                                     {2, 2, 7083.760683761},
                                                                     {3, 3, 13661.538461538},
                                                                     {4, 4, 117716.923076923},
                                                                     {5, 5, 117716.923076923},
                                                                     {41, 41, 124905.494505494},
                                                                     {1, 11, -487.912087912},
                                                                     {1, 5, 0}});
  expect_entries(stiffness(flat_shell(3600, 0.2, 8, CONCRETE_DECK)),
                 {{1, 1, 13066.666666667},
                  {2, 2, 7466.666666667},
                  {4, 4, 401635.555555556},
                  {5, 5, 401635.555555556},
                  {1, 5, 52266.666666667},  // the nodes lie on the lower face
                  {3, 5, -18000}});
  expect_entries(stiffness(flat_shell(3600, 0.2, 8, 1.9f)),
                 {{1, 5, 0}});  // no deck: limit left out
}

TEST(Shell, StressesAndGeometricStiffnessOfAStretchedSquareMatchExactFigures) {
  ShellVector stretch{}, bend{};
  for (const double kind : {STEEL_PLATE, CONCRETE_DECK}) {
    const ShellWork w = flat_shell(29600, 0.3, 1, kind);
    for (int k = 1; k <= 9; ++k) {
      stretch(5 * k - 2) = 0.001 * w.exyz(3, k);
      bend(5 * k) = 0.001 * w.exyz(1, k);
    }
    FixedMatrix<double, 6, 18> sig;
    shell_stresses(w, stretch, sig);
    for (int p = 1; p <= 18; ++p)
      for (int r = 1; r <= 6; ++r)
        EXPECT_NEAR(sig(r, p), r == 1 ? 9.758241758 : r == 2 ? 32.527472527 : 0, 1e-8);
    shell_stresses(w, bend, sig);
    EXPECT_EQ(sig(1, 5) < 0, kind == STEEL_PLATE) << "a deck lies above its nodes";
    EXPECT_GT(sig(1, 14), 0);
  }
  ShellMatrix kge{};
  shell_geometric(flat_shell(29600, 0.3, 1, STEEL_PLATE), stretch, kge);
  for (int c = 1; c <= 3; ++c)
    expect_entries(
        kge, {{c, c, 13.155555556}, {c, c + 5, -2.096214896}, {c + 40, c + 40, 120.279365079}});
  expect_entries(kge, {{4, 4, 1.096296296}, {5, 5, 1.096296296}, {1, 2, 0}});
}

// Sums over all points of B' D B and of G' M G, entry by entry.
TEST(Shell, MatricesOfSkewedElementsAreTheirSumsOverThePointsInBothVectorWidths) {
  for (const double kind : {STEEL_PLATE, CONCRETE_DECK}) {
    const ShellWork w = skewed_shell(7, kind);
    ShellVector d{};
    for (int j = 1; j <= 45; ++j) d(j) = 0.01 * (j % 7 - 3);
    ShellMatrix sum{}, gsum{}, plain{}, kge{};
    FixedMatrix<double, 6, 45> S;
    for (int ip = 1; ip <= 9; ++ip) {
      for (int iz = 1; iz <= 2; ++iz) {
        const ReferencePoint p = reference_point(w, ip, iz);
        shell_stress_op(w, ip, iz, S);
        double M[3][3] = {};
        for (int r = 0; r < 6; ++r) {
          double s = 0;
          for (int j = 0; j < 45; ++j) {
            ASSERT_NEAR(S(r + 1, j + 1), p.stress[r][j], 1e-9);
            s += p.stress[r][j] * d(j + 1);
            for (int i = 0; i < 45; ++i)
              sum(i + 1, j + 1) += p.weight * p.strain[r][i] * p.stress[r][j];
          }
          const double *x = p.e[PAIR[r][0]], *y = p.e[PAIR[r][1]];
          for (int a = 0; a < 3; ++a)
            for (int b = 0; b < 3; ++b) M[a][b] += s * (x[a] * y[b] + (r < 3 ? 0 : y[a] * x[b]));
        }
        for (int i = 0; i < 45 * 45; ++i)
          for (int m = 0; m < 27; ++m)
            gsum.v[i] += p.weight * p.grad[m % 9][i % 45] * M[m % 9 / 3][m / 9] *
                         p.grad[m / 9 * 3 + m % 3][i / 45];
      }
    }
    const ShellData s = shell_data(w);
    PointFrames f;
    shell_plain::point_frames(lane_tables(), s, f);
    shell_plain::shell_product(lane_tables(), s, f, plain.data());
    shell_geometric(w, d, kge);
    const ShellMatrix ke = stiffness(w);
    const double tol = 1e-13 * *std::max_element(sum.v, sum.v + 45 * 45);
    for (int j = 1; j <= 45; ++j) {
      for (int i = 1; i <= 45; ++i) {
        ASSERT_NEAR(ke(i, j), sum(i, j), tol) << i << ' ' << j;
        ASSERT_NEAR(plain(i, j), sum(i, j), tol) << i << ' ' << j;
        ASSERT_NEAR(kge(i, j), gsum(i, j), 1e-9) << i << ' ' << j;
        ASSERT_EQ(ke(i, j), ke(j, i));
        ASSERT_EQ(kge(i, j), kge(j, i));
      }
    }
  }
}

TEST(Shell, HasSixRigidMotionsAndNoOtherZeroEnergyMode) {
  const ShellWork w = skewed_shell(3, CONCRETE_DECK);
  ShellMatrix ke = stiffness(w);
  for (int mode = 0; mode < 6; ++mode) {
    const double v[3] = {mode == 0 ? 1.0 : 0, mode == 1 ? 1.0 : 0, mode == 2 ? 1.0 : 0};
    const double r[3] = {mode == 3 ? 1.0 : 0, mode == 4 ? 1.0 : 0, mode == 5 ? 1.0 : 0};
    ShellVector d;
    for (int k = 1; k <= 9; ++k)
      rigid_motion(v, r, &w.exyz(1, k), &w.evt1(1, k), &w.evt2(1, k), &d(5 * k - 4));
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

TEST(Shell, GoesOnWithTheLastInverseWhereTheMappingFails) {
  ShellWork w = flat_shell(29600, 0.3, 1, STEEL_PLATE);
  const ShellMatrix upright = stiffness(w);
  for (double& v : w.evn.v) v = -v;
  testing::internal::CaptureStdout();
  const ShellMatrix inverted = stiffness(w);
  const std::string said = testing::internal::GetCapturedStdout();
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 18);
  EXPECT_EQ(said.substr(0, 19), " determinant error\n");
  // The inverse of the upright element serves all points; only the sign of the determinant differs.
  EXPECT_NEAR(inverted(1, 1), -upright(1, 1), 1e-8);
}

TEST(Shell, GeometricStiffnessLeavesOutTheDeckOfEitherPattern) {
  for (const int ngird : {1, 2}) {
    const Structure s = generate(ngird == 1 ? one_girder(48) : two_girders(48));
    const MatrixPattern pattern = build_pattern(s.nodes.nnode, s.elements);
    Vector<double> U(pattern.n), KG(pattern.nnz);
    for (int i = 1; i <= pattern.n; ++i) U(i) = 0.001 * (i % 11);
    assemble_shell_geometric(s.nodes, s.elements, s.properties, 1, U, ngird, pattern, KG);
    const SectionPattern& section = section_pattern(ngird);
    for (int n = 1; n <= s.nodes.nnode; ++n) {
      const bool deck = (n - 1) % section.nodes < section.deck_nodes;
      EXPECT_EQ(KG(pattern.ia(equation(n, 1))) == 0, deck) << "node " << n;
    }
  }
}
