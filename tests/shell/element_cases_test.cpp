// Classical cases of the shell literature. MacNeal and Harder (1985): patch, cantilever, roof;
// Timoshenko and Woinowsky-Krieger (1959): plates. The element's own values pin the formulation:
// reduced integration or a shear factor of 5/6 would move them by far more than the tolerance.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "shell/assembly.h"
#include "solution/linear.h"
#include "solution/supports.h"
#include "support/measured.h"
#include "support/models.h"
#include "support/shells.h"

using namespace zelvo;

// Share of node i, from 0, in a uniform load on a line of n elements.
static double simpson(int i, int n) { return (i % 2 ? 4.0 : i % (2 * n) ? 2.0 : 1.0) / (6 * n); }

// nx x ny shells; nodes row by row, 2 nx + 1 to a row. place(r, s, x, t1, t2) gives the point and
// the tangents of the surface at 0 <= r, s <= 1.
struct Mesh {
  int nx, ny;
  Structure structure;
  Nodes& nodes = structure.nodes;
  Vector<double> F, U;
  Vector<int> held;

  template <class Place>
  Mesh(int nx_, int ny_, double young, double poisson, double thick, Place place)
      : nx(nx_), ny(ny_) {
    nodes.nnode = (2 * nx + 1) * (2 * ny + 1);
    nodes.xyz = nodes.vt1 = nodes.vt2 = nodes.vn = Matrix<double>(3, nodes.nnode);
    F = U = Vector<double>(NDOF * nodes.nnode);
    held = Vector<int>(NDOF * nodes.nnode);
    for (int m = 1; m <= nodes.nnode; ++m) {
      place(0.5 * column(m) / nx, 0.5 * row(m) / ny, nodes.xyz.column(m), nodes.vt1.column(m),
            nodes.vt2.column(m));
      cross(nodes.vt1.column(m), nodes.vt2.column(m), nodes.vn.column(m));
    }
    Elements& elements = structure.elements;
    Properties& properties = structure.properties;
    elements.nshell = nx * ny;
    elements.shconn = Matrix<int>(9, nx * ny);
    for (int e = 0; e < nx * ny; ++e)
      for (int k = 0; k < 9; ++k)
        elements.shconn(k + 1, e + 1) =
            node(2 * (e % nx) + 1 + lagrange::NODE_R[k], 2 * (e / nx) + 1 + lagrange::NODE_S[k]);
    properties.shmat = Vector<int>(nx * ny);
    for (int& m : properties.shmat) m = 1;
    properties.shprop = Matrix<ShellProperty>(1, 1);
    properties.shprop(1, 1) = {young, poisson, thick, STEEL_PLATE};
  }
  int node(int i, int j) const { return (2 * nx + 1) * j + i + 1; }  // i, j from 0
  int column(int m) const { return (m - 1) % (2 * nx + 1); }
  int row(int m) const { return (m - 1) / (2 * nx + 1); }
  void hold(int m, std::initializer_list<int> freedoms) {
    for (const int d : freedoms) held(equation(m, d)) = 1;
  }
  void load(int freedom, double total) {  // uniform
    for (int m = 1; m <= nodes.nnode; ++m)
      F(equation(m, freedom)) = total * simpson(column(m), nx) * simpson(row(m), ny);
  }
  // Held freedoms take F / BIG.
  double displacement(int m, int freedom) {
    SymmetricMatrix K = matrix_of(structure);
    LastInverse last;
    assemble_shells(structure, 1, last, K);
    for (int i = 1; i <= K.n(); ++i)
      if (held(i)) K.values(K.pattern->ia(i)) = BIG;
    EXPECT_EQ(solve_linear(K, F, no_progress, U), 0);
    return U(equation(m, freedom));
  }
};

static auto rectangle(double width, double length) {
  return [=](double r, double s, double* x, double* t1, double* t2) {
    set3(x, width * r, length * s, 0);
    set3(t1, 1, 0, 0);
    set3(t2, 0, 1, 0);
  };
}

