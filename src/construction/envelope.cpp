#include "construction/envelope.h"

#include <algorithm>
#include <cmath>

namespace zelvo {

namespace {

using Tables = std::vector<const Matrix<double>*>;

std::int64_t entries(const Matrix<double>& table) {
  return std::int64_t{table.rows()} * table.cols();
}

double largest_magnitude(const std::vector<Tables>& stages, std::size_t t) {
  double largest = 0;
  for (const Tables& s : stages)
    for (std::int64_t i = 0; i < entries(*s[t]); ++i)
      largest = std::max(largest, std::abs(s[t]->data()[i]));
  return largest;
}

// Extreme of sign * value for every entry of table t, and the first stage that reaches it.
void find_extremes(const std::vector<Tables>& stages, std::size_t t, double sign,
                   Matrix<double>& value, Matrix<int>& stage) {
  const double tie = ENVELOPE_TIE * largest_magnitude(stages, t);
  stage = Matrix<int>(value.rows(), value.cols());
  for (std::int64_t i = 0; i < entries(value); ++i) {
    double extreme = stages[0][t]->data()[i];
    for (const Tables& s : stages)
      if (sign * s[t]->data()[i] > sign * extreme) extreme = s[t]->data()[i];
    std::size_t k = 0;
    while (!(sign * stages[k][t]->data()[i] >= sign * extreme - tie) && k + 1 < stages.size()) ++k;
    value.data()[i] = extreme;
    stage.data()[i] = static_cast<int>(k) + 1;
  }
}

void find_all(const std::vector<Tables>& stages, double sign, Quantities& q,
              std::vector<Matrix<int>>& stage) {
  stage.resize(stages[0].size());
  std::size_t t = 0;
  each_table(q, [&](const char*, Matrix<double>& table) {
    find_extremes(stages, t, sign, table, stage[t]);
    ++t;
  });
}

}  // namespace

Envelope envelope_of(const std::vector<const Quantities*>& stages) {
  Envelope e;
  if (stages.empty()) return e;
  std::vector<Tables> tables;
  tables.reserve(stages.size());
  for (const Quantities* q : stages) tables.push_back(tables_of(*q));
  e.high = e.low = *stages[0];
  find_all(tables, 1, e.high, e.high_stage);
  find_all(tables, -1, e.low, e.low_stage);
  return e;
}

std::vector<const Matrix<double>*> tables_of(const Quantities& q) {
  Tables tables;
  each_table(q, [&](const char*, const Matrix<double>& table) { tables.push_back(&table); });
  return tables;
}

}  // namespace zelvo
