#include "construction/girders.h"

#include <algorithm>
#include <cmath>

#include "bars/forces.h"
#include "shell/sections.h"

namespace zelvo {

namespace {

// Force and moment on a part of a section, along its axes a, b, c: across to the right, along, up.
struct Action {
  Vec3 force{}, moment{};

  // A force at the distance r from the point that the moment refers to, and a moment.
  void add(const Vec3& f, const Vec3& r, const Vec3& m) {
    const Vec3 rf = cross(r, f);
    for (int i = 1; i <= 3; ++i) {
      force(i) += f(i);
      moment(i) += m(i) + rf(i);
    }
  }
  void add(const Action& other, const Vec3& r) { add(other.force, r, other.moment); }
};

Vec3 along_axes(const SectionFrame& f, const Vec3& v) {
  return {{dot(f.a, v), dot(f.b, v), dot(f.c, v)}};
}

// Distance of a point (x, y, z) from the reference of the section.
Vec3 distance(const SectionCut& cut, const double* p) {
  const double* const ref = cut.ref;
  return along_axes(cut.frame, {{p[0] - ref[0], p[1] - ref[1], p[2] - ref[2]}});
}

void add_edge(const ShellWork& w, const SectionCut& cut, const EdgeForces& f, Action& sum) {
  const double s = cut.sign();
  for (int n = 1; n <= 3; ++n)
    sum.add({{s * f.force(1, n), s * f.force(2, n), s * f.force(3, n)}},
            distance(cut, &w.exyz(1, edge_nodes(cut.edge)[n - 1])),
            {{s * f.moment(1, n), s * f.moment(2, n), s * f.moment(3, n)}});
}

// Shells of each girder at section j, and the stresses of the bay that ends there.
void add_shells(const Structure& structure, const Vector<double>& U, int k, const SectionCut& cut,
                int j, LastInverse& last, Action* girder, Quantities& q) {
  const SectionPattern& section = *structure.section;
  ShellWork w;
  ShellVector d;
  EdgeForces f;
  for (int e = 1; e <= section.strips; ++e) {
    gather_shell(structure, k, cut.before + e, w);
    gather_displacements(structure.elements, U, cut.before + e, d);
    shell_edge_forces(w, d, cut.edge, cut.frame, last, f);
    add_edge(w, cut, f, girder[girder_of_strip(section, e)]);
    if (j == 0) continue;
    q.mid22(e, j) = f.mid22;
    q.mid12(e, j) = f.mid12;
  }
}

// Whether a bar between two stations (from 0) crosses section j, which is cut just before station
// 2j; the first just behind station 0.
bool crosses(int j, int from, int to) {
  const int begin = std::min(from, to), end = std::max(from, to);
  return j == 0 ? begin == 0 && end > 0 : begin < 2 * j && 2 * j <= end;
}

// Laterals of each girder that cross section j. A bar in tension pulls the part before the cut
// toward its far end; its force has one line of action, so any point of the bar serves as its place.
void add_laterals(const Structure& structure, const Vector<double>& forces, const SectionCut& cut,
                  int j, Action* girder) {
  const auto& [section, nodes, elements, properties] = structure;
  for (int e = 1; e <= elements.nlatel; ++e) {
    const int n1 = elements.latconn(1, e), n2 = elements.latconn(2, e);
    const int s1 = (n1 - 1) / section->nodes, s2 = (n2 - 1) / section->nodes;
    if (!crosses(j, s1, s2)) continue;
    const int near = s1 < s2 ? n1 : n2, far = s1 < s2 ? n2 : n1;
    Vec3 f = along_axes(cut.frame, unit(column3(nodes.xyz, far) - column3(nodes.xyz, near)));
    for (int i = 1; i <= 3; ++i) f(i) *= forces(e);
    girder[(e - 1) * section->girders / elements.nlatel].add(
        f, distance(cut, nodes.xyz.column(far)), {});
  }
}

// From the point between the web tops of a girder to the reference of the section.
Vec3 own_point_to_reference(const Structure& structure, const GirderPattern& g,
                            const SectionCut& cut, int j) {
  const int before = 2 * j * structure.section->nodes;
  const Vec3 left = distance(cut, structure.nodes.xyz.column(before + g.left_top()));
  const Vec3 right = distance(cut, structure.nodes.xyz.column(before + g.right_top()));
  return {{-(left(1) + right(1)) / 2, -(left(2) + right(2)) / 2, -(left(3) + right(3)) / 2}};
}

Resultants resultants(int sections, int parts) {
  Resultants r;
  for (Matrix<double>* table : {&r.N, &r.V, &r.H, &r.M, &r.L, &r.T})
    *table = Matrix<double>(sections, parts, "the resultants of the girders");
  return r;
}

void store(const Action& a, int row, int part, Resultants& r) {
  r.H(row, part) = a.force(1);
  r.N(row, part) = a.force(2);
  r.V(row, part) = a.force(3);
  r.M(row, part) = a.moment(1);
  r.T(row, part) = a.moment(2);
  r.L(row, part) = a.moment(3);
}

// All resultants of section j from the actions of the girders' shells and laterals.
void store_section(const Structure& structure, const SectionCut& cut, int j, const Action* shells,
                   const Action* bars, Quantities& q) {
  Action whole;
  for (int g = 0; g < structure.section->girders; ++g) {
    Action own;
    own.add(shells[g], own_point_to_reference(structure, structure.section->girder[g], cut, j));
    whole.add(shells[g], {});
    whole.add(bars[g], {});
    store(shells[g], j + 1, g + 1, q.girders);
    store(own, j + 1, g + 1, q.own);
    store(bars[g], j + 1, g + 1, q.bracing);
  }
  store(whole, j + 1, 1, q.whole);
}

// Strips of the plates of a girder, left to right or down the left web, across, up the right one.
struct GirderStrips {
  int flange[4], web[8], bottom[4];
};

GirderStrips strips_of(const SectionPattern& section, int girder) {
  GirderStrips s{};
  int *flange = s.flange, *web = s.web, *bottom = s.bottom;
  for (int e = section.deck_strips + 1; e <= section.strips; ++e) {
    if (girder_of_strip(section, e) != girder) continue;
    const Plate plate = section.strip[e - 1].plate;
    *(plate == Plate::TOP_FLANGE ? flange : plate == Plate::WEB ? web : bottom)++ = e;
  }
  return s;
}

// Stress varies linearly over a flange of width b and the middles of its strips lie b/4 from its
// own: their mean is f_bu, and what they differ by is half the difference of the tips, f_l.
void flange_stresses(const int* strip, int bay, int flange, Quantities& q) {
  const double left = q.mid22(strip[0], bay), right = q.mid22(strip[1], bay);
  q.flange_mean(bay, flange) = (left + right) / 2;
  q.flange_bend(bay, flange) = right - left;
}

void bottom_stresses(const int* strip, int bay, int girder, Quantities& q) {
  double sum = 0, high = q.mid22(strip[0], bay), low = high;
  for (int i = 0; i < 4; ++i) {
    const double s = q.mid22(strip[i], bay);
    sum += s;
    high = std::max(high, s);
    low = std::min(low, s);
  }
  q.bottom_mean(bay, girder) = sum / 4;
  q.bottom_high(bay, girder) = high;
  q.bottom_low(bay, girder) = low;
}

// The shear of largest magnitude, first in order where several tie. Strips of a left web count it
// from the top, those of a right web from the foot: sign -1 and 1.
double web_stress(const Matrix<double>& mid12, const int* strip, int bay, double sign) {
  double largest = 0;
  for (int i = 0; i < 4; ++i)
    if (std::abs(mid12(strip[i], bay)) > std::abs(largest)) largest = mid12(strip[i], bay);
  return sign * largest;
}

}  // namespace

void recover_girders(const Model& model, const Structure& structure, const Vector<double>& U, int k,
                     LastInverse& last, Quantities& q) {
  assert(1 <= k && k <= model.nanal && U.size() == NDOF * structure.nodes.nnode);
  const SectionPattern& section = *structure.section;
  const int nbay = model.nbay();
  q.girders = q.own = q.bracing = resultants(nbay + 1, section.girders);
  q.whole = resultants(nbay + 1, 1);
  q.mid22 = q.mid12 = Matrix<double>(section.strips, nbay, "the stresses of the strips");
  const Vector<double> laterals = lateral_forces(structure, U);
  for (int j = 0; j <= nbay && nbay > 0; ++j) {
    const SectionCut cut = section_cut(structure, j);
    Action shells[MAX_GIRDERS], bars[MAX_GIRDERS];
    add_shells(structure, U, k, cut, j, last, shells, q);
    add_laterals(structure, laterals, cut, j, bars);
    store_section(structure, cut, j, shells, bars, q);
  }
  design_stresses(structure, q);
}

void design_stresses(const Structure& structure, Quantities& q) {
  const SectionPattern& section = *structure.section;
  assert(q.mid22.rows() == section.strips && q.mid12.rows() == section.strips);
  const int nbay = q.mid22.cols(), girders = section.girders;
  for (Matrix<double>* table : {&q.flange_mean, &q.flange_bend, &q.web_shear})
    *table = Matrix<double>(nbay, 2 * girders, "the stresses for design");
  for (Matrix<double>* table : {&q.bottom_mean, &q.bottom_high, &q.bottom_low})
    *table = Matrix<double>(nbay, girders, "the stresses for design");
  for (int g = 1; g <= girders; ++g) {
    const GirderStrips s = strips_of(section, g - 1);
    for (int bay = 1; bay <= nbay; ++bay) {
      flange_stresses(s.flange, bay, 2 * g - 1, q);
      flange_stresses(s.flange + 2, bay, 2 * g, q);
      bottom_stresses(s.bottom, bay, g, q);
      q.web_shear(bay, 2 * g - 1) = web_stress(q.mid12, s.web, bay, -1);
      q.web_shear(bay, 2 * g) = web_stress(q.mid12, s.web + 4, bay, 1);
    }
  }
}

}  // namespace zelvo
