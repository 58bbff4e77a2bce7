#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "bars/geometric.h"
#include "bars/laterals.h"
#include "bars/stiffener_geometric.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "matrix/product.h"
#include "support/models.h"

using namespace zelvo;

// Translations by 1 (t = 1 to 3) and rotations by 0.001 about the axes (4 to 6) of the whole
// structure. alpha stays zero: its one use here is the torsion of stiffeners, which their ends hold.
static Vector<double> motion(const Nodes& nodes, int t) {
  Vector<double> U(NDOF * nodes.nnode);
  for (int n = 1; n <= nodes.nnode; ++n) {
    if (t <= 3) {
      U(equation(n, t)) = 1;
      continue;
    }
    const int axis = t - 3, next = axis % 3 + 1, last = next % 3 + 1;
    U(equation(n, next)) = -1e-3 * nodes.xyz(last, n);
    U(equation(n, last)) = 1e-3 * nodes.xyz(next, n);
    U(equation(n, 5)) = 1e-3 * nodes.vt2(axis, n);
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
  const Structure bridge = generate_structure(m);
  const Nodes& nodes = bridge.nodes;
  SymmetricMatrix K = matrix_of(bridge), KG = matrix_of(bridge);
  Vector<double> U(K.n());
  assemble_studs(bridge, 1, K);
  EXPECT_EQ(K.own_value(50, 2, 2), STUD_UPLIFT_K);
  const auto largest_force = [&](const SymmetricMatrix& A, int t) {
    Vector<double> f(A.n());
    sym_matvec(A, motion(nodes, t).data(), f.data());
    return std::abs(*std::ranges::max_element(f, {}, [](double x) { return std::abs(x); }));
  };
  const int a = bridge.elements.latconn(1, 1), b = bridge.elements.latconn(2, 1);
  for (int i = 1; i <= K.n(); ++i) U(i) = 0.01 * std::sin(i);
  for (int i = 1; i <= 3; ++i) U(equation(a, i)) = 0.1 * (nodes.xyz(i, b) - nodes.xyz(i, a));
  assemble_ibraces(bridge, K);
  assemble_ebraces(bridge, K);
  assemble_laterals(bridge, K);
  assemble_stiffeners(bridge, K);
  assemble_supports(bridge, K);
  assemble_laterals_geo(bridge, U, KG);
  EXPECT_LT(KG.own_value(a, 1, 1), 0) << "a lateral in compression";
  assemble_ibraces_geo(bridge, U, KG);
  assemble_ebraces_geo(bridge, U, KG);
  assemble_stiffeners_geo(bridge, U, KG);
  for (int t = 1; t <= 6; ++t) EXPECT_LT(largest_force(K, t), 1e-3) << "motion " << t;
  for (int t = 1; t <= 3; ++t) EXPECT_LT(largest_force(KG, t), 1e-9) << "motion " << t;
}
