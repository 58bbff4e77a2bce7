#include "bars/geometric.h"

#include <cmath>

#include "bars/forces.h"
#include "bars/gather.h"

namespace zelvo {

namespace {

// Where the bars at M balance, s = sum of p/L is a small difference of large numbers and the
// condensed matrix, which holds products over s, has no meaning: M hangs on nothing. Bar forces are
// themselves differences of solved displacements, right to about 1e-9 of the largest, so an |s|
// below this share of the sum of |p|/L has hardly a correct digit. Such a brace adds nothing, its
// strut included; the frames of loaded bridges lie above 1e-2.
constexpr double BALANCED = 1.0e-7;

// Distance between M and corner c.
double bar_length(const PatchVector& points, int c) {
  double square = 0;
  for (int i = 1; i <= 3; ++i) {
    const double g = points(3 * c + i) - points(i);
    square += g * g;
  }
  return std::sqrt(square);
}

// Each corner c has one bar to M, with the force p(c). Every block is a multiple of the unit
// matrix, q = p/L: K_bb = diag q, K_ib = -q, K_ii = s = sum of q, so
// K_bb - K_bi K_ib / s has the blocks (q(c) delta(c,d) - q(c) q(d) / s) I.
// Returns false, with kg12 zero, when the forces balance.
bool condense(const PatchVector& points, const FixedVector<double, 4>& p, BraceMatrix& kg12) {
  FixedVector<double, 4> q;
  double s = 0, size = 0;
  for (int c = 1; c <= 4; ++c) {
    q(c) = p(c) / bar_length(points, c);
    s += q(c);
    size += std::abs(q(c));
  }
  kg12.clear();
  if (!(std::abs(s) > BALANCED * size)) return false;
  for (int d = 1; d <= 4; ++d)
    for (int c = 1; c <= 4; ++c)
      for (int i = 1; i <= 3; ++i)
        kg12(3 * (c - 1) + i, 3 * (d - 1) + i) = (c == d ? q(c) : 0.0) - q(c) / s * q(d);
  return true;
}

}  // namespace

void ibrace_geo_stiffness(BraceMatrix& kg12, const BraceCorners& c12, const BraceCorners& f12) {
  condense(patch_points(INTERNAL_FRAME, c12), ibrace_forces(c12, f12), kg12);
}

void ebrace_geo_stiffness(BraceMatrix& kg12, const BraceCorners& c12, const BarProperty& prop,
                          const PatchVector& u15) {
  // Bar 1 is the top strut, which does not touch M; the others join P3, P4, P1 and P2 to it.
  const FixedVector<double, 5> p = ebrace_forces(c12, u15, prop);
  const PatchVector points = patch_points(EXTERNAL_FRAME, c12);
  if (!condense(points, {{p(4), p(5), p(2), p(3)}}, kg12)) return;
  BarMatrix strut{};
  bar_geo_stiffness(strut, ends(c12, 1, 2), p(1));
  add_bar(strut, 1, 2, kg12);
}

void assemble_ibraces_geo(const Structure& structure, const Vector<double>& U,
                          SymmetricMatrix& KG) {
  const auto& [section, nodes, elements, properties] = structure;
  BraceMatrix k12, kg12;
  for (int e = 1; e <= elements.nibel; ++e) {
    const BraceCorners c12 = gather_points<4>(nodes, elements.ibconn, e);
    ibrace_stiffness(k12, c12, properties.ibprop(e));
    const BraceCorners f12 = multiply(k12, gather_displacements<4, 3>(U, elements.ibconn, e));
    ibrace_geo_stiffness(kg12, c12, f12);
    add_node_blocks(kg12, elements.ibconn.column(e), 4, KG);
  }
}

void assemble_ebraces_geo(const Structure& structure, const Vector<double>& U,
                          SymmetricMatrix& KG) {
  const auto& [section, nodes, elements, properties] = structure;
  BraceMatrix kg12;
  for (int e = 1; e <= elements.nebel; ++e) {
    const BraceCorners c12 = gather_points<4>(nodes, elements.ebconn, e);
    const BarProperty& prop = properties.ebprop(e);
    const PatchVector u15 =
        ebrace_displacements(c12, gather_displacements<4, 3>(U, elements.ebconn, e), prop);
    ebrace_geo_stiffness(kg12, c12, prop, u15);
    add_node_blocks(kg12, elements.ebconn.column(e), 4, KG);
  }
}

void assemble_laterals_geo(const Structure& structure, const Vector<double>& U,
                           SymmetricMatrix& KG) {
  const auto& [section, nodes, elements, properties] = structure;
  for (int e = 1; e <= elements.nlatel; ++e) {
    const FixedVector<double, 6> c = gather_points<2>(nodes, elements.latconn, e);
    double p = 0;
    bar_force(c, gather_displacements<2, 3>(U, elements.latconn, e), properties.latprop(e), p);
    BarMatrix kg{};
    bar_geo_stiffness(kg, c, p);
    add_node_blocks(kg, elements.latconn.column(e), 2, KG);
  }
}

}  // namespace zelvo
