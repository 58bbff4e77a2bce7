#include <algorithm>
#include <cmath>

#include "desk/pours.h"
#include "desk/rules.h"

namespace zelvo {

namespace {

constexpr Usual HARD_CONCRETE{
    "modulus of hard concrete",
    "ksi",
    500,
    8000,
    {Slip{1e-3, "in psi"}, {1 / 6.895, "in MPa"}, {145, "in GPa"}, {144, "in ksf"}, POINT_RIGHT}};
constexpr Usual HARD_STUDS{"stiffness per stud in hard concrete",
                           "kip/in",
                           10,
                           5000,
                           {THOUSAND_TIMES, IN_FEET, TWELVE_TIMES, POINT_LEFT}};
constexpr double WET_MODULUS = 1;          // ksi, the most of wet concrete
constexpr double LEAST_MODULUS = 1e-10;    // ksi, below it the matrix is next to singular
constexpr double SOFT_STUD = 10;           // kip/in, the most in wet concrete
constexpr double WET_LOAD[] = {0.7, 1.7};  // of the deck's weight, of all that a segment gets wet
constexpr double HARD_LOAD[] = {0.06, 1.2};
constexpr double BRACING_SHARE = 2.5;  // of the bracing's weight: with its connections
constexpr double SAME_LOAD = 0.02;     // a load is that of the pour again
constexpr double TRACE_LOAD = 0.01;    // kip/ft, of no load: the stiffness of a wet stud
constexpr double LOOSE_TOLERANCE = 1e-3, LARGEST_SHIFT = 50;

// A deck segment in time: stage of the first hard concrete and of the largest load on wet concrete,
// 0 if there is none, and the loads on wet concrete over the deck's weight.
struct Segment {
  int hard = 0, poured = 0;
  double wet = 0, all = 0;
};

struct Stages {
  Checked& c;
  const Model& m;
  double bracing;
  std::vector<Segment> segment;  // (npour)
  double weight;                 // kip/ft of the deck

