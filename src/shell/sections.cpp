#include "shell/sections.h"

#include <cmath>

#include "base/text.h"
#include "model/pattern.h"
#include "shell/points.h"
#include "shell/stress.h"

namespace zelvo {

// Element nodes on the edge eta = -1, on the edge eta = +1.
constexpr int NEAR_EDGE[3] = {1, 2, 5}, FAR_EDGE[3] = {3, 4, 7};
constexpr double INCHES_PER_FOOT = 12;

static double dot(const double* v, const FixedVector<double, 3>& a) {
  return v[0] * a(1) + v[1] * a(2) + v[2] * a(3);
}

// Node forces are ke d, formed point by point as B' (stress): the same sums without the matrix.
void shell_edge_forces(const ShellWork& w, const ShellVector& d, bool near_edge,
                       const SectionFrame& frame, EdgeForces& out) {
  const ShellData s = shell_data(w);
  PointFrames f;
  PointStresses stress;
  map_points(s, last_inverse().stiffness, f);
  point_stresses(s, f, d, stress);
  const FixedVector<double, 3>* const axes[3] = {&frame.a, &frame.b, &frame.c};
  for (int n = 1; n <= 3; ++n) {
    const int i = near_edge ? NEAR_EDGE[n - 1] : FAR_EDGE[n - 1];
    FixedVector<double, 5> F;
    node_forces(s, f, stress, i, F);
    for (int r = 1; r <= 3; ++r) {
      const FixedVector<double, 3>& axis = *axes[r - 1];
      out.force(r, n) = dot(F.data(), axis);
      out.moment(r, n) = F(4) * dot(&w.evt1(1, i), axis) + F(5) * dot(&w.evt2(1, i), axis);
    }
  }

  FixedMatrix<double, 6, SHELL_DOFS> S;
  shell_stress_op(w, 5, 2, S);
  out.s22 = out.s12 = 0;
  for (int j = 1; j <= SHELL_DOFS; ++j) {
    out.s22 += S(2, j) * d(j);
    out.s12 += S(4, j) * d(j);
  }
}

struct SectionSums {
  double shear = 0, moment = 0, torque = 0;  // kips, kip-inches
};

// Lever arm across the girder of a point (x, z) about (xr, zr). On a curved girder it is the radius
// less that of the reference, so it grows the other way round than x does.
static double arm_across(bool curved, const double* p, const double* ref) {
  const double x = p[0] - ref[0], z = p[2] - ref[2];
  if (!curved) return x;
  const double plan = std::sqrt(x * x + z * z);
  const bool inside =
      std::sqrt(p[0] * p[0] + p[2] * p[2]) < std::sqrt(ref[0] * ref[0] + ref[2] * ref[2]);
  return inside ? -plan : plan;
}

static void add_edge(bool curved, const ShellWork& w, bool near_edge, const EdgeForces& f,
                     const double* ref, SectionSums& sums) {
  // At the first section the girder is seen from its other side.
  const double sign = near_edge ? -1 : 1;
  for (int n = 1; n <= 3; ++n) {
    const double* const p = &w.exyz(1, near_edge ? NEAR_EDGE[n - 1] : FAR_EDGE[n - 1]);
    const double dy = p[1] - ref[1], dx = arm_across(curved, p, ref);
    sums.shear += sign * f.force(3, n);
    sums.moment += sign * (f.moment(1, n) - dy * f.force(2, n));
    sums.torque += sign * (f.moment(2, n) + dy * f.force(1, n) + dx * f.force(3, n));
  }
}

// Position, shear, moment, torque.
static void write_section(int position, const SectionSums& sums, std::string& sec) {
  put_blanks(sec, 1);
  put_int(sec, position, 7);
  for (const double value :
       {sums.shear, sums.moment / INCHES_PER_FOOT, sums.torque / INCHES_PER_FOOT}) {
    put_blanks(sec, 2);
    put_real(sec, value, 12, 1);
  }
  sec += '\n';
}

constexpr int VALUES_PER_LINE = 13;

static void write_stresses(int position, int strips, const double* stress, std::string& str) {
  for (int first = 0; first < strips; first += VALUES_PER_LINE) {
    put_blanks(str, 1);
    put_int(str, position, 7);
    for (int e = first; e < first + VALUES_PER_LINE; ++e) {
      put_blanks(str, 1);
      put_real(str, stress[e], 8, 2);
    }
    str += '\n';
  }
}

static void write_head(int k, int count, std::string& out) {
  free_line(out, "run");
  free_line(out, k);
  free_line(out, count);
}

static FixedVector<double, 3> axis_of(const Matrix<double>& triad, int n) {
  return {{triad(1, n), triad(2, n), triad(3, n)}};
}

// Section j stands at the end of bay j; the first one, 0, at the beginning of bay 1. Its frame is
// that of its first node, its reference the middle of the deck. Without a bay there is no force.
static void section_forces(const SectionPattern& section, const Model& model, const Nodes& nodes,
                           const Elements& elements, const Properties& properties,
                           const Vector<double>& U, int k, std::string& sec, std::string& str) {
  const int nbay = model.nbay();
  ShellWork w;
  ShellVector d;
  EdgeForces f;
  double s22[MAX_STRIPS], s12[MAX_STRIPS];
  write_head(k, nbay + 1, sec);
  write_head(k, nbay, str);
  for (int j = 0; j <= nbay; ++j) {
    const int station = 2 * j * section.nodes, first = station + 1;
    const SectionFrame frame{axis_of(nodes.vt1, first), axis_of(nodes.vt2, first),
                             axis_of(nodes.vn, first)};
    const double* const ref = nodes.xyz.column(station + section.deck_reference);
    const int before = section.strips * (j > 0 ? j - 1 : 0);
    SectionSums sums;
    for (int e = 1; e <= section.strips && nbay > 0; ++e) {
      gather_shell(nodes, elements, properties, k, before + e, w);
      gather_displacements(elements, U, before + e, d);
      shell_edge_forces(w, d, j == 0, frame, f);
      add_edge(model.curved(), w, j == 0, f, ref, sums);
      s22[e - 1] = f.s22;
      s12[e - 1] = f.s12;
    }
    write_section(BAY_LENGTH * j, sums, sec);
    if (j == 0) continue;
    const int middle = BAY_LENGTH * j - BAY_LENGTH / 2;
    write_stresses(middle, section.strips, s22, str);
    write_stresses(middle, section.strips, s12, str);
  }
}

void section_forces_one(const Model& model, const Nodes& nodes, const Elements& elements,
                        const Properties& properties, const Vector<double>& U, int k,
                        std::string& sec, std::string& str) {
  section_forces(ONE_GIRDER, model, nodes, elements, properties, U, k, sec, str);
}
void section_forces_two(const Model& model, const Nodes& nodes, const Elements& elements,
                        const Properties& properties, const Vector<double>& U, int k,
                        std::string& sec, std::string& str) {
  section_forces(TWO_GIRDERS, model, nodes, elements, properties, U, k, sec, str);
}

}  // namespace zelvo
