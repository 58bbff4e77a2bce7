#include "construction/motion.h"

#include <cmath>
#include <utility>

#include "base/vec3.h"
#include "solution/nodal.h"
#include "solution/supports.h"

namespace zelvo {

namespace {

Vec3 translation(const Vector<double>& U, int node) {
  return {{U(equation(node, 1)), U(equation(node, 2)), U(equation(node, 3))}};
}

// Motions of the nodes of one station.
struct StationMotion {
  const Nodes& nodes;
  const Vector<double>& U;
  int before;  // nodes before those of the station

  double vertical(int m) const { return U(equation(before + m, 2)); }
  double lateral(int m1, int m2) const {
    const Vec3 across = column3(nodes.vt1, before + 1);
    return (dot(across, translation(U, before + m1)) + dot(across, translation(U, before + m2))) /
           2;
  }
};

// Force of the penalties that hold entry i of the restrained nodes in plan.
Vec3 plan_reaction(const Model& model, const Structure& structure, int i, int support,
                   const Vec3& u, double penalty) {
  const PlanHold hold = plan_hold(model, structure, i);
  if (hold == PlanHold::FIXED) return {{-BIG * u(1), 0, -BIG * u(3)}};
  if (hold == PlanHold::ACROSS) return {{-penalty * u(1), 0, 0}};
  if (hold == PlanHold::FREE) return {{0, 0, 0}};
  const double t = model.supp_pos(support) / model.rcurv;
  const double f = -penalty * (std::cos(t) * u(1) + std::sin(t) * u(3));
  return {{f * std::cos(t), 0, f * std::sin(t)}};
}

// The pair of bearings that carries a reaction R with its couple C about the middle between them.
void share_bearings(double spacing, Quantities& q) {
  const int nsupp = q.vertical.rows(), girders = q.vertical.cols();
  q.bearings = Matrix<double>(nsupp, 2 * girders, "the bearings");
  for (int i = 1; i <= nsupp; ++i)
    for (int g = 1; g <= girders; ++g) {
      q.bearings(i, 2 * g - 1) = q.vertical(i, g) / 2 + q.couple(i, g) / spacing;
      q.bearings(i, 2 * g) = q.vertical(i, g) / 2 - q.couple(i, g) / spacing;
    }
}

}  // namespace

GirderMotion girder_motion(const Model& model, const Structure& structure,
                           const Vector<double>& U) {
  const SectionPattern& section = *structure.section;
  const int nstn = model.nstn(), girders = section.girders;
  GirderMotion q;
  for (Matrix<double>* table :
       {&q.left_foot, &q.right_foot, &q.left_top, &q.right_top, &q.lateral, &q.top_lateral})
    *table = Matrix<double>(nstn, girders, "the motion of the girders");
  q.deck_edges = Matrix<double>(nstn, 2, "the motion of the deck");
  q.differential = Matrix<double>(nstn, girders - 1, "the motion of the girders");
  StationDisplacements stations = station_displacements(model, structure, U);
  q.deflection = std::move(stations.deflection);
  q.twist = std::move(stations.rotation);
  for (int s = 1; s <= nstn; ++s) {
    const StationMotion at{structure.nodes, U, (s - 1) * section.nodes};
    for (int i = 1; i <= girders; ++i) {
      const GirderPattern& g = section.girder[i - 1];
      q.left_foot(s, i) = at.vertical(g.left_foot());
      q.right_foot(s, i) = at.vertical(g.right_foot());
      q.left_top(s, i) = at.vertical(g.left_top());
      q.right_top(s, i) = at.vertical(g.right_top());
      q.lateral(s, i) = at.lateral(g.left_foot(), g.right_foot());
      q.top_lateral(s, i) = at.lateral(g.left_top(), g.right_top());
    }
    q.deck_edges(s, 1) = at.vertical(1);
    q.deck_edges(s, 2) = at.vertical(section.deck_nodes);
    if (girders == 2) q.differential(s, 1) = q.deflection(s, 1) - q.deflection(s, 2);
  }
  return q;
}

// An upward force R at the distance x to the right has the moment -x R along the girder.
void recover_reactions(const Model& model, const Structure& structure, const Vector<double>& U,
                       double penalty, double spacing, Quantities& q) {
  assert(spacing >= 0);
  const auto& [section, nodes, elements, properties] = structure;
  q.vertical = support_reactions(structure, U).vertical;
  const int nsupp = q.vertical.rows(), girders = q.vertical.cols();
  for (Matrix<double>* table : {&q.lateral, &q.longitudinal, &q.couple})
    *table = Matrix<double>(nsupp, girders, "the reactions");
  int next = 0;  // in fixnode: supports in turn, girder by girder
  for (int i = 1; i <= nsupp; ++i)
    for (int g = 1; g <= girders; ++g) {
      const Vec3 centre =
          column3(nodes.xyz, elements.fixnode(next + 1 + GirderPattern::BOTTOM_NODES / 2));
      for (int m = 1; m <= GirderPattern::BOTTOM_NODES; ++m) {
        const int n = elements.fixnode(++next);
        const Vec3 u = translation(U, n), across = column3(nodes.vt1, n);
        const Vec3 plan = plan_reaction(model, structure, next, i, u, penalty);
        q.lateral(i, g) += dot(plan, across);
        q.longitudinal(i, g) += dot(plan, column3(nodes.vt2, n));
        q.couple(i, g) += dot(column3(nodes.xyz, n) - centre, across) * u(2) * BIG;
      }
    }
  q.bearings = Matrix<double>();
  if (spacing > 0) share_bearings(spacing, q);
}

}  // namespace zelvo
