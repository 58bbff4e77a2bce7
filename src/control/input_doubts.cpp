#include "control/input_doubts.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>

#include "buckling/check.h"
#include "model/pattern.h"

namespace zelvo {

namespace {

constexpr int MOST_NUMBERED = 99;  // analyses that the fields of the result files can tell apart

void doubt(Input& in, Keyword k, int row, int line, const std::string& text) {
  add_warning(in.notes, line, place(KEYWORD_NAMES[k], row) + text);
}

// The weight of the plates is lumped row by row; half a row of the first segment is taken back at
// its end of the girder and half a row of the last one is added at the other, whatever their length.
void doubt_plates(Input& in, Keyword k, const PlateSegments& plates) {
  for (int i = 1; i <= plates.n; ++i) {
    if (plates.len(i) != 0) continue;
    const char* effect = "the segment has no effect";
    if (i == 1) effect = "the segment only takes half a row of its weight off the first end";
    if (i == plates.n) effect = "the segment only adds half a row of its weight at the last end";
    doubt(in, k, i, row_line(in, k, i), std::string("shorter than 24 inches: ") + effect);
  }
}

// A station between two segments belongs to the later one, so that a segment without a length keeps
// its station only if no other follows.
void doubt_empty_stud_rows(Input& in) {
  const Model& m = in.model;
  for (int i = 1; i <= m.nstudrow; ++i) {
    if (m.stud_len(i) != 0) continue;
    const char* effect = "the segment has no effect";
    if (i == m.nstudrow)
      effect = "the segment sets the studs of the last station only";
    else if (m.stud_count(i + 1) < 0)
      effect = "the segment only hands its number of studs on to the next row";
    doubt(in, STUDS, i, row_line(in, STUDS, i), std::string("shorter than 24 inches: ") + effect);
  }
}

// What segment j of the deck loads if it has no length: the rows of nodes at its two ends are one.
const char* load_of_empty_segment(const Model& m, int j) {
  if (m.ngird == 2 || m.load_pattern == 1) return ", half a foot of its load stands at its station";
  if (m.load_pattern == 2) return ", a foot of its load stands at its station";
  return m.load_pattern == 3 && j == 1 ? ", its load sets the end couples" : "";
}

void doubt_empty_pours(Input& in) {
  const Model& m = in.model;
  for (int j = 1; j <= m.npour; ++j)
    if (m.pour_len(j) == 0)
      doubt(in, POUR_SEQ, j, row_line(in, POUR_SEQ, j),
            std::string("shorter than 24 inches: no element has its modulus") +
                load_of_empty_segment(m, j) +
                (j == m.npour ? ", it sets the stud stiffness of the last station" : ""));
}

void doubt_lengths(Input& in) {
  const Model& m = in.model;
  if (m.lgbr == 0)
    return doubt(in, LGBR, 0, in.block[LGBR].line,
                 "shorter than 24 inches: one station and no shell elements");
  doubt_plates(in, WEBTHICK, web_segments(m));
  doubt_plates(in, BOTFTHICK, bottom_segments(m));
  doubt_plates(in, TFTHICK, top_segments(m));
  doubt_empty_stud_rows(in);
  doubt_empty_pours(in);
}

// A web element ends on a vertical director at the web top or foot and stands on the normal of the
// web elsewhere. With c = (bottom - top half width) / width of the web and the shape function N of
// the end node at the Gauss point next to it, N = (0.6 + sqrt(0.6)) / 2, the director there has the
// share 1 - N (1 + c) along the normal. With its change over the element and through the thickness
// t, the Jacobian of an element of half length h is not positive if
//   h (1 - N (1 + c)) <= t / (2 sqrt(3)) dN sqrt(1 - c^2),  dN = sqrt(0.6) + 1/2 = |N'|.
bool webs_fold(const Model& m) {
  double t = 0;
  for (int i = 1; i <= m.nweb; ++i)
    if (m.web_len(i) > 0) t = std::max(t, m.web_t(i));
  const SectionDimensions& s = m.secdim;
  const double out = (s.bottom_width - s.top_spacing) / 2, width = std::hypot(out, s.depth);
  const double c = out / width, h = width / GirderPattern::SPACINGS, g = std::sqrt(0.6);
  const double N = (g * g + g) / 2, dN = g + 0.5;
  return h * (1 - N * (1 + c)) <= t / (2 * std::sqrt(3.0)) * dN * std::sqrt(1 - c * c);
}

void doubt_section(Input& in) {
  const Model& m = in.model;
  const SectionDimensions& s = m.secdim;
  const double flanges =
      s.top_spacing / 2 + s.flange_width / 2;  // centre of a girder to its outer flange edge
  const int line = in.block[SECDIM].line;
  const double reach = (m.ngird == 2 ? m.offset : 0) + s.top_spacing / 2 + s.flange_width / 2;
  if (s.deck_width / 2 <= reach)
    doubt(in, SECDIM, 0, line,
          "the deck is not wider than the top flanges (" + number(s.deck_width) +
              "): the elements of its overhang fold, and the results mean nothing");
  if (webs_fold(m))
    doubt(in, SECDIM, 0, line,
          "the bottom flange is too wide for the distance of the web tops (" +
              number(s.bottom_width) +
              "): elements of the sloping webs fold, and the results mean nothing");
  if (s.flange_width >= s.top_spacing)
    doubt(in, SECDIM, 0, line,
          "the top flanges of a girder meet or overlap (" + number(s.flange_width) + " wide)");
  if (m.ngird == 2 && m.offset <= std::max(flanges, s.bottom_width / 2))
    doubt(in, OFFSET, 0, in.block[OFFSET].line > 0 ? in.block[OFFSET].line : in.last_line,
          "the two girders touch or overlap (" + number(m.offset) + ")");
  if (m.rcurv > 0 && m.lgbr / m.rcurv > std::numbers::pi / 2)
    doubt(in, RCURV, 0, in.block[RCURV].line,
          "the girder turns through more than a quarter circle (" + number(m.rcurv) + ")");
}

void doubt_supports(Input& in) {
  const Model& m = in.model;
  if (m.nsupp < 2)
    doubt(in, SUPPORT, 0, in.block[SUPPORT].line, "fewer than two supports leave a mechanism");
  std::set<int> taken;
  for (int i = 1; i <= m.nsupp; ++i)
    if (!taken.insert(m.supp_pos(i)).second)
      doubt(in, SUPPORT, i, row_line(in, SUPPORT, i),
            "another support stands at this station (" + std::to_string(m.supp_pos(i)) + ")");
}

void doubt_studs(Input& in) {
  const Model& m = in.model;
  int count = 0;
  bool some = false;
  for (int i = 1; i <= m.nstudrow; ++i) {
    if (m.stud_count(i) >= 0) count = m.stud_count(i);
    if (m.stud_count(i) < 0)
      doubt(in, STUDS, i, row_line(in, STUDS, i),
            "negative number of studs (" + std::to_string(m.stud_count(i)) +
                "): that of the row before is used");
    const bool stations = m.stud_len(i) > 0 || i == m.nstudrow;
    some = some || (stations && count > 0 && m.stud_spacing(i) > 0);
  }
  if (!some && m.nstudrow > 0)
    doubt(in, STUDS, 0, in.block[STUDS].line,
          "no studs anywhere: next to nothing holds the deck along and across the girders");
}

void doubt_sizes(Input& in) {
  const Model& m = in.model;
  const auto zero = [&](Keyword k, const char* name, const Vector<double>& values) {
    for (int i = 1; i <= values.size(); ++i)
      if (values(i) == 0)
        doubt(in, k, i, row_line(in, k, i), std::string(name) + " is 0: it adds no stiffness");
  };
  zero(INTERNAL_BRACE, "area", m.ib_area);
  zero(EXTERNAL_BRACE, "area", m.eb_area);
  zero(TOP_LATERAL, "area", m.lat_area);
  zero(WEB_STIFFENER, "width", m.ws_b);
  zero(WEB_STIFFENER, "thickness", m.ws_t);
}

void doubt_stages(Input& in) {
  const Model& m = in.model;
  if (m.nanal == 0)
    doubt(in, POUR_SEQ, 0, in.block[POUR_SEQ].line, "no analyses: the run ends with the model");
  if (m.nanal > MOST_NUMBERED)
    doubt(in, POUR_SEQ, 0, in.block[POUR_SEQ].line,
          "analyses beyond " + std::to_string(MOST_NUMBERED) + " have no number in some files (" +
              std::to_string(m.nanal) + "): asterisks stand in its place");
  int no_modulus = 0, loaded = 0;  // first row of each
  for (int k = 1; k <= m.nanal; ++k) {
    for (int j = 1; j <= m.npour; ++j) {
      const int row = m.npour * k + j;
      if (no_modulus == 0 && m.pour_e(k, j) == 0 && m.pour_len(j) > 0) no_modulus = row;
      if (loaded == 0 && m.pour_load(k, j) != 0) loaded = row;
    }
  }
  if (no_modulus > 0)
    doubt(in, POUR_SEQ, no_modulus, row_line(in, POUR_SEQ, no_modulus),
          "deck modulus is 0: the matrix becomes singular, wet concrete wants a small number");
  const bool reads_loads = m.load_pattern >= 1 && m.load_pattern <= 3;
  if (loaded > 0 && m.ngird == 1 && !reads_loads)
    doubt(in, POUR_SEQ, loaded, row_line(in, POUR_SEQ, loaded),
          "loads are not applied: load pattern " + std::to_string(m.load_pattern) +
              " of the buckle record reads none, 1 loads the top flanges");
  if (m.ngird == 2 && m.load_pattern != 0 && m.load_pattern != 1)
    doubt(in, BUCKLE, 0, in.block[BUCKLE].line,
          "the load pattern is not read with two girders (" + std::to_string(m.load_pattern) +
              "), loads go to the top flanges");
}

void doubt_buckling(Input& in) {
  const Model& m = in.model;
  if (m.buckle && m.nev >= LANCZOS_VECTORS)
    doubt(in, BUCKLE, 0, in.block[BUCKLE].line,
          "the iteration fails with " + std::to_string(LANCZOS_VECTORS) + " modes or more (" +
              std::to_string(m.nev) + ")");
  if (m.buckle && m.nev == LANCZOS_VECTORS - 1)
    doubt(in, BUCKLE, 0, in.block[BUCKLE].line,
          "the last of " + std::to_string(m.nev) +
              " modes hardly converges, and kind 1 then makes "
              "the first factor infinite, " +
              std::to_string(m.nev - 1) + " or fewer are safe");
  if (m.buckle && m.solver_type == 2 && m.sigma == 0)
    doubt(in, SOLVER, 0, in.block[SOLVER].line,
          "the shift of kind 2 is 0: all factors become 0, and with them all results; half of the "
          "first factor is a good shift, and kind 1 needs none");
  if (!m.buckle && (m.solver_type < 0 || m.solver_type > 2))
    doubt(in, SOLVER, 0, in.block[SOLVER].line,
          "solver type is none that exists (" + std::to_string(m.solver_type) +
              "), 1 and 2 are; it is not used");
  if (m.buckle && m.solver_type != 0 && !(m.tol > 0))
    doubt(in, SOLVER, 0, in.block[SOLVER].line,
          "tolerance is not positive (" + number(m.tol) + "): the machine precision is used");
}

// No doubts by themselves, but of use beside others.
void list_moved_values(Input& in) {
  if (in.notes.warnings.empty() || in.moved.empty()) return;
  add_warning(in.notes, 0,
              "positions and lengths that are cut to the grid, one line for each below: " +
                  std::to_string(in.moved.size()));
  for (const MovedValue& v : in.moved)
    doubt(in, v.keyword, v.row, v.line,
          std::string(v.name) + " " + std::to_string(v.typed) + " is " + std::to_string(v.cut) +
              " on the grid");
}

}  // namespace

void doubt_input(Input& in) {
  doubt_lengths(in);
  doubt_section(in);
  doubt_supports(in);
  doubt_sizes(in);
  doubt_studs(in);
  doubt_stages(in);
  doubt_buckling(in);
  list_moved_values(in);
}

}  // namespace zelvo
