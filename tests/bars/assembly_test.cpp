#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "bars/geometric.h"
#include "bars/laterals.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "buckling/product.h"
#include "model/pattern.h"
#include "support/models.h"

// Translations by 1 (t = 1 to 3) and rotations by 0.001 (4 to 6) of the whole structure. alpha stays
// zero: its one use here is the torsion of stiffeners, which their ends hold.
static Vector<double> rigid_motion(const Nodes& nodes, int t) {
  Vector<double> U(NDOF * nodes.nnode);
  for (int n = 1; n <= nodes.nnode; ++n) {
    const double* x = nodes.xyz.column(n) - 1;
    for (int i = 1; i <= 3; ++i) {
      const int i1 = i % 3 + 1, i2 = i1 % 3 + 1;
      U(equation(n, i)) = t <= 3 ? t == i : 1e-3 * ((t - 3 == i1) * x[i2] - (t - 3 == i2) * x[i1]);
    }
    if (t > 3) U(equation(n, 5)) = 1e-3 * nodes.vt2(t - 3, n);
  }
  return U;
}

// All kinds of bars on a curved pair of girders: the wiring of every table and the frames of the
// stiffeners on all four webs have a part in this.
TEST(BarAssembly, OfTwoCurvedGirdersIsFreeUnderRigidMotion) {
  Model m = two_girders(96, 2000);
  add_ibraces(m, {24, 72});
  add_ebraces(m, {24});
  add_laterals(m, {{1, 24, 72}, {2, 24, 72}});
  add_stiffeners(m, {48});
  const auto [nodes, elements, properties] = generate(m);
  const MatrixPattern pattern = build_pattern(nodes.nnode, elements);
  const auto largest_force = [&](const Vector<double>& K, int t) {
    Vector<double> f(pattern.n);
    sym_matvec(pattern.n, K.data(), pattern.ia.data(), pattern.ja.data(),
               rigid_motion(nodes, t).data(), f.data());
    return std::max(*std::max_element(f.begin(), f.end()), -*std::min_element(f.begin(), f.end()));
  };
  Vector<double> K(pattern.nnz), KG(pattern.nnz), U(pattern.n);
  for (int i = 1; i <= pattern.n; ++i) U(i) = 0.01 * std::sin(i);
  assemble_ibraces(nodes, elements, properties, pattern, K);
  assemble_ebraces(nodes, elements, properties, pattern, K);
  assemble_laterals(nodes, elements, properties, pattern, K);
  assemble_stiffeners(nodes, elements, properties, pattern, K);
  assemble_supports(nodes, elements, pattern, K);
  assemble_studs(elements, properties, 1, pattern, K);
  assemble_ibraces_geo(nodes, elements, properties, U, pattern, KG);
  assemble_ebraces_geo(nodes, elements, properties, U, pattern, KG);
  assemble_laterals_geo(nodes, elements, properties, U, pattern, KG);
  assemble_stiffeners_geo(nodes, elements, properties, U, pattern, KG);
  for (int t = 1; t <= 6; ++t) EXPECT_LT(largest_force(K, t), 1e-3) << "motion " << t;
  for (int t = 1; t <= 3; ++t) EXPECT_LT(largest_force(KG, t), 1e-9) << "motion " << t;
}

