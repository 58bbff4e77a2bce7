#include "report/plan.h"

#include <algorithm>
#include <cmath>

#include "report/chart.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

double along(double position, const Bridge& b) {
  return LEFT + (RIGHT - LEFT) * position / b.length;
}

// Points of the plan: positions and offsets to the right, inches, to pixels. A curved bridge is an
// arc that bows upward, its centre on the right hand, below.
struct PlanScale {
  double radius, length, scale, wider, top;
  bool curved() const { return std::isfinite(radius); }
  double half_angle() const { return length / radius / 2; }
  double x(double position, double offset) const {
    if (!curved()) return LEFT + scale * position;
    const double a = position / radius - half_angle();
    return (LEFT + RIGHT) / 2 + scale * (radius - wider * offset) * std::sin(a);
  }
  double y(double position, double offset) const {
    if (!curved()) return top + scale * wider * offset;
    const double a = position / radius - half_angle();
    return top + scale * (radius - (radius - wider * offset) * std::cos(a));
  }
};

// What is drawn is at least this high, so that laterals can be told apart.
constexpr double LEAST_DECK = 84, MOST_DECK = 170, MARGIN = 26;

PlanScale plan_scale(const Bridge& b) {
  const double half = b.deck_width / 2;
  PlanScale s{b.radius, b.length, 0, 1, 0};
  const double chord = s.curved() ? 2 * (b.radius + half) * std::sin(s.half_angle()) : b.length;
  s.scale = (RIGHT - LEFT) / chord;
  const double deck = s.scale * b.deck_width;
  s.wider = std::clamp(1.0, LEAST_DECK / deck, std::max(LEAST_DECK, MOST_DECK) / deck);
  s.top = MARGIN + s.scale * s.wider * half;
  return s;
}

double plan_height(const PlanScale& s, const Bridge& b) {
  return std::max(s.y(0, b.deck_width / 2), s.y(b.length / 2, b.deck_width / 2)) + MARGIN;
}

// A line at an offset from one position to another.
Html edge(const PlanScale& s, double from, double to, double offset, bool first) {
  Html out;
  const int n = s.curved() ? 48 : 1;
  for (int i = 0; i <= n; ++i) {
    const double p = from + (to - from) * i / n;
    put(out, first && i == 0 ? "M" : "L", s.x(p, offset), " ", s.y(p, offset));
  }
  return out;
}

Html bar(const PlanScale& s, double p0, double o0, double p1, double o1, const std::string& color) {
  return html("<path stroke=\"", color, "\" d=\"M", s.x(p0, o0), " ", s.y(p0, o0), "L", s.x(p1, o1),
              " ", s.y(p1, o1), "\"/>");
}

double girder_offset(const Bridge& b, int girder) {
  return b.girders == 1 ? 0 : girder == 1 ? -b.half_distance : b.half_distance;
}

Html plates_of_plan(const PlanScale& s, const Bridge& b) {
  const double half = b.deck_width / 2;
  Html out = html("<path class=\"deck\" d=\"", edge(s, 0, b.length, -half, true),
                  edge(s, b.length, 0, half, false), "Z\"/>");
  for (int g = 1; g <= b.girders; ++g)
    for (const double side : {-1.0, 1.0})
      put(out, "<path class=\"web\" d=\"",
          edge(s, 0, b.length, girder_offset(b, g) + side * b.top_spacing / 2, true), "\"/>");
  for (const Stretch& pour : b.segments)
    if (pour.end < b.length)
      put(out, "<path class=\"pour\" d=\"M", s.x(pour.end, -half), " ", s.y(pour.end, -half), "L",
          s.x(pour.end, half), " ", s.y(pour.end, half), "\"/>");
  return out;
}

Html supports_of_plan(const PlanScale& s, const Bridge& b) {
  Html out;
  int number = 0;
  for (const SupportLine& support : b.supports) {
    const double half = b.deck_width / 2 + 6 / (s.scale * s.wider), p = support.position;
    put(out, "<path class=\"support-line\" d=\"M", s.x(p, -half), " ", s.y(p, -half), "L",
        s.x(p, half), " ", s.y(p, half), "\"/><text text-anchor=\"middle\" x=\"", s.x(p, -half),
        "\" y=\"", s.y(p, -half) - 4, "\">", ++number, support.kind == "pinned" ? " pinned" : "",
        "</text>");
  }
  for (int g = 1; g <= b.girders; ++g)
    put(out, "<text text-anchor=\"end\" x=\"", s.x(0, girder_offset(b, g)) - 8, "\" y=\"",
        s.y(0, girder_offset(b, g)) + 4, "\">girder ", g, "</text>");
  return out;
}

