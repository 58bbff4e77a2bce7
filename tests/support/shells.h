// Single shell elements and plates of n x m shells for the tests, and the formulas of the element
// written out: 6 x 6 strain transformation, 6 x 45 strain matrix, sums over all points.
#pragma once
#include <cmath>
#include <random>

#include "shell/kernel.h"

extern "C" void dpbsv_(const char* uplo, const int* n, const int* kd, const int* nrhs, double* ab,
                       const int* ldab, double* b, const int* ldb, int* info);

inline void set_column(FixedMatrix<double, 3, 9>& m, int k, double x, double y, double z) {
  m(1, k) = x, m(2, k) = y, m(3, k) = z;
}

// Square of side 24 in the x-z plane, xi along x, eta along -z, director up.
inline ShellWork flat_shell(double young, double poisson, double thick, double kind) {
  ShellWork w{{}, {}, {}, {}, young, poisson, thick, kind};
  for (int k = 1; k <= 9; ++k) {
    set_column(w.exyz, k, 12 * lagrange::NODE_R[k - 1], 0, -12 * lagrange::NODE_S[k - 1]);
    set_column(w.evt1, k, 1, 0, 0);
    set_column(w.evt2, k, 0, 0, -1);
    set_column(w.evn, k, 0, 1, 0);
  }
  return w;
}

// The same with every node moved and every triad turned at random; orthonormal.
inline ShellWork skewed_shell(unsigned seed, double kind) {
  ShellWork w = flat_shell(29600, 0.3, 1.5, kind);
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> move(-2, 2), turn(-0.3, 0.3);
  const auto rotate = [](FixedMatrix<double, 3, 9>& m, int k, int i, int j, double t) {
    const double a = m(i, k), b = m(j, k);
    m(i, k) = a * std::cos(t) - b * std::sin(t);
    m(j, k) = a * std::sin(t) + b * std::cos(t);
  };
  for (int k = 1; k <= 9; ++k) {
    for (int c = 1; c <= 3; ++c) w.exyz(c, k) += move(random);
    const double t[3] = {turn(random), turn(random), turn(random)};
    for (FixedMatrix<double, 3, 9>* m : {&w.evt1, &w.evt2, &w.evn})
      for (int i = 1; i <= 3; ++i) rotate(*m, k, i, i % 3 + 1, t[i - 1]);
  }
  return w;
}

// Displacements of a rigid motion: translation along axis 1 to 3, rotation about axis 4 to 6.
inline ShellVector rigid_motion(const ShellWork& w, int mode) {
  ShellVector d{};
  for (int k = 1; k <= 9; ++k) {
    if (mode <= 3) {
      d(5 * (k - 1) + mode) = 1;
      continue;
    }
    const int c = mode - 3, i = c % 3 + 1, j = i % 3 + 1;
    d(5 * (k - 1) + i) = -w.exyz(j, k);
    d(5 * (k - 1) + j) = w.exyz(i, k);
    d(5 * (k - 1) + 4) = w.evt1(c, k);
    d(5 * (k - 1) + 5) = w.evt2(c, k);
  }
  return d;
}

struct ReferencePoint {
  double weight;                // determinant times weights
  double T[6][6], B[6][45];     // strains 11 22 33 12 13 23 from xx yy zz xy xz yz
  double D[6][6], grad[9][45];  // row 3a + c: derivative of component c along coordinate a
};

inline void cross(const double* a, const double* b, double* c) {
  for (int i = 0; i < 3; ++i)
    c[i] = a[(i + 1) % 3] * b[(i + 2) % 3] - a[(i + 2) % 3] * b[(i + 1) % 3];
}
inline void normalise(double* a) {
  const double length = std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]);
  for (int i = 0; i < 3; ++i) a[i] /= length;
}

inline ReferencePoint reference_point(const ShellWork& w, int ip, int iz) {
  const double middle = w.kind == CONCRETE_DECK ? 1 : 0, h = w.thick / 2;
  const double zeta = middle + (iz == 1 ? -1 : 1) / std::sqrt(3.0);
  ReferencePoint p{};
  FixedMatrix<double, 3, 3> J{}, R{};
  for (int k = 1; k <= 9; ++k) {
    for (int b = 1; b <= 3; ++b) {
      const double pk = w.exyz(b, k) + zeta * h * w.evn(b, k);
      J(1, b) += SHAPE.d(1, k, ip) * pk;
      J(2, b) += SHAPE.d(2, k, ip) * pk;
      J(3, b) += SHAPE.shp(k, ip) * h * w.evn(b, k);
    }
  }
  p.weight = invert3(J, R) * SHAPE.gwt(ip);
  double e[3][3] = {{J(1, 1), J(1, 2), J(1, 3)}};
  const double eta[3] = {J(2, 1), J(2, 2), J(2, 3)};
  cross(e[0], eta, e[2]);
  normalise(e[0]);
  normalise(e[2]);
  cross(e[2], e[0], e[1]);
  constexpr int A[6] = {0, 1, 2, 0, 0, 1}, C[6] = {0, 1, 2, 1, 2, 2};
  for (int i = 0; i < 6; ++i) {
    for (int j = 0; j < 6; ++j) {
      const double *x = e[A[i]], *y = e[C[i]];
      p.T[i][j] = j < 3 ? x[j] * y[j] : x[A[j]] * y[C[j]] + x[C[j]] * y[A[j]];
      if (i < 3 && j >= 3) p.T[i][j] /= 2;
      if (i >= 3 && j < 3) p.T[i][j] *= 2;
    }
  }
  for (int k = 1; k <= 9; ++k) {
    for (int a = 0; a < 3; ++a) {
      const double g = R(a + 1, 1) * SHAPE.d(1, k, ip) + R(a + 1, 2) * SHAPE.d(2, k, ip);
      const double q = R(a + 1, 3) * SHAPE.shp(k, ip) + zeta * g;
      for (int c = 0; c < 3; ++c) {
        double* const row = p.grad[3 * a + c] + 5 * (k - 1);
        row[c] = g;
        row[3] = -h * w.evt2(c + 1, k) * q;
        row[4] = h * w.evt1(c + 1, k) * q;
      }
    }
  }
  for (int j = 0; j < 45; ++j)
    for (int i = 0; i < 6; ++i)
      p.B[i][j] =
          i < 3 ? p.grad[4 * i][j] : p.grad[3 * A[i] + C[i]][j] + p.grad[3 * C[i] + A[i]][j];
  p.D[0][0] = p.D[1][1] = w.young / (1 - w.poisson * w.poisson);
  p.D[0][1] = p.D[1][0] = w.poisson * p.D[0][0];
  p.D[3][3] = p.D[4][4] = p.D[5][5] = 0.5 * w.young / (1 + w.poisson);
  return p;
}

// D T B of a point.
inline void reference_stress_op(const ReferencePoint& p, FixedMatrix<double, 6, 45>& S) {
  for (int j = 0; j < 45; ++j) {
    for (int i = 0; i < 6; ++i) {
      S(i + 1, j + 1) = 0;
      for (int l = 0; l < 6; ++l)
        for (int m = 0; m < 6; ++m) S(i + 1, j + 1) += p.D[i][l] * p.T[l][m] * p.B[m][j];
    }
  }
}
