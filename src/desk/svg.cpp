#include "desk/svg.h"

#include <cmath>
#include <numbers>

#include "base/text.h"

namespace zelvo {

namespace {

constexpr const char* STYLES =
    "text{font-family:'DejaVu Sans',Helvetica,Arial,sans-serif;font-size:11px;fill:#222}"
    ".title{font-size:15px;font-weight:bold}.head{font-size:12px;font-weight:bold}"
    ".small{font-size:9px}.steel{stroke:#111;stroke-width:1.2;fill:none}"
    ".plate{stroke:#111;stroke-width:2.4;fill:none;stroke-linejoin:round}"
    ".hidden{stroke:#777;stroke-width:.7;stroke-dasharray:5 3;fill:none}"
    ".axis{stroke:#888;stroke-width:.6;stroke-dasharray:12 3 2 3;fill:none}"
    ".frame{stroke:#1b5ea8;stroke-width:1.4;fill:none}"
    ".external{stroke:#1b5ea8;stroke-width:1.4;stroke-dasharray:4 2;fill:none}"
    ".lateral{stroke:#b4511e;stroke-width:1;fill:none}"
    ".stiffener{stroke:#111;stroke-width:2.6;fill:none}"
    ".deck{stroke:#555;stroke-width:.8;fill:#e9e9e4}.even{stroke:#999;stroke-width:.6;fill:#f4f2ea}"
    ".odd{stroke:#999;stroke-width:.6;fill:#e4e9ee}.block{stroke:#555;stroke-width:.7;fill:#d5d9de}"
    ".support{stroke:#111;stroke-width:1.6;fill:#fff}.dim{stroke:#444;stroke-width:.6;fill:none}";

std::string coordinate(double value) { return formatted("%.1f", value); }
std::string xy(Point p) { return coordinate(p.x) + " " + coordinate(p.y); }

std::string escaped(std::string_view text) {
  std::string out;
  for (const char ch : text) {
    if (ch == '&')
      out += "&amp;";
    else if (ch == '<')
      out += "&lt;";
    else if (ch == '>')
      out += "&gt;";
    else
      out += ch >= 0x20 && ch < 0x7f ? ch : '?';
  }
  return out;
}

std::string tag(const char* name, std::string_view style) {
  return std::string("<") + name + " class=\"" + std::string(style) + "\" ";
}

}  // namespace

void draw_line(Svg& svg, std::string_view style, Point a, Point b) {
  draw_path(svg, style, {a, b}, false);
}

void draw_path(Svg& svg, std::string_view style, const std::vector<Point>& points, bool closed) {
  std::string d;
  for (const Point& p : points) d += (d.empty() ? "M" : "L") + xy(p);
  svg.body += tag("path", style) + "d=\"" + d + (closed ? "Z" : "") + "\"/>\n";
}

void draw_circle(Svg& svg, std::string_view style, Point centre, double radius) {
  svg.body += tag("circle", style) + "cx=\"" + coordinate(centre.x) + "\" cy=\"" +
              coordinate(centre.y) + "\" r=\"" + coordinate(radius) + "\"/>\n";
}

void draw_text(Svg& svg, std::string_view style, Point at, std::string_view anchor,
               std::string_view text, double degrees) {
  svg.body += tag("text", style) + "text-anchor=\"" + std::string(anchor) +
              "\" transform=\"translate(" + xy(at) + ")" +
              (degrees == 0 ? "" : " rotate(" + coordinate(degrees) + ")") + "\">" + escaped(text) +
              "</text>\n";
}

void draw_dimension(Svg& svg, Point a, Point b, std::string_view text) {
  const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
  if (length == 0) return;
  const Point slash{2.8 * (dx - dy) / length, 2.8 * (dx + dy) / length};
  draw_line(svg, "dim", a, b);
  for (const Point& p : {a, b})
    draw_line(svg, "dim", {p.x - slash.x, p.y - slash.y}, {p.x + slash.x, p.y + slash.y});
  double degrees = std::atan2(dy, dx) * 180 / std::numbers::pi;
  if (degrees >= 90 || degrees < -90) degrees += degrees > 0 ? -180 : 180;  // read from the right
  const double turn = degrees * std::numbers::pi / 180;
  const Point middle{(a.x + b.x) / 2 + 3 * std::sin(turn), (a.y + b.y) / 2 - 3 * std::cos(turn)};
  draw_text(svg, "", middle, "middle", text, degrees);
}

std::string svg_text(const Svg& svg) {
  const std::string w = coordinate(svg.width), h = coordinate(svg.height);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + w + "\" height=\"" + h +
         "\" viewBox=\"0 0 " + w + " " + h + "\">\n<style>" + STYLES +
         "</style>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n" + svg.body + "</svg>\n";
}

}  // namespace zelvo
