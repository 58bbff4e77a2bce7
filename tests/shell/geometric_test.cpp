#include "shell/geometric.h"

#include <gtest/gtest.h>

#include "model/pattern.h"
#include "support/models.h"
#include "support/shells.h"

TEST(ShellGeometric, OfAStretchedSquareMatchesExactFigures) {
  const ShellWork w = flat_shell(29600, 0.3, 1, STEEL_PLATE);
  ShellVector d{};
  for (int k = 1; k <= 9; ++k) d(5 * k - 2) = 0.001 * w.exyz(3, k);
  ShellMatrix kge{};
  shell_geometric(w, d, kge);
  for (int c = 1; c <= 3; ++c) {
    EXPECT_NEAR(kge(c, c), 13.155555556, 1e-8);
    EXPECT_NEAR(kge(c, c + 5), -2.096214896, 1e-8);
    EXPECT_NEAR(kge(c + 40, c + 40), 120.279365079, 1e-8);
  }
  EXPECT_NEAR(kge(4, 4), 1.096296296, 1e-8);
  EXPECT_NEAR(kge(5, 5), 1.096296296, 1e-8);
  EXPECT_EQ(kge(1, 2), 0);
}

// Sum over the points of G' W G, with all six stresses and the full 9 x 9 stress matrix.
TEST(ShellGeometric, OfASkewedShellIsTheInitialStressForm) {
  const ShellWork w = skewed_shell(5, STEEL_PLATE);
  ShellVector d{};
  for (int j = 1; j <= 45; ++j) d(j) = 0.01 * (j % 7 - 3);
  ShellMatrix sum{}, kge{};
  FixedMatrix<double, 6, 45> S;
  for (int p = 0; p < 18; ++p) {
    const ReferencePoint point = reference_point(w, p % 9 + 1, p / 9 + 1);
    reference_stress_op(point, S);
    double sg[6] = {};
    for (int r = 0; r < 6; ++r)
      for (int i = 0; i < 6; ++i)
        for (int j = 1; j <= 45; ++j) sg[r] += point.T[i][r] * S(i + 1, j) * d(j);
    const double M[3][3] = {{sg[0], sg[3], sg[4]}, {sg[3], sg[1], sg[5]}, {sg[4], sg[5], sg[2]}};
    for (int i = 0; i < 45; ++i)
      for (int j = 0; j < 45; ++j)
        for (int a = 0; a < 3; ++a)
          for (int b = 0; b < 3; ++b)
            for (int c = 0; c < 3; ++c)
              sum(i + 1, j + 1) +=
                  point.weight * point.grad[3 * a + c][i] * M[a][b] * point.grad[3 * b + c][j];
  }
  shell_geometric(w, d, kge);
  for (int j = 1; j <= 45; ++j) {
    for (int i = 1; i <= 45; ++i) {
      ASSERT_NEAR(kge(i, j), sum(i, j), 1e-9) << i << ' ' << j;
      ASSERT_EQ(kge(i, j), kge(j, i));
    }
  }
}

TEST(ShellGeometric, LeavesOutTheDeckOfEitherPattern) {
  for (const int ngird : {1, 2}) {
    const Model m = ngird == 1 ? one_girder(48) : two_girders(48);
    const Structure s = generate(m);
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
