#include "model/elements.h"

#include <algorithm>
#include <cassert>

#include "model/pattern.h"

namespace zelvo {

namespace {

// Global nodes of one station.
struct Station {
  const SectionPattern& pattern;
  int s;  // counted from 0
  int node(int m) const { return s * pattern.nodes + m; }
};

Station at(const SectionPattern& pattern, int position) {
  return {pattern, position / STATION_SPACING};
}

// Corners, middles of the sides, centre: across the strip from p to q, along from s to s+2.
void shell_nodes(const Strip& t, const Station& s0, int* node) {
  const Station s1{s0.pattern, s0.s + 1}, s2{s0.pattern, s0.s + 2};
  const int nodes[9] = {s0.node(t.p), s0.node(t.q), s2.node(t.q), s2.node(t.p), s0.node(t.m),
                        s1.node(t.q), s2.node(t.m), s1.node(t.p), s1.node(t.m)};
  std::copy(nodes, nodes + 9, node);
}

void corners(const GirderPattern& g, const Station& s, int* node) {
  node[0] = s.node(g.left_top());
  node[1] = s.node(g.right_top());
  node[2] = s.node(g.left_foot());
  node[3] = s.node(g.right_foot());
}

// The facing corners of the two girders.
void facing_corners(const Station& s, int* node) {
  const GirderPattern &left = TWO_GIRDERS.girder[0], &right = TWO_GIRDERS.girder[1];
  node[0] = s.node(left.right_top());
  node[1] = s.node(right.left_top());
  node[2] = s.node(left.right_foot());
  node[3] = s.node(right.left_foot());
}

void shells(const SectionPattern& pattern, const Model& model, Elements& el) {
  el.nshell = pattern.strips * model.nbay();
  el.shconn = Matrix<int>(9, el.nshell, "the shell elements");
  for (int b = 0; b < model.nbay(); ++b)
    for (int e = 1; e <= pattern.strips; ++e)
      shell_nodes(pattern.strip[e - 1], {pattern, 2 * b}, el.shconn.column(b * pattern.strips + e));
}

void internal_braces(const SectionPattern& pattern, const Model& model, Elements& el) {
  const int n = std::max(model.nibrace, 0);
  el.nibel = pattern.girders * n;
  el.ibconn = Matrix<int>(4, el.nibel, "the internal braces");
  for (int g = 0; g < pattern.girders; ++g)
    for (int i = 1; i <= n; ++i)
      corners(pattern.girder[g], at(pattern, model.ib_pos(i)), el.ibconn.column(g * n + i));
}

void external_braces(const Model& model, Elements& el) {
  el.nebel = std::max(model.nebrace, 0);
  el.ebconn = Matrix<int>(4, el.nebel, "the external braces");
  for (int i = 1; i <= el.nebel; ++i)
    facing_corners(at(TWO_GIRDERS, model.eb_pos(i)), el.ebconn.column(i));
}

// Diagonals between the web tops; type 1 leaves the right web, type 2 the left one.
void top_laterals(const SectionPattern& pattern, const Model& model, Elements& el) {
  const int n = std::max(model.nlat, 0);
  el.nlatel = pattern.girders * n;
  el.latconn = Matrix<int>(2, el.nlatel, "the top laterals");
  for (int g = 0; g < pattern.girders; ++g) {
    const int left = pattern.girder[g].left_top(), right = pattern.girder[g].right_top();
    for (int i = 1; i <= n; ++i) {
      const bool from_right = model.lat_type(i) == 1;
      assert(from_right || model.lat_type(i) == 2);
      el.latconn(1, g * n + i) = at(pattern, model.lat_from(i)).node(from_right ? right : left);
      el.latconn(2, g * n + i) = at(pattern, model.lat_to(i)).node(from_right ? left : right);
    }
  }
}

void web_stiffeners(const SectionPattern& pattern, const Model& model, Elements& el) {
  const int n = std::max(model.nstiff, 0);
  el.nwsel = 2 * pattern.girders * n;
  el.wsconn = Matrix<int>(9, el.nwsel, "the web stiffeners");
  int column = 0;
  for (int i = 1; i <= n; ++i) {
    const Station s = at(pattern, model.ws_pos(i));
    for (int g = 0; g < pattern.girders; ++g)
      for (const int end : {pattern.girder[g].left_top(), pattern.girder[g].right_foot()}) {
        ++column;
        for (int a = 1; a <= 9; ++a) el.wsconn(a, column) = s.node(end + a - 1);
      }
  }
}

void stud_links(const SectionPattern& pattern, const Model& model, Elements& el) {
  el.nstud = pattern.links * model.nstn();
  el.studconn = Matrix<int>(2, el.nstud, "the stud links");
  for (int s = 0; s < model.nstn(); ++s) {
    for (int l = 1; l <= pattern.links; ++l) {
      const Station station{pattern, s};
      el.studconn(1, s * pattern.links + l) = station.node(pattern.link[l - 1].flange);
      el.studconn(2, s * pattern.links + l) = station.node(pattern.link[l - 1].deck);
    }
  }
}

// All frames of girder 1, then of girder 2, then those between the two.
void supports(const SectionPattern& pattern, const Model& model, Elements& el) {
  const int n = std::max(model.nsupp, 0);
  el.nsupel = (pattern.girders == 2 ? 3 : 1) * n;
  el.supconn = Matrix<int>(4, el.nsupel, "the supports");
  for (int i = 1; i <= n; ++i) {
    const Station s = at(pattern, model.supp_pos(i));
    for (int g = 0; g < pattern.girders; ++g)
      corners(pattern.girder[g], s, el.supconn.column(g * n + i));
    if (pattern.girders == 2) facing_corners(s, el.supconn.column(2 * n + i));
  }
}

void restrained_nodes(const SectionPattern& pattern, const Model& model, Elements& el) {
  const int n = std::max(model.nsupp, 0);
  el.nfix = GirderPattern::BOTTOM_NODES * pattern.girders * n;
  el.fixnode = Vector<int>(el.nfix, "the supports");
  int next = 0;
  for (int i = 1; i <= n; ++i)
    for (int g = 0; g < pattern.girders; ++g)
      for (int m = pattern.girder[g].left_foot(); m <= pattern.girder[g].right_foot(); ++m)
        el.fixnode(++next) = at(pattern, model.supp_pos(i)).node(m);
}

}  // namespace

Elements generate_elements(const Model& model) {
  const SectionPattern& pattern = section_pattern(model.ngird);
  Elements el;
  shells(pattern, model, el);
  internal_braces(pattern, model, el);
  external_braces(model, el);
  top_laterals(pattern, model, el);
  web_stiffeners(pattern, model, el);
  stud_links(pattern, model, el);
  supports(pattern, model, el);
  restrained_nodes(pattern, model, el);
  return el;
}

}  // namespace zelvo
