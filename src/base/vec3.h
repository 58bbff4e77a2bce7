// Vectors of three and 3 x 3 matrices: global components, nodal axes, Jacobians.
#pragma once
#include <cmath>

#include "base/arrays.h"

namespace zelvo {

using Vec3 = FixedVector<double, 3>;
using Matrix3 = FixedMatrix<double, 3, 3>;

// Column j of a table (3,n).
inline Vec3 column3(const Matrix<double>& table, int j) {
  return {{table(1, j), table(2, j), table(3, j)}};
}

inline double dot(const Vec3& a, const Vec3& b) { return a(1) * b(1) + a(2) * b(2) + a(3) * b(3); }

inline Vec3 cross(const Vec3& a, const Vec3& b) {
  return {{a(2) * b(3) - a(3) * b(2), a(3) * b(1) - a(1) * b(3), a(1) * b(2) - a(2) * b(1)}};
}

inline Vec3 operator-(const Vec3& a, const Vec3& b) {
  return {{a(1) - b(1), a(2) - b(2), a(3) - b(3)}};
}

inline double length(const Vec3& a) { return std::sqrt(dot(a, a)); }

// The vector divided by its length, which must not be 0.
inline Vec3 unit(const Vec3& a) {
  const double l = length(a);
  return {{a(1) / l, a(2) / l, a(3) / l}};
}

// Cofactor of a(i,j): the cyclic order of the other rows and columns carries the sign.
inline double cofactor(const Matrix3& a, int i, int j) {
  const int i1 = i % 3 + 1, i2 = i1 % 3 + 1, j1 = j % 3 + 1, j2 = j1 % 3 + 1;
  return a(i1, j1) * a(i2, j2) - a(i1, j2) * a(i2, j1);
}

}  // namespace zelvo
