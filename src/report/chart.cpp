#include "report/chart.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "report/signs.h"

namespace zelvo::report {

namespace {

// Pixels of the viewBox.
constexpr double TOP = 18, PLOT = 176;
constexpr double BELOW = 30;  // supports and positions
constexpr double STRIP = 14;
constexpr double PLOT_BOTTOM = TOP + PLOT;

struct Scale {
  double length, lo, hi;
  bool downward;
  double x(double position) const {
    return LEFT + (RIGHT - LEFT) * (length > 0 ? position / length : 0);
  }
  double y(double value) const {
    const double t = (value - lo) / (hi - lo);
    return downward ? TOP + PLOT * t : PLOT_BOTTOM - PLOT * t;
  }
};

struct Point {
  double x, y;
};
struct Box {
  double left, top, right, bottom;
};
bool overlap(const Box& a, const Box& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// The range of all values, zero in it, with room for labels at both ends.
Scale scale_of(const Diagram& d, double length) {
  double lo = 0, hi = 0;
  const auto take = [&](const std::vector<double>& values) {
    for (const double v : values)
      if (std::isfinite(v)) lo = std::min(lo, v), hi = std::max(hi, v);
  };
  for (const Curve& c : d.curves) take(*c.y);
  for (const Band& b : d.bands) take(*b.low), take(*b.high);
  if (lo == hi) lo = -1, hi = 1;
  const double room = 0.1 * (hi - lo);
  return {length, lo - room, hi + room, d.downward};
}

// --- lines ---

// The points without those that lie within a tenth of a pixel of the line between others
// (Ramer 1972, Douglas and Peucker 1973).
std::vector<Point> simplified(const std::vector<Point>& p) {
  constexpr double TOLERANCE = 0.1;
  if (p.size() < 3) return p;
  std::vector<char> keep(p.size(), 0);
  keep.front() = keep.back() = 1;
  std::vector<std::pair<std::size_t, std::size_t>> stack = {{0, p.size() - 1}};
  while (!stack.empty()) {
    const auto [a, b] = stack.back();
    stack.pop_back();
    const double dx = p[b].x - p[a].x, dy = p[b].y - p[a].y, l = std::hypot(dx, dy);
    std::size_t farthest = a;
    double most = TOLERANCE;
    for (std::size_t i = a + 1; i < b; ++i) {
      const double away = std::abs(dx * (p[i].y - p[a].y) - dy * (p[i].x - p[a].x)) / l;
      if (away > most) most = away, farthest = i;
    }
    if (farthest == a) continue;
    keep[farthest] = 1;
    stack.push_back({a, farthest});
    stack.push_back({farthest, b});
  }
  std::vector<Point> out;
  for (std::size_t i = 0; i < p.size(); ++i)
    if (keep[i]) out.push_back(p[i]);
  return out;
}

std::vector<Point> points_of(const std::vector<double>& x, const std::vector<double>& y,
                             const Scale& s) {
  std::vector<Point> out;
  for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i)
    if (std::isfinite(y[i])) out.push_back({s.x(x[i]), s.y(y[i])});
  return simplified(out);
}

void put_points(Html& out, const std::vector<Point>& points) {
  for (const Point& p : points) put(out, p.x, " ", p.y, " ");
}

Html curve_path(const Curve& c, const Scale& s) {
  Html out = html("<path class=\"curve\" stroke=\"", c.color, "\" stroke-width=\"", c.width, "\"");
  if (c.dashed) put(out, " stroke-dasharray=\"5 3\"");
  put(out, " d=\"M");
  put_points(out, points_of(*c.x, *c.y, s));
  put(out, "\"/>");
  return out;
}

Html band_path(const Band& b, const Scale& s) {
  std::vector<Point> back = points_of(*b.x, *b.low, s);
  std::reverse(back.begin(), back.end());
  Html out = html("<path class=\"band\" d=\"M");
  put_points(out, points_of(*b.x, *b.high, s));
  put(out, "L");
  put_points(out, back);
  put(out, "Z\"/>");
  return out;
}

// --- frame ---

Html value_axis(const Scale& s, const Shown& unit) {
  Html out;
  const Ticks t = nice_ticks(s.lo * unit.factor, s.hi * unit.factor, 5);
  for (int i = 0; i < t.count; ++i) {
    const double value = t.first + i * t.step, y = s.y(value / unit.factor);
    put(out, "<path class=\"grid\" d=\"M", LEFT, " ", y, "H", RIGHT, "\"/><text x=\"", LEFT - 6,
        "\" y=\"", y + 3.5, "\" text-anchor=\"end\">", fixed(value, t.decimals), "</text>");
  }
  put(out, "<text class=\"unit\" x=\"", LEFT - 6, "\" y=\"", TOP - 6, "\" text-anchor=\"end\">",
      unit.name, "</text>");
  return out;
}

Html place_axis(const Scale& s, const Shown& unit) {
  Html out;
  const Ticks t = nice_ticks(0, s.length * unit.factor, 11);
  for (int i = 0; i < t.count; ++i) {
    const double value = t.first + i * t.step, x = s.x(value / unit.factor);
    put(out, "<path class=\"tick\" d=\"M", x, " ", PLOT_BOTTOM, "v4\"/><text x=\"", x, "\" y=\"",
        PLOT_BOTTOM + 21, "\" text-anchor=\"middle\">", fixed(value, t.decimals), "</text>");
  }
  put(out, "<text class=\"unit\" x=\"", LEFT - 6, "\" y=\"", PLOT_BOTTOM + 21,
      "\" text-anchor=\"end\">", unit.name, "</text>");
  return out;
}

Html axes(const Scale& s, Unit unit) {
  const UnitInfo &value = info(unit), &place = info(Unit::PLACE);
  return html("<g class=\"us\">", value_axis(s, value.us), place_axis(s, place.us),
              "</g><g class=\"si\">", value_axis(s, value.si), place_axis(s, place.si), "</g>");
}

Html supports_and_pours(const Scale& s, const Bridge& bridge) {
  Html out;
  int number = 0;
  for (const Stretch& pour : bridge.segments) {
    const double a = s.x(pour.begin), b = s.x(pour.end);
    ++number;
    if (pour.end < bridge.length)
      put(out, "<path class=\"pour\" d=\"M", b, " ", TOP, "V", PLOT_BOTTOM, "\"/>");
    if (b - a > 12)
      put(out, "<text class=\"pour-name\" x=\"", (a + b) / 2, "\" y=\"", TOP - 5,
          "\" text-anchor=\"middle\">", number, "</text>");
  }
  for (const SupportLine& support : bridge.supports) {
    const double x = s.x(support.position);
    put(out, "<path class=\"support-line\" d=\"M", x, " ", TOP, "V", PLOT_BOTTOM, "\"/>");
    put(out, "<path class=\"support ", support.kind, "\" d=\"M", x, " ", PLOT_BOTTOM,
        "l5 9h-10z\"/>");
  }
  put(out, "<path class=\"zero\" d=\"M", LEFT, " ", s.y(0), "H", RIGHT, "\"/>");
  return out;
}

// --- labels ---

// Where the values turn by more than `least`: alternating largest and smallest ones, both ends
// of the list among them where they are.
std::vector<std::size_t> turning_points(const std::vector<double>& y, double least) {
  std::vector<std::size_t> out;
  std::size_t high = 0, low = 0;
  int direction = 0;  // 1 rising, -1 falling
  for (std::size_t i = 0; i < y.size(); ++i) {
    if (y[i] > y[high]) high = i;
    if (y[i] < y[low]) low = i;
    if (direction >= 0 && y[i] < y[high] - least) {
      out.push_back(high);
      direction = -1, low = i;
    } else if (direction <= 0 && y[i] > y[low] + least) {
      out.push_back(low);
      direction = 1, high = i;
    }
  }
  if (direction != 0) out.push_back(direction > 0 ? high : low);
  return out;
}

// Puts a text where no other stands; false if there is no room.
bool free_place(const Box& box, std::vector<Box>& taken) {
  for (const Box& t : taken)
    if (overlap(box, t)) return false;
  taken.push_back(box);
  return true;
}

Html peak_label(const Curve& c, std::size_t i, bool highest, const Scale& s, Unit unit,
                std::vector<Box>& taken) {
  const UnitInfo& u = info(unit);
  const double value = (*c.y)[i], y = s.y(value);
  const std::string text = fixed(value * u.us.factor, u.us.decimals);
  const double half = 3.4 * static_cast<double>(text.size()) + 2;
  const double x = std::clamp(s.x((*c.x)[i]), LEFT + half, RIGHT - half);
  const double base = highest != s.downward ? y - 5 : y + 13;
  if (!free_place({x - half, base - 10, x + half, base + 2}, taken)) return {};
  return html("<circle cx=\"", s.x((*c.x)[i]), "\" cy=\"", y, "\" r=\"2.2\" fill=\"", c.color,
              "\"/><text class=\"peak\" x=\"", x, "\" y=\"", base, "\" fill=\"", c.color,
              "\" data-u=\"", u.key, "\" data-v=\"", full(value), "\">", text, "</text>");
}

Html peak_labels(const Curve& c, const Scale& s, Unit unit, std::vector<Box>& taken) {
  const std::vector<double>& y = *c.y;
  const double range = s.hi - s.lo;
  std::vector<std::size_t> peaks = turning_points(y, 0.06 * range);
  std::vector<std::pair<std::size_t, bool>> wanted;
  for (std::size_t k = 0; k < peaks.size(); ++k) {
    const std::size_t i = peaks[k],
                      other = peaks[k > 0 ? k - 1 : std::min<std::size_t>(1, peaks.size() - 1)];
    if (std::abs(y[i]) > 0.02 * range)
      wanted.push_back({i, peaks.size() == 1 ? y[i] > 0 : y[i] > y[other]});
  }
  std::stable_sort(wanted.begin(), wanted.end(), [&](const auto& a, const auto& b) {
    return std::abs(y[a.first]) > std::abs(y[b.first]);
  });
  Html out;
  for (const auto& [i, highest] : wanted) put(out, peak_label(c, i, highest, s, unit, taken));
  return out;
}

// The number of its stage on a curve, where it is largest or else where there is room.
Html stage_mark(const Curve& c, const Scale& s, std::vector<Box>& taken) {
  const std::vector<double>& y = *c.y;
  if (y.empty()) return {};
  std::vector<std::size_t> order(y.size());
  for (std::size_t i = 0; i < y.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return std::abs(y[a]) > std::abs(y[b]); });
  for (const std::size_t i : order) {
    const double px = s.x((*c.x)[i]), py = s.y(y[i]);
    if (std::abs(y[i]) < 0.02 * (s.hi - s.lo)) break;
    if (!free_place({px - 6, py - 6, px + 6, py + 6}, taken)) continue;
    return html("<circle cx=\"", px, "\" cy=\"", py, "\" r=\"6\" class=\"mark\" stroke=\"", c.color,
                "\"/><text class=\"mark\" x=\"", px, "\" y=\"", py + 3, "\" fill=\"", c.color,
                "\">", c.stage, "</text>");
  }
  return {};
}

Html labels(const Diagram& d, const Scale& s) {
  Html out;
  std::vector<Box> taken;
  for (const Curve& c : d.curves)
    if (c.peaks) put(out, peak_labels(c, s, d.unit, taken));
  for (const Curve& c : d.curves)
    if (c.stage > 0) put(out, stage_mark(c, s, taken));
  return out;
}

// --- strips ---

Html strip_cells(const Strip& strip, double top, const Scale& s, int stages) {
  Html out = html("<text x=\"", LEFT - 6, "\" y=\"", top + 9.5, "\" text-anchor=\"end\">",
                  strip.name, "</text>");
  const std::vector<double>& x = *strip.x;
  const std::vector<int>& stage = *strip.stage;
  for (std::size_t a = 0, b; a < stage.size(); a = b) {
    for (b = a + 1; b < stage.size() && stage[b] == stage[a];) ++b;
    const double from = s.x(a == 0 ? x[0] : (x[a - 1] + x[a]) / 2);
    const double to = s.x(b == stage.size() ? x[b - 1] : (x[b - 1] + x[b]) / 2);
    put(out, "<rect x=\"", from, "\" y=\"", top, "\" width=\"", to - from,
        "\" height=\"12\" fill=\"", stage_color(stage[a], stages), "\"/>");
    if (to - from > 13)
      put(out, "<text class=\"strip\" x=\"", (from + to) / 2, "\" y=\"", top + 9.5, "\">", stage[a],
          "</text>");
  }
  return out;
}

Html limit_lines(const Diagram& d, const Scale& s) {
  Html out;
  for (const double limit : d.limits)
    if (s.lo < limit && limit < s.hi)
      put(out, "<path class=\"limit\" d=\"M", LEFT, " ", s.y(limit), "H", RIGHT, "\"/>");
  return out;
}

}  // namespace