// One girder, 60 deep, 100 and 70 wide: corner 30 of the first station lies at (-50, 60).
class Assembly : public testing::Test {
 protected:
  Structure f;
  MatrixPattern pattern;
  Vector<double> K, U;
  void SetUp() override {
    Model m = one_girder(48);
    m.secdim = {{60, 70, 100, 12, 144, 8}};
    set_stages(m, {48}, 2);
    m.pour_k(1, 1) = 0;
    m.pour_k(2, 1) = 10;
    add_ibraces(m, {0});
    add_laterals(m, {{1, 0, 0}, {2, 0, 0}});
    add_stiffeners(m, {0}, 6, 0.75);
    f = generate(m);
    f.elements.ebconn = f.elements.ibconn;  // an external brace in the place of the internal one
    f.properties.ebprop = f.properties.ibprop;
    f.elements.nebel = 1;
    f.properties.latprop(2, 2) = 10;
    pattern = build_pattern(f.nodes.nnode, f.elements);
    U = Vector<double>(pattern.n);
    K = Vector<double>(pattern.nnz);
  }
  // Entry of freedom i of node a and freedom j of node b, a <= b.
  double entry(int a, int i, int b, int j) const {
    int t = pattern.ia(equation(a, i));
    while (pattern.ja(t) != equation(b, j)) ++t;
    return K(t);
  }
};

TEST_F(Assembly, AddsEachKindWithItsOwnProperties) {
  assemble_ibraces(f.nodes, f.elements, f.properties, pattern, K);
  EXPECT_NEAR(entry(30, 1, 30, 1), 1708.6801, 5e-5);
  K.clear();
  assemble_ebraces(f.nodes, f.elements, f.properties, pattern, K);
  EXPECT_NEAR(entry(30, 1, 30, 1), 1808.0577, 5e-5);
  K.clear();
  assemble_laterals(f.nodes, f.elements, f.properties, pattern, K);
  EXPECT_NEAR(entry(30, 1, 54, 1), -29600 * (5.0 + 10.0) / 100, 1e-9);
  K.clear();
  assemble_supports(f.nodes, f.elements, pattern, K);
  const double side = std::sqrt(15.0 * 15 + 60 * 60), diagonal = std::sqrt(85.0 * 85 + 60 * 60);
  EXPECT_NEAR(entry(30, 2, 38, 2), -29600.0 * 200 * 3600 / (side * side * side), 1e-6);
  EXPECT_NEAR(entry(30, 2, 46, 1), 29600.0 * 200 * 85 * 60 / std::pow(diagonal, 3), 1e-6);
  EXPECT_NEAR(entry(38, 1, 46, 1), -29600 * 200 / 70.0, 1e-6);
}

TEST_F(Assembly, StudLinksKeepTheVerticalTieWithoutStudStiffness) {
  assemble_studs(f.elements, f.properties, 1, pattern, K);
  for (int d = 1; d <= 5; ++d) EXPECT_EQ(entry(22, d, 22, d), d == 2 ? 100000.0 : 0.0);
  assemble_studs(f.elements, f.properties, 2, pattern, K);
  for (int d = 1; d <= 5; ++d) EXPECT_EQ(entry(5, d, 22, d), d == 2 ? -2e5 : d < 4 ? -10.0 : 0.0);
}

TEST_F(Assembly, GeometricStiffnessHasTheSignOfTheForce) {
  U(equation(30, 1)) = 0.01;  // laterals pushed together
  assemble_laterals_geo(f.nodes, f.elements, f.properties, U, pattern, K);
  EXPECT_NEAR(entry(30, 3, 30, 3), -0.01 * 29600 * 15 / (100 * 100), 1e-12);
  K.clear();
  U.clear();
  const double h = std::sqrt(15.0 * 15 + 60 * 60) / 8, EIs = 29600 * 6.0 * 6 * 6 * 0.75 / 12;
  U(equation(38, 1)) = 0.01 * 15 / (8 * h);  // the foot of the left stiffener pulled along the web
  U(equation(38, 2)) = -0.01 * 60 / (8 * h);
  U(equation(34, 5)) = 0.001;  // and its middle turned about the girder axis
  assemble_stiffeners_geo(f.nodes, f.elements, f.properties, U, pattern, K);
  EXPECT_NEAR(entry(38, 3, 38, 3), 1.2 * 0.01 * 29600 * 4.5 / (h * h), 1e-9);
  EXPECT_NEAR(entry(33, 3, 34, 4), 0.001 * 8 * EIs / (h * h), 1e-9);
}
