#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>

#include "construction/camber.h"
#include "desk/rules.h"

namespace zelvo {

namespace {

constexpr Usual AREA{
    "area",
    "in2",
    0.5,
    50,
    {Slip{1 / 645.16, "in mm2"}, {144, "in ft2"}, {1 / 6.4516, "in cm2"}, POINT_LEFT, POINT_RIGHT}};
constexpr Usual STIFFENER_WIDTH{"width", "in", 3, 30, {IN_FEET, IN_MM, POINT_LEFT, POINT_RIGHT}};
constexpr Usual STIFFENER_THICKNESS{
    "thickness", "in", 0.25, 4, {IN_MM, POINT_LEFT, POINT_RIGHT, IN_FEET}};
constexpr double AREA_STEP = 5;         // from the middle one of a table
constexpr int LARGEST_TYPE = 9;         // codes select nothing; larger ones are positions or areas
constexpr double FRAME_DISTANCE = 480;  // inches, 40 ft
constexpr double FRAME_GAP = 1.75, EXTERNAL_GAP = 1.9, FRAME_CROWD = 0.25;  // of the middle one

constexpr int FRAME_SHIFT = 12;  // inches, one step of the grid
constexpr int LEAST_PANELS = 6;  // in which the directions of laterals show a pattern

using Places = std::set<int>;

double middle(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

void check_areas(Checked& c, Keyword k, const Vector<double>& area) {
  const double common = middle({area.begin(), area.end()});
  for (int i = 1; i <= area.size(); ++i) {
    if (area(i) == 0 || !expect(c, k, i, AREA, area(i))) continue;  // 0 has been told of
    if (area.size() >= 4 && std::max(area(i) / common, common / area(i)) >= AREA_STEP)
      warn(c, k, i, "area ", plain(area(i)),
           " in2 differs 5 times or more from most of the table (" + plain(common) + ")");
  }
}

void check_doubles(Checked& c, Keyword k, const Vector<int>& position) {
  Places taken;
  for (int i = 1; i <= position.size(); ++i)
    if (!taken.insert(position(i)).second)
      warn(c, k, i, "given twice at the same position (", std::to_string(position(i)), ")");
}

void check_types(Checked& c, Keyword k, const Vector<int>& type, const Vector<double>& area) {
  for (int i = 1; i <= type.size(); ++i) {
    if (type(i) < 0 || type(i) > LARGEST_TYPE)
      warn(c, k, i, "type code ", std::to_string(type(i)),
           " is outside the usual 0 to 9: columns swapped?");
    else if (type(i) > 2 && (area(i) == 1 || area(i) == 2))
      warn(c, k, i, "type code and area (", std::to_string(type(i)) + " and " + plain(area(i)),
           "): swapped?");
  }
}

Places places(const Vector<int>& position) { return {position.begin(), position.end()}; }

// Distances of frames along the bridge: what is much longer than usual there lacks one.
//   frames  positions of the frames, those built in at the supports included
void check_distances(Checked& c, Keyword k, const Places& frames, double gap) {
  const Model& m = c.job.input.model;
  for (const Span& span : spans_of(m)) {
    std::vector<double> distance;
    const auto first = frames.lower_bound(static_cast<int>(span.begin));
    const auto last = frames.upper_bound(static_cast<int>(span.end));
    for (auto a = first, b = std::next(a); b != last; ++a, ++b) distance.push_back(*b - *a);
    const double common = middle(distance);
    for (auto a = first, b = std::next(a); b != last; ++a, ++b) {
      const std::string between = std::to_string(*a) + " and " + std::to_string(*b);
      if (distance.size() >= 4 && *b - *a > gap * common)
        warn(c, k, 0,
             "no frame between " + between + " in, where others stand " + plain(common) +
                 " apart: one forgotten, or a wrong position?");
      else if (k == INTERNAL_BRACE && *b - *a > FRAME_DISTANCE)
        warn(c, k, 0, "no frame between " + between + " in, up to 480 in (40 ft) is usual");
      else if (distance.size() >= 4 && *b - *a < FRAME_CROWD * common)
        warn(c, k, 0,
             "frames at " + between + " in, where others stand " + plain(common) +
                 " apart: a wrong position?");
    }
  }
}

// Row of a table at a position, or 0.
int row_at(const Vector<int>& position, int at) {
  for (int i = 1; i <= position.size(); ++i)
    if (position(i) == at) return i;
  return 0;
}

// Lateral ends: how many at each position.
std::map<int, int> lateral_ends(const Model& m) {
  std::map<int, int> ends;
  for (int i = 1; i <= m.nlat; ++i) ++ends[m.lat_from(i)], ++ends[m.lat_to(i)];
  return ends;
}

// One frame out of step: not amid its neighbours, while all others of the span stand equally apart
// and no lateral follows it.
void check_rhythm(Checked& c, const Places& frames) {
  const Model& m = c.job.input.model;
  const std::map<int, int> ends = lateral_ends(m);
  for (const Span& span : spans_of(m)) {
    const std::vector<int> at(frames.lower_bound(static_cast<int>(span.begin)),
                              frames.upper_bound(static_cast<int>(span.end)));
    std::vector<double> distance;
    for (std::size_t i = 1; i < at.size(); ++i) distance.push_back(at[i] - at[i - 1]);
    const double common = middle(distance);
    const auto alike = std::count(distance.begin(), distance.end(), common);
    if (at.size() < 6 || alike + 2 != static_cast<std::ptrdiff_t>(distance.size())) continue;
    for (std::size_t i = 1; i + 1 < at.size(); ++i)
      if (at[i + 1] - at[i - 1] == 2 * common && at[i] - at[i - 1] != common &&
          std::abs(at[i] - at[i - 1] - common) > FRAME_SHIFT && ends.count(at[i]) == 0)
        if (const int row = row_at(m.ib_pos, at[i]); row > 0)
          warn(c, INTERNAL_BRACE, row, "stands ",
               std::to_string(at[i] - at[i - 1]) + " and " + std::to_string(at[i + 1] - at[i]),
               " in from its neighbours, where the others stand " + plain(common) +
                   " apart: a wrong position?");
  }
}

// All positions of a table together near the first end, as they are in feet.
bool in_feet(Checked& c, Keyword k, const Vector<int>& position) {
  const int length = c.job.input.model.lgbr;
  if (position.size() < 3) return false;
  const int last = *std::max_element(position.begin(), position.end());
  const bool feet = last < length / 8 && 12 * last > length / 2;
  if (feet)
    warn(c, k, 0, "all positions lie before ", std::to_string(last + 1),
         " in, on a girder of " + std::to_string(length) + " in: in feet?");
  return feet;
}

// If some supports have an attachment, others like them should: end supports, and inner ones.
void check_at_supports(Checked& c, Keyword k, const Places& at, const char* what) {
  const Model& m = c.job.input.model;
  const Places supports = places(m.supp_pos);
  const auto outer = [&](int position) {
    return position == *supports.begin() || position == *supports.rbegin();
  };
  const bool stiffeners = k == WEB_STIFFENER;  // if ends have them, inner supports want them more
  for (int i = 1; i <= m.nsupp; ++i) {
    if (at.count(m.supp_pos(i)) > 0) continue;
    const bool others = std::any_of(supports.begin(), supports.end(), [&](int position) {
      const bool alike = outer(position) == outer(m.supp_pos(i));
      return at.count(position) > 0 && (alike || (stiffeners && outer(position)));
    });
    if (others)
      warn(c, k, 0,
           std::string(what) + " missing at support row " + std::to_string(i) + " (" +
               std::to_string(m.supp_pos(i)) + "), while other supports have one");
  }
}

void check_internal(Checked& c, const Places& supports) {
  const Model& m = c.job.input.model;
  if (m.nibrace == 0)
    return warn(c, INTERNAL_BRACE, 0,
                "none is given: nothing between the supports keeps the shape of the section");
  check_areas(c, INTERNAL_BRACE, m.ib_area);
  check_types(c, INTERNAL_BRACE, m.ib_type, m.ib_area);
  check_doubles(c, INTERNAL_BRACE, m.ib_pos);
  if (in_feet(c, INTERNAL_BRACE, m.ib_pos)) return;
  check_at_supports(c, INTERNAL_BRACE, places(m.ib_pos), "a frame is");
  Places frames = places(m.ib_pos);
  frames.insert(supports.begin(), supports.end());
  check_distances(c, INTERNAL_BRACE, frames, FRAME_GAP);
  check_rhythm(c, frames);
}

void check_external(Checked& c, const Places& frames) {
  const Model& m = c.job.input.model;
  if (m.ngird == 2 && m.curved() && m.nebrace == 0)
    warn(c, EXTERNAL_BRACE, 0,
         "none is given: between the supports only the deck ties two curved girders");
  if (m.nebrace == 0) return;
  check_areas(c, EXTERNAL_BRACE, m.eb_area);
  check_types(c, EXTERNAL_BRACE, m.eb_type, m.eb_area);
  check_doubles(c, EXTERNAL_BRACE, m.eb_pos);
  if (in_feet(c, EXTERNAL_BRACE, m.eb_pos)) return;
  for (int i = 1; i <= m.nebrace && m.nibrace > 0; ++i)
    if (frames.count(m.eb_pos(i)) == 0)
      warn(c, EXTERNAL_BRACE, i, "no internal frame stands at the position of this one (",
           std::to_string(m.eb_pos(i)), ")");
  Places all = places(m.eb_pos);
  all.insert(m.supp_pos.begin(), m.supp_pos.end());
  check_distances(c, EXTERNAL_BRACE, all, EXTERNAL_GAP);
}

// Panels between frames without a lateral, where those on both sides have one.
void check_panels(Checked& c, const Places& frames) {
  const Model& m = c.job.input.model;
  std::vector<int> at(frames.begin(), frames.end());
  std::vector<bool> braced;
  for (std::size_t p = 0; p + 1 < at.size(); ++p) {
    bool found = false;
    for (int i = 1; i <= m.nlat; ++i)
      found = found || (std::min(m.lat_from(i), m.lat_to(i)) < at[p + 1] &&
                        std::max(m.lat_from(i), m.lat_to(i)) > at[p]);
    braced.push_back(found);
  }
  const auto free = std::count(braced.begin(), braced.end(), false);
  for (std::size_t p = 0; p < braced.size(); ++p) {
    const bool sides = p > 0 && p + 1 < braced.size() && braced[p - 1] && braced[p + 1];
    if (!braced[p] && braced.size() >= 3 && (sides || free == 1))
      warn(c, TOP_LATERAL, 0,
           "no lateral between the frames at " + std::to_string(at[p]) + " and " +
               std::to_string(at[p + 1]) + " in, while the panels beside have one");
  }
}

void check_lateral_ends(Checked& c, const Places& frames) {
  const Model& m = c.job.input.model;
  Places held = frames;
  held.insert({0, m.lgbr});
  for (int i = 1; i <= m.nlat; ++i)
    if (m.lat_from(i) == m.lat_to(i)) held.insert(m.lat_from(i));  // a strut
  for (int i = 1; i <= m.nlat; ++i) {
    const int a = m.lat_from(i), b = m.lat_to(i);
    for (const int end : {a, b})
      if (held.count(end) == 0)
        warn(c, TOP_LATERAL, i, "ends where no frame stands (", std::to_string(end), ")");
    if (a > b)
      warn(c, TOP_LATERAL, i, "runs backward (", std::to_string(a) + " to " + std::to_string(b),
           "): columns swapped?");
    if (std::abs(b - a) > FRAME_DISTANCE)
      warn(c, TOP_LATERAL, i, "is long for one bar (",
           std::to_string(a) + " to " + std::to_string(b), " in), up to 480 in (40 ft) is usual");
    else if (const auto crossed = frames.upper_bound(std::min(a, b));
             crossed != frames.end() && *crossed < std::max(a, b))
      warn(c, TOP_LATERAL, i, "passes a frame (", std::to_string(a) + " to " + std::to_string(b),
           "): a wrong position?");
  }
}

// A frame that a lateral passes on its way to a place where laterals meet without one.
void check_passed_frames(Checked& c) {
  const Model& m = c.job.input.model;
  const std::map<int, int> ends = lateral_ends(m);
  const Places frames = places(m.ib_pos), supports = places(m.supp_pos);
  for (int i = 1; i <= m.nlat; ++i)
    for (const int end : {m.lat_from(i), m.lat_to(i)}) {
      if (frames.count(end) + supports.count(end) > 0 || ends.at(end) < 2) continue;
      const auto frame = frames.upper_bound(std::min(m.lat_from(i), m.lat_to(i)));
      if (frame == frames.end() || *frame >= std::max(m.lat_from(i), m.lat_to(i)) ||
          ends.count(*frame) > 0)
        continue;
      warn(c, INTERNAL_BRACE, row_at(m.ib_pos, *frame), "stands at ", std::to_string(*frame),
           " in, while the laterals meet at " + std::to_string(end) + ": a wrong position?");
    }
}

// One lateral alone that breaks the zigzag of single diagonals: it has the direction of both its
// neighbours. (A pattern that is turned round at midspan or at a support breaks in one place.)
void check_zigzag(Checked& c) {
  const Model& m = c.job.input.model;
  std::map<int, int> row;  // by first position
  for (int i = 1; i <= m.nlat; ++i)
    if (m.lat_from(i) >= m.lat_to(i) || !row.emplace(m.lat_from(i), i).second) return;
  std::vector<int> rows, same;
  for (const auto& [from, i] : row) {
    if (!rows.empty() && m.lat_to(rows.back()) != from) return;
    if (!rows.empty() && m.lat_type(rows.back()) == m.lat_type(i))
      same.push_back(static_cast<int>(rows.size()));
    rows.push_back(i);
  }
  if (static_cast<int>(rows.size()) < LEAST_PANELS || same.size() * 3 > rows.size()) return;
  for (std::size_t s = 1; s < same.size(); ++s)
    if (same[s] == same[s - 1] + 1)
      warn(c, TOP_LATERAL, rows[static_cast<std::size_t>(same[s - 1])], "direction ",
           std::to_string(m.lat_type(rows[static_cast<std::size_t>(same[s - 1])])),
           " is that of both neighbours, where the others alternate: a wrong direction?");
}

// A place where a stiffener stands and laterals meet, or the girder ends, without a frame is that of
// a support.
void check_support_places(Checked& c, const Places& frames) {
  const Model& m = c.job.input.model;
  const Places stiffeners = places(m.ws_pos);
  const std::map<int, int> ends = lateral_ends(m);
  for (const int at : stiffeners) {
    if (frames.count(at) > 0 || ends.count(at) == 0) continue;
    int nearest = 0;
    for (int i = 1; i <= m.nsupp; ++i) {
      const bool nearer =
          nearest == 0 || std::abs(m.supp_pos(i) - at) < std::abs(m.supp_pos(nearest) - at);
      if (stiffeners.count(m.supp_pos(i)) == 0 && nearer) nearest = i;
    }
    const std::string place = std::to_string(at);
    if (nearest == 0)
      warn(c, SUPPORT, 0, "laterals and a stiffener meet at ", place,
           " in, where no support stands: one forgotten?");
    else
      warn(c, SUPPORT, nearest, "stands at ", std::to_string(m.supp_pos(nearest)),
           " in, while laterals and a stiffener meet at " + place + ": a wrong position?");
  }
}

void check_laterals(Checked& c, const Places& frames) {
  const Model& m = c.job.input.model;
  if (m.nlat == 0 && m.curved())
    warn(c, TOP_LATERAL, 0,
         "none is given: a curved tub is open at the top until the deck is hard");
  if (m.nlat == 0) return;
  check_areas(c, TOP_LATERAL, m.lat_area);
  std::set<std::tuple<int, int, int>> taken;
  for (int i = 1; i <= m.nlat; ++i) {
    const bool forward = m.lat_from(i) < m.lat_to(i);
    const int a = std::min(m.lat_from(i), m.lat_to(i)), b = std::max(m.lat_from(i), m.lat_to(i));
    const int direction = a == b ? 0 : forward ? m.lat_type(i) : 3 - m.lat_type(i);
    if (!taken.insert({direction, a, b}).second)
      warn(c, TOP_LATERAL, i, "given twice (",
           "direction " + std::to_string(m.lat_type(i)) + ", " + std::to_string(a) + " to " +
               std::to_string(b),
           ")");
  }
  if (m.nlat >= 3 && in_feet(c, TOP_LATERAL, m.lat_to)) return;
  if (m.nibrace == 0) return;
  check_support_places(c, frames);
  check_passed_frames(c);
  check_lateral_ends(c, frames);
  check_zigzag(c);
  check_panels(c, frames);
}

void check_stiffeners(Checked& c) {
  const Model& m = c.job.input.model;
  for (int i = 1; i <= m.nstiff; ++i) {
    if (m.ws_b(i) == 0 || m.ws_t(i) == 0) continue;
    if (m.ws_t(i) > m.ws_b(i))
      warn(c, WEB_STIFFENER, i, "thicker than wide (", plain(m.ws_b(i)) + " by " + plain(m.ws_t(i)),
           " in): columns swapped?");
    else if (expect(c, WEB_STIFFENER, i, STIFFENER_WIDTH, m.ws_b(i)))
      expect(c, WEB_STIFFENER, i, STIFFENER_THICKNESS, m.ws_t(i));
  }
  check_doubles(c, WEB_STIFFENER, m.ws_pos);
  if (!in_feet(c, WEB_STIFFENER, m.ws_pos))
    check_at_supports(c, WEB_STIFFENER, places(m.ws_pos), "a stiffener is");
}

}  // namespace

void bracing_rules(Checked& c) {
  const Model& m = c.job.input.model;
  if (!usable(c, {LGBR, NGIRD, SUPPORT})) return;
  const Places supports = places(m.supp_pos);
  Places frames = places(m.ib_pos);
  frames.insert(supports.begin(), supports.end());
  const bool internal = usable(c, {INTERNAL_BRACE});
  if (internal) check_internal(c, supports);
  if (internal && usable(c, {EXTERNAL_BRACE})) check_external(c, frames);
  if (internal && usable(c, {TOP_LATERAL, RCURV})) check_laterals(c, frames);
  if (usable(c, {WEB_STIFFENER})) check_stiffeners(c);
}

}  // namespace zelvo
