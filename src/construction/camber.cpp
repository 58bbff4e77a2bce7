#include "construction/camber.h"

#include <algorithm>

namespace zelvo {

std::vector<Span> spans_of(const Model& model) {
  std::vector<int> at(model.supp_pos.begin(), model.supp_pos.end());
  std::sort(at.begin(), at.end());
  at.erase(std::unique(at.begin(), at.end()), at.end());
  std::vector<Span> spans;
  for (std::size_t i = 1; i < at.size(); ++i)
    spans.push_back({static_cast<double>(at[i - 1]), static_cast<double>(at[i])});
  return spans;
}

std::vector<TenthPoint> tenth_points(const Model& model) {
  constexpr int TENTHS = 10;
  std::vector<TenthPoint> points;
  int number = 0;
  for (const Span& span : spans_of(model)) {
    ++number;
    for (int t = 0; t <= TENTHS; ++t)
      points.push_back({number, t, span.begin + (span.end - span.begin) * t / TENTHS});
  }
  return points;
}

double at_position(const Matrix<double>& values, int column, double position) {
  const int nstn = values.rows(), points = std::min(nstn, 4);
  assert(nstn >= 1 && 0 <= position && position <= STATION_SPACING * (nstn - 1));
  const double x = position / STATION_SPACING;  // in stations, from 0
  const int first = std::clamp(static_cast<int>(x) - 1, 0, nstn - points);
  double sum = 0;
  for (int i = first; i < first + points; ++i) {
    double weight = 1;
    for (int j = first; j < first + points; ++j)
      if (j != i) weight *= (x - j) / (i - j);
    sum += weight * values(i + 1, column);
  }
  return sum;
}

Matrix<double> still_to_come(const Matrix<double>& last, const Matrix<double>& total) {
  Matrix<double> rest = last;
  const std::int64_t n = std::int64_t{total.rows()} * total.cols();
  assert(n == 0 || (total.rows() == last.rows() && total.cols() == last.cols()));
  for (std::int64_t i = 0; i < n; ++i) rest.data()[i] -= total.data()[i];
  return rest;
}

Matrix<double> camber(const Matrix<double>& last) {
  return still_to_come(Matrix<double>(last.rows(), last.cols()), last);
}

}  // namespace zelvo
