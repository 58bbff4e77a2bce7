#include "shell/sections.h"

#include <cmath>

#include "shell/points.h"
#include "shell/stress.h"

namespace zelvo {

namespace {

constexpr int CENTRE = 5;  // of the points of the surface

double component(const double* v, const Vec3& a) { return v[0] * a(1) + v[1] * a(2) + v[2] * a(3); }

// Lever arm across the girder of a point (x, z) about (xr, zr). On a curved girder it is the radius
// less that of the reference, so it grows the other way round than x does.
double arm_across(bool curved, const double* p, const double* ref) {
  const double x = p[0] - ref[0], z = p[2] - ref[2];
  if (!curved) return x;
  const double plan = std::sqrt(x * x + z * z);
  const bool inside =
      std::sqrt(p[0] * p[0] + p[2] * p[2]) < std::sqrt(ref[0] * ref[0] + ref[2] * ref[2]);
  return inside ? -plan : plan;
}

struct SectionSums {
  double shear = 0, moment = 0, torque = 0;  // kips, kip-inches
};

// Adds the forces of an element's edge about the reference point of the section.
void add_edge(bool curved, const ShellWork& w, const SectionCut& cut, const EdgeForces& f,
              SectionSums& sums) {
  const double sign = cut.sign();
  for (int n = 1; n <= 3; ++n) {
    const double* const p = &w.exyz(1, edge_nodes(cut.edge)[n - 1]);
    const double dy = p[1] - cut.ref[1], dx = arm_across(curved, p, cut.ref);
    sums.shear += sign * f.force(3, n);
    sums.moment += sign * (f.moment(1, n) - dy * f.force(2, n));
    sums.torque += sign * (f.moment(2, n) + dy * f.force(1, n) + dx * f.force(3, n));
  }
}

// At the centre of a shell and its second thickness point.
struct StripStresses {
  double s22, s12;
};
StripStresses strip_stresses(const ShellWork& w, const ShellVector& d, LastInverse& last) {
  FixedMatrix<double, 6, SHELL_DOFS> S;
  shell_stress_op(w, CENTRE, 2, last, S);
  StripStresses s{0, 0};
  for (int j = 1; j <= SHELL_DOFS; ++j) {
    s.s22 += S(2, j) * d(j);
    s.s12 += S(4, j) * d(j);
  }
  return s;
}

}  // namespace

SectionCut section_cut(const Structure& structure, int j) {
  const SectionPattern& section = *structure.section;
  const Nodes& nodes = structure.nodes;
  const int station = 2 * j * section.nodes, first = station + 1;
  return {{column3(nodes.vt1, first), column3(nodes.vt2, first), column3(nodes.vn, first)},
          nodes.xyz.column(station + section.deck_reference),
          j == 0 ? Edge::BEGIN : Edge::END,
          section.strips * (j > 0 ? j - 1 : 0)};
}

// Node forces are ke d, formed point by point as B' (stress): the same sums without the matrix.
void shell_edge_forces(const ShellWork& w, const ShellVector& d, Edge edge,
                       const SectionFrame& frame, LastInverse& last, EdgeForces& out) {
  const ShellData s = shell_data(w);
  PointFrames f;
  PointStresses stress;
  last.failures += map_points(s, last.stiffness, f);
  point_stresses(s, f, d, stress);
  const Vec3* const axes[3] = {&frame.a, &frame.b, &frame.c};
  for (int n = 1; n <= 3; ++n) {
    const int i = edge_nodes(edge)[n - 1];
    FixedVector<double, 5> F;
    node_forces(s, f, stress, i, F);
    for (int r = 1; r <= 3; ++r) {
      const Vec3& axis = *axes[r - 1];
      out.force(r, n) = component(F.data(), axis);
      out.moment(r, n) =
          F(4) * component(&w.evt1(1, i), axis) + F(5) * component(&w.evt2(1, i), axis);
    }
  }

  const auto mean = [&](int row) {
    const double* const at = stress.local[row - 1];
    return (at[lane_of(CENTRE, 1)] + at[lane_of(CENTRE, 2)]) / 2;
  };
  out.mid22 = mean(2);
  out.mid12 = mean(4);
}

// Without a bay there is no force.
SectionResults section_results(const Model& model, const Structure& structure,
                               const Vector<double>& U, int k, LastInverse& last) {
  assert(1 <= k && k <= model.nanal && U.size() == NDOF * structure.nodes.nnode);
  const SectionPattern& section = *structure.section;
  const int nbay = model.nbay();
  SectionResults r{Vector<double>(nbay + 1), Vector<double>(nbay + 1), Vector<double>(nbay + 1),
                   Matrix<double>(section.strips, nbay), Matrix<double>(section.strips, nbay)};
  ShellWork w;
  ShellVector d;
  EdgeForces f;
  for (int j = 0; j <= nbay; ++j) {
    const SectionCut cut = section_cut(structure, j);
    SectionSums sums;
    for (int e = 1; e <= section.strips && nbay > 0; ++e) {
      gather_shell(structure, k, cut.before + e, w);
      gather_displacements(structure.elements, U, cut.before + e, d);
      shell_edge_forces(w, d, cut.edge, cut.frame, last, f);
      add_edge(model.curved(), w, cut, f, sums);
      const StripStresses s = strip_stresses(w, d, last);
      if (j == 0) continue;
      r.s22(e, j) = s.s22;
      r.s12(e, j) = s.s12;
    }
    r.shear(j + 1) = sums.shear;
    r.moment(j + 1) = sums.moment;
    r.torque(j + 1) = sums.torque;
  }
  return r;
}

}  // namespace zelvo
