#include "shell/kernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "shell/geometric.h"
#include "shell/points.h"
#include "shell/stress.h"
#include "support/models.h"
#include "support/shells.h"

using namespace zelvo;

// Square of side 24 in the x-z plane, xi along x, eta along -z, director up.
static ShellWork flat_shell(double young, double poisson, double thick, double kind) {
  ShellWork w{{}, {}, {}, {}, young, poisson, thick, kind};
  for (int k = 1; k <= 9; ++k) {
    set3(&w.exyz(1, k), 12 * lagrange::NODE_R[k - 1], 0, -12 * lagrange::NODE_S[k - 1]);
    set3(&w.evt1(1, k), 1, 0, 0);
    set3(&w.evt2(1, k), 0, 0, -1);
    set3(&w.evn(1, k), 0, 1, 0);
  }
  return w;
}

static ShellMatrix stiffness(const ShellWork& w) {
  LastInverse last;
  ShellMatrix ke{};
  shell_stiffness(w, last, ke);
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
  const ShellMatrix steel = stiffness(flat_shell(29600, 0.3, 1, STEEL_PLATE));
  const double diagonal[] = {13661.538461538, 7083.760683761, 13661.538461538, 117716.923076923,
                             117716.923076923};
  for (int i = 1; i <= 5; ++i) EXPECT_NEAR(steel(i, i), diagonal[i - 1], 1e-8);
  expect_entries(steel, {{41, 41, 124905.494505494}, {1, 11, -487.912087912}, {1, 5, 0}});
  const ShellMatrix deck = stiffness(flat_shell(3600, 0.2, 8, CONCRETE_DECK));
  expect_entries(deck, {{1, 1, 13066.666666667}, {2, 2, 7466.666666667}, {4, 4, 401635.555555556}});
  // The nodes lie on the lower face.
  expect_entries(deck, {{5, 5, 401635.555555556}, {1, 5, 52266.666666667}, {3, 5, -18000}});
  expect_entries(stiffness(flat_shell(3600, 0.2, 8, 1.9f)), {{1, 5, 0}});  // the limit is no deck
}

TEST(Shell, StressesAndGeometricStiffnessOfAStretchedSquareMatchExactFigures) {
  const ShellWork w = flat_shell(29600, 0.3, 1, STEEL_PLATE);
  ShellVector stretch{};
  for (int k = 1; k <= 9; ++k) stretch(5 * k - 2) = 0.001 * w.exyz(3, k);
  FixedMatrix<double, 6, 18> sig;
  LastInverse last;
  shell_stresses(w, stretch, last, sig);
  const double stress[6] = {9.758241758, 32.527472527};
  for (int i = 0; i < 6 * 18; ++i) EXPECT_NEAR(sig.v[i], stress[i % 6], 1e-8);
  ShellMatrix kge{};
  shell_geometric(w, stretch, last, kge);
  for (int c = 1; c <= 3; ++c)
    expect_entries(
        kge, {{c, c, 13.155555556}, {c, c + 5, -2.096214896}, {c + 40, c + 40, 120.279365079}});
  expect_entries(kge, {{4, 4, 1.096296296}, {5, 5, 1.096296296}, {1, 2, 0}});
}

