#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "bars/geometric.h"
#include "bars/laterals.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "matrix/product.h"
#include "model/pattern.h"
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
  const auto [nodes, elements, properties] = generate(m);
  const MatrixPattern pattern = build_pattern(nodes.nnode, elements);
  Vector<double> K(pattern.nnz), KG(pattern.nnz), U(pattern.n);
  assemble_studs(elements, properties, 1, pattern, K);
  EXPECT_EQ(K(pattern.ia(equation(50, 2))), STUD_UPLIFT_K);
  const auto largest_force = [&](const Vector<double>& A, int t) {
    Vector<double> f(pattern.n);
    sym_matvec(pattern.n, A.data(), pattern.ia.data(), pattern.ja.data(), motion(nodes, t).data(),
               f.data());
    return std::abs(*std::ranges::max_element(f, {}, [](double x) { return std::abs(x); }));
  };
  const int a = elements.latconn(1, 1), b = elements.latconn(2, 1);
  for (int i = 1; i <= pattern.n; ++i) U(i) = 0.01 * std::sin(i);
  for (int i = 1; i <= 3; ++i) U(equation(a, i)) = 0.1 * (nodes.xyz(i, b) - nodes.xyz(i, a));
  assemble_ibraces(nodes, elements, properties, pattern, K);
  assemble_ebraces(nodes, elements, properties, pattern, K);
  assemble_laterals(nodes, elements, properties, pattern, K);
  assemble_stiffeners(nodes, elements, properties, pattern, K);
  assemble_supports(nodes, elements, pattern, K);
  assemble_laterals_geo(nodes, elements, properties, U, pattern, KG);
  EXPECT_LT(KG(pattern.ia(equation(a, 1))), 0) << "a lateral in compression";
  assemble_ibraces_geo(nodes, elements, properties, U, pattern, KG);
  assemble_ebraces_geo(nodes, elements, properties, U, pattern, KG);
  assemble_stiffeners_geo(nodes, elements, properties, U, pattern, KG);
  for (int t = 1; t <= 6; ++t) EXPECT_LT(largest_force(K, t), 1e-3) << "motion " << t;
  for (int t = 1; t <= 3; ++t) EXPECT_LT(largest_force(KG, t), 1e-9) << "motion " << t;
}
