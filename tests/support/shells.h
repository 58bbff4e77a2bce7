// Vectors and rigid motions for the tests of elements.
#pragma once

namespace zelvo {

inline void set3(double* v, double x, double y, double z) { v[0] = x, v[1] = y, v[2] = z; }
inline double dot3(const double* a, const double* b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline void cross(const double* a, const double* b, double* c) {
  set3(c, a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]);
}

// Displacements d(5) at a node with axes t1, t2: translation v, rotation r about the origin.
inline void rigid_motion(const double* v, const double* r, const double* x, const double* t1,
                         const double* t2, double* d) {
  cross(r, x, d);
  for (int c = 0; c < 3; ++c) d[c] += v[c];
  d[3] = dot3(r, t1);
  d[4] = dot3(r, t2);
}

}  // namespace zelvo
