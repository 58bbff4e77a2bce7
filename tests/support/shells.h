// Single shell elements for the tests, and the element's formulas written out point by point.
#pragma once
#include <cmath>
#include <random>

#include "shell/kernel.h"

inline void set3(double* v, double x, double y, double z) { v[0] = x, v[1] = y, v[2] = z; }
inline double dot3(const double* a, const double* b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline void cross(const double* a, const double* b, double* c) {
  set3(c, a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]);
}

// Square of side 24 in the x-z plane, xi along x, eta along -z, director up.
inline ShellWork flat_shell(double young, double poisson, double thick, double kind) {
  ShellWork w{{}, {}, {}, {}, young, poisson, thick, kind};
  for (int k = 1; k <= 9; ++k) {
    set3(&w.exyz(1, k), 12 * lagrange::NODE_R[k - 1], 0, -12 * lagrange::NODE_S[k - 1]);
    set3(&w.evt1(1, k), 1, 0, 0);
    set3(&w.evt2(1, k), 0, 0, -1);
    set3(&w.evn(1, k), 0, 1, 0);
  }
  return w;
}

// The same with every node moved and every triad turned at random.
inline ShellWork skewed_shell(unsigned seed, double kind) {
  ShellWork w = flat_shell(29600, 0.3, 1.5, kind);
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> move(-2, 2), turn(-0.3, 0.3);
  for (int k = 1; k <= 9; ++k) {
    for (int c = 1; c <= 3; ++c) w.exyz(c, k) += move(random);
    for (int i = 1; i <= 3; ++i) {
      const double t = turn(random), co = std::cos(t), si = std::sin(t);
      for (auto* m : {&w.evt1, &w.evt2, &w.evn}) {
        const double a = (*m)(i, k), b = (*m)(i % 3 + 1, k);
        (*m)(i, k) = a * co - b * si;
        (*m)(i % 3 + 1, k) = a * si + b * co;
      }
    }
  }
  return w;
}

// Displacements d(5) at a node with axes t1, t2: translation v, rotation r about the origin.
inline void rigid_motion(const double* v, const double* r, const double* x, const double* t1,
                         const double* t2, double* d) {
  cross(r, x, d);
  for (int c = 0; c < 3; ++c) d[c] += v[c];
  d[3] = dot3(r, t1);
  d[4] = dot3(r, t2);
}

// One integration point: displacement gradient of every freedom, row 3a + c the derivative of
// component c along coordinate a; local strains and stresses 11, 22, 33, 12, 13, 23.
constexpr int PAIR[6][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {0, 2}, {1, 2}};
struct ReferencePoint {
  double weight, e[3][3], grad[9][45], strain[6][45], stress[6][45];
};

inline ReferencePoint reference_point(const ShellWork& w, int ip, int iz) {
  const double h = w.thick / 2;
  const double zeta = (w.kind == CONCRETE_DECK ? 1 : 0) + (iz == 1 ? -1 : 1) / std::sqrt(3.0);
  ReferencePoint p{};
  FixedMatrix<double, 3, 3> J{}, R{};
  for (int k = 1; k <= 9; ++k) {
    for (int b = 1; b <= 3; ++b) {
      J(1, b) += SHAPE.d(1, k, ip) * (w.exyz(b, k) + zeta * h * w.evn(b, k));
      J(2, b) += SHAPE.d(2, k, ip) * (w.exyz(b, k) + zeta * h * w.evn(b, k));
      J(3, b) += SHAPE.shp(k, ip) * h * w.evn(b, k);
    }
  }
  p.weight = invert3(J, R) * SHAPE.gwt(ip);
  const double xi[3] = {J(1, 1), J(1, 2), J(1, 3)}, eta[3] = {J(2, 1), J(2, 2), J(2, 3)};
  double n[3];
  cross(xi, eta, n);
  for (int c = 0; c < 3; ++c) p.e[0][c] = xi[c] / std::sqrt(dot3(xi, xi));
  for (int c = 0; c < 3; ++c) p.e[2][c] = n[c] / std::sqrt(dot3(n, n));
  cross(p.e[2], p.e[0], p.e[1]);
  const double G = 0.5 * w.young / (1 + w.poisson), c1 = w.young / (1 - w.poisson * w.poisson);
  for (int j = 0; j < 45; ++j) {
    const int k = j / 5 + 1, f = j % 5;
    double H[3][3] = {};
    for (int a = 0; a < 3; ++a) {
      const double g = R(a + 1, 1) * SHAPE.d(1, k, ip) + R(a + 1, 2) * SHAPE.d(2, k, ip);
      const double q = R(a + 1, 3) * SHAPE.shp(k, ip) + zeta * g;
      for (int c = 0; c < 3; ++c)
        p.grad[3 * a + c][j] = H[a][c] = f < 3    ? (f == c ? g : 0)
                                         : f == 3 ? -h * w.evt2(c + 1, k) * q
                                                  : h * w.evt1(c + 1, k) * q;
    }
    for (int i = 0; i < 6; ++i) {
      const double *x = p.e[PAIR[i][0]], *y = p.e[PAIR[i][1]];
      for (int a = 0; a < 3; ++a) p.strain[i][j] += x[a] * dot3(H[a], y);
      for (int a = 0; a < 3 && i >= 3; ++a) p.strain[i][j] += y[a] * dot3(H[a], x);
      p.stress[i][j] = i < 3 ? 0 : G * p.strain[i][j];
    }
    p.stress[0][j] = c1 * (p.strain[0][j] + w.poisson * p.strain[1][j]);
    p.stress[1][j] = c1 * (p.strain[1][j] + w.poisson * p.strain[0][j]);
  }
  return p;
}