TEST(ElementCases, DistortedPatchHoldsConstantStrainAndConstantCurvature) {
  for (const bool bending : {false, true}) {
    Mesh p(2, 2, 1e6, 0.25, 0.1, rectangle(1, 1));
    Vector<double> d(NDOF * 25);
    for (int m = 1; m <= 25; ++m) {  // the centre node moves, the sides stay straight
      double &x = p.nodes.xyz(1, m), &y = p.nodes.xyz(2, m), *const u = &d(equation(m, 1));
      const double hat = (1 - std::abs(2 * x - 1)) * (1 - std::abs(2 * y - 1));
      x += 0.11 * hat;
      y -= 0.07 * hat;
      if (bending) set3(u + 2, (x * x + x * y + y * y) / 2, x / 2 + y, -(x + y / 2));
      if (!bending) set3(u, x + y / 2, y + x / 2, 0);
      if (hat == 0) p.hold(m, {1, 2, 3, 4, 5});
    }
    for (int i = 1; i <= NDOF * 25; ++i) p.F(i) = p.held(i) * BIG * d(i);
    p.displacement(1, 1);
    for (int i = 1; i <= NDOF * 25; ++i) EXPECT_NEAR(p.U(i), d(i), 1e-10);
  }
}

// 6 x 0.2 x 0.1, six elements, unit force at the tip: in the plane (1), across it (3). The exact
// 0.1081 and 0.4321 are met within 1.5 %.
TEST(ElementCases, StraightCantileverBendsInAndOutOfPlane) {
  for (const auto& [direction, value] : {std::pair(1, 0.107033), {3, 0.427112}}) {
    Mesh p(1, 6, 1e7, 0.3, 0.1, rectangle(0.2, 6));
    for (int i = 0; i <= 2; ++i) p.hold(p.node(i, 0), {1, 2, 3, 4, 5});
    for (int i = 0; i <= 2; ++i) p.F(equation(p.node(i, 12), direction)) = simpson(i, 1);
    const double tip = p.displacement(p.node(1, 12), direction);
    EXPECT_NEAR(tip, value, 1e-6);
    measured("cantilever." + std::to_string(direction), {tip});
  }
}

// Scordelis-Lo roof, a quarter: radius 25, half length 25, half angle 40 degrees, end diaphragm, 90
// per unit area. Deflection at the middle of the free edge.
static double roof(int n) {
  const double angle = 40 * std::numbers::pi / 180;
  Mesh p(n, n, 4.32e8, 0, 0.25, [=](double r, double s, double* x, double* t1, double* t2) {
    const double co = std::cos(r * angle), si = std::sin(r * angle);
    set3(x, 25 * si, 25 * co, -25 * s);
    set3(t1, co, -si, 0);
    set3(t2, 0, 0, -1);
  });
  p.load(2, -90 * 25 * angle * 25);
  for (int i = 0; i <= 2 * n; ++i) {
    p.hold(p.node(0, i), {1, 5});      // crown: no motion across, no turn about the axis
    p.hold(p.node(i, 0), {3, 4});      // middle: no motion along, no turn about the tangent
    p.hold(p.node(i, 2 * n), {1, 2});  // diaphragm
  }
  return -p.displacement(p.node(2 * n, 0), 2);
}

TEST(ElementCases, ScordelisLoRoofConvergesFromBelow) {
  const std::vector<double> deflection = {roof(4), roof(8), roof(16)};
  EXPECT_NEAR(deflection[0], 0.245911, 1e-6);
  EXPECT_NEAR(deflection[1], 0.296578, 1e-6);
  EXPECT_NEAR(deflection[2], 0.301, 0.001);  // converges to 0.3024
  measured("roof", deflection);
}

// Quarter of a square plate of side 2, thickness 0.01, 8 x 8 elements: centre deflections over
// q a^4/D and P a^2/D.
TEST(ElementCases, SquarePlatesDeflectAsThinPlateTheorySays) {
  const double exact[] = {0.00406, 0.01160, 0.00126, 0.0056};  // supported, then clamped
  const double D = 1e7 * 1e-6 / (12 * (1 - 0.3 * 0.3));
  for (int k = 0; k < 4; ++k) {
    const bool clamped = k / 2, point_load = k % 2;
    Mesh p(8, 8, 1e7, 0.3, 0.01, rectangle(1, 1));
    p.load(3, point_load ? 0 : 1);
    p.F(equation(1, 3)) += point_load ? 0.25 : 0;
    for (int m = 1; m <= p.nodes.nnode; ++m) p.hold(m, {1, 2});
    for (int i = 0; i <= 16; ++i) {
      p.hold(p.node(0, i), {5});
      p.hold(p.node(i, 0), {4});
      p.hold(p.node(16, i), {3, 4, clamped ? 5 : 4});
      p.hold(p.node(i, 16), {3, 5, clamped ? 4 : 5});
    }
    const double scale = D / (point_load ? 4 : 16);
    const double centre = p.displacement(1, 3) * scale;
    EXPECT_NEAR(centre, exact[k], 0.025 * exact[k]);
    measured("plate." + std::to_string(k), {centre});
  }
}
