#include <algorithm>
#include <cmath>
#include <map>

#include "construction/camber.h"
#include "desk/raw_lines.h"
#include "desk/rules.h"

namespace zelvo {

namespace {

constexpr std::array<Slip, 5> LENGTH_SLIPS{IN_FEET, IN_MM, IN_METRES, POINT_LEFT, POINT_RIGHT};
constexpr Usual DEPTH{"depth", "in", 24, 180, LENGTH_SLIPS};
constexpr Usual BOTTOM_WIDTH{"bottom flange width", "in", 18, 180, LENGTH_SLIPS};
constexpr Usual TOP_SPACING{"distance of the web tops", "in", 24, 240, LENGTH_SLIPS};
constexpr Usual FLANGE_WIDTH{"top flange width", "in", 8, 48, LENGTH_SLIPS};
constexpr Usual DECK_THICKNESS{"deck thickness", "in", 5, 15, LENGTH_SLIPS};
constexpr Usual PLATE{"thickness", "in", 0.25, 4, {IN_MM, POINT_LEFT, POINT_RIGHT, IN_FEET}};
constexpr Usual STUD_SPACING{"spacing", "in", 4, 48, {IN_FEET, IN_MM, POINT_LEFT, POINT_RIGHT}};
constexpr double DECK_OVERHANG[] = {12, 96};  // inches, outer web top to the edge of the deck
constexpr double CLEAR_DISTANCE[] = {24,
                                     240};  // inches, between the webs of two girders, at the top
constexpr double STEEPEST_WEB = 0.5;        // across over down; 1 to 4 is common
constexpr double THICKNESS_STEP = 3;        // of neighbouring plates
constexpr double TOP_SLENDERNESS = 15;      // b/2t; 12 in AASHTO (2020), 6.10.2.2
constexpr double BOTTOM_SLENDERNESS = 200;  // b/t
constexpr double WEB_SLENDERNESS = 250;     // D/t; 150 without longitudinal stiffeners
constexpr double SPAN_DEPTH[] = {10, 40};
constexpr double SPAN_STEP = 3;                // of neighbouring spans
constexpr double SPAN_TURN[] = {0.035, 0.75};  // radians, of the longest span
constexpr int MOST_STUDS = 8;
constexpr double WEB_OVER_BOTTOM = 1.5;  // thickness; webs are mostly the thinner plates
constexpr double PIER_STEP = 1.7;        // of a plate over one inner support and another
constexpr double PIER_PLATE = 0.8;       // of a plate over an inner support and amid a span
constexpr double LEAST_BEARINGS = 12;    // inches between two bearings of a girder

double edge_distance(const Model& m, double offset) {
  return m.secdim.deck_width / 2 - offset - m.secdim.top_spacing / 2;
}
double clear_distance(const Model& m, double offset) { return 2 * offset - m.secdim.top_spacing; }

// What makes the distances across the bridge usual: half of the offset, or 12 times.
std::string offset_hint(const Model& m) {
  const auto fits = [&](double offset) {
    return inside(edge_distance(m, offset), DECK_OVERHANG) &&
           inside(clear_distance(m, offset), CLEAR_DISTANCE);
  };
  if (fits(m.offset / 2)) return ": the whole distance of the girders instead of half of it?";
  if (fits(m.offset * 2))
    return ": a quarter of the distance of the girders instead of half of it?";
  if (fits(m.offset * 12)) return ": in feet?";
  if (fits(m.offset + m.secdim.top_spacing / 2)) return ": to the inner web instead of the centre?";
  return "";
}

void check_across(Checked& c) {
  const Model& m = c.job.input.model;
  const SectionDimensions& s = m.secdim;
  if (m.ngird == 1 && m.offset != 0)
    warn(c, NGIRD, 0, "offset is given, but there is one girder: it is not used; 2 girders?");
  if (m.ngird == 2 && c.job.input.block[OFFSET].line == 0)
    warn(c, NGIRD, 0, "there are two girders, but offset, half their distance, is not given");
  const double offset = m.ngird == 2 ? m.offset : 0, edge = edge_distance(m, offset);
  if (m.ngird == 2 && m.offset > 0 && !inside(clear_distance(m, offset), CLEAR_DISTANCE))
    warn(c, OFFSET, 0, "clear distance of the two girders between their web tops (",
         rounded(clear_distance(m, offset)),
         " in, offset " + plain(offset) + ") is outside the usual 24 to 240" + offset_hint(m));
  if (inside(edge, DECK_OVERHANG)) return;
  std::string hint = m.ngird == 2 ? offset_hint(m) : "";
  const bool half = m.ngird == 2 && inside(edge + s.deck_width / 2, DECK_OVERHANG);
  if (half) hint = ": the deck of one girder instead of the whole?";
  const Keyword blamed = hint.empty() || half ? SECDIM : OFFSET;
  if (hint.empty() && inside(edge + 5.5 * s.deck_width, DECK_OVERHANG))
    hint = ": deck width in feet?";
  if (hint.empty() && m.ngird == 1 && edge > DECK_OVERHANG[1])
    hint = ": two girders, or a wrong deck width?";
  warn(c, blamed, 0, "overhang of the deck beyond the outer web top (", rounded(edge),
       " in) is outside the usual 12 to 96" + hint);
}

void check_section(Checked& c) {
  const Model& m = c.job.input.model;
  const SectionDimensions& s = m.secdim;
  bool usual = true;
  for (const auto& [range, value] :
       {std::pair(DEPTH, s.depth), std::pair(BOTTOM_WIDTH, s.bottom_width),
        std::pair(TOP_SPACING, s.top_spacing), std::pair(FLANGE_WIDTH, s.flange_width),
        std::pair(DECK_THICKNESS, s.deck_thickness)})
    usual = expect(c, SECDIM, 0, range, value) && usual;
  if (!usual) return;
  const double slope = (s.top_spacing - s.bottom_width) / 2 / s.depth;
  if (slope < 0)
    warn(c, SECDIM, 0, "the bottom flange is wider than the distance of the web tops (",
         plain(s.bottom_width), " over " + plain(s.top_spacing) + "): swapped?");
  if (slope > STEEPEST_WEB)
    warn(c, SECDIM, 0, "the webs lean outward by ", rounded(slope),
         " to 1, up to 0.5 is usual (0.25 is common): columns swapped?");
  if (usable(c, {NGIRD, OFFSET})) check_across(c);
}

// One of the three thickness tables; width in inches is what slenderness is formed with.
void check_plates(Checked& c, Keyword k, const PlateSegments& plates, const char* what,
                  double width, double slenderness) {
  double before = 0;
  for (int i = 1; i <= plates.n; ++i) {
    if (plates.len(i) == 0) continue;
    const double t = plates.t(i);
    const bool usual = expect(c, k, i, PLATE, t);
    if (usual && width > slenderness * t)
      warn(c, k, i, std::string(what) + " is ", rounded(width / t),
           ", up to " + plain(slenderness) + " is usual: the thickness?");
    if (usual && before > 0 && std::max(t / before, before / t) > THICKNESS_STEP)
      warn(c, k, i, "thickness changes from ", plain(before) + " to " + plain(t),
           " in, by more than 3 times");
    before = usual ? t : 0;
  }
}

void check_all_plates(Checked& c) {
  const Model& m = c.job.input.model;
  const SectionDimensions& s = m.secdim;
  const bool known = usable(c, {SECDIM});
  if (usable(c, {WEBTHICK}))
    check_plates(c, WEBTHICK, web_segments(m), "depth over thickness", known ? s.depth : 0,
                 WEB_SLENDERNESS);
  if (usable(c, {BOTFTHICK}))
    check_plates(c, BOTFTHICK, bottom_segments(m), "width over thickness",
                 known ? s.bottom_width : 0, BOTTOM_SLENDERNESS);
  if (usable(c, {TFTHICK}))
    check_plates(c, TFTHICK, top_segments(m), "half the width over thickness",
                 known ? s.flange_width / 2 : 0, TOP_SLENDERNESS);
}

// Row of a table at a position, 0 if there is none, and its thickness.
int plate_at(const PlateSegments& plates, double position) {
  double end = 0;
  for (int i = 1; i <= plates.n; ++i)
    if ((end += plates.len(i)) > position) return i;
  return 0;
}
double thickness_at(const PlateSegments& plates, double position) {
  const int row = plate_at(plates, position);
  return row > 0 && plates.t(row) <= PLATE.high ? plates.t(row) : 0;
}

// Webs thicker than the bottom flange are the plates of another table.
void check_tables(Checked& c) {
  const Model& m = c.job.input.model;
  const PlateSegments web = web_segments(m), bottom = bottom_segments(m);
  double position = 0;
  for (int i = 1; i <= web.n; position += web.len(i), ++i) {
    const double b = thickness_at(bottom, position + web.len(i) / 2.0), t = web.t(i);
    if (web.len(i) == 0 || b < PLATE.low || t > PLATE.high || t <= WEB_OVER_BOTTOM * b) continue;
    warn(c, WEBTHICK, i, "the web is thicker than the bottom flange (",
         plain(t) + " over " + plain(b), " in): tables swapped?");
  }
}

// Plates are thickest over the inner supports, and alike there.
void check_over_supports(Checked& c, Keyword k, const PlateSegments& plates,
                         const std::vector<Span>& spans) {
  for (std::size_t i = 1; i < spans.size(); ++i) {
    const double at = spans[i].begin, t = thickness_at(plates, at);
    const int row = plate_at(plates, at);
    double amid = 0, other = 0;
    for (const Span& s : {spans[i - 1], spans[i]})
      amid = std::max(amid, thickness_at(plates, (s.begin + s.end) / 2));
    for (std::size_t j = 1; j < spans.size(); ++j)
      other = std::max(other, thickness_at(plates, spans[j].begin));
    const std::string here = "plate over the inner support at " + plain(at) + " in (";
    if (t < PIER_PLATE * amid)
      warn(c, k, row, here, plain(t),
           " in) is thinner than amid the span (" + plain(amid) + "): rows in the wrong order?");
    else if (t <= amid && t * PIER_STEP < other)
      warn(c, k, row, here, plain(t),
           " in) is thinner than over another (" + plain(other) + "): the thickness?");
  }
}

double longest(const std::vector<Span>& spans) {
  double length = 0;
  for (const Span& s : spans) length = std::max(length, s.end - s.begin);
  return length;
}

void check_curvature(Checked& c, double span) {
  const Model& m = c.job.input.model;
  if (m.rcurv <= 0 || span <= 0) return;
  const double turn = span / m.rcurv;
  const std::string usual = " radians, 0.035 to 0.75 is usual";
  if (turn > SPAN_TURN[1] || m.lgbr / m.rcurv > 1.5708)
    warn(c, RCURV, 0, "on this radius (" + plain(m.rcurv) + " in) the longest span turns through ",
         rounded(turn),
         usual + (inside(turn / 12, SPAN_TURN)      ? ": in feet?"
                  : inside(turn / 39.37, SPAN_TURN) ? ": in metres?"
                                                    : ""));
  if (turn < SPAN_TURN[0])
    warn(c, RCURV, 0,
         "on this radius (" + rounded(m.rcurv / 12) + " ft) the longest span turns through ",
         rounded(turn), usual + ": 12 times too large? (0 is straight)");
}

// Segments that agree with each other and not with lgbr.
void check_length(Checked& c) {
  const Input& in = c.job.input;
  const Model& m = in.model;
  const std::pair<Keyword, const Vector<int>*> lists[] = {{WEBTHICK, &m.web_len},
                                                          {BOTFTHICK, &m.botf_len},
                                                          {TFTHICK, &m.topf_len},
                                                          {STUDS, &m.stud_len},
                                                          {POUR_SEQ, &m.pour_len}};
  std::map<int, int> sums;
  for (const auto& [k, lengths] : lists) {
    int sum = 0;
    for (const int length : *lengths) sum += length;
    if (in.block[k].complete) ++sums[sum];
    if (!in.block[k].complete || sum == m.lgbr || lengths->size() < 2) continue;
    if ((*lengths)(lengths->size()) == m.lgbr && std::is_sorted(lengths->begin(), lengths->end()))
      warn(c, k, 0, "the lengths rise to that of the girder: positions in the place of lengths?");
  }
  for (const auto& [sum, lists_alike] : sums)
    if (sum != m.lgbr && lists_alike >= 3 && in.block[LGBR].line > 0)
      refuse(c, LGBR, 0, "length is ", std::to_string(m.lgbr),
             ", but " + std::to_string(lists_alike) + " other lists add up to " +
                 std::to_string(sum) + (m.lgbr == sum / 12 ? ": in feet?" : ""));
}

void check_overhang(Checked& c, int row, double out, const char* end) {
  const double depth = c.job.input.model.secdim.depth;
  if (out > std::max(depth, 60.0))
    warn(c, SUPPORT, row, "the girder sticks out over the " + std::string(end) + " support by ",
         plain(out),
         " in, up to its depth (" + plain(depth) + ") is usual: a support forgotten, or in feet?");
}

// Row of the support at a position.
int support_at(const Model& m, double position) {
  for (int i = 1; i <= m.nsupp; ++i)
    if (m.supp_pos(i) == position) return i;
  return 0;
}

// Why the longest span may be so long or short beside the depth.
std::string span_hint(const SectionDimensions& s, double span) {
  const double ratio = span / s.depth;
  if (ratio < SPAN_DEPTH[0])
    return inside(ratio * 12, SPAN_DEPTH) ? ": lengths in feet?"
                                          : ": a support too many, or a wrong depth?";
  if (inside(ratio / 12, SPAN_DEPTH)) return ": depth in feet?";
  const bool turned = s.bottom_width > s.depth && inside(span / s.bottom_width, SPAN_DEPTH);
  return std::string(": a support forgotten") +
         (turned ? ", or depth and bottom flange swapped?" : "?");
}

void check_spans(Checked& c, const std::vector<Span>& spans) {
  const Model& m = c.job.input.model;
  const SectionDimensions& s = m.secdim;
  check_overhang(c, support_at(m, spans.front().begin), spans.front().begin, "first");
  check_overhang(c, support_at(m, spans.back().end), m.lgbr - spans.back().end, "last");
  const double last = spans.back().end;
  if (inside(12 * last, {0.8 * m.lgbr, m.lgbr + 12.0}))
    warn(c, SUPPORT, 0, "the supports end at ", plain(last),
         " in, on a girder of " + std::to_string(m.lgbr) + " in: in feet?");
  const double span = longest(spans), ratio = span / s.depth;
  if (!inside(ratio, SPAN_DEPTH))
    warn(c, SUPPORT, 0, "the longest span (" + plain(span) + " in) is ", rounded(ratio),
         " times the depth (" + plain(s.depth) + "), 10 to 40 is usual" + span_hint(s, span));
  for (std::size_t i = 1; i < spans.size(); ++i) {
    const double a = spans[i - 1].end - spans[i - 1].begin, b = spans[i].end - spans[i].begin;
    if (std::max(a / b, b / a) > SPAN_STEP)
      warn(c, SUPPORT, support_at(m, spans[i].begin), "spans of ", plain(a) + " and " + plain(b),
           " in meet here, up to 3 times is usual: a wrong position?");
  }
}

void check_supports(Checked& c) {
  const Model& m = c.job.input.model;
  const std::vector<Span> spans = spans_of(m);
  if (spans.empty())
    return refuse(
        c, SUPPORT, 0,
        m.nsupp == 0
            ? "a mechanism: no support holds the bridge"
            : "a mechanism: all supports stand at one place, about which the bridge turns");
  if (usable(c, {LGBR, SECDIM})) check_spans(c, spans);
  if (usable(c, {LGBR, WEBTHICK})) check_over_supports(c, WEBTHICK, web_segments(m), spans);
  if (usable(c, {LGBR, BOTFTHICK})) check_over_supports(c, BOTFTHICK, bottom_segments(m), spans);
  if (usable(c, {LGBR, TFTHICK})) check_over_supports(c, TFTHICK, top_segments(m), spans);
  if (usable(c, {LGBR, RCURV})) check_curvature(c, longest(spans));
}

void check_studs(Checked& c) {
  const Model& m = c.job.input.model;
  for (int i = 1; i <= m.nstudrow; ++i) {
    if (m.stud_len(i) == 0 || m.stud_spacing(i) == 0) continue;
    if (m.stud_count(i) == 0)
      warn(c, STUDS, i, "no studs across a flange, with a spacing of ", plain(m.stud_spacing(i)),
           " in: forgotten? (spacing 0 is a length without studs)");
    if (m.stud_count(i) == 0) continue;
    const bool swapped = m.stud_spacing(i) <= MOST_STUDS && m.stud_count(i) > MOST_STUDS;
    if (swapped)
      warn(c, STUDS, i, "spacing and number of studs across (",
           plain(m.stud_spacing(i)) + " and " + std::to_string(m.stud_count(i)), "): swapped?");
    if (swapped) continue;
    expect(c, STUDS, i, STUD_SPACING, m.stud_spacing(i));
    if (m.stud_count(i) > MOST_STUDS)
      warn(c, STUDS, i, "studs across a flange (", std::to_string(m.stud_count(i)),
           "), up to 8 is usual");
  }
}

void check_bearings(Checked& c) {
  const double spacing = c.job.annotations.bearing_spacing;
  const double width = c.job.input.model.secdim.bottom_width;
  if (spacing <= 0 || spacing > 1000 || (spacing >= LEAST_BEARINGS && spacing <= width)) return;
  warn(c, NO_KEYWORD, 0, "!@ bearing_spacing: two bearings ", plain(spacing),
       " in apart, 12 to the width of the bottom flange (" + plain(width) + ") is usual" +
           (inside(12 * spacing, {LEAST_BEARINGS, width}) ? ": in feet?" : ""));
  const std::vector<std::string_view> lines = lines_of(c.job.content);
  const auto here = [](std::string_view line) { return line.find("bearing_spacing") != line.npos; };
  c.findings.back().line =
      static_cast<int>(std::find_if(lines.begin(), lines.end(), here) - lines.begin());
}

}  // namespace

void section_rules(Checked& c) {
  if (usable(c, {SECDIM})) check_section(c);
  if (usable(c, {SECDIM})) check_bearings(c);
  check_all_plates(c);
  if (usable(c, {WEBTHICK, BOTFTHICK, LGBR})) check_tables(c);
  check_length(c);
  if (usable(c, {SUPPORT}) && c.job.input.block[SUPPORT].line > 0) check_supports(c);
  if (usable(c, {STUDS})) check_studs(c);
}

}  // namespace zelvo
