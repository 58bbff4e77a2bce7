#include "model/nodes.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "base/failures.h"
#include "base/vec3.h"
#include "model/pattern.h"

namespace zelvo {

namespace {

struct Section {
  FixedVector<double, MAX_SECTION_NODES> x, y;  // of the pattern nodes, inches
};

// Places node i of n+1 on the straight line from node a to node b, for all between the two.
void divide(Section& s, int a, int b) {
  const int n = b - a;
  for (int i = 1; i < n; ++i) {
    s.x(a + i) = s.x(a) + i * (s.x(b) - s.x(a)) / n;
    s.y(a + i) = s.y(a) + i * (s.y(b) - s.y(a)) / n;
  }
}

// Four steps of a quarter of the flange width from deck node p on.
void step_over_flange(Section& s, int p, double flange) {
  for (int i = 1; i <= 4; ++i) s.x(p + i) = s.x(p) + i * (flange / 4);
}

void mirror_deck(Section& s, int middle) {
  s.x(middle) = 0;
  for (int i = 1; i < middle; ++i) s.x(2 * middle - i) = -s.x(i);
}

// Deck rows of the left half: overhang, flange by flange, and the stretches between.
void deck_one(const SectionDimensions& secdim, Section& s) {
  const double a = secdim.top_spacing / 2, b = secdim.flange_width / 2;
  s.x(1) = -secdim.deck_width / 2;
  s.x(5) = -(a + b);
  divide(s, 1, 5);
  step_over_flange(s, 5, secdim.flange_width);
  s.x(11) = 0;
  divide(s, 9, 11);
  mirror_deck(s, 11);
}

void deck_two(const SectionDimensions& secdim, double d, Section& s) {
  const double a = secdim.top_spacing / 2, b = secdim.flange_width / 2;
  s.x(1) = -secdim.deck_width / 2;
  s.x(5) = -(d + a + b);
  divide(s, 1, 5);
  step_over_flange(s, 5, secdim.flange_width);
  s.x(11) = -d;
  divide(s, 9, 11);
  s.x(13) = a - d - b;
  divide(s, 11, 13);
  step_over_flange(s, 13, secdim.flange_width);
  s.x(21) = 0;
  divide(s, 17, 21);
  mirror_deck(s, 21);
}

// Flanges under the deck nodes, then the three lines of webs and bottom flange.
void steel(const GirderPattern& g, double centre, double bottom_width, Section& s) {
  const auto under = [&](int node, int deck) {
    s.x(node) = s.x(deck);
    s.y(node) = s.y(deck);
  };
  constexpr int beside_web[4] = {0, 1, 3, 4};
  for (int i = 1; i <= 4; ++i) {
    under(g.left_flange(i), g.deck + beside_web[i - 1]);
    under(g.right_flange(i), g.deck + 8 + beside_web[i - 1]);
  }
  under(g.left_top(), g.deck + 2);
  under(g.right_top(), g.deck + 10);
  s.x(g.left_foot()) = centre - bottom_width / 2;
  s.x(g.right_foot()) = centre + bottom_width / 2;
  s.y(g.left_foot()) = s.y(g.right_foot()) = 0;
  divide(s, g.left_top(), g.left_foot());
  divide(s, g.left_foot(), g.right_foot());
  divide(s, g.right_foot(), g.right_top());
}

Section first_section(const SectionPattern& pattern, const Model& model) {
  Section s{};
  for (int m = 1; m <= pattern.deck_nodes; ++m) s.y(m) = model.secdim.depth;
  if (pattern.girders == 1) {
    deck_one(model.secdim, s);
    steel(pattern.girder[0], 0, model.secdim.bottom_width, s);
  } else {
    deck_two(model.secdim, model.offset, s);
    steel(pattern.girder[0], -model.offset, model.secdim.bottom_width, s);
    steel(pattern.girder[1], model.offset, model.secdim.bottom_width, s);
  }
  return s;
}

// A curved girder is the first section turned about the vertical axis through the origin: each node
// keeps its radius |x0|, the reference line has arc length 12 between stations.
void place_station(const Model& model, const Section& s, int station, int first, int count,
                   Nodes& nodes) {
  for (int m = 1; m <= count; ++m) {
    double* p = nodes.xyz.column(first + m);
    const double x0 = s.x(m) - model.rcurv, along = double{STATION_SPACING} * station;
    p[0] = x0;
    p[1] = s.y(m);
    p[2] = -along;
    if (model.curved()) {
      const double t = along / model.rcurv, radius = std::abs(x0);
      p[0] = x0 + radius * (1 - std::cos(t));
      p[2] = -radius * std::sin(t);
    }
  }
}

Vec3 direction(const Nodes& nodes, int a, int b) {
  return unit(column3(nodes.xyz, b) - column3(nodes.xyz, a));
}

void set_axes(Nodes& nodes, int n, const Vec3& vt1, const Vec3& vt2, const Vec3& vn) {
  for (int i = 1; i <= 3; ++i) {
    nodes.vt1(i, n) = vt1(i);
    nodes.vt2(i, n) = vt2(i);
    nodes.vn(i, n) = vn(i);
  }
}

// Flanges and deck have a vertical director. So have the web tops and feet, which the web shares
// with the flanges: the web proper is the nodes between.
void orient_station(const SectionPattern& pattern, int first, Nodes& nodes) {
  const GirderPattern& g = pattern.girder[0];
  const Vec3 across = direction(nodes, first + g.left_foot(), first + g.right_foot());
  const Vec3 along{{across(3), 0, -across(1)}}, up{{0, 1, 0}};
  for (int m = 1; m <= pattern.nodes; ++m) set_axes(nodes, first + m, across, along, up);

  const Vec3 left = direction(nodes, first + g.left_top(), first + g.left_foot());
  const Vec3 right = direction(nodes, first + g.right_foot(), first + g.right_top());
  const Vec3 left_vn = cross(left, along), right_vn = cross(right, along);
  for (int i = 0; i < pattern.girders; ++i) {
    const GirderPattern& girder = pattern.girder[i];
    for (int m = 1; m < GirderPattern::SPACINGS; ++m) {
      set_axes(nodes, first + girder.left_top() + m, left, along, left_vn);
      set_axes(nodes, first + girder.right_foot() + m, right, along, right_vn);
    }
  }
}

void generate_nodes(const SectionPattern& pattern, const Model& model, Nodes& nodes) {
  nodes.nnode = node_count(model);
  for (Matrix<double>* table : {&nodes.xyz, &nodes.vn, &nodes.vt1, &nodes.vt2})
    *table = Matrix<double>(3, nodes.nnode, "the nodes");
  const Section section = first_section(pattern, model);
  for (int s = 0; s < model.nstn(); ++s) {
    place_station(model, section, s, s * pattern.nodes, pattern.nodes, nodes);
    orient_station(pattern, s * pattern.nodes, nodes);
  }
}

}  // namespace

int node_count(const Model& model) {
  const std::int64_t n = std::int64_t{section_pattern(model.ngird).nodes} * model.nstn();
  // Every node stores at least the 15 entries of its own block.
  if (NDOF * n >= std::numeric_limits<int>::max())
    throw MemoryFailure{15.0 * static_cast<double>(n) * (sizeof(int) + sizeof(double)),
                        "the stiffness matrix"};
  return static_cast<int>(n);
}

void generate_nodes_one(const Model& model, Nodes& nodes) {
  generate_nodes(ONE_GIRDER, model, nodes);
}
void generate_nodes_two(const Model& model, Nodes& nodes) {
  generate_nodes(TWO_GIRDERS, model, nodes);
}

}  // namespace zelvo
