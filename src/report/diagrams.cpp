#include "report/diagrams.h"

#include <cmath>

namespace zelvo::report {

namespace {

constexpr const char *BLACK = "#1a1a1a", *RIGHT_COLOR = "#a8481f";
constexpr double THIN = 1.2, THICK = 2.4;

// "Deflection, girder 1"; of a table of one series its title alone.
std::string title_of(const TableText& t, int series) {
  const std::string& name = t.series.at(static_cast<std::size_t>(series - 1));
  return name == t.title ? t.title : t.title + ", " + name;
}

const std::vector<double>& places_of(const Results& r, const char* table) {
  return r.position.at(r.tables.at(table).along);
}

Diagram begin(const Results& r, const DiagramOf& of) {
  const TableText& t = r.tables.at(of.table);
  Diagram d;
  d.title = title_of(t, of.series);
  d.unit = unit_of(t.unit);
  d.sign = of.sign;
  d.positive = t.positive;
  d.downward = of.downward;
  return d;
}

// The limits of this name, of either sign.
std::vector<double> limits_of(const Results& r, const std::string& name) {
  std::vector<double> out;
  for (const LimitText& l : r.limits)
    if (l.name == name) out.insert(out.end(), {l.limit, -l.limit});
  return out;
}

std::string last_stage(const Results& r) { return std::to_string(r.stages.size()); }

}  // namespace

Html stages_figure(const Results& r, const DiagramOf& of) {
  const auto i = static_cast<std::size_t>(of.series - 1);
  const int n = static_cast<int>(r.stages.size());
  Diagram d = begin(r, of);
  d.note = html("each stage alone (thin, numbered) and the total after stage ", last_stage(r),
                " (thick)");
  d.limits = limits_of(r, of.table);
  for (int k = 1; k <= n; ++k)
    d.curves.push_back({&places_of(r, of.table),
                        &r.increments[static_cast<std::size_t>(k - 1)].at(of.table).at(i),
                        stage_color(k, n), THIN, false, false, k});
  d.curves.push_back(
      {&places_of(r, of.table), &r.totals.back().at(of.table).at(i), BLACK, THICK, true, false, 0});
  return figure(d, r.bridge, n);
}

Html envelope_figure(const Results& r, const DiagramOf& of) {
  const auto i = static_cast<std::size_t>(of.series - 1);
  const int n = static_cast<int>(r.stages.size());
  const std::vector<double>& x = places_of(r, of.table);
  const EnvelopeTable& e = r.envelope.at(of.table);
  Diagram d = begin(r, of);
  d.note = html("totals after each stage, their envelope, and the stage that governs it");
  d.bands.push_back({&x, &e.low.at(i), &e.high.at(i)});
  for (int k = 1; k <= n; ++k)
    d.curves.push_back({&x, &r.totals[static_cast<std::size_t>(k - 1)].at(of.table).at(i),
                        stage_color(k, n), THIN, false, false, 0});
  d.curves.push_back({&x, &e.high[i], BLACK, THIN, true, false, 0});
  d.curves.push_back({&x, &e.low[i], BLACK, THIN, true, false, 0});
  d.strips = {{"largest", &x, &e.high_stage.at(i)}, {"smallest", &x, &e.low_stage.at(i)}};
  return figure(d, r.bridge, n);
}

Html sides_figure(const Results& r, const char* table, int girder, Sign sign,
                  const std::string& limit) {
  const std::vector<double>& x = places_of(r, table);
  const EnvelopeTable& e = r.envelope.at(table);
  Diagram d = begin(r, {table, 2 * girder - 1, sign, false});
  d.title = r.tables.at(table).title + ", girder " + std::to_string(girder);
  d.note = html("total after stage ", last_stage(r),
                ", left (black) and right flange (dashed), and the envelope of all totals");
  d.limits = limits_of(r, limit);
  for (const int side : {0, 1}) {
    const std::size_t i = 2 * static_cast<std::size_t>(girder - 1) + static_cast<std::size_t>(side);
    const std::string name = side == 0 ? "left " : "right ";
    d.bands.push_back({&x, &e.low.at(i), &e.high.at(i)});
    d.curves.push_back({&x, &r.totals.back().at(table).at(i), side == 0 ? BLACK : RIGHT_COLOR, 1.8,
                        true, side == 1, 0});
    d.strips.push_back({name + "+", &x, &e.high_stage.at(i)});
    d.strips.push_back({name + "−", &x, &e.low_stage.at(i)});
  }
  return figure(d, r.bridge, static_cast<int>(r.stages.size()));
}

Html bottom_figure(const Results& r, int girder) {
  const auto i = static_cast<std::size_t>(girder - 1);
  const std::vector<double>& x = places_of(r, "bottom_mean");
  const EnvelopeTable &high = r.envelope.at("bottom_high"), &low = r.envelope.at("bottom_low");
  Diagram d = begin(r, {"bottom_mean", girder, Sign::TENSION, false});
  d.title = "Bottom flange stress, girder " + std::to_string(girder);
  d.note = html("total after stage ", last_stage(r),
                ": mean (thick), largest and smallest across the flange (dashed), and the envelope "
                "of all totals");
  d.limits = limits_of(r, "bottom_flange");
  d.bands.push_back({&x, &low.low.at(i), &high.high.at(i)});
  d.curves.push_back(
      {&x, &r.totals.back().at("bottom_high").at(i), RIGHT_COLOR, THIN, true, true, 0});
  d.curves.push_back(
      {&x, &r.totals.back().at("bottom_low").at(i), RIGHT_COLOR, THIN, true, true, 0});
  d.curves.push_back({&x, &r.totals.back().at("bottom_mean").at(i), BLACK, THICK, true, false, 0});
  d.strips = {{"largest", &x, &high.high_stage.at(i)}, {"smallest", &x, &low.low_stage.at(i)}};
  return figure(d, r.bridge, static_cast<int>(r.stages.size()));
}

}  // namespace zelvo::report