  int row(int k, int j) const { return m.npour * k + j; }
  const Segment& seg(int j) const { return segment[static_cast<std::size_t>(j - 1)]; }
  void say(int k, int j, const std::string& what, const std::string& value = {},
           const std::string& tail = {}) const {
    warn(c, POUR_SEQ, row(k, j), what, value, tail);
  }
  std::string name(int k, int j) const {
    return "stage " + std::to_string(k) + " segment " + segment_letter(j);
  }
};

Segment history(const Stages& s, int j) {
  Segment g;
  double most = 0;
  for (int k = 1; k <= s.m.nanal; ++k) {
    const double load = s.m.pour_load(k, j) / s.weight;
    g.all += std::abs(load);
    if (g.hard == 0 && hard(s.m, k, j)) g.hard = k;
    if (g.hard != 0) continue;
    g.wet += load;
    if (load > most) most = load, g.poured = k;
  }
  return g;
}

// Modulus and stud stiffness of one row.
void check_stiffness(const Stages& s, int k, int j) {
  const double e = s.m.pour_e(k, j), stud = s.m.pour_k(k, j), load = s.m.pour_load(k, j);
  if (e == 0) return;  // told of
  if (!hard(s.m, k, j) && load > 0 && load < TRACE_LOAD && stud > load)
    s.say(k, j, "stud stiffness and load (", plain(stud) + " and " + plain(load),
          "): columns swapped?");
  if (hard(s.m, k, j)) {
    if (e < HARD_CONCRETE.low && stud >= HARD_CONCRETE.low && e <= HARD_STUDS.high)
      return s.say(k, j, "modulus and stud stiffness (", plain(e) + " and " + plain(stud),
                   "): columns swapped?");
    expect(s.c, POUR_SEQ, s.row(k, j), HARD_CONCRETE, e);
    if (stud < HARD_STUDS.low)
      s.say(k, j, "concrete is hard, but its studs are as soft as in wet concrete (", plain(stud),
            " kip/in, 10 to 5000 is usual)");
    else
      expect(s.c, POUR_SEQ, s.row(k, j), HARD_STUDS, stud);
    return;
  }
  if (e > WET_MODULUS)
    s.say(k, j, "modulus ", plain(e),
          std::string(" ksi is neither wet (up to 1) nor hard concrete (500 to 8000)") +
              (inside(e * 1000, {500, 8000}) ? ": 1000 times too small?" : ""));
  if (e < LEAST_MODULUS)
    s.say(k, j, "modulus ", plain(e),
          " ksi is as good as 0: the matrix becomes next to singular, 1.0E-6 is common");
  if (stud >= SOFT_STUD)
    s.say(k, j, "concrete is wet, but its studs hold (", plain(stud),
          " kip/in, up to 10 is usual): columns swapped, or the wrong modulus?");
  if (s.m.nanal * s.m.npour > 2 && stud > 0 && stud < e) {
    int alike = 0;
    for (int a = 1; a <= s.m.nanal; ++a)
      for (int b = 1; b <= s.m.npour; ++b)
        alike += s.m.pour_e(a, b) == stud && s.m.pour_k(a, b) == e ? 1 : 0;
    if (alike > 1)
      s.say(k, j, "modulus and stud stiffness of wet concrete (", plain(e) + " and " + plain(stud),
            ") stand the other way round elsewhere: columns swapped?");
  }
}

// What a load on wet concrete may have been typed in; ratio to the deck's weight.
std::string load_hint(const Model& m, double ratio) {
  if (inside(ratio * 12, WET_LOAD)) return ": in kip/in? (kip/ft of the bridge is wanted)";
  if (inside(ratio / 12, WET_LOAD)) return ": 12 times too large, or in kN/m?";
  if (inside(ratio / 1000, WET_LOAD)) return ": in lb/ft?";
  if (inside(ratio * m.secdim.deck_width / 12, WET_LOAD))
    return ": in kip/ft2? (kip/ft of the bridge is wanted)";
  if (inside(ratio / 1000 * m.secdim.deck_width / 12, WET_LOAD)) return ": in lb/ft2?";
  if (inside(ratio * 10, WET_LOAD) || inside(ratio / 10, WET_LOAD)) return ": the decimal point?";
  if (m.ngird == 2 && inside(ratio * 2, WET_LOAD))
    return ": of one girder? (that of the bridge is wanted)";
  return "";
}

std::string of_the_deck(const Stages& s) {
  return plain(s.m.secdim.deck_thickness) + " in of deck weigh " + rounded(s.weight) + " kip/ft";
}

// Whether what a segment has got so far may be bracing and forms, or is a pour in other units.
bool bracing_only(const Stages& s, const Segment& g) {
  const bool first = g.poured <= 1 && g.wet <= BRACING_SHARE * s.bracing / s.weight;
  return first || (g.wet < POURED && load_hint(s.m, g.wet).empty());
}

void check_pour(const Stages& s, int j) {
  const Segment& g = s.seg(j);
  const auto poured = [&](const Segment& other) { return other.wet >= POURED; };
  const bool some = std::any_of(s.segment.begin(), s.segment.end(), poured);
  const bool bare = g.wet <= 0 || bracing_only(s, g);
  if (g.hard == 1) {
    s.say(1, j,
          "is hard in stage 1, when the steel takes its first load: it stays wet until it has been "
          "poured");
  } else if (g.hard > 1 && bare) {
    s.say(g.hard, j, "concrete is hard in stage ", std::to_string(g.hard),
          ", but no earlier stage has poured it: hard when first loaded");
  } else if (g.hard == 0 && bare && (some || g.all == 0)) {
    if (some || s.m.nanal > 1)
      warn(s.c, POUR_SEQ, j,
           "the segment is never poured: no stage loads it with its wet concrete");
  } else if (g.poured > 0 && !inside(g.wet, WET_LOAD) && !bare) {
    s.say(g.poured, j, "load on wet concrete (", rounded(g.wet * s.weight) + " kip/ft in all",
          ") is outside the usual 0.7 to 1.7 times the deck's weight (" + of_the_deck(s) + ")" +
              load_hint(s.m, g.wet));
  }
}

// Whether a hard segment is loaded as when it was poured, and not with the whole deck.
bool poured_again(const Stages& s, int k, int j) {
  const Segment& g = s.seg(j);
  if (g.poured == 0 || !inside(g.wet, WET_LOAD)) return false;
  if (std::abs(s.m.pour_load(k, j) / s.m.pour_load(g.poured, j) - 1) > SAME_LOAD) return false;
  if (s.m.npour == 1) return true;
  for (int i = 1; i <= s.m.npour; ++i)
    if (s.m.pour_load(k, i) != s.m.pour_load(k, j) || !hard(s.m, k, i)) return true;
  return false;
}

// Loads on a hard deck.
void check_hard_load(const Stages& s, int k, int j) {
  const double ratio = s.m.pour_load(k, j) / s.weight;
  if (ratio <= 0 || !hard(s.m, k, j)) return;
  const Segment& g = s.seg(j);
  if (poured_again(s, k, j))
    return s.say(k, j, "load on hard concrete (", plain(s.m.pour_load(k, j)),
                 " kip/ft) is that of the segment's pour: given twice, or in the wrong row?");
  if (inside(ratio, HARD_LOAD)) return;
  if (g.hard > 0 && g.wet < POURED && g.hard == k) return;  // told of: hard when first loaded
  std::string hint = ratio < 1                 ? ": in kip/in?"
                     : ratio > 100             ? ": in lb/ft?"
                     : inside(ratio, WET_LOAD) ? ": a pour in the wrong row?"
                     : ratio > 5               ? ": 12 times too large?"
                                               : "";
  s.say(
      k, j, "load on hard concrete (", plain(s.m.pour_load(k, j)) + " kip/ft",
      ") is outside the usual 0.06 to 1.2 times the deck's weight (" + of_the_deck(s) + ")" + hint);
}

// Concrete only hardens, and what was poured first hardens first.
void check_age(const Stages& s, int k, int j) {
  const double before = s.m.pour_e(k - 1, j), now = s.m.pour_e(k, j);
  if (before >= HARD_FROM && now < HARD_FROM)
    s.say(k, j, "is soft again in ", s.name(k, j), ", having been hard in the stage before");
  else if (before >= HARD_FROM && now < before && before <= HARD_CONCRETE.high)
    s.say(k, j, "modulus falls from ", plain(before) + " to " + plain(now),
          ": concrete only hardens");
  if (before >= HARD_FROM && now >= HARD_FROM && s.m.pour_k(k, j) < s.m.pour_k(k - 1, j))
    s.say(k, j, "stud stiffness falls from ",
          plain(s.m.pour_k(k - 1, j)) + " to " + plain(s.m.pour_k(k, j)),
          ": concrete only hardens");
}

void check_order(const Stages& s, int k) {
  for (int j = 1; j <= s.m.npour; ++j) {
    const int poured = s.seg(j).poured;
    if (poured == 0 || poured >= k || s.seg(j).wet < POURED) continue;
    for (int i = 1; i <= s.m.npour; ++i) {
      const int other = s.seg(i).poured;
      if (other <= poured || other >= k || s.seg(i).wet < POURED) continue;
      const double e = s.m.pour_e(k, i);
      if (e <= s.m.pour_e(k, j) || !hard(s.m, k, i) || e > HARD_CONCRETE.high) continue;
      s.say(k, j,
            "poured in stage " + std::to_string(poured) + ", before segment " + segment_letter(i) +
                " (stage " + std::to_string(other) + "), but softer than it in stage ",
            std::to_string(k));
      break;
    }
  }
}

// Poured long ago and wet in the last stage, while later pours are hard.
void check_hardening(const Stages& s) {
  const int last = s.m.nanal;
  bool others = false;
  for (int j = 1; j <= s.m.npour; ++j) others = others || hard(s.m, last, j);
  for (int j = 1; j <= s.m.npour && others; ++j)
    if (s.seg(j).hard == 0 && s.seg(j).wet >= POURED && s.seg(j).poured < last)
      s.say(last, j, "never hardens: poured in ", s.name(s.seg(j).poured, j),
            ", still wet in the last stage");
}

void check_stage_load(const Stages& s, int k) {
  int loaded = 0, free = 0, hardened = 0;
  for (int j = 1; j <= s.m.npour; ++j) {
    if (s.m.pour_len(j) == 0) continue;
    if (s.m.pour_load(k, j) < 0)
      s.say(k, j, "load is negative (", plain(s.m.pour_load(k, j)),
            "): it lifts the bridge; downward is positive");
    hardened += hard(s.m, k, j) ? 1 : 0;
    if (s.m.pour_load(k, j) != 0)
      ++loaded;
    else
      free = j;
  }
  if (loaded == 0 && !(k == 1 && s.m.selfwt))
    s.say(k, 1, "stage " + std::to_string(k) + " has no load: all its results are 0");
  if (free > 0 && loaded >= 3 && loaded == s.m.npour - 1 && hardened == s.m.npour)
    s.say(k, free, "all segments but this one are loaded in ", "stage " + std::to_string(k),
          ": forgotten?");
}

void check_pattern(Checked& c) {
  const Model& m = c.job.input.model;
  double most = 0;
  for (int k = 1; k <= m.nanal; ++k)
    for (int j = 1; j <= m.npour; ++j) most = std::max(most, std::abs(m.pour_load(k, j)));
  if (m.ngird == 2 || most == 0) return;
  const char* effect = m.load_pattern == 2   ? "puts the pours on the bottom flange"
                       : m.load_pattern == 3 ? "turns the load of segment 1 into end couples"
                                             : nullptr;
  if (effect != nullptr)
    warn(c, BUCKLE, 0, "load pattern ", std::to_string(m.load_pattern),
         std::string(" ") + effect + ": 1 is that of a deck on the top flanges");
}

void check_buckling(Checked& c) {
  const Model& m = c.job.input.model;
  if (!m.buckle) return;
  if (c.job.input.block[SOLVER].line == 0)
    return warn(
        c, BUCKLE, 0,
        "the buckling check has no solver record: tolerance 1.0E-4 and shift 0.02 are loose, "
        "'1 1.0E-6' is a good one");
  if (m.tol > LOOSE_TOLERANCE)
    warn(c, SOLVER, 0, "tolerance ", plain(m.tol), " is loose, up to 0.001 is usual");
  if (m.solver_type == 2 && m.sigma > LARGEST_SHIFT)
    warn(c, SOLVER, 0, "shift ", plain(m.sigma),
         " is outside the usual 0 to 50: a load factor, half of the first one, is wanted");
  if (m.solver_type == 2 && m.sigma < 0)
    warn(c, SOLVER, 0, "shift is negative (", plain(m.sigma), "): factors of opposite loads");
}

void check_steel_weight(Checked& c) {
  const Input& in = c.job.input;
  if (in.model.selfwt || in.model.nanal == 0) return;
  warn(c, POUR_SEQ, 0, "the weight of the steel is in no stage (0), 1 adds it to stage 1");
  c.findings.back().line = in.block[POUR_SEQ].heads.back().line;
}

}  // namespace

void pour_rules(Checked& c, double bracing) {
  const Input& in = c.job.input;
  const Model& m = in.model;
  if (usable(c, {BUCKLE, SOLVER, NGIRD, POUR_SEQ})) check_pattern(c), check_buckling(c);
  if (!usable(c, {POUR_SEQ}) || in.block[POUR_SEQ].line == 0 || m.nanal == 0) return;
  check_steel_weight(c);
  Stages s{c, m, bracing, {}, 1};
  for (int k = 1; k <= m.nanal; ++k) {
    check_stage_load(s, k);
    for (int j = 1; j <= m.npour; ++j) {
      check_stiffness(s, k, j);
      if (k > 1) check_age(s, k, j);
    }
  }
  const bool couples = m.ngird == 1 && (m.load_pattern == 3 || m.load_pattern == 5);
  if (couples || !usable(c, {NGIRD, SECDIM, BUCKLE})) return;
  s.weight = deck_weight(m);
  for (int j = 1; j <= m.npour; ++j) s.segment.push_back(history(s, j));
  for (int j = 1; j <= m.npour; ++j) {
    if (m.pour_len(j) == 0) continue;
    check_pour(s, j);
    for (int k = 1; k <= m.nanal; ++k) check_hard_load(s, k, j);
  }
  for (int k = 3; k <= m.nanal; ++k) check_order(s, k);
  check_hardening(s);
}

}  // namespace zelvo
