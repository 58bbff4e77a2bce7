#include "solution/supports.h"

#include <algorithm>
#include <cmath>

#include "model/pattern.h"

namespace zelvo {

namespace {

constexpr int FLANGE_NODES = 9;       // restrained nodes of a girder at a support
constexpr double ROLLER_SCALE = 1e3;  // of the largest stored value

// Value of K that couples freedoms d and c >= d of one node.
double& own_value(const MatrixPattern& pattern, Vector<double>& K, int node, int d, int c) {
  return K(pattern.ia(equation(node, d)) + (c - d));
}

void add_diagonal(const MatrixPattern& pattern, Vector<double>& K, int node, int d, double value) {
  own_value(pattern, K, node, d, d) += value;
}

// Penalty along the horizontal direction (cos t, sin t) in x and z: the radius at angle t.
void hold_radius(const MatrixPattern& pattern, Vector<double>& K, int node, double t,
                 double penalty) {
  const double c = std::cos(t), s = std::sin(t);
  own_value(pattern, K, node, 1, 1) += penalty * c * c;
  own_value(pattern, K, node, 1, 3) += penalty * c * s;
  own_value(pattern, K, node, 3, 3) += penalty * s * s;
}

}  // namespace

void apply_supports(const Model& model, const Elements& elements, const MatrixPattern& pattern,
                    Vector<double>& K) {
  double largest = 0;  // off-diagonals count as they stand, negative ones never
  for (const double value : K) largest = std::max(largest, value);
  const double penalty = ROLLER_SCALE * largest;

  const int nline = FLANGE_NODES * section_pattern(model.ngird).girders;
  for (int i = 1; i <= elements.nfix; ++i) {
    const int n = elements.fixnode(i);
    const bool pinned = i <= nline, centre = i % FLANGE_NODES == 5;
    add_diagonal(pattern, K, n, 2, BIG);
    if (pinned && centre) {
      add_diagonal(pattern, K, n, 1, BIG);
      add_diagonal(pattern, K, n, 3, BIG);
    } else if (!pinned && !model.curved()) {
      add_diagonal(pattern, K, n, 1, penalty);
    } else if (!pinned && centre) {
      hold_radius(pattern, K, n, model.supp_pos(1 + (i - 1) / nline) / model.rcurv, penalty);
    }
  }
}

}  // namespace zelvo
