// Lines, areas and words of a drawing; coordinates in pixels, y downward.
#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace zelvo {

struct Point {
  double x, y;
};

struct Svg {
  std::string body;
  double width = 0, height = 0;
};

// `style` is a class of the style sheet in svg_text.
void draw_line(Svg& svg, std::string_view style, Point a, Point b);
void draw_path(Svg& svg, std::string_view style, const std::vector<Point>& points, bool closed);
void draw_circle(Svg& svg, std::string_view style, Point centre, double radius);
// anchor: "start", "middle" or "end"; turned by degrees about its place.
void draw_text(Svg& svg, std::string_view style, Point at, std::string_view anchor,
               std::string_view text, double degrees = 0);
// A dimension between two points, drawn on the line itself, with its text at the middle.
void draw_dimension(Svg& svg, Point a, Point b, std::string_view text);

// The whole drawing, its texts escaped.
std::string svg_text(const Svg& svg);

}  // namespace zelvo
