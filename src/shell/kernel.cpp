#include "shell/kernel.h"

#include "base/text.h"
#include "model/pattern.h"
#include "shell/points.h"

namespace zelvo {

void gather_shell(const Nodes& nodes, const Elements& elements, const Properties& properties, int k,
                  int e, ShellWork& w) {
  for (int i = 1; i <= SHELL_NODES; ++i) {
    const int n = elements.shconn(i, e);
    for (int c = 1; c <= 3; ++c) {
      w.exyz(c, i) = nodes.xyz(c, n);
      w.evt1(c, i) = nodes.vt1(c, n);
      w.evt2(c, i) = nodes.vt2(c, n);
      w.evn(c, i) = nodes.vn(c, n);
    }
  }
  const int m = properties.shmat(e);
  w.young = properties.shprop(k, MODULUS, m);
  w.poisson = properties.shprop(k, POISSON, m);
  w.thick = properties.shprop(k, THICKNESS, m);
  w.kind = properties.shprop(k, KIND, m);
}

void gather_displacements(const Elements& elements, const Vector<double>& U, int e,
                          ShellVector& d) {
  for (int i = 1; i <= SHELL_NODES; ++i)
    for (int j = 1; j <= NDOF; ++j) d(NDOF * (i - 1) + j) = U(equation(elements.shconn(i, e), j));
}

double invert3(const FixedMatrix<double, 3, 3>& a, FixedMatrix<double, 3, 3>& ainv) {
  const double det = a(1, 1) * a(2, 2) * a(3, 3) - a(1, 1) * a(3, 2) * a(2, 3) -
                     a(2, 1) * a(1, 2) * a(3, 3) + a(2, 1) * a(1, 3) * a(3, 2) +
                     a(3, 1) * a(1, 2) * a(2, 3) - a(3, 1) * a(1, 3) * a(2, 2);
  if (det < DETERMINANT_LIMIT) {
    console_line("determinant error");
    return det;
  }
  // Cofactor (j,i) over det; the cyclic order of rows and columns carries the signs.
  for (int i = 1; i <= 3; ++i) {
    const int i1 = i % 3 + 1, i2 = i1 % 3 + 1;
    for (int j = 1; j <= 3; ++j) {
      const int j1 = j % 3 + 1, j2 = j1 % 3 + 1;
      ainv(i, j) = (a(j1, i1) * a(j2, i2) - a(j1, i2) * a(j2, i1)) / det;
    }
  }
  return det;
}

void shell_stiffness(const ShellWork& w, ShellMatrix& ke) {
  const ShellData s = shell_data(w);
  PointFrames f;
  map_points(s, last_inverse().stiffness, f);
  shell_product(s, f, ke);
}

}  // namespace zelvo