Ticks nice_ticks(double lo, double hi, int count) {
  const double rough = (hi - lo) / count, power = std::pow(10, std::floor(std::log10(rough)));
  const double step = power * (rough > 5 * power   ? 10
                               : rough > 2 * power ? 5
                               : rough > power     ? 2
                                                   : 1);
  const double from = std::ceil(lo / step - 1e-9), to = std::floor(hi / step + 1e-9);
  return {from * step, step, static_cast<int>(to - from) + 1,
          std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)))};
}

std::string stage_color(int k, int n) {
  constexpr int STOPS[][3] = {{38, 60, 120},  {28, 125, 165}, {40, 150, 100},
                              {205, 145, 20}, {195, 75, 40},  {130, 35, 90}};
  const double t = n > 1 ? 5.0 * (k - 1) / (n - 1) : 1;
  const int i = std::min(4, static_cast<int>(t));
  std::string out = "#";
  for (int c = 0; c < 3; ++c) {
    const int value = static_cast<int>(STOPS[i][c] + (t - i) * (STOPS[i + 1][c] - STOPS[i][c]));
    out += "0123456789abcdef"[value / 16];
    out += "0123456789abcdef"[value % 16];
  }
  return out;
}

Html figure(const Diagram& d, const Bridge& bridge, int stages) {
  const Scale s = scale_of(d, bridge.length);
  const double height = PLOT_BOTTOM + BELOW + STRIP * static_cast<double>(d.strips.size());
  Html out = html("<figure><figcaption><b>", d.title, "</b> ", d.note,
                  "</figcaption><svg class=\"chart\" viewBox=\"0 0 ", WIDTH, " ", height,
                  "\" role=\"img\" aria-label=\"", d.title, "\">");
  for (const Band& b : d.bands) put(out, band_path(b, s));
  put(out, axes(s, d.unit), supports_and_pours(s, bridge), limit_lines(d, s));
  for (const Curve& c : d.curves) put(out, curve_path(c, s));
  put(out, labels(d, s));
  double top = PLOT_BOTTOM + BELOW;
  for (const Strip& strip : d.strips) put(out, strip_cells(strip, top, s, stages)), top += STRIP;
  put(out, "</svg><p class=\"sign\">", sign_picture(d.sign), " positive: ", d.positive,
      d.downward ? "; drawn downward, on the tension side" : "", "</p></figure>");
  return out;
}

}  // namespace zelvo::report
