#include "report/buckled_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace zelvo::report {

namespace {

using Vec = std::array<double, 3>;

double dot(const Vec& a, const Vec& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Vec sum(const Vec& a, double s, const Vec& b) {
  return {a[0] + s * b[0], a[1] + s * b[1], a[2] + s * b[2]};
}

// Geometry and shape, node by node of a section; sections and nodes from 0.
struct Shape {
  const Geometry& g;
  const std::vector<int>& shape;
  std::size_t at(std::size_t section, int node) const {
    return 3 * (section * static_cast<std::size_t>(g.nodes_per_section) +
                static_cast<std::size_t>(node));
  }
  Vec home(std::size_t section, int node) const {
    const std::size_t i = at(section, node);
    return {g.xyz[i], g.xyz[i + 1], g.xyz[i + 2]};
  }
  Vec motion(std::size_t section, int node) const {  // 1: the largest component
    const std::size_t i = at(section, node);
    return {shape[i] / 1e4, shape[i + 1] / 1e4, shape[i + 2] / 1e4};
  }
  Vec moved(std::size_t section, int node, double amplitude) const {
    return sum(home(section, node), amplitude, motion(section, node));
  }
  std::size_t sections() const { return g.section.size(); }
};

// Axes at a section: along the bridge, to the right, up.
struct Frame {
  Vec origin, along, right;
  static constexpr Vec up{0, 1, 0};
};

Vec middle(const Shape& s, std::size_t section) {
  Vec m{0, 0, 0};
  for (int n = 0; n < s.g.nodes_per_section; ++n)
    m = sum(m, 1.0 / s.g.nodes_per_section, s.home(section, n));
  return m;
}

Frame frame_at(const Shape& s, std::size_t section) {
  const std::size_t last = s.sections() - 1;
  const Vec before = middle(s, section > 0 ? section - 1 : 0),
            behind = middle(s, std::min(section + 1, last));
  const double dx = behind[0] - before[0], dz = behind[2] - before[2], l = std::hypot(dx, dz);
  return {middle(s, section), {dx / l, 0, dz / l}, {-dz / l, 0, dx / l}};
}

// Parallel projection, seen from the right, ahead and above.
struct Camera {
  Vec origin, e1, e2, away;
};
Camera camera(const Frame& f) {
  constexpr double TURN = 25 * std::numbers::pi / 180, RISE = 28 * std::numbers::pi / 180;
  const Vec zero{0, 0, 0};
  const Vec e1 = sum(sum(zero, std::cos(TURN), f.along), std::sin(TURN), f.right);
  const Vec level = sum(sum(zero, std::sin(TURN), f.along), -std::cos(TURN), f.right);
  return {f.origin, e1, sum(sum(zero, std::sin(RISE), level), std::cos(RISE), Frame::up),
          sum(sum(zero, std::cos(RISE), level), -std::sin(RISE), Frame::up)};
}

struct Dot {
  double x, y, away;
};
Dot project(const Camera& c, const Vec& p) {
  const Vec d = sum(p, -1, c.origin);
  return {dot(d, c.e1), -dot(d, c.e2), dot(d, c.away)};
}

struct Quad {
  std::array<Dot, 4> corner;
  double away, motion;
};

// What part of the bridge is drawn, and how.
struct View {
  std::vector<std::size_t> sections;
  int girder;  // 0: all
  std::size_t node_step;
  double amplitude;
};

std::size_t nearest_section(const Geometry& g, double position) {
  std::size_t best = 0;
  for (std::size_t j = 0; j < g.section.size(); ++j)
    if (std::abs(g.section[j] - position) < std::abs(g.section[best] - position)) best = j;
  return best;
}

View view_of(const Shape& s, const ModeText& mode, const Bridge& bridge) {
  const bool whole = mode.kind == "girder" || mode.kind == "flange";
  const std::size_t last = s.sections() - 1, at = nearest_section(s.g, mode.position);
  constexpr std::size_t EITHER_SIDE = 10, MOST = 44;
  const std::size_t from = whole || at < EITHER_SIDE ? 0 : at - EITHER_SIDE,
                    to = whole ? last : std::min(last, at + EITHER_SIDE),
                    step = std::max<std::size_t>(1, (to - from) / MOST);
  View v{{}, whole ? 0 : mode.girder, whole ? 2u : 1u, 0};
  for (std::size_t j = from; j < to; j += step) v.sections.push_back(j);
  v.sections.push_back(to);
  v.amplitude = std::clamp(0.05 * (s.g.section[to] - s.g.section[from]), 0.2 * bridge.depth,
                           1.2 * bridge.depth);
  return v;
}

bool shown(const Run& run, const View& v) { return v.girder == 0 || run.girder == v.girder; }

std::vector<Quad> quads_of(const Shape& s, const View& v, const Camera& c) {
  std::vector<Quad> out;
  for (const Run& run : s.g.runs) {
    if (!shown(run, v)) continue;
    for (std::size_t k = 0; k + 1 < v.sections.size(); ++k)
      for (std::size_t i = 0; i + v.node_step < run.nodes.size(); i += v.node_step) {
        const int n0 = run.nodes[i] - 1, n1 = run.nodes[i + v.node_step] - 1;
        const std::size_t j0 = v.sections[k], j1 = v.sections[k + 1];
        Quad q{{project(c, s.moved(j0, n0, v.amplitude)), project(c, s.moved(j1, n0, v.amplitude)),
                project(c, s.moved(j1, n1, v.amplitude)), project(c, s.moved(j0, n1, v.amplitude))},
               0,
               0};
        for (const Dot& d : q.corner) q.away += d.away / 4;
        const Vec m = s.motion(j0, n0);
        q.motion = std::sqrt(dot(m, m));
        out.push_back(q);
      }
  }
  std::sort(out.begin(), out.end(), [](const Quad& a, const Quad& b) { return a.away > b.away; });
  return out;
}

struct Extent {
  double left = 1e300, top = 1e300, right = -1e300, bottom = -1e300;
  void take(double x, double y) {
    left = std::min(left, x), right = std::max(right, x);
    top = std::min(top, y), bottom = std::max(bottom, y);
  }
};

// Pixels of a drawing that fills a width or a height.
struct Fit {
  double scale, x0, y0;
  Fit(const Extent& e, double width, double height)
      : scale(std::min(width / (e.right - e.left), height / (e.bottom - e.top))),
        x0(e.left),
        y0(e.top) {}
  double x(double v) const { return 4 + scale * (v - x0); }
  double y(double v) const { return 4 + scale * (v - y0); }
};

// Edges of the undeformed plates along the stretch, and its end sections.
Html ghost(const Shape& s, const View& v, const Camera& c, const Fit& fit) {
  Html out = html("<path class=\"ghost\" d=\"");
  const auto to = [&](bool first, std::size_t j, int n) {
    const Dot d = project(c, s.home(j, n));
    put(out, first ? "M" : "L", fit.x(d.x), " ", fit.y(d.y));
  };
  for (const Run& run : s.g.runs) {
    if (!shown(run, v)) continue;
    for (const int n : {run.nodes.front() - 1, run.nodes.back() - 1})
      for (std::size_t k = 0; k < v.sections.size(); ++k) to(k == 0, v.sections[k], n);
    for (const std::size_t j : {v.sections.front(), v.sections.back()})
      for (std::size_t i = 0; i < run.nodes.size(); ++i) to(i == 0, j, run.nodes[i] - 1);
  }
  return html(out, "\"/>");
}

// place: attributes of its svg element.
Html stretch_view(const Shape& s, const View& v, const Frame& f, const Html& place) {
  const Camera c = camera(f);
  const std::vector<Quad> quads = quads_of(s, v, c);
  Extent extent;
  for (const Quad& q : quads)
    for (const Dot& d : q.corner) extent.take(d.x, d.y);
  const Fit fit(extent, 632, 360);
  Html out =
      html("<svg ", place, " class=\"drawing buckled\" viewBox=\"0 0 ", fit.x(extent.right) + 4,
           " ", fit.y(extent.bottom) + 4, "\" role=\"img\" aria-label=\"buckled shape\">");
  for (const Quad& q : quads) {
    put(out, "<path class=\"q", std::min(5, static_cast<int>(6 * q.motion)), "\" d=\"M");
    for (const Dot& d : q.corner) put(out, fit.x(d.x), " ", fit.y(d.y), " ");
    put(out, "Z\"/>");
  }
  return html(out, ghost(s, v, c, fit), "</svg>");
}

Html section_view(const Shape& s, std::size_t j, const Frame& f, double amplitude,
                  const Html& place) {
  const auto across = [&](const Vec& p) { return dot(sum(p, -1, f.origin), f.right); };
  Extent extent;
  for (int n = 0; n < s.g.nodes_per_section; ++n)
    for (const Vec& p : {s.home(j, n), s.moved(j, n, amplitude)}) extent.take(across(p), -p[1]);
  const Fit fit(extent, 332, 260);
  Html out =
      html("<svg ", place, " class=\"drawing buckled\" viewBox=\"0 0 ", fit.x(extent.right) + 4,
           " ", fit.y(extent.bottom) + 4, "\" role=\"img\" aria-label=\"buckled section\">");
  for (const bool moved : {false, true}) {
    put(out, moved ? html("<path class=\"moved\" d=\"") : html("<path class=\"ghost\" d=\""));
    for (const Run& run : s.g.runs)
      for (std::size_t i = 0; i < run.nodes.size(); ++i) {
        const int n = run.nodes[i] - 1;
        const Vec p = moved ? s.moved(j, n, amplitude) : s.home(j, n);
        put(out, i == 0 ? "M" : "L", fit.x(across(p)), " ", fit.y(-p[1]));
      }
    put(out, "\"/>");
  }
  return html(out, "</svg>");
}

// Both views, with the attributes of their elements.
struct Views {
  Html stretch, section;
};
Views views_of(const Geometry& geometry, const ModeText& mode, const Bridge& bridge,
               const Html& left, const Html& right) {
  if (mode.shape.size() != geometry.xyz.size() || geometry.section.size() < 2) return {};
  const Shape s{geometry, mode.shape};
  const std::size_t j = nearest_section(geometry, mode.position);
  const Frame f = frame_at(s, j);
  return {stretch_view(s, view_of(s, mode, bridge), f, left),
          section_view(s, j, f, 0.2 * bridge.depth, right)};
}

}  // namespace

Html buckled_picture(const Geometry& geometry, const ModeText& mode, const Bridge& bridge) {
  const auto [stretch, section] = views_of(geometry, mode, bridge, {}, {});
  if (stretch.text.empty()) return {};
  return html("<div class=\"columns wide-left\"><div>", stretch, "</div><div>", section,
              "</div></div>");
}

Html buckled_drawing(const Geometry& geometry, const ModeText& mode, const Bridge& bridge,
                     const Html& style) {
  const auto [stretch, section] =
      views_of(geometry, mode, bridge, html("width=\"640\" height=\"360\""),
               html("x=\"660\" width=\"340\" height=\"360\""));
  if (stretch.text.empty()) return {};
  return html(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 1000 360\" width=\"1000\">\n<style>",
      style, "</style>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n", stretch, "\n",
      section, "\n</svg>\n");
}

}  // namespace zelvo::report
