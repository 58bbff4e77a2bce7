#include "shell/kernel.h"

#include "base/text.h"
#include "shell/points.h"

namespace zelvo {

void gather_shell(const Structure& structure, int k, int e, ShellWork& w) {
  const auto& [section, nodes, elements, properties] = structure;
  for (int i = 1; i <= SHELL_NODES; ++i) {
    const int n = elements.shconn(i, e);
    for (int c = 1; c <= 3; ++c) {
      w.exyz(c, i) = nodes.xyz(c, n);
      w.evt1(c, i) = nodes.vt1(c, n);
      w.evt2(c, i) = nodes.vt2(c, n);
      w.evn(c, i) = nodes.vn(c, n);
    }
  }
  const ShellProperty& p = properties.shprop(k, properties.shmat(e));
  w.young = p.modulus;
  w.poisson = p.poisson;
  w.thick = p.thickness;
  w.kind = p.kind;
}

void gather_displacements(const Elements& elements, const Vector<double>& U, int e,
                          ShellVector& d) {
  for (int i = 1; i <= SHELL_NODES; ++i)
    for (int j = 1; j <= NDOF; ++j) d(NDOF * (i - 1) + j) = U(equation(elements.shconn(i, e), j));
}

double invert3(const Matrix3& a, Matrix3& ainv) {
  const double det = a(1, 1) * a(2, 2) * a(3, 3) - a(1, 1) * a(3, 2) * a(2, 3) -
                     a(2, 1) * a(1, 2) * a(3, 3) + a(2, 1) * a(1, 3) * a(3, 2) +
                     a(3, 1) * a(1, 2) * a(2, 3) - a(3, 1) * a(1, 3) * a(2, 2);
  if (det < DETERMINANT_LIMIT) {
    console_line("determinant error");
    return det;
  }
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) ainv(i, j) = cofactor(a, j, i) / det;
  return det;
}

void shell_stiffness(const ShellWork& w, LastInverse& last, ShellMatrix& ke) {
  const ShellData s = shell_data(w);
  PointFrames f;
  last.failures += map_points(s, last.stiffness, f);
  shell_product(s, f, ke);
}

}  // namespace zelvo
