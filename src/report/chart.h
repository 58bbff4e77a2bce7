// Diagrams of a quantity along the bridge, as inline SVG.
#pragma once
#include <string>
#include <vector>

#include "report/results.h"
#include "report/units.h"

namespace zelvo::report {

// The axis along the bridge of all drawings, one below the other: pixels of the viewBox.
constexpr double WIDTH = 1000, LEFT = 58, RIGHT = 986;

// What stands under a diagram to say which way is positive.
enum class Sign { UP, HIGHER, TWIST, SHEAR, SAGGING, TORQUE, TENSION, RIGHT_TIP };

// Points at positions x (inches) with values y; both must outlive the diagram.
struct Curve {
  const std::vector<double>* x;
  const std::vector<double>* y;
  std::string color;
  double width;
  bool peaks = false;  // labelled with their values
  bool dashed = false;
  int stage = 0;  // marked with this number on the curve; 0: not
};
struct Band {
  const std::vector<double>* x;
  const std::vector<double>*low, *high;
};
// Below the plot: which stage governs, position by position.
struct Strip {
  std::string name;
  const std::vector<double>* x;
  const std::vector<int>* stage;
};

struct Diagram {
  std::string title;
  Html note;  // what the lines are
  Unit unit;
  Sign sign;
  std::string positive;   // in words
  bool downward = false;  // positive values are drawn downward: on the tension side
  std::vector<Band> bands;
  std::vector<Curve> curves;
  std::vector<Strip> strips;
  std::vector<double> limits;  // lines at these values where they are in range
};

// With supports, ends of the deck segments, and axes in both systems of units.
Html figure(const Diagram& diagram, const Bridge& bridge, int stages);

// Of stage k of n: a colour along one scale, so that the order of the stages is seen.
std::string stage_color(int k, int n);

// Round steps: about `count` multiples of 1, 2 or 5 times a power of ten in lo..hi.
struct Ticks {
  double first, step;
  int count, decimals;
};
Ticks nice_ticks(double lo, double hi, int count);

}  // namespace zelvo::report
