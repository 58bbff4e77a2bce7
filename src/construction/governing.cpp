#include "construction/governing.h"

#include <cmath>

namespace zelvo {

namespace {

Governor extreme(const Matrix<double>& values, const Matrix<int>& stage, double sign) {
  Governor g;
  for (int j = 1; j <= values.cols(); ++j)
    for (int i = 1; i <= values.rows(); ++i)
      if (g.stage == 0 || sign * values(i, j) > sign * g.value)
        g = {values(i, j), stage(i, j), i, j};
  return g;
}

Matrix<double> over_area(const Matrix<double>& force, const Vector<BarProperty>& prop) {
  Matrix<double> stress = force;
  for (int e = 1; e <= force.cols(); ++e)
    for (int i = 1; i <= force.rows(); ++i) stress(i, e) /= prop(e).area;
  return stress;
}

void add_uplifts(const Matrix<double>& reactions, int bearings, int stage,
                 std::vector<Uplift>& out) {
  for (int i = 1; i <= reactions.rows(); ++i)
    for (int j = 1; j <= reactions.cols(); ++j) {
      if (!(reactions(i, j) < 0)) continue;
      const int girder = bearings == 1 ? j : (j + 1) / 2, bearing = bearings == 1 ? 0 : 2 - j % 2;
      out.push_back({i, girder, bearing, stage, reactions(i, j)});
    }
}

}  // namespace

std::vector<Governing> governing_values(const Envelope& envelope) {
  std::vector<Governing> out;
  const auto high = tables_of(envelope.high), low = tables_of(envelope.low);
  out.reserve(high.size());
  for (std::size_t t = 0; t < envelope.high_stage.size(); ++t)
    out.push_back({extreme(*high[t], envelope.high_stage[t], 1),
                   extreme(*low[t], envelope.low_stage[t], -1)});
  return out;
}

Governor largest_magnitude(const std::vector<Governing>& values) {
  Governor g;
  for (const Governing& v : values)
    for (const Governor& c : {v.high, v.low})
      if (c.stage != 0 && (g.stage == 0 || std::abs(c.value) > std::abs(g.value))) g = c;
  return g;
}

MemberStress member_stress(const Structure& structure, const Quantities& forces) {
  const Properties& p = structure.properties;
  return {over_area(forces.internal, p.ibprop), over_area(forces.external, p.ebprop),
          over_area(forces.laterals, p.latprop)};
}

std::vector<Uplift> uplifts(const std::vector<const Quantities*>& totals) {
  std::vector<Uplift> out;
  int stage = 0;
  for (const Quantities* q : totals) {
    ++stage;
    add_uplifts(q->vertical, 1, stage, out);
    add_uplifts(q->bearings, 2, stage, out);
  }
  return out;
}

LowestFactor lowest_factor(const History& history, HistoryCheck StageRecord::*check) {
  LowestFactor lowest;
  for (const StageRecord& s : history.stage) {
    const HistoryCheck& c = s.*check;
    for (int m = 1; m <= c.quality.size(); ++m) {
      const double factor = c.modes.eigval(m);
      if (factor > 0 && std::isfinite(factor) && (lowest.stage == 0 || factor < lowest.factor))
        lowest = {s.results.k, m, factor};
    }
  }
  return lowest;
}

}  // namespace zelvo
