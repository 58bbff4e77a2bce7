#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "bars/geometric.h"
#include "bars/laterals.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "model/pattern.h"
#include "support/models.h"

// Largest |K x| of an equation as a share of |K| |x|.
static double imbalance(const MatrixPattern& p, const Vector<double>& K, const Vector<double>& x) {
  Vector<double> sum(p.n), size(p.n);
  const auto add = [&](int r, int c, double k) {
    sum(r) += k * x(c);
    size(r) += std::abs(k * x(c));
  };
  for (int r = 1; r <= p.n; ++r)
    for (int t = p.ia(r); t < p.ia(r + 1); ++t) {
      add(r, p.ja(t), K(t));
      if (p.ja(t) != r) add(p.ja(t), r, K(t));
    }
  double worst = 0;
  for (int r = 1; r <= p.n; ++r) worst = std::max(worst, std::abs(sum(r)) / (size(r) + 1));
  return worst;
}

// Translations (t = 1 to 3) and rotations (4 to 6) of the whole structure. alpha stays
// zero: its one use here is the torsion of stiffeners, which their ends hold.
static Vector<double> rigid_motion(const Nodes& nodes, int t) {
  Vector<double> U(NDOF * nodes.nnode);
  for (int n = 1; n <= nodes.nnode; ++n) {
    for (int i = 1; i <= 3; ++i) {
      const int i1 = i % 3 + 1, i2 = i1 % 3 + 1;
      U(equation(n, i)) =
          t <= 3 ? t == i : (t - 3 == i1) * nodes.xyz(i2, n) - (t - 3 == i2) * nodes.xyz(i1, n);
    }
    if (t > 3) U(equation(n, 5)) = nodes.vt2(t - 3, n);
  }
  return U;
}

// All kinds of bars on a curved pair of girders: the wiring of every table and the frames of the
// stiffeners on all four webs have a part in this.
TEST(BarAssembly, OfTwoCurvedGirdersIsFreeUnderRigidMotion) {
  Model m = two_girders(96);
  m.rcurv = 2000;
  add_ibraces(m, {24, 72});
  add_ebraces(m, {24});
  add_laterals(m, {{1, 24, 72}, {2, 24, 72}});
  add_stiffeners(m, {48});
  const auto [nodes, elements, properties] = generate(m);
  const MatrixPattern pattern = build_pattern(nodes.nnode, elements);
  Vector<double> K(pattern.nnz), KG(pattern.nnz), U(pattern.n);
  assemble_ibraces(nodes, elements, properties, pattern, K);
  assemble_ebraces(nodes, elements, properties, pattern, K);
  assemble_laterals(nodes, elements, properties, pattern, K);
  assemble_stiffeners(nodes, elements, properties, pattern, K);
  assemble_supports(nodes, elements, pattern, K);
  assemble_studs(elements, properties, 1, pattern, K);
  for (int i = 1; i <= pattern.n; ++i) U(i) = 0.01 * std::sin(i);
  assemble_ibraces_geo(nodes, elements, properties, U, pattern, KG);
  assemble_ebraces_geo(nodes, elements, properties, U, pattern, KG);
  assemble_laterals_geo(nodes, elements, properties, U, pattern, KG);
  assemble_stiffeners_geo(nodes, elements, properties, U, pattern, KG);
  for (int t = 1; t <= 6; ++t)
    EXPECT_LT(imbalance(pattern, K, rigid_motion(nodes, t)), 1e-7) << "motion " << t;
  for (int t = 1; t <= 3; ++t)
    EXPECT_LT(imbalance(pattern, KG, rigid_motion(nodes, t)), 1e-12) << "motion " << t;
}

TEST(StudLinks, KeepTheVerticalTieWithoutStudStiffness) {
  Model m = one_girder(48);
  m.pour_k(1, 1) = 0;
  const auto [nodes, elements, properties] = generate(m);
  const MatrixPattern pattern = build_pattern(nodes.nnode, elements);
  Vector<double> K(pattern.nnz);
  assemble_studs(elements, properties, 1, pattern, K);
  for (int d = 1; d <= 5; ++d)
    EXPECT_EQ(K(pattern.ia(equation(elements.studconn(1, 1), d))), d == 2 ? 100000.0 : 0.0);
}

TEST(SupportFrames, JoinEveryPairOfTheirCornersByHeavyBars) {
  const FixedVector<double, 12> square{{0, 40, 0, 30, 40, 0, 0, 0, 0, 30, 0, 0}};
  FixedMatrix<double, 12, 12> k;
  support_stiffness(k, square, {{29600.0, SUPPORT_AREA, 1.0}});
  const double EA = 29600.0 * 200;
  EXPECT_NEAR(k(1, 4), -EA / 30, 1e-6);
  EXPECT_NEAR(k(8, 2), -EA / 40, 1e-6);
  EXPECT_NEAR(k(10, 1), -EA / 50 * 0.36, 1e-6);
  EXPECT_NEAR(k(7, 5), -EA / 50 * 0.48, 1e-6);
  EXPECT_NEAR(k(5, 5), EA / 40 + EA / 50 * 0.64, 1e-6);
}
