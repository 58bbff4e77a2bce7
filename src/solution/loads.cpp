#include "solution/loads.h"

#include <cmath>

#include "model/segments.h"

namespace zelvo {

namespace {

// Load codes of one girder.
constexpr int ON_TOP_FLANGES = 1, ON_BOTTOM_FLANGE = 2, END_COUPLES = 3, END_FORCE = 5;

// One load vector in the making. Rows of nodes are counted from 1.
struct Loading {
  const SectionPattern& pattern;
  Vector<double>& F;

  double& at(int row, int m, int d) const { return F(equation((row - 1) * pattern.nodes + m, d)); }
  void add_down(int row, int m, double load) const { at(row, m, 2) -= load; }
};

// Nodes that share the load of a plate: the ends of its strips.
constexpr int MAX_LINE = 5;
struct PlateLine {
  int nodes;
  int node[MAX_LINE];
};

constexpr PlateLine every_second(int first) {
  return {MAX_LINE, {first, first + 2, first + 4, first + 6, first + 8}};
}
constexpr PlateLine left_web(const GirderPattern& g) { return every_second(g.left_top()); }
constexpr PlateLine right_web(const GirderPattern& g) { return every_second(g.right_foot()); }
constexpr PlateLine bottom(const GirderPattern& g) { return every_second(g.left_foot()); }
constexpr PlateLine left_top(const GirderPattern& g) {
  return {3, {g.left_flange(1), g.left_top(), g.left_flange(4)}};
}
constexpr PlateLine right_top(const GirderPattern& g) {
  return {3, {g.right_flange(1), g.right_top(), g.right_flange(4)}};
}

// Weight of one row: panel at an inner node, half of it at the two ends.
void add_weight(const Loading& load, const PlateLine& line, int row, double panel) {
  for (int i = 0; i < line.nodes; ++i) {
    const bool end = i == 0 || i == line.nodes - 1;
    load.add_down(row, line.node[i], end ? panel / 2 : panel);
  }
}

// Row r carries the 12 inches of plate that follow it, moved half a row toward the first end: half
// of the first row is taken back and given to the row behind the last one.
void add_plate_weight(const Loading& load, const PlateLine& line, double panel_width,
                      const PlateSegments& plates) {
  const auto panel = [&](int j) {
    return STEEL_DENSITY * panel_width * plates.t(j) * STATION_SPACING;
  };
  int behind = 1;  // the row behind the last one
  each_segment(plates.n, plates.len, STATION_SPACING, [&](int j, int begin, int end) {
    for (int row = begin + 1; row <= end; ++row) add_weight(load, line, row, panel(j));
    behind = end + 1;
  });
  add_weight(load, line, 1, -panel(1) / 2);
  add_weight(load, line, behind, panel(plates.n) / 2);
}

void add_self_weight(const Loading& load, const Model& m, double dw) {
  const SectionPattern& pattern = load.pattern;
  const auto each_girder = [&](auto line, double panel_width, const PlateSegments& plates) {
    for (int g = 0; g < pattern.girders; ++g)
      add_plate_weight(load, line(pattern.girder[g]), panel_width, plates);
  };
  each_girder(left_web, dw / 4, web_segments(m));
  each_girder(right_web, dw / 4, web_segments(m));
  each_girder(left_top, m.secdim.flange_width / 2, top_segments(m));
  each_girder(right_top, m.secdim.flange_width / 2, top_segments(m));
  each_girder(bottom, m.secdim.bottom_width / 4, bottom_segments(m));
}

// Visits the rows of every pour segment, both of its end rows included.
template <class Visit>
void each_pour_row(const Model& m, Visit visit) {
  each_segment(m.npour, m.pour_len, STATION_SPACING, [&](int j, int begin, int end) {
    for (int row = begin + 1; row <= end + 1; ++row)
      visit(j, row, row == begin + 1 || row == end + 1);
  });
}

// Six nodes of each girder share the load of a foot; a boundary row takes half from each side.
void load_top_flanges(const Loading& load, const Model& m, int k) {
  each_pour_row(m, [&](int j, int row, bool end) {
    const double q = m.pour_load(k, j) / (LINKS_PER_GIRDER * load.pattern.girders);
    for (int l = 0; l < load.pattern.links; ++l)
      load.add_down(row, load.pattern.link[l].flange, end ? q / 2 : q);
  });
}

// All nine nodes of the bottom flange, and full rows to the ends of every segment.
void load_bottom_flange(const Loading& load, const Model& m, int k) {
  const GirderPattern& g = load.pattern.girder[0];
  each_pour_row(m, [&](int j, int row, bool) {
    for (int n = g.left_foot(); n <= g.right_foot(); ++n)
      load.add_down(row, n, m.pour_load(k, j) / GirderPattern::BOTTOM_NODES);
  });
}

// Forces along z at both ends: the couple of the flange force over the depth.
void store_end_couples(const Loading& load, const Model& m, int k) {
  const double force = end_couple_force(m, k);
  const PlateLine line = bottom(load.pattern.girder[0]);
  const auto store = [&](int row, double sign) {
    for (int l = 0; l < load.pattern.links; ++l)
      load.at(row, load.pattern.link[l].flange, 3) = -sign * force / load.pattern.links;
    for (int i = 0; i < line.nodes; ++i) load.at(row, line.node[i], 3) = sign * force / line.nodes;
  };
  store(1, 1);
  store(m.nstn(), -1);
}

void store_end_force(const Loading& load, const Model& m) {
  constexpr double force = 20;  // kips at each of the five nodes
  const PlateLine line = bottom(load.pattern.girder[0]);
  for (int i = 0; i < line.nodes; ++i) load.at(m.nstn(), line.node[i], 3) = force;
}

}  // namespace

double web_width(const Structure& structure) {
  const GirderPattern& g = structure.section->girder[0];
  const double* top = structure.nodes.xyz.column(g.left_top());
  const double* foot = structure.nodes.xyz.column(g.left_foot());
  const double x = top[0] - foot[0], y = top[1] - foot[1];
  return std::sqrt(x * x + y * y);
}

bool loads_end_couples(const Model& model) {
  return model.ngird == 1 && model.load_pattern == END_COUPLES;
}

double end_couple_force(const Model& model, int k) {
  const double length = model.lgbr;
  return length * length * (model.pour_load(k, 1) / 12) / (8 * model.secdim.depth);
}

void load_one_girder(const Model& model, int k, SteelWeight weight, double dw, Vector<double>& F) {
  assert(1 <= k && k <= model.nanal);
  const Loading load{ONE_GIRDER, F};
  if (weight == SteelWeight::INCLUDED) add_self_weight(load, model, dw);
  switch (model.load_pattern) {
    case ON_TOP_FLANGES:
      return load_top_flanges(load, model, k);
    case ON_BOTTOM_FLANGE:
      return load_bottom_flange(load, model, k);
    case END_COUPLES:
      return store_end_couples(load, model, k);
    case END_FORCE:
      return store_end_force(load, model);
    default:
      return;
  }
}

void load_two_girders(const Model& model, int k, SteelWeight weight, double dw, Vector<double>& F) {
  assert(1 <= k && k <= model.nanal);
  const Loading load{TWO_GIRDERS, F};
  if (weight == SteelWeight::INCLUDED) add_self_weight(load, model, dw);
  load_top_flanges(load, model, k);
}

}  // namespace zelvo
