// Small valid bridges for the tests. A test starts from one_girder() or two_girders() and adds what
// it needs; every list of segments covers the girder from the start.
#pragma once
#include <algorithm>
#include <vector>

#include "model/structure.h"

namespace zelvo {

using Positions = std::vector<int>;
using TableRows = std::vector<std::vector<double>>;

// A table by its rows, as an input file gives it.
template <class T>
void set_column(Vector<T>& column, const TableRows& rows, std::size_t c) {
  column = Vector<T>(static_cast<std::int64_t>(rows.size()));
  T* to = column.begin();
  for (const auto& row : rows) *to++ = static_cast<T>(row[c]);
}
template <class... T>
void set_rows(const TableRows& rows, int& n, Vector<T>&... columns) {
  n = static_cast<int>(rows.size());
  std::size_t c = 0;
  (set_column(columns, rows, c++), ...);
}

// A row for each position, with the same values behind it.
inline TableRows rows_at(const Positions& positions, const std::vector<double>& values) {
  TableRows rows;
  for (const int x : positions) {
    rows.push_back({double(x)});
    rows.back().insert(rows.back().end(), values.begin(), values.end());
  }
  return rows;
}

// One construction stage over the whole girder: deck modulus, stiffness per stud, load in kip/ft.
// The default deck is as good as absent: bare steel.
inline void set_stages(Model& m, const Positions& lengths, int nanal, double e = 0.1,
                       double k = 0.0001, double load = 3.0) {
  set_rows(rows_at(lengths, {}), m.npour, m.pour_len);
  m.nanal = nanal;
  m.pour_e = m.pour_k = m.pour_load = Matrix<double>(nanal, m.npour);
  std::fill_n(m.pour_e.data(), nanal * m.npour, e);
  std::fill_n(m.pour_k.data(), nanal * m.npour, k);
  std::fill_n(m.pour_load.data(), nanal * m.npour, load);
}

inline void set_webs(Model& m, const TableRows& rows) {
  set_rows(rows, m.nweb, m.web_len, m.web_t);
}
inline void set_bottom(Model& m, const TableRows& rows) {
  set_rows(rows, m.nbotf, m.botf_len, m.botf_t);
}
inline void set_top(Model& m, const TableRows& rows) {
  set_rows(rows, m.ntopf, m.topf_len, m.topf_t);
}
inline void set_studs(Model& m, const TableRows& rows) {
  set_rows(rows, m.nstudrow, m.stud_len, m.stud_spacing, m.stud_count);
}
inline void set_supports(Model& m, const Positions& positions) {
  set_rows(rows_at(positions, {}), m.nsupp, m.supp_pos);
}
// Bars of 5 in^2 where no area is given; stiffeners of 6 by 0.5 in.
inline void add_ibraces(Model& m, const Positions& positions, double type = 1) {
  set_rows(rows_at(positions, {type, 5}), m.nibrace, m.ib_pos, m.ib_type, m.ib_area);
}
inline void add_ebraces(Model& m, const Positions& positions, double type = 1, double area = 5) {
  set_rows(rows_at(positions, {type, area}), m.nebrace, m.eb_pos, m.eb_type, m.eb_area);
}
inline void add_stiffeners(Model& m, const Positions& positions) {
  set_rows(rows_at(positions, {6, 0.5}), m.nstiff, m.ws_pos, m.ws_b, m.ws_t);
}
// Rows of direction and the positions of the ends.
inline void add_laterals(Model& m, TableRows rows) {
  for (auto& row : rows) row.push_back(5);
  set_rows(rows, m.nlat, m.lat_type, m.lat_from, m.lat_to, m.lat_area);
}

// Internal braces every step inches, the ends left out, and with Laterals::CROSSED both
// diagonals in every panel, rows 2p-1 (type 1) and 2p (type 2).
enum class Laterals { NONE, CROSSED };
inline void brace_every(Model& m, int step, Laterals laterals = Laterals::NONE) {
  Positions frames;
  TableRows diagonals;
  for (int x = 0; x < m.lgbr; x += step) {
    if (x > 0) frames.push_back(x);
    for (const double type : {1, 2}) diagonals.push_back({type, double(x), double(x + step)});
  }
  add_ibraces(m, frames);
  if (laterals == Laterals::CROSSED) add_laterals(m, diagonals);
}

// A simple span of one girder: 60 deep, 72 and 84 wide, flanges of 12, deck 144 x 8; web 0.5,
// bottom 1.0, top 1.5; one stud to a link; one bare steel stage of 3 kip/ft on the top flanges.
inline Model one_girder(int lgbr, double rcurv = 0) {
  const double L = lgbr;
  Model m;
  m.ngird = 1;
  m.lgbr = lgbr;
  m.rcurv = rcurv;
  m.secdim = {60, 72, 84, 12, 144, 8};
  set_webs(m, {{L, 0.5}});
  set_bottom(m, {{L, 1.0}});
  set_top(m, {{L, 1.5}});
  set_supports(m, {0, lgbr});
  set_studs(m, {{L, 12, 3}});
  set_stages(m, {lgbr}, 1);
  m.load_pattern = 1;
  return m;
}

// The same two times, centrelines 2 x 90 apart under a deck of 324.
inline Model two_girders(int lgbr, double rcurv = 0) {
  Model m = one_girder(lgbr, rcurv);
  m.ngird = 2;
  m.offset = 90;
  m.secdim.deck_width = 324;
  return m;
}

// one_girder with a frame every 120 in.
inline Model braced_span(int lgbr, Laterals laterals = Laterals::NONE) {
  Model m = one_girder(lgbr);
  brace_every(m, 120, laterals);
  return m;
}

// Zero matrix over the pattern of a structure.
inline SymmetricMatrix matrix_of(const Structure& s) {
  return zero_matrix(std::make_shared<const MatrixPattern>(
                         build_pattern(s.nodes.nnode, element_nodes(s.elements))),
                     "a test");
}

}  // namespace zelvo
