// What the element loops of the bars read: coordinates and displacements by element.
#pragma once
#include "base/vec3.h"
#include "matrix/symmetric.h"
#include "model/nodes.h"

namespace zelvo {

// Coordinates of the n nodes of element e, node after node.
template <int n>
FixedVector<double, 3 * n> gather_points(const Nodes& nodes, const Matrix<int>& conn, int e) {
  assert(conn.rows() == n);
  FixedVector<double, 3 * n> c;
  for (int a = 1; a <= n; ++a)
    for (int i = 1; i <= 3; ++i) c(3 * (a - 1) + i) = nodes.xyz(i, conn(a, e));
  return c;
}

// The first ndof displacements of each of the n nodes of element e, node after node.
template <int n, int ndof>
FixedVector<double, ndof * n> gather_displacements(const Vector<double>& U, const Matrix<int>& conn,
                                                   int e) {
  assert(conn.rows() == n);
  FixedVector<double, ndof * n> d;
  for (int a = 1; a <= n; ++a)
    for (int i = 1; i <= ndof; ++i) d(ndof * (a - 1) + i) = U(equation(conn(a, e), i));
  return d;
}

// Ends of the bar between points a and b of a list of points; also of their displacements.
template <int n>
FixedVector<double, 6> ends(const FixedVector<double, n>& points, int a, int b) {
  FixedVector<double, 6> c;
  for (int i = 1; i <= 3; ++i) {
    c(i) = points(3 * (a - 1) + i);
    c(3 + i) = points(3 * (b - 1) + i);
  }
  return c;
}

// Adds the matrix of the bar between points a and b to the matrix of the frame.
template <int n>
void add_bar(const FixedMatrix<double, 6, 6>& ke, int a, int b, FixedMatrix<double, n, n>& frame) {
  const int at[2] = {3 * (a - 1), 3 * (b - 1)};
  for (int q = 0; q < 2; ++q)
    for (int j = 1; j <= 3; ++j)
      for (int p = 0; p < 2; ++p)
        for (int i = 1; i <= 3; ++i) frame(at[p] + i, at[q] + j) += ke(3 * p + i, 3 * q + j);
}

// y = A x.
template <int r, int c>
FixedVector<double, r> multiply(const FixedMatrix<double, r, c>& A,
                                const FixedVector<double, c>& x) {
  FixedVector<double, r> y{};
  for (int j = 1; j <= c; ++j)
    for (int i = 1; i <= r; ++i) y(i) += A(i, j) * x(j);
  return y;
}

}  // namespace zelvo
