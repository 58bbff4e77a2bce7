// Classical cases of the shell literature. MacNeal and Harder (1985): patch, cantilever, roof;
// Timoshenko and Woinowsky-Krieger (1959): plates. The element's own values pin the formulation:
// reduced integration or a shear factor of 5/6 would move them by far more than the tolerance.
#include <gtest/gtest.h>

#include <numbers>

#include "model/pattern.h"
#include "support/shells.h"

extern "C" void dpbsv_(const char* uplo, const int* n, const int* kd, const int* nrhs, double* ab,
                       const int* ldab, double* b, const int* ldb, int* info);

constexpr double SIMPSON[3] = {1.0 / 6, 4.0 / 6, 1.0 / 6};  // uniform load on a side of an element

// nx x ny shells; nodes row by row, 2 nx + 1 to a row. place(r, s, x, t1, t2) gives the point and
// the tangents of the surface at 0 <= r, s <= 1.
struct Mesh {
  int nx, ny;
  double young, poisson, thick;
  Matrix<double> x, t1, t2;
  Vector<double> F;
  Vector<int> fixed;

  template <class Place>
  Mesh(int nx_, int ny_, double young_, double poisson_, double thick_, Place place)
      : nx(nx_), ny(ny_), young(young_), poisson(poisson_), thick(thick_) {
    const int n = (2 * nx + 1) * (2 * ny + 1);
    x = t1 = t2 = Matrix<double>(3, n);
    F = Vector<double>(NDOF * n);
    fixed = Vector<int>(NDOF * n);
    for (int j = 0; j <= 2 * ny; ++j)
      for (int i = 0; i <= 2 * nx; ++i) {
        const int m = node(i, j);
        place(0.5 * i / nx, 0.5 * j / ny, x.column(m), t1.column(m), t2.column(m));
      }
  }
  int node(int i, int j) const { return (2 * nx + 1) * j + i + 1; }  // i, j from 0
  int element_node(int e, int k) const {
    return node(2 * ((e - 1) % nx) + 1 + lagrange::NODE_R[k - 1],
                2 * ((e - 1) / nx) + 1 + lagrange::NODE_S[k - 1]);
  }
  int element_equation(int e, int a) const {
    return equation(element_node(e, (a - 1) / NDOF + 1), (a - 1) % NDOF + 1);
  }
  void hold(int m, std::initializer_list<int> freedoms) {
    for (const int d : freedoms) fixed(equation(m, d)) = 1;
  }
  // Shares the total load out evenly over equal elements.
  void load(int freedom, double total) {
    for (int e = 1; e <= nx * ny; ++e)
      for (int k = 1; k <= 9; ++k)
        F(equation(element_node(e, k), freedom)) += total / (nx * ny) *
                                                    SIMPSON[lagrange::NODE_R[k - 1] + 1] *
                                                    SIMPSON[lagrange::NODE_S[k - 1] + 1];
  }
  // visit(i, j, value) for every entry of every element, i and j equations.
  template <class Visit>
  void each_entry(Visit visit) const {
    ShellWork w{{}, {}, {}, {}, young, poisson, thick, STEEL_PLATE};
    ShellMatrix ke;
    for (int e = 1; e <= nx * ny; ++e) {
      for (int k = 1; k <= 9; ++k) {
        const int m = element_node(e, k);
        for (int c = 1; c <= 3; ++c) {
          w.exyz(c, k) = x(c, m);
          w.evt1(c, k) = t1(c, m);
          w.evt2(c, k) = t2(c, m);
        }
        cross(t1.column(m), t2.column(m), &w.evn(1, k));
      }
      shell_stiffness(w, ke);
      for (int b = 1; b <= SHELL_DOFS; ++b)
        for (int a = 1; a <= SHELL_DOFS; ++a)
          visit(element_equation(e, a), element_equation(e, b), ke(a, b));
    }
  }
  double displacement(int m, int freedom) {
    const int n = static_cast<int>(F.size()), kd = NDOF * (4 * nx + 5), ld = kd + 1, one = 1;
    Matrix<double> band(ld, n);
    each_entry([&](int i, int j, double value) {
      if (i <= j && !fixed(i) && !fixed(j)) band(ld + i - j, j) += value;
    });
    for (int i = 1; i <= n; ++i)
      if (fixed(i)) band(ld, i) = 1, F(i) = 0;
    int info;
    dpbsv_("U", &n, &kd, &one, band.data(), &ld, F.data(), &n, &info);
    EXPECT_EQ(info, 0);
    return F(equation(m, freedom));
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
  Mesh p(2, 2, 1e6, 0.25, 0.1, rectangle(1, 1));
  for (int m = 1; m <= 25; ++m) {  // the centre node moves, the sides stay straight
    const double hat = (1 - std::abs(2 * p.x(1, m) - 1)) * (1 - std::abs(2 * p.x(2, m) - 1));
    p.x(1, m) += 0.11 * hat;
    p.x(2, m) -= 0.07 * hat;
  }
  for (const bool bending : {false, true}) {
    Vector<double> d(NDOF * 25), force(NDOF * 25);
    for (int m = 1; m <= 25; ++m) {
      const double x = p.x(1, m), y = p.x(2, m);
      double* const u = &d(equation(m, 1));
      if (bending) set3(u + 2, (x * x + x * y + y * y) / 2, x / 2 + y, -(x + y / 2));
      if (!bending) set3(u, x + y / 2, y + x / 2, 0);
    }
    double size = 0;
    p.each_entry([&](int i, int j, double value) {
      force(i) += value * d(j);
      size = std::max(size, std::abs(value * d(j)));
    });
    for (int m = 0; m < 9; ++m)
      for (int f = 1; f <= NDOF; ++f)
        EXPECT_NEAR(force(equation(p.node(m % 3 + 1, m / 3 + 1), f)), 0, 1e-12 * size);
  }
}

// 6 x 0.2 x 0.1, six elements, unit force at the tip: in the plane (1), across it (3).
static double cantilever(int direction) {
  Mesh p(1, 6, 1e7, 0.3, 0.1, rectangle(0.2, 6));
  for (int i = 0; i <= 2; ++i) {
    p.hold(p.node(i, 0), {1, 2, 3, 4, 5});
    p.F(equation(p.node(i, 12), direction)) = SIMPSON[i];
  }
  return p.displacement(p.node(1, 12), direction);
}

TEST(ElementCases, StraightCantileverBendsInAndOutOfPlane) {
  // The exact 0.1081 and 0.4321 are met within 1.5 %.
  EXPECT_NEAR(cantilever(1), 0.107033, 1e-6);
  EXPECT_NEAR(cantilever(3), 0.427112, 1e-6);
}

// Scordelis-Lo roof, a quarter: radius 25, half length 25, half angle 40 degrees, end diaphragm, 90
// per unit area. Deflection at the middle of the free edge.
static double roof(int n) {
  const double angle = 40 * std::numbers::pi / 180, radius = 25, length = 25;
  Mesh p(n, n, 4.32e8, 0, 0.25, [=](double r, double s, double* x, double* t1, double* t2) {
    const double co = std::cos(r * angle), si = std::sin(r * angle);
    set3(x, radius * si, radius * co, -length * s);
    set3(t1, co, -si, 0);
    set3(t2, 0, 0, -1);
  });
  p.load(2, -90 * radius * angle * length);
  for (int i = 0; i <= 2 * n; ++i) {
    p.hold(p.node(0, i), {1, 5});      // crown: no motion across, no turn about the axis
    p.hold(p.node(i, 0), {3, 4});      // middle: no motion along, no turn about the tangent
    p.hold(p.node(i, 2 * n), {1, 2});  // diaphragm
  }
  return -p.displacement(p.node(2 * n, 0), 2);
}

TEST(ElementCases, ScordelisLoRoofConvergesFromBelow) {
  const double fine = roof(16);
  EXPECT_NEAR(roof(4), 0.245911, 1e-6);
  EXPECT_NEAR(roof(8), 0.296578, 1e-6);
  EXPECT_NEAR(fine, 0.3024, 0.01 * 0.3024);
  EXPECT_TRUE(0.296578 < fine && fine < 0.3024);
}

// Quarter of a square plate of side 2, thickness 0.01, 8 x 8 elements. Centre deflection over
// q a^4/D or P a^2/D.
static double square_plate(bool clamped, bool point_load) {
  const int n = 8;
  const double young = 1e7, poisson = 0.3, t = 0.01, a = 2;
  Mesh p(n, n, young, poisson, t, rectangle(1, 1));
  point_load ? void(p.F(equation(p.node(0, 0), 3)) = 0.25) : p.load(3, 1);
  for (int m = 1; m <= p.x.cols(); ++m) p.hold(m, {1, 2});
  for (int i = 0; i <= 2 * n; ++i) {
    p.hold(p.node(0, i), {5});
    p.hold(p.node(i, 0), {4});
    p.hold(p.node(2 * n, i), {3, 4});
    p.hold(p.node(i, 2 * n), {3, 5});
    if (clamped) p.hold(p.node(2 * n, i), {5});
    if (clamped) p.hold(p.node(i, 2 * n), {4});
  }
  const double D = young * t * t * t / (12 * (1 - poisson * poisson));
  return p.displacement(p.node(0, 0), 3) * D / (point_load ? a * a : a * a * a * a);
}

TEST(ElementCases, SquarePlatesDeflectAsThinPlateTheorySays) {
  EXPECT_NEAR(square_plate(false, false), 0.00406, 0.025 * 0.00406);
  EXPECT_NEAR(square_plate(false, true), 0.01160, 0.025 * 0.01160);
  EXPECT_NEAR(square_plate(true, false), 0.00126, 0.025 * 0.00126);
  EXPECT_NEAR(square_plate(true, true), 0.0056, 0.025 * 0.0056);
}
