#include "desk/draw.h"

#include <algorithm>
#include <cmath>

#include "construction/camber.h"
#include "desk/findings.h"
#include "desk/pours.h"
#include "desk/svg.h"

namespace zelvo {

namespace {

constexpr double WIDTH = 1360, MARGIN = 60, DRAWN = WIDTH - 2 * MARGIN;  // pixels
constexpr double SECTION_TOP = 78, LABELS = 46;

std::string feet(double inches) { return rounded(inches / 12) + " ft"; }

// Centres of the girders across the bridge, to the right.
std::vector<double> girder_centres(const Model& m) {
  return m.ngird == 2 ? std::vector<double>{-m.offset, m.offset} : std::vector<double>{0};
}

// ---- the cross-section, seen along the bridge ----

struct SectionFrame {
  double x0, y0, scale;  // the reference line at the height of the top flanges
  Point at(double across, double up) const { return {x0 + scale * across, y0 - scale * up}; }
};

void draw_girder_section(Svg& svg, const Model& m, const SectionFrame& f, double c) {
  const SectionDimensions& s = m.secdim;
  const double foot = s.bottom_width / 2, top = s.top_spacing / 2, flange = s.flange_width / 2;
  draw_path(
      svg, "plate",
      {f.at(c - top, 0), f.at(c - foot, -s.depth), f.at(c + foot, -s.depth), f.at(c + top, 0)},
      false);
  for (const double side : {c - top, c + top})
    draw_line(svg, "plate", f.at(side - flange, 0), f.at(side + flange, 0));
  if (m.nibrace == 0) return;
  draw_line(svg, "frame", f.at(c - top, 0), f.at(c + top, 0));
  for (const double side : {c - foot, c + foot})
    draw_line(svg, "frame", f.at(side, -s.depth), f.at(c, 0));
}

void draw_section_frames(Svg& svg, const Model& m, const SectionFrame& f) {
  if (m.nebrace == 0) return;
  const SectionDimensions& s = m.secdim;
  const double top = m.offset - s.top_spacing / 2, foot = m.offset - s.bottom_width / 2;
  draw_line(svg, "external", f.at(-top, 0), f.at(top, 0));
  draw_line(svg, "external", f.at(-foot, -s.depth), f.at(foot, -s.depth));
  for (const double side : {-top, top})
    draw_line(svg, "external", f.at(side, 0), f.at(0, -s.depth));
}

void draw_section_dimensions(Svg& svg, const Model& m, const SectionFrame& f) {
  const SectionDimensions& s = m.secdim;
  const double edge = s.deck_width / 2, c = girder_centres(m).front(), t = s.deck_thickness;
  const auto above = [&](double px) { return (px / f.scale) + t; };
  const auto below = [&](double px) { return -s.depth - px / f.scale; };
  draw_dimension(svg, f.at(-edge, above(26)), f.at(edge, above(26)),
                 "deck " + plain(s.deck_width) + " x " + plain(t) + " in");
  draw_dimension(svg, f.at(c - s.top_spacing / 2, above(10)),
                 f.at(c + s.top_spacing / 2, above(10)), plain(s.top_spacing));
  draw_dimension(svg, f.at(c - s.bottom_width / 2, below(14)),
                 f.at(c + s.bottom_width / 2, below(14)), plain(s.bottom_width));
  draw_dimension(svg, f.at(-edge - 20 / f.scale, 0), f.at(-edge - 20 / f.scale, -s.depth),
                 plain(s.depth));
  const double tip = -c + s.top_spacing / 2;
  draw_text(svg, "small", f.at(tip + s.flange_width / 2, -12 / f.scale), "start",
            "flange " + plain(s.flange_width));
  if (m.ngird == 2)
    draw_dimension(svg, f.at(0, below(14)), f.at(m.offset, below(14)), "offset " + plain(m.offset));
}

// Returns the height that it takes.
double draw_section(Svg& svg, const Model& m) {
  const SectionDimensions& s = m.secdim;
  const double scale = std::min(620 / s.deck_width, 150 / s.depth), edge = s.deck_width / 2;
  const SectionFrame f{MARGIN + 40 + scale * edge, SECTION_TOP + LABELS + scale * s.deck_thickness,
                       scale};
  draw_text(svg, "head", {MARGIN, SECTION_TOP}, "start", "Section, seen along the bridge (in)");
  draw_path(
      svg, "deck",
      {f.at(-edge, 0), f.at(-edge, s.deck_thickness), f.at(edge, s.deck_thickness), f.at(edge, 0)},
      true);
  for (const double c : girder_centres(m)) draw_girder_section(svg, m, f, c);
  draw_section_frames(svg, m, f);
  draw_section_dimensions(svg, m, f);
  draw_line(svg, "axis", f.at(0, s.deck_thickness), f.at(0, -s.depth));
  for (std::size_t g = 0; g < girder_centres(m).size(); ++g)
    draw_text(svg, "", f.at(girder_centres(m)[g], -s.depth * 0.8), "middle",
              "girder " + std::to_string(g + 1));
  return LABELS + scale * (s.deck_thickness + s.depth) + 60;
}

void draw_legend(Svg& svg, const Model& m) {
  const double x = WIDTH - 330;
  double y = SECTION_TOP;
  const auto entry = [&](const char* style, const std::string& text) {
    draw_line(svg, style, {x, y - 4}, {x + 34, y - 4});
    draw_text(svg, "", {x + 44, y}, "start", text);
    y += 18;
  };
  entry("steel", "web tops");
  entry("hidden", "bottom flange");
  entry("frame", std::to_string(m.nibrace) + " internal frames");
  if (m.ngird == 2) entry("external", std::to_string(m.nebrace) + " frames between the girders");
  entry("lateral", std::to_string(m.nlat) + " top laterals");
  entry("stiffener", std::to_string(m.nstiff) + " web stiffeners");
  draw_path(svg, "support", {{x + 11, y + 2}, {x + 23, y + 2}, {x + 17, y - 9}}, true);
  draw_text(svg, "", {x + 44, y}, "start", "pinned support");
  draw_circle(svg, "support", {x + 17, y + 14}, 5);
  draw_text(svg, "", {x + 44, y + 18}, "start", "roller");
}

// ---- the plan: positions along the reference line, distances to the right of it ----

struct PlanView {
  const Model& m;
  double scale = 1, x0 = 0, y0 = 0;  // pixel per inch; place of the reference line at mid length

