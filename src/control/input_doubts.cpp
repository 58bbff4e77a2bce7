#include <algorithm>
#include <numbers>
#include <set>

#include "buckling/check.h"
#include "control/input_check.h"
#include "model/pattern.h"

namespace zelvo {

namespace {

void doubt(Input& in, Keyword k, int row, int line, const std::string& text) {
  add_warning(in.notes, line, place(KEYWORD_NAMES[k], row) + text);
}

int row_line(const Input& in, Keyword k, int row) {
  return in.block[k].rows[static_cast<std::size_t>(row - 1)].line;
}

void doubt_lengths(Input& in) {
  const Model& m = in.model;
  if (m.lgbr == 0)
    doubt(in, LGBR, 0, in.block[LGBR].line,
          "shorter than 24 inches: one station and no shell elements");
  const auto zero_length = [&](Keyword k, const Vector<int>& lengths) {
    for (int i = 1; i <= lengths.size(); ++i)
      if (lengths(i) == 0 && m.lgbr > 0)
        doubt(in, k, i, row_line(in, k, i), "shorter than 24 inches: the segment has no effect");
  };
  zero_length(WEBTHICK, m.web_len);
  zero_length(BOTFTHICK, m.botf_len);
  zero_length(TFTHICK, m.topf_len);
  zero_length(STUDS, m.stud_len);
  zero_length(POUR_SEQ, m.pour_len);
}

void doubt_section(Input& in) {
  const Model& m = in.model;
  const SectionDimensions& s = m.secdim;
  const double flanges =
      s.top_spacing / 2 + s.flange_width / 2;  // centre of a girder to its outer flange edge
  const int line = in.block[SECDIM].line;
  if (s.deck_width / 2 < (m.ngird == 2 ? m.offset + flanges : flanges))
    doubt(in, SECDIM, 0, line,
          "the deck is narrower than the top flanges (" + number(s.deck_width) + ")");
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
    some = some || (count > 0 && m.stud_spacing(i) > 0);
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
  int no_modulus = 0, loaded = 0;  // first row of each
  for (int k = 1; k <= m.nanal; ++k) {
    for (int j = 1; j <= m.npour; ++j) {
      const int row = m.npour * k + j;
      if (no_modulus == 0 && m.pour_e(k, j) == 0) no_modulus = row;
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
  if (!m.buckle && (m.solver_type < 0 || m.solver_type > 2))
    doubt(in, SOLVER, 0, in.block[SOLVER].line,
          "solver type is none that exists (" + std::to_string(m.solver_type) +
              "), 1 and 2 are; it is not used");
  if (m.buckle && m.solver_type != 0 && !(m.tol > 0))
    doubt(in, SOLVER, 0, in.block[SOLVER].line,
          "tolerance is not positive (" + number(m.tol) + "): the machine precision is used");
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
}

}  // namespace zelvo
