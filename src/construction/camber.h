// Spans, tenth points, camber and what is still to come.
#pragma once
#include <vector>

#include "construction/quantities.h"
#include "model/description.h"

namespace zelvo {

// Between neighbouring supports, whatever their order in the input; inches along the girder.
struct Span {
  double begin, end;
};
std::vector<Span> spans_of(const Model& model);

struct TenthPoint {
  int span;         // from 1
  int tenth;        // 0 to 10
  double position;  // inches
};
std::vector<TenthPoint> tenth_points(const Model& model);

// Value at a position of a column of a station table (nstn,...), by the cubic through the two
// stations on either side (Lagrange); near an end of the girder through its last four, of a girder
// of fewer stations through all it has. At a station it is the station's value.
double at_position(const Matrix<double>& values, int column, double position);

// Deflections still to come behind stage k: those of the last total less those of total k. With an
// empty total (the unloaded state) they are all deflections; camber is their negative.
//   last, total  (nstn,...)
Matrix<double> still_to_come(const Matrix<double>& last, const Matrix<double>& total);
Matrix<double> camber(const Matrix<double>& last);

}  // namespace zelvo