  Point at(double s, double right) const {
    if (!m.curved()) return {x0 + scale * (s - m.lgbr / 2.0), y0 + scale * right};
    const double turn = (s - m.lgbr / 2.0) / m.rcurv, r = m.rcurv - right;
    return {x0 + scale * r * std::sin(turn), y0 + scale * (m.rcurv - r * std::cos(turn))};
  }
  double degrees(double s) const {
    return m.curved() ? (s - m.lgbr / 2.0) / m.rcurv * 57.29578 : 0;
  }
};

std::vector<Point> along(const PlanView& p, double from, double to, double right) {
  std::vector<Point> points;
  const int n = p.m.curved() ? std::max(2, static_cast<int>((to - from) / 60)) : 1;
  for (int i = 0; i <= n; ++i) points.push_back(p.at(from + (to - from) * i / n, right));
  return points;
}

void draw_strip(Svg& svg, const PlanView& p, const char* style, double from, double to,
                double half) {
  std::vector<Point> outline = along(p, from, to, -half);
  const std::vector<Point> back = along(p, from, to, half);
  outline.insert(outline.end(), back.rbegin(), back.rend());
  draw_path(svg, style, outline, true);
}

void draw_pours(Svg& svg, const PlanView& p) {
  double from = 0;
  const double half = p.m.secdim.deck_width / 2;
  for (int j = 1; j <= p.m.npour; ++j) {
    const double to = from + p.m.pour_len(j);
    draw_strip(svg, p, j % 2 == 0 ? "even" : "odd", from, to, half);
    draw_text(svg, "head", p.at((from + to) / 2, -half - 8 / p.scale), "middle", segment_letter(j),
              p.degrees((from + to) / 2));
    from = to;
  }
}

void draw_girders(Svg& svg, const PlanView& p) {
  const Model& m = p.m;
  const double length = m.lgbr, top = m.secdim.top_spacing / 2, foot = m.secdim.bottom_width / 2;
  draw_path(svg, "axis", along(p, 0, length, 0), false);
  for (const double c : girder_centres(m)) {
    for (const double web : {c - foot, c + foot})
      draw_path(svg, "hidden", along(p, 0, length, web), false);
    for (const double web : {c - top, c + top})
      draw_path(svg, "steel", along(p, 0, length, web), false);
    for (int i = 1; i <= m.nibrace; ++i)
      draw_line(svg, "frame", p.at(m.ib_pos(i), c - top), p.at(m.ib_pos(i), c + top));
    for (int i = 1; i <= m.nlat; ++i) {  // direction 1 from right to left
      const double a = m.lat_type(i) == 1 ? top : -top;
      draw_line(svg, "lateral", p.at(m.lat_from(i), c + a), p.at(m.lat_to(i), c - a));
    }
    for (int i = 1; i <= m.nstiff; ++i)
      for (const double web : {c - top, c + top})
        draw_line(svg, "stiffener", p.at(m.ws_pos(i), web - 5), p.at(m.ws_pos(i), web + 5));
  }
  const double inner = m.offset - top;
  for (int i = 1; i <= m.nebrace; ++i)
    draw_line(svg, "external", p.at(m.eb_pos(i), -inner), p.at(m.eb_pos(i), inner));
}

// Supports, and the spans along the far edge of the deck.
void draw_plan_supports(Svg& svg, const PlanView& p) {
  const Model& m = p.m;
  const double half = m.secdim.deck_width / 2, out = half + 34 / p.scale;
  for (int i = 1; i <= m.nsupp; ++i) {
    const double s = m.supp_pos(i);
    draw_line(svg, "dim", p.at(s, -half), p.at(s, half + 44 / p.scale));
    for (const double c : girder_centres(m)) {
      const Point q = p.at(s, c);
      if (i == 1)
        draw_path(svg, "support", {{q.x - 6, q.y + 5}, {q.x + 6, q.y + 5}, {q.x, q.y - 6}}, true);
      else
        draw_circle(svg, "support", q, 5);
    }
    draw_text(svg, "small", p.at(s, half + 56 / p.scale), "middle", feet(s), p.degrees(s));
  }
  for (const Span& span : spans_of(m)) {
    draw_path(svg, "dim", along(p, span.begin, span.end, out), false);
    const double s = (span.begin + span.end) / 2;
    draw_text(svg, "", p.at(s, out - 4 / p.scale), "middle", feet(span.end - span.begin),
              p.degrees(s));
  }
}

// Returns the height that it takes.
double draw_plan(Svg& svg, const Model& m, double top) {
  const double half = m.secdim.deck_width / 2;
  PlanView p{m};
  const double across = p.at(m.lgbr, -half).x - p.at(0, -half).x;
  p.scale = std::min(DRAWN / across, 150 / half);
  p.x0 = WIDTH / 2;
  p.y0 = top + LABELS + p.scale * half;
  draw_text(svg, "head", {MARGIN, top}, "start",
            m.curved()
                ? "Plan, R = " + rounded(m.rcurv / 12) + " ft, positions along the reference line"
                : std::string("Plan"));
  draw_pours(svg, p);
  draw_girders(svg, p);
  draw_plan_supports(svg, p);
  return p.at(0, half).y - top + 90;
}

// ---- plates, studs and pours along the developed reference line ----

struct Strips {
  const Model& m;
  double y;
  double x(double s) const { return MARGIN + 100 + s * (DRAWN - 100) / m.lgbr; }
};

// One row of blocks, each as high as value over largest, with its text.
template <class Value, class Text>
void draw_row(Svg& svg, Strips& d, const char* name, const Vector<int>& length, Value value,
              Text text) {
  double from = 0, largest = 0;
  for (int j = 1; j <= length.size(); ++j) largest = std::max(largest, value(j));
  draw_text(svg, "", {MARGIN, d.y}, "start", name);
  for (int j = 1; j <= length.size(); ++j) {
    const double a = d.x(from), b = d.x(from + length(j)),
                 h = largest > 0 ? 16 * value(j) / largest : 0;
    from += length(j);
    if (b - a < 1) continue;
    draw_path(svg, "block", {{a, d.y}, {a, d.y - h}, {b, d.y - h}, {b, d.y}}, true);
    draw_text(svg, "small", {(a + b) / 2, d.y + 10}, "middle", text(j));
  }
  d.y += 40;
}

// Stage in which a segment is poured, 0 if none: the largest load on its wet concrete.
int poured_stage(const Model& m, int j) {
  int stage = 0;
  for (int k = 1; k <= m.nanal && !hard(m, k, j); ++k)
    if (m.pour_load(k, j) > 0 && (stage == 0 || m.pour_load(k, j) > m.pour_load(stage, j)))
      stage = k;
  return stage;
}

double draw_strips(Svg& svg, const Model& m, double top) {
  draw_text(svg, "head", {MARGIN, top}, "start", "Plates (in), studs and pours along the bridge");
  Strips d{m, top + 40};
  const auto plates = [&](const char* name, const PlateSegments& p) {
    draw_row(
        svg, d, name, p.len, [&](int j) { return p.t(j); },
        [&](int j) { return plain(p.t(j)) + " x " + feet(p.len(j)); });
  };
  plates("top flanges", top_segments(m));
  plates("webs", web_segments(m));
  plates("bottom flange", bottom_segments(m));
  const auto one = [](int) { return 0.5; };
  draw_row(svg, d, "studs", m.stud_len, one, [&](int j) {
    return std::to_string(m.stud_count(j)) + " at " + plain(m.stud_spacing(j)) + " in";
  });
  draw_row(svg, d, "pours", m.pour_len, one, [&](int j) {
    const int k = poured_stage(m, j);
    return segment_letter(j) + (k > 0 ? ", stage " + std::to_string(k) : std::string());
  });
  for (int i = 1; i <= m.nsupp; ++i)
    draw_line(svg, "axis", {d.x(m.supp_pos(i)), top + 14}, {d.x(m.supp_pos(i)), d.y - 26});
  return d.y - top;
}

}  // namespace

std::string draw_bridge(const Model& m) {
  Svg svg;
  if (m.lgbr == 0) return svg_text(svg);
  draw_text(svg, "title", {MARGIN, 36}, "start", m.prname);
  double y = SECTION_TOP + std::max(draw_section(svg, m), 170.0);
  draw_legend(svg, m);
  y += draw_plan(svg, m, y);
  y += draw_strips(svg, m, y);
  svg.width = WIDTH;
  svg.height = y + 10;
  return svg_text(svg);
}

}  // namespace zelvo
