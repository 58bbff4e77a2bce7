#include "solution/supports.h"

#include <algorithm>
#include <cmath>

namespace zelvo {

namespace {

constexpr double ROLLER_SCALE = 1e3;  // of the largest stored value

void add_diagonal(SymmetricMatrix& K, int node, int d, double value) {
  K.own_value(node, d, d) += value;
}

// Penalty along the horizontal direction (cos t, sin t) in x and z: the radius at angle t.
void hold_radius(SymmetricMatrix& K, int node, double t, double penalty) {
  const double c = std::cos(t), s = std::sin(t);
  K.own_value(node, 1, 1) += penalty * c * c;
  K.own_value(node, 1, 3) += penalty * c * s;
  K.own_value(node, 3, 3) += penalty * s * s;
}

// The penalty of the rollers for a stiffness as assembled.
double roller_penalty(const SymmetricMatrix& K) {
  double largest = 0;  // off-diagonals count as they stand, negative ones never
  for (const double value : K.values) largest = std::max(largest, value);
  return ROLLER_SCALE * largest;
}

}  // namespace

PlanHold plan_hold(const Model& model, const Structure& structure, int i) {
  const bool pinned = i <= GirderPattern::BOTTOM_NODES * structure.section->girders;
  const bool centre = (i - 1) % GirderPattern::BOTTOM_NODES == GirderPattern::BOTTOM_NODES / 2;
  if (pinned) return centre ? PlanHold::FIXED : PlanHold::FREE;
  if (!model.curved()) return PlanHold::ACROSS;
  return centre ? PlanHold::RADIAL : PlanHold::FREE;
}

double apply_supports(const Model& model, const Structure& structure, SymmetricMatrix& K) {
  assert(K.n() == NDOF * structure.nodes.nnode);
  const double penalty = roller_penalty(K);
  const Elements& elements = structure.elements;
  const int nline = GirderPattern::BOTTOM_NODES * structure.section->girders;
  for (int i = 1; i <= elements.nfix; ++i) {
    const int n = elements.fixnode(i);
    const PlanHold hold = plan_hold(model, structure, i);
    add_diagonal(K, n, 2, BIG);
    if (hold == PlanHold::FIXED) {
      add_diagonal(K, n, 1, BIG);
      add_diagonal(K, n, 3, BIG);
    } else if (hold == PlanHold::ACROSS) {
      add_diagonal(K, n, 1, penalty);
    } else if (hold == PlanHold::RADIAL) {
      hold_radius(K, n, model.supp_pos(1 + (i - 1) / nline) / model.rcurv, penalty);
    }
  }
  return penalty;
}

}  // namespace zelvo