Html members_of_plan(const PlanScale& s, const Results& r, const MemberColor& color) {
  const Bridge& b = r.bridge;
  const double w = b.top_spacing / 2;
  Html out;
  const MemberPlaces& laterals = r.members.at("lateral");
  for (std::size_t i = 0; i < laterals.begin.size(); ++i) {
    const double c = girder_offset(b, laterals.girder[i]);
    const LateralBar& row = b.laterals.at(static_cast<std::size_t>(laterals.number[i] - 1));
    const double start = row.direction == 1 ? w : -w;
    put(out,
        bar(s, laterals.begin[i], c + start, laterals.end[i], c - start, color("laterals", i)));
  }
  const MemberPlaces& internal = r.members.at("internal_frame");
  for (std::size_t i = 0; i < internal.begin.size(); ++i) {
    const double c = girder_offset(b, internal.girder[i]), p = internal.begin[i];
    put(out, bar(s, p, c - w, p, c + w, color("internal", i)));
  }
  const MemberPlaces& external = r.members.at("external_frame");
  for (std::size_t i = 0; i < external.begin.size(); ++i) {
    const double c = b.half_distance - w, p = external.begin[i];
    put(out, bar(s, p, -c, p, c, color("external", i)));
  }
  return out;
}

// --- section ---

Html dimension(double x0, double x1, double y, double value) {
  return html("<path class=\"dim\" d=\"M", x0, " ", y - 4, "v8M", x1, " ", y - 4, "v8M", x0, " ", y,
              "H", x1, "\"/><text text-anchor=\"middle\" x=\"", (x0 + x1) / 2, "\" y=\"", y - 4,
              "\" data-u=\"length\" data-v=\"", full(value), "\">", fixed(value, 3), "</text>");
}

Html girder_section(const Bridge& b, double centre, double top, double scale) {
  const double w = scale * b.top_spacing / 2, f = scale * b.flange_width / 2,
               h = scale * b.bottom_width / 2, foot = top + scale * b.depth;
  return html("<path class=\"steel\" d=\"M", centre - w - f, " ", top, "h", 2 * f, "M",
              centre + w - f, " ", top, "h", 2 * f, "M", centre - w, " ", top, "L", centre - h, " ",
              foot, "H", centre + h, "L", centre + w, " ", top, "\"/><path class=\"frame\" d=\"M",
              centre - w, " ", top, "H", centre + w, "M", centre - h, " ", foot, "L", centre, " ",
              top, "L", centre + h, " ", foot, "\"/>");
}

// --- calendar ---

constexpr double ROW = 20;

Html calendar_cell(const Results& r, const StageText& stage, std::size_t j, double top) {
  const Stretch& pour = r.bridge.segments.at(j);
  const SegmentState& s = stage.segments.at(j);
  const double x0 = along(pour.begin, r.bridge), x1 = along(pour.end, r.bridge);
  const bool wet = s.load > 0 && !s.hard;
  Html out = html("<rect class=\"",
                  s.hard ? "hard"
                  : wet  ? "wet"
                         : "soft",
                  "\" x=\"", x0, "\" y=\"", top, "\" width=\"", std::max(0.0, x1 - x0),
                  "\" height=\"", ROW - 3, "\"/>");
  if (x1 - x0 > 34 && s.load != 0)
    put(out, "<text text-anchor=\"middle\" x=\"", (x0 + x1) / 2, "\" y=\"", top + 12.5,
        "\" data-u=\"load\" data-v=\"", full(s.load), "\">", fixed(s.load, 3), "</text>");
  else if (x1 - x0 > 34 && s.hard)
    put(out, "<text class=\"quiet\" text-anchor=\"middle\" x=\"", (x0 + x1) / 2, "\" y=\"",
        top + 12.5, "\">hard</text>");
  return out;
}

// Stretches with their thickness in a row.
Html plate_row(const char* name, const std::vector<Stretch>& plates, const Bridge& b, double top) {
  double most = 0;
  for (const Stretch& p : plates) most = std::max(most, p.thickness);
  Html out =
      html("<text text-anchor=\"end\" x=\"", LEFT - 6, "\" y=\"", top + 17, "\">", name, "</text>");
  for (const Stretch& p : plates) {
    const double x0 = along(p.begin, b), x1 = along(p.end, b), h = 2 + 8 * p.thickness / most;
    put(out, "<rect class=\"plate\" x=\"", x0, "\" y=\"", top + 24 - h, "\" width=\"",
        std::max(0.0, x1 - x0 - 1), "\" height=\"", h, "\"/>");
    if (x1 - x0 > 36)
      put(out, "<text text-anchor=\"middle\" x=\"", (x0 + x1) / 2, "\" y=\"", top + 11,
          "\" data-u=\"length\" data-v=\"", full(p.thickness), "\">", fixed(p.thickness, 3),
          "</text>");
  }
  return out;
}

}  // namespace

