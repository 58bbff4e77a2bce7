// The two section patterns: which node, strip and link stands where in a cross-section.
//
// Nodes are numbered station by station. Node m of the pattern (from 1) at station s (from 0) is
// global node s * nodes + m. One-girder and two-girder routines are one body over these tables.
#pragma once
#include "matrix/symmetric.h"

namespace zelvo {

// A girder is a run of 33 nodes from `first`: left top flange (4, outer to inner edge, without its
// centre), right top flange (4, inner to outer), then down the left web, across the bottom flange
// and up the right web (25). Eight spacings divide each web and the bottom flange.
struct GirderPattern {
  int first;  // outer edge of the left top flange
  int deck;   // deck node over `first`; the deck nodes over that flange follow it

  static constexpr int NODES = 33;
  static constexpr int SPACINGS = 8;                 // of a web and of the bottom flange
  static constexpr int BOTTOM_NODES = SPACINGS + 1;  // of the bottom flange, its feet included
  constexpr int left_flange(int i) const { return first + i - 1; }   // i = 1 to 4
  constexpr int right_flange(int i) const { return first + i + 3; }  // i = 1 to 4
  constexpr int left_top() const { return first + 8; }
  constexpr int left_foot() const { return first + 16; }
  constexpr int right_foot() const { return first + 24; }
  constexpr int right_top() const { return first + 32; }
  constexpr int bottom_centre() const { return first + 20; }
};

enum class Plate { DECK, TOP_FLANGE, WEB, BOTTOM_FLANGE };

// A strip of shells along the girder: pattern nodes of its first edge, middle and second edge.
struct Strip {
  int p, m, q;
  Plate plate;
};

// A stud link: steel flange node and the deck node above it.
struct StudLink {
  int flange, deck;
};

constexpr int MAX_GIRDERS = 2, MAX_STRIPS = 52, MAX_LINKS = 12, LINKS_PER_GIRDER = 6;
constexpr int MAX_SECTION_NODES = 107;

struct SectionPattern {
  int girders;
  int nodes;            // per station
  int deck_nodes;       // 1 to deck_nodes, left to right
  int deck_reference;   // middle of the deck row
  int shape_reference;  // origin of the plotted buckled section
  int deck_strips;      // the first strips of a bay
  int strips;           // shells per bay
  int links;            // stud links per station
  GirderPattern girder[MAX_GIRDERS];
  Strip strip[MAX_STRIPS];   // strip[e - 1] is strip e
  StudLink link[MAX_LINKS];  // link[l - 1] is link l
};

// Girder (from 0) that strip e belongs to: its own steel, and the deck on its side of the middle.
constexpr int girder_of_strip(const SectionPattern& s, int e) {
  const int before = e <= s.deck_strips ? 0 : s.deck_strips;
  const int count = e <= s.deck_strips ? s.deck_strips : s.strips - s.deck_strips;
  return (e - before - 1) * s.girders / count;
}

namespace pattern_detail {

constexpr void add_strip(SectionPattern& s, int p, int m, int q, Plate plate) {
  s.strip[s.strips++] = {p, m, q, plate};
}

// Four strips of nine consecutive nodes from `from`.
constexpr void add_run(SectionPattern& s, int from, Plate plate) {
  for (int i = 0; i < 4; ++i) add_strip(s, from + 2 * i, from + 2 * i + 1, from + 2 * i + 2, plate);
}

constexpr void add_left_flange(SectionPattern& s, const GirderPattern& g) {
  add_strip(s, g.left_flange(1), g.left_flange(2), g.left_top(), Plate::TOP_FLANGE);
  add_strip(s, g.left_top(), g.left_flange(3), g.left_flange(4), Plate::TOP_FLANGE);
}

constexpr void add_right_flange(SectionPattern& s, const GirderPattern& g) {
  add_strip(s, g.right_flange(1), g.right_flange(2), g.right_top(), Plate::TOP_FLANGE);
  add_strip(s, g.right_top(), g.right_flange(3), g.right_flange(4), Plate::TOP_FLANGE);
}

constexpr void add_webs_and_bottom(SectionPattern& s, const GirderPattern& g) {
  add_run(s, g.left_top(), Plate::WEB);
  add_run(s, g.left_foot(), Plate::BOTTOM_FLANGE);
  add_run(s, g.right_foot(), Plate::WEB);
}

constexpr void add_deck(SectionPattern& s) {
  for (int e = 1; e <= s.deck_strips; ++e) add_strip(s, 2 * e - 1, 2 * e, 2 * e + 1, Plate::DECK);
}

// Links at the edges and over the web of both top flanges; the right flange lies eight deck nodes
// beyond the left one.
constexpr void add_links(SectionPattern& s, const GirderPattern& g) {
  const StudLink links[LINKS_PER_GIRDER] = {
      {g.left_flange(1), g.deck},     {g.left_top(), g.deck + 2},
      {g.left_flange(4), g.deck + 4}, {g.right_flange(1), g.deck + 8},
      {g.right_top(), g.deck + 10},   {g.right_flange(4), g.deck + 12}};
  for (const StudLink& l : links) s.link[s.links++] = l;
}

constexpr SectionPattern one_girder() {
  SectionPattern s{1, 54, 21, 11, 42, 10, 0, 0, {{22, 5}, {}}, {}, {}};
  const GirderPattern& g = s.girder[0];
  add_deck(s);
  add_left_flange(s, g);
  add_right_flange(s, g);
  add_webs_and_bottom(s, g);
  add_links(s, g);
  return s;
}

// The plates stand in another order here: the flanges of a girder on either side of its webs.
constexpr SectionPattern two_girders() {
  SectionPattern s{2, 107, 41, 21, 21, 20, 0, 0, {{42, 5}, {75, 25}}, {}, {}};
  add_deck(s);
  for (const GirderPattern& g : s.girder) {
    add_left_flange(s, g);
    add_webs_and_bottom(s, g);
    add_right_flange(s, g);
    add_links(s, g);
  }
  return s;
}

}  // namespace pattern_detail

inline constexpr SectionPattern ONE_GIRDER = pattern_detail::one_girder();
inline constexpr SectionPattern TWO_GIRDERS = pattern_detail::two_girders();
static_assert(ONE_GIRDER.strips == 26 && ONE_GIRDER.links == 6);
static_assert(TWO_GIRDERS.strips == MAX_STRIPS && TWO_GIRDERS.links == MAX_LINKS);
static_assert(TWO_GIRDERS.nodes == MAX_SECTION_NODES);

// Pattern of a model with ngird girders, 1 or 2.
constexpr const SectionPattern& section_pattern(int ngird) {
  return ngird == 2 ? TWO_GIRDERS : ONE_GIRDER;
}

}  // namespace zelvo
