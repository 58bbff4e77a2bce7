#include "control/input_check.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace zelvo {

namespace {

// The fault "keyword row R: what (value), must be allowed".
void fault(Input& in, Keyword k, int row, int line, const std::string& what,
           const std::string& value, const std::string& allowed) {
  add_fault(in.notes, line,
            place(KEYWORD_NAMES[k], row) + what + " (" + value + "), must be " + allowed);
}

bool good_row(const Input& in, Keyword k, int row) {
  return in.block[k].rows[static_cast<std::size_t>(row - 1)].good;
}

// All single values of the keyword were read.
bool good_heads(const Input& in, Keyword k) {
  const auto& heads = in.block[k].heads;
  return in.block[k].line > 0 && !heads.empty() &&
         std::all_of(heads.begin(), heads.end(), [](const RecordPlace& p) { return p.good; });
}
int head_line(const Input& in, Keyword k) { return in.block[k].heads.front().line; }

enum class Range { POSITIVE, NOT_NEGATIVE };

// What a value may be, beside 0, by many orders of magnitude beyond any bridge: numbers outside
// would end in results that are none.
struct Bounds {
  double least, most;
  const char* unit;
};
constexpr Bounds DIMENSION{1e-6, 1e6, " in"}, RADIUS{1e-6, 1e9, " in"}, AREA{1e-20, 1e6, " in2"},
    MODULUS{1e-20, 1e9, " ksi"}, STUD_STIFFNESS{1e-20, 1e12, " kip/in"}, STUD_COUNT{1, 1e6, ""};
constexpr double MOST_SHIFT = 1e12;  // a load factor

void check_value(Input& in, Keyword k, int row, int line, const std::string& name, double value,
                 Range range, const Bounds& bounds) {
  const auto wrong = [&](const std::string& what, const std::string& allowed) {
    fault(in, k, row, line, name + what, number(value), allowed);
  };
  if (range == Range::POSITIVE && !(value > 0)) return wrong(" is not positive", "above 0");
  if (value < 0) return wrong(" is negative", "0 or more");
  if (value != 0 && (value < bounds.least || value > bounds.most))
    wrong(" is beyond any bridge", number(bounds.least) + " to " + number(bounds.most) +
                                       bounds.unit +
                                       (range == Range::NOT_NEGATIVE ? ", or 0" : ""));
}

// A position or length of that line as the file gives it, before the cut to the grid.
int as_typed(const Input& in, int line, std::string_view name, int value) {
  const MovedValue* moved = moved_value(in, line, name);
  return moved == nullptr ? value : moved->typed;
}

// The length of the girder can be judged by.
bool length_known(const Input& in) {
  return good_heads(in, LGBR) && as_typed(in, head_line(in, LGBR), "length", in.model.lgbr) >= 0;
}

// A position or length for a message: "984", or "999, cut to 984".
std::string grid_value(const Input& in, int line, std::string_view name, int value) {
  const MovedValue* moved = moved_value(in, line, name);
  const std::string cut = std::to_string(value);
  return moved == nullptr ? cut : std::to_string(moved->typed) + ", cut to " + cut;
}

// Values of a table. Those of a segment without a length, if lengths are given, are not used.
void check_column(Input& in, Keyword k, const std::string& name, const Vector<double>& values,
                  Range range, const Bounds& bounds, const Vector<int>* lengths = nullptr) {
  for (int i = 1; i <= values.size(); ++i) {
    if (!good_row(in, k, i) || (lengths != nullptr && (*lengths)(i) == 0)) continue;
    check_value(in, k, i, row_line(in, k, i), name, values(i), range, bounds);
  }
}

void check_positions(Input& in, Keyword k, const std::string& name, const Vector<int>& positions) {
  if (!length_known(in)) return;
  for (int i = 1; i <= positions.size(); ++i) {
    if (!good_row(in, k, i)) continue;
    const int line = row_line(in, k, i);
    if (as_typed(in, line, name, positions(i)) < 0 || positions(i) > in.model.lgbr)
      fault(in, k, i, line, name + " is outside the girder",
            grid_value(in, line, name, positions(i)), "0 to " + std::to_string(in.model.lgbr));
  }
}

// A list of consecutive segments, lengths being its first rows.
void check_cover(Input& in, Keyword k, const Vector<int>& lengths) {
  if (!in.block[k].complete) return;
  std::int64_t sum = 0, typed = 0;
  bool sound = length_known(in);
  for (int i = 1; i <= lengths.size(); ++i) {
    const int line = row_line(in, k, i);
    const int length = as_typed(in, line, "length", lengths(i));
    sound = sound && good_row(in, k, i);
    sum += lengths(i);
    typed += length;
    if (length >= 0) continue;
    fault(in, k, i, line, "length is negative", grid_value(in, line, "length", lengths(i)),
          "0 or more");
    sound = false;
  }
  if (!sound || sum == in.model.lgbr) return;
  const std::string as_typed = typed == sum ? "" : std::to_string(typed) + " as typed, ";
  fault(in, k, 0, in.block[k].line, "segment lengths do not add up to the girder length",
        as_typed + std::to_string(sum) + " in multiples of 24",
        std::to_string(in.model.lgbr) + " as lgbr");
}

void check_count(Input& in, Keyword k, const std::string& name, std::size_t head, int count,
                 int least) {
  if (in.block[k].complete && count < least)
    fault(in, k, 0, in.block[k].heads[head].line, name + " is too small", std::to_string(count),
          std::to_string(least) + " or more");
}

// A file that breaks off may lack any.
void check_keywords(Input& in) {
  if (!in.ended) return;
  for (const Keyword k :
       {NGIRD, LGBR, SECDIM, WEBTHICK, BOTFTHICK, TFTHICK, SUPPORT, STUDS, POUR_SEQ})
    if (in.block[k].line == 0)
      add_fault(in.notes, in.last_line,
                place(KEYWORD_NAMES[k], 0) + "the keyword is missing, must be given");
}

void check_section(Input& in) {
  if (!good_heads(in, SECDIM)) return;
  const SectionDimensions& s = in.model.secdim;
  const struct {
    const char* name;
    double value;
  } dimensions[] = {{"depth", s.depth},
                    {"bottom flange width", s.bottom_width},
                    {"distance of the web tops", s.top_spacing},
                    {"top flange width", s.flange_width},
                    {"deck width", s.deck_width},
                    {"deck thickness", s.deck_thickness}};
  for (const auto& [name, value] : dimensions)
    check_value(in, SECDIM, 0, head_line(in, SECDIM), name, value, Range::POSITIVE, DIMENSION);
}

// Largest distance of a node from the reference line, across the section.
double half_width(const Model& m) {
  const SectionDimensions& s = m.secdim;
  const double girder = std::max(s.top_spacing / 2 + s.flange_width / 2, s.bottom_width / 2);
  return std::max(s.deck_width / 2, m.ngird == 2 ? m.offset + girder : girder);
}

void check_radius(Input& in) {
  const Model& m = in.model;
  if (!good_heads(in, RCURV) || m.rcurv == 0) return;
  if (m.rcurv > RADIUS.most)
    return fault(in, RCURV, 0, head_line(in, RCURV), "radius is beyond any bridge", number(m.rcurv),
                 "at most " + number(RADIUS.most) + " in, or 0 for straight");
  if (m.rcurv < 0)
    return fault(in, RCURV, 0, head_line(in, RCURV), "radius is negative", number(m.rcurv),
                 "0 for a straight girder, or positive");
  const bool width_known = good_heads(in, SECDIM) && good_heads(in, NGIRD) &&
                           (in.block[OFFSET].line == 0 || good_heads(in, OFFSET));
  if (width_known && m.rcurv <= half_width(m))
    fault(in, RCURV, 0, head_line(in, RCURV), "radius is too small", number(m.rcurv),
          "more than the half width of the structure, " + number(half_width(m)));
}

// Frames stand between the girders at every support: their corners have to be apart.
void check_offset(Input& in) {
  const Model& m = in.model;
  const bool given = in.block[OFFSET].line > 0;
  if (m.ngird != 2 || (given && !good_heads(in, OFFSET))) return;
  const int line = given ? head_line(in, OFFSET) : in.last_line;
  check_value(in, OFFSET, 0, line, "offset", m.offset, Range::NOT_NEGATIVE, DIMENSION);
  if (m.offset < 0) return;
  if (!good_heads(in, SECDIM)) return;
  if (2 * m.offset == m.secdim.top_spacing)
    fault(in, OFFSET, 0, line, "web tops of the two girders coincide", number(m.offset),
          "other than half the distance of the web tops");
  if (2 * m.offset == m.secdim.bottom_width)
    fault(in, OFFSET, 0, line, "bottom flange corners of the two girders coincide",
          number(m.offset), "other than half the bottom flange width");
}

void check_scalars(Input& in) {
  const Model& m = in.model;
  if (good_heads(in, NGIRD) && m.ngird != 1 && m.ngird != 2)
    fault(in, NGIRD, 0, head_line(in, NGIRD), "no model has so many girders",
          std::to_string(m.ngird), "1 or 2");
  if (good_heads(in, LGBR) && as_typed(in, head_line(in, LGBR), "length", m.lgbr) < 0)
    fault(in, LGBR, 0, head_line(in, LGBR), "length is negative",
          grid_value(in, head_line(in, LGBR), "length", m.lgbr), "0 or more");
  check_section(in);
  check_offset(in);
  check_radius(in);
}

void check_plates(Input& in, Keyword k, const PlateSegments& plates) {
  check_count(in, k, "number of segments", 0, plates.n, 1);
  if (plates.n >= 1) check_cover(in, k, plates.len);
  check_column(in, k, "thickness", plates.t, Range::POSITIVE, DIMENSION, &plates.len);
}

void check_laterals(Input& in) {
  const Model& m = in.model;
  for (int i = 1; i <= m.lat_type.size(); ++i)
    if (good_row(in, TOP_LATERAL, i) && m.lat_type(i) != 1 && m.lat_type(i) != 2)
      fault(in, TOP_LATERAL, i, row_line(in, TOP_LATERAL, i), "type is none that exists",
            std::to_string(m.lat_type(i)), "1 or 2");
  check_positions(in, TOP_LATERAL, "first position", m.lat_from);
  check_positions(in, TOP_LATERAL, "second position", m.lat_to);
  check_column(in, TOP_LATERAL, "area", m.lat_area, Range::NOT_NEGATIVE, AREA);
}

void check_attachments(Input& in) {
  const Model& m = in.model;
  check_positions(in, INTERNAL_BRACE, "position", m.ib_pos);
  check_column(in, INTERNAL_BRACE, "area", m.ib_area, Range::NOT_NEGATIVE, AREA);
  if (m.nebrace > 0 && m.ngird == 1)
    fault(in, EXTERNAL_BRACE, 0, in.block[EXTERNAL_BRACE].line, "one girder has no external braces",
          std::to_string(m.nebrace) + " rows", "left out, or 0 rows");
  check_positions(in, EXTERNAL_BRACE, "position", m.eb_pos);
  check_column(in, EXTERNAL_BRACE, "area", m.eb_area, Range::NOT_NEGATIVE, AREA);
  check_laterals(in);
  // Without the buckling check a stiffener of no area adds nothing; with it, its torsion constant
  // over its area has no value.
  const Range range = m.buckle ? Range::POSITIVE : Range::NOT_NEGATIVE;
  check_positions(in, WEB_STIFFENER, "position", m.ws_pos);
  check_column(in, WEB_STIFFENER, "width", m.ws_b, range, DIMENSION);
  check_column(in, WEB_STIFFENER, "thickness", m.ws_t, range, DIMENSION);
  check_count(in, SUPPORT, "number of supports", 0, m.nsupp, 0);
  check_positions(in, SUPPORT, "position", m.supp_pos);
}

// The last row counts even without a length: it sets the studs of the last station.
void check_studs(Input& in) {
  const Model& m = in.model;
  check_count(in, STUDS, "number of rows", 0, m.nstudrow, 0);
  if (m.nstudrow >= 0) check_cover(in, STUDS, m.stud_len);
  const int rows = static_cast<int>(m.stud_len.size());
  bool count_known = false;  // a negative number of studs repeats the row before
  for (int i = 1; i <= rows; ++i) {
    const int line = row_line(in, STUDS, i);
    count_known = count_known || !good_row(in, STUDS, i) || m.stud_count(i) >= 0;
    if (!good_row(in, STUDS, i) || (m.stud_len(i) == 0 && i < rows)) continue;
    check_value(in, STUDS, i, line, "spacing", m.stud_spacing(i), Range::NOT_NEGATIVE, DIMENSION);
    if (m.stud_count(i) > 0)
      check_value(in, STUDS, i, line, "number of studs across", m.stud_count(i),
                  Range::NOT_NEGATIVE, STUD_COUNT);
    if (count_known) continue;
    fault(in, STUDS, i, line, "number of studs across is negative", std::to_string(m.stud_count(i)),
          "0 or more in the first row");
    count_known = true;
  }
}

// A segment without a length has no modulus; the last one sets the studs of the last station.
void check_pour_sequence(Input& in) {
  const Model& m = in.model;
  check_count(in, POUR_SEQ, "number of segments", 1, m.npour, 1);
  if (m.npour >= 1) check_cover(in, POUR_SEQ, m.pour_len);
  if (!in.block[POUR_SEQ].complete) return;
  for (int k = 1; k <= m.pour_e.rows(); ++k) {
    for (int j = 1; j <= m.npour; ++j) {
      const int row = m.npour * k + j;
      const bool empty = m.pour_len(j) == 0;
      if (!good_row(in, POUR_SEQ, row) || (empty && j < m.npour)) continue;
      const std::string stage =
          " of analysis " + std::to_string(k) + " segment " + std::to_string(j);
      const int line = row_line(in, POUR_SEQ, row);
      if (!empty)
        check_value(in, POUR_SEQ, row, line, "deck modulus" + stage, m.pour_e(k, j),
                    Range::NOT_NEGATIVE, MODULUS);
      check_value(in, POUR_SEQ, row, line, "stud stiffness" + stage, m.pour_k(k, j),
                  Range::NOT_NEGATIVE, STUD_STIFFNESS);
    }
  }
}

// Without the buckling check none of its settings is used.
void check_buckling(Input& in) {
  const Model& m = in.model;
  if (!m.buckle) return;
  if (good_heads(in, BUCKLE) && m.nev < 1)
    fault(in, BUCKLE, 0, in.block[BUCKLE].heads.back().line, "number of modes is too small",
          std::to_string(m.nev), "1 or more");
  if (good_heads(in, SOLVER) && (m.solver_type < 0 || m.solver_type > 2))
    fault(in, SOLVER, 0, head_line(in, SOLVER), "solver type is none that exists",
          std::to_string(m.solver_type), "1 or 2, or 0 for the default");
  if (good_heads(in, SOLVER) && m.solver_type == 2 && std::abs(m.sigma) > MOST_SHIFT)
    fault(in, SOLVER, 0, in.block[SOLVER].heads.back().line, "shift is beyond any load factor",
          number(m.sigma), "at most " + number(MOST_SHIFT) + " in size");
}

}  // namespace

void check_input(Input& in) {
  check_keywords(in);
  check_scalars(in);
  check_plates(in, WEBTHICK, web_segments(in.model));
  check_plates(in, BOTFTHICK, bottom_segments(in.model));
  check_plates(in, TFTHICK, top_segments(in.model));
  check_attachments(in);
  check_studs(in);
  check_pour_sequence(in);
  check_buckling(in);
}

}  // namespace zelvo