// The stiffness is the energy of the stresses, (s11^2 + s22^2 - 2 nu s11 s22) / E + t't / G, and the
// kernels of both vector widths agree.
TEST(Shell, SkewedElementsStoreTheEnergyOfTheirStresses) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> any(-1, 1);
  for (const double kind : {STEEL_PLATE, CONCRETE_DECK}) {
    ShellWork w = flat_shell(29600, 0.3, 1.5, kind);
    for (double& v : w.exyz.v) v += 2 * any(random);
    for (auto* axes : {&w.evt1, &w.evt2, &w.evn})
      for (double& v : axes->v) v += 0.3 * any(random);
    const ShellMatrix ke = stiffness(w);
    ShellVector d, force{};
    for (double& v : d.v) v = 0.01 * any(random);
    for (int i = 0; i < 45 * 45; ++i) force.v[i % 45] += ke.v[i] * d.v[i / 45];
    FixedMatrix<double, 6, 18> sig;
    LastInverse last;
    shell_stresses(w, d, last, sig);
    const ShellData s = shell_data(w);
    const LaneTables& t = lane_tables();
    PointFrames f;
    PointStresses S;
    ShellMatrix plain;
    SHELL_KERNELS_PLAIN.point_frames(t, s, f);
    SHELL_KERNELS_PLAIN.shell_product(t, s, f, plain.data());
    SHELL_KERNELS_PLAIN.point_stresses(t, s, f, d.data(), S);
    double energy = 0, work = 0;
    for (int p = 1; p <= 18; ++p) {
      FixedMatrix<double, 6, 45> op;
      shell_stress_op(w, (p - 1) % 9 + 1, (p + 8) / 9, last, op);
      FixedVector<double, 6> x{};
      for (int r = 1; r <= 6; ++r) {
        for (int j = 1; j <= 45; ++j) x(r) += op(r, j) * d(j);
        EXPECT_NEAR(sig(r, p), x(r), 1e-9);
        EXPECT_NEAR(S.local[r - 1][p - 1], x(r), 1e-9);
      }
      const double shear = x(4) * x(4) + x(5) * x(5) + x(6) * x(6);
      energy += f.det[p - 1] * t.weight[p - 1] *
                ((x(1) * x(1) + x(2) * x(2) - 0.6 * x(1) * x(2)) + 2.6 * shear) / 29600;
    }
    for (int i = 1; i <= 45; ++i) work += d(i) * force(i);
    EXPECT_NEAR(work, energy, 1e-11 * energy);
    for (int i = 0; i < 45 * 45; ++i) {
      ASSERT_NEAR(plain.v[i], ke.v[i], 1e-7);
      ASSERT_EQ(ke.v[i], ke.v[i % 45 * 45 + i / 45]);
    }
    for (int n = 0; n < 9; ++n) {
      double node[5];
      SHELL_KERNELS_PLAIN.node_forces(t, s, f, S, n, node);
      for (int i = 0; i < 5; ++i) EXPECT_NEAR(node[i], force(5 * n + i + 1), 1e-8);
    }
    FixedMatrix<double, 18, 18> sums{}, plain_sums{};
    gradient_products(s, f, S, sums);
    SHELL_KERNELS_PLAIN.gradient_products(t, s, f, S, plain_sums.data());
    for (int i = 0; i < 18 * 18; ++i) EXPECT_NEAR(sums.v[i], plain_sums.v[i], 1e-9);
  }
}

TEST(Shell, GoesOnWithTheLastInverseWhereTheMappingFails) {
  ShellWork w = flat_shell(29600, 0.3, 1, CONCRETE_DECK);
  LastInverse last;
  ShellMatrix upright, inverted;
  shell_stiffness(w, last, upright);
  for (double& v : w.evn.v) v = -v;
  testing::internal::CaptureStdout();
  shell_stiffness(w, last, inverted);
  const std::string said = testing::internal::GetCapturedStdout();
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 18);
  EXPECT_EQ(said.substr(0, 19), " determinant error\n");
  // The inverse of the upright element serves all points; only the sign of the determinant differs.
  for (int i = 0; i < 45 * 45; ++i) EXPECT_NEAR(inverted.v[i], -upright.v[i], 1e-7);
}

TEST(Shell, GeometricStiffnessLeavesOutTheDeckOfEitherPattern) {
  for (const int ngird : {1, 2}) {
    const Structure s = generate_structure(ngird == 1 ? one_girder(48) : two_girders(48));
    SymmetricMatrix KG = matrix_of(s);
    Vector<double> U(KG.n());
    for (int i = 1; i <= KG.n(); ++i) U(i) = 0.001 * (i % 11);
    LastInverse last;
    assemble_shell_geometric(s, 1, U, last, KG);
    const SectionPattern& section = section_pattern(ngird);
    for (int n = 1; n <= s.nodes.nnode; ++n)
      EXPECT_EQ(KG.own_value(n, 1, 1) == 0, (n - 1) % section.nodes < section.deck_nodes);
  }
}
