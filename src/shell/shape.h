// Shape functions and integration points of the nine-node shell.
#pragma once
#include "base/arrays.h"

namespace zelvo {

// The biquadratic Lagrange element on -1 <= r, s <= 1. Nodes 1 to 4 are the corners from (-1,-1)
// counter-clockwise, 5 to 8 the middles of the sides in the same turn, 9 the centre.
namespace lagrange {

// The three quadratic Lagrange polynomials on -1, 0, 1, and their derivatives; at names the node.
constexpr double value(int at, double r) { return at == 0 ? 1 - r * r : (r * r + at * r) / 2; }
constexpr double slope(int at, double r) { return at == 0 ? -2 * r : (2 * r + at) / 2; }

inline constexpr int NODE_R[9] = {-1, 1, 1, -1, 0, 1, 0, -1, 0};
inline constexpr int NODE_S[9] = {-1, -1, 1, 1, -1, 0, 1, 0, 0};

// Function of node i, and its derivative along coordinate c (1: r, 2: s).
constexpr double shape(int i, double r, double s) {
  return value(NODE_R[i - 1], r) * value(NODE_S[i - 1], s);
}
constexpr double derivative(int c, int i, double r, double s) {
  return c == 1 ? slope(NODE_R[i - 1], r) * value(NODE_S[i - 1], s)
                : value(NODE_R[i - 1], r) * slope(NODE_S[i - 1], s);
}

}  // namespace lagrange

// The 3 x 3 point Gauss rule and the nine shape functions at its points.
struct ShapeTables {
  FixedVector<double, 9> gwt;       // weights
  FixedMatrix<double, 2, 9> gpt;    // points: first and second element coordinate
  FixedMatrix<double, 9, 9> shp;    // shp(i,g): function of node i at point g
  FixedMatrix<double, 2, 81> dshp;  // columns 9(g-1)+i: derivatives of function i at point g
  constexpr double d(int c, int i, int g) const { return dshp(c, 9 * (g - 1) + i); }
};

// Points with the first coordinate running slowest.
constexpr ShapeTables shape_tables() {
  constexpr double root = 0.77459666924148337704;  // of 0.6
  constexpr double point[3] = {-root, 0, root}, weight[3] = {5.0 / 9, 8.0 / 9, 5.0 / 9};
  ShapeTables t{};
  for (int g = 1; g <= 9; ++g) {
    const int slow = (g - 1) / 3, fast = (g - 1) % 3;
    const double r = point[slow], s = point[fast];
    t.gwt(g) = weight[slow] * weight[fast];
    t.gpt(1, g) = r;
    t.gpt(2, g) = s;
    for (int i = 1; i <= 9; ++i) {
      t.shp(i, g) = lagrange::shape(i, r, s);
      for (int c = 1; c <= 2; ++c) t.dshp(c, 9 * (g - 1) + i) = lagrange::derivative(c, i, r, s);
    }
  }
  return t;
}

inline constexpr ShapeTables SHAPE = shape_tables();

}  // namespace zelvo