Html section_drawing(const Bridge& b) {
  const double scale = std::min(560 / b.deck_width, 180 / b.depth);
  const double middle = 360, top = 66, deck = scale * b.deck_width, slab = scale * b.deck_thickness;
  const double foot = top + scale * b.depth, c1 = middle + scale * girder_offset(b, 1),
               w = scale * b.top_spacing / 2, h = scale * b.bottom_width / 2;
  Html out = html("<svg class=\"drawing section\" viewBox=\"0 0 720 ", foot + 34,
                  "\" role=\"img\" aria-label=\"cross-section\"><rect class=\"deck\" x=\"",
                  middle - deck / 2, "\" y=\"", top - slab, "\" width=\"", deck, "\" height=\"",
                  slab, "\"/>");
  for (int g = 1; g <= b.girders; ++g) {
    const double c = middle + scale * girder_offset(b, g);
    put(out, girder_section(b, c, top, scale), "<text class=\"quiet\" text-anchor=\"middle\" x=\"",
        c, "\" y=\"", foot - 8, "\">girder ", g, "</text>");
  }
  put(out, dimension(middle - deck / 2, middle + deck / 2, 20, b.deck_width),
      dimension(c1 - w, c1 + w, 42, b.top_spacing),
      dimension(c1 - h, c1 + h, foot + 24, b.bottom_width));
  if (b.girders == 2)
    put(out, dimension(c1, middle - scale * girder_offset(b, 1), foot + 24, 2 * b.half_distance));
  put(out, "<path class=\"dim\" d=\"M", middle - deck / 2 - 14, " ", top, "V", foot, "m-4 0h8M",
      middle - deck / 2 - 18, " ", top, "h8\"/><text text-anchor=\"end\" x=\"",
      middle - deck / 2 - 20, "\" y=\"", (top + foot) / 2, "\" data-u=\"length\" data-v=\"",
      full(b.depth), "\">", fixed(b.depth, 3), "</text></svg>");
  return out;
}

Html plan_drawing(const Results& r, const MemberColor& color) {
  const PlanScale s = plan_scale(r.bridge);
  Html out = html("<svg class=\"drawing plan\" viewBox=\"0 0 ", WIDTH, " ",
                  plan_height(s, r.bridge), "\" role=\"img\" aria-label=\"plan\">",
                  plates_of_plan(s, r.bridge), "<g class=\"members\">",
                  members_of_plan(s, r, color), "</g>", supports_of_plan(s, r.bridge), "</svg>");
  if (s.wider > 1.05 || s.wider < 0.95)
    put(out, "<p class=\"note\">Widths are drawn ", fixed(s.wider, 1), " times as large.</p>");
  return out;
}

Html calendar_drawing(const Results& r) {
  const Bridge& b = r.bridge;
  const double height = 26 + ROW * static_cast<double>(r.stages.size());
  Html out = html("<svg class=\"drawing calendar\" viewBox=\"0 0 ", WIDTH, " ", height,
                  "\" role=\"img\" aria-label=\"calendar of pours\">");
  for (std::size_t j = 0; j < b.segments.size(); ++j)
    put(out, "<text text-anchor=\"middle\" x=\"",
        (along(b.segments[j].begin, b) + along(b.segments[j].end, b)) / 2, "\" y=\"14\">",
        static_cast<int>(j) + 1, "</text>");
  put(out, "<text text-anchor=\"end\" x=\"", LEFT - 6, "\" y=\"14\">pour</text>");
  double top = 20;
  for (const StageText& stage : r.stages) {
    put(out, "<rect x=\"", LEFT - 28, "\" y=\"", top + 1,
        "\" width=\"20\" height=\"14\" rx=\"2\" fill=\"",
        stage_color(stage.number, static_cast<int>(r.stages.size())),
        "\"/><text class=\"strip\" x=\"", LEFT - 18, "\" y=\"", top + 12, "\">", stage.number,
        "</text>");
    for (std::size_t j = 0; j < stage.segments.size(); ++j)
      put(out, calendar_cell(r, stage, j, top));
    top += ROW;
  }
  return html(out, "</svg>");
}

Html plate_drawing(const Bridge& b) {
  return html("<svg class=\"drawing plates\" viewBox=\"0 0 ", WIDTH,
              " 84\" role=\"img\" aria-label=\"plate thicknesses\">",
              plate_row("top fl.", b.top_flanges, b, 0), plate_row("webs", b.webs, b, 27),
              plate_row("bottom fl.", b.bottom_flanges, b, 54), "</svg>");
}

}  // namespace zelvo::report
