#include "shell/stress.h"

#include "model/pattern.h"
#include "shell/points.h"

namespace zelvo {

namespace {

// Components of column k of a table of global vectors in the local frame e.
Vec3 local(const Matrix3& e, const double* v) {
  Vec3 a{};
  for (int i = 1; i <= 3; ++i) a(i) = e(i, 1) * v[0] + e(i, 2) * v[1] + e(i, 3) * v[2];
  return a;
}

// Stresses under the displacement field f a, where a is a local vector and g the local gradient of
// f: strains are products, the law is plane stress with all of the transverse shear (no 5/6).
void stress_column(const ShellData& s, const Vec3& a, const Vec3& g, double factor,
                   double* column) {
  const double e11 = a(1) * g(1), e22 = a(2) * g(2);
  column[0] = factor * (s.c1 * e11 + s.c2 * e22);
  column[1] = factor * (s.c2 * e11 + s.c1 * e22);
  column[2] = 0;
  column[3] = factor * s.G * (a(1) * g(2) + a(2) * g(1));
  column[4] = factor * s.G * (a(1) * g(3) + a(3) * g(1));
  column[5] = factor * s.G * (a(2) * g(3) + a(3) * g(2));
}

}  // namespace

void shell_stress_op(const ShellWork& w, int ip, int iz, LastInverse& last,
                     FixedMatrix<double, 6, SHELL_DOFS>& S) {
  assert(1 <= ip && ip <= 9 && (iz == 1 || iz == 2));
  const ShellData s = shell_data(w);
  const int lane = lane_of(ip, iz);
  Matrix3& R = last.stress;
  Matrix3 e;
  last.failures += map_point(s, lane, R, e);
  for (int k = 1; k <= SHELL_NODES; ++k) {
    Vec3 g, q;  // gradients of N and of zeta N
    for (int b = 1; b <= 3; ++b) {
      g(b) = R(b, 1) * SHAPE.d(1, k, ip) + R(b, 2) * SHAPE.d(2, k, ip);
      q(b) = R(b, 3) * SHAPE.shp(k, ip) + s.zeta[lane] * g(b);
    }
    const Vec3 gl = local(e, g.data()), ql = local(e, q.data());
    double* const column = &S(1, NDOF * (k - 1) + 1);
    for (int c = 1; c <= 3; ++c)
      stress_column(s, {{e(1, c), e(2, c), e(3, c)}}, gl, 1, column + 6 * (c - 1));
    stress_column(s, local(e, &w.evt2(1, k)), ql, -s.h, column + 18);
    stress_column(s, local(e, &w.evt1(1, k)), ql, s.h, column + 24);
  }
}

void shell_stresses(const ShellWork& w, const ShellVector& d, LastInverse& last,
                    FixedMatrix<double, 6, 18>& sig) {
  const ShellData s = shell_data(w);
  PointFrames f;
  PointStresses S;
  last.failures += map_points(s, last.stress, f);
  point_stresses(s, f, d, S);
  for (int p = 1; p <= SHELL_POINTS; ++p)
    for (int r = 1; r <= 6; ++r) sig(r, p) = S.local[r - 1][p - 1];
}

}  // namespace zelvo
