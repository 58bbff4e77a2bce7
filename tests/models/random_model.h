// Sound bridges by chance: one girder or two, straight or curved, a few bays long, with all that can
// stand on them. The same seed gives the same bridge everywhere.
#pragma once
#include <cstdint>
#include <set>

#include "support/models.h"

namespace zelvo {

// splitmix64 (Steele, Lea and Flood 2014): the standard library promises no distribution.
struct Chance {
  std::uint64_t state;
  std::uint64_t next() {
    std::uint64_t z = state += 0x9e3779b97f4a7c15u;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
  }
  // From first to last.
  int whole(int first, int last) {
    return first + static_cast<int>(next() % static_cast<std::uint64_t>(last - first + 1));
  }
  // Between the two, with two decimals at most.
  double real(double least, double most) {
    return least + (most - least) * whole(0, 1000) / 1000.0;
  }
  bool one_in(int n) { return whole(1, n) == 1; }
};

// Different multiples of grid between first and last, ascending.
inline Positions some_positions(Chance& c, int most, int first, int last, int grid) {
  std::set<int> at;
  for (int n = c.whole(0, most); n > 0; --n) at.insert(grid * c.whole(first / grid, last / grid));
  return {at.begin(), at.end()};
}

// Lengths of consecutive segments that cover the girder.
inline Positions some_segments(Chance& c, int most, int lgbr) {
  Positions ends = some_positions(c, most - 1, BAY_LENGTH, lgbr, BAY_LENGTH), lengths;
  int from = 0;
  if (ends.empty() || ends.back() != lgbr) ends.push_back(lgbr);
  for (const int end : ends) lengths.push_back(end - from), from = end;
  return lengths;
}

inline TableRows some_plates(Chance& c, int lgbr, double least, double most) {
  TableRows rows;
  for (const int length : some_segments(c, 3, lgbr))
    rows.push_back({double(length), c.real(least, most)});
  return rows;
}

inline void add_bracing(Chance& c, Model& m) {
  const auto rows = [&](const Positions& at) {
    TableRows table;
    for (const int x : at) table.push_back({double(x), double(c.whole(1, 2)), c.real(1, 12)});
    return table;
  };
  set_rows(rows(some_positions(c, 4, 0, m.lgbr, STATION_SPACING)), m.nibrace, m.ib_pos, m.ib_type,
           m.ib_area);
  if (m.ngird == 2)
    set_rows(rows(some_positions(c, 2, 0, m.lgbr, STATION_SPACING)), m.nebrace, m.eb_pos, m.eb_type,
             m.eb_area);
  TableRows laterals, stiffeners;
  for (int n = c.whole(0, 4); n > 0; --n) {
    const int from = STATION_SPACING * c.whole(0, m.lgbr / STATION_SPACING - 1);
    const int to = STATION_SPACING * c.whole(from / STATION_SPACING + 1, m.lgbr / STATION_SPACING);
    laterals.push_back({double(c.whole(1, 2)), double(from), double(to), c.real(1, 10)});
  }
  set_rows(laterals, m.nlat, m.lat_type, m.lat_from, m.lat_to, m.lat_area);
  for (const int x : some_positions(c, 3, 0, m.lgbr, STATION_SPACING))
    stiffeners.push_back({double(x), c.real(3, 8), c.real(0.4, 1)});
  set_rows(stiffeners, m.nstiff, m.ws_pos, m.ws_b, m.ws_t);
}

// Stages in which each segment is wet or hard and loaded or not.
inline void add_stages(Chance& c, Model& m) {
  set_stages(m, some_segments(c, 3, m.lgbr), c.whole(1, 3));
  for (int k = 1; k <= m.nanal; ++k)
    for (int j = 1; j <= m.npour; ++j) {
      const bool hard = c.one_in(2);
      m.pour_e(k, j) = hard ? c.real(1500, 5000) : 0.1;
      m.pour_k(k, j) = hard ? c.real(20, 400) : 0.001;
      m.pour_load(k, j) = c.one_in(3) ? 0 : c.real(0.2, 5);
    }
  m.pour_load(m.nanal, 1) = c.real(0.2, 5);
}

inline Model random_model(std::uint64_t seed, int most_bays) {
  Chance c{seed};
  const int lgbr = BAY_LENGTH * c.whole(2, most_bays);
  Model m = c.one_in(2) ? one_girder(lgbr) : two_girders(lgbr);
  if (c.one_in(2)) m.rcurv = c.real(600, 9000);
  const double top = c.real(70, 110), flange = c.real(10, 24);
  m.secdim = {c.real(40, 100), top - c.real(0, 40), top, flange, 0, c.real(7, 11)};
  m.offset = m.ngird == 2 ? (top + flange) / 2 + c.real(10, 60) : 0;
  m.secdim.deck_width = 2 * (m.offset + (top + flange) / 2 + c.real(8, 48));
  set_webs(m, some_plates(c, lgbr, 0.4, 0.9));
  set_bottom(m, some_plates(c, lgbr, 0.4, 2));
  set_top(m, some_plates(c, lgbr, 0.75, 3));
  Positions supports = some_positions(c, 2, 0, lgbr, BAY_LENGTH);
  for (const int end : {0, lgbr})
    if (std::find(supports.begin(), supports.end(), end) == supports.end()) supports.push_back(end);
  set_supports(m, supports);  // the first row is pinned, wherever it stands
  TableRows studs;
  for (const int length : some_segments(c, 2, lgbr))
    studs.push_back({double(length), c.real(6, 24), double(c.whole(2, 4))});
  set_studs(m, studs);
  add_bracing(c, m);
  add_stages(c, m);
  m.selfwt = c.one_in(2);
  return m;
}

}  // namespace zelvo
