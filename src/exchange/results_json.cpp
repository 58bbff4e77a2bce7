#include "exchange/results_json.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "construction/camber.h"
#include "construction/governing.h"
#include "exchange/describe.h"
#include "exchange/sha256.h"
#include "exchange/shape_json.h"
#include "exchange/tables.h"

namespace zelvo {

namespace {

using Tables = std::vector<const Matrix<double>*>;

// A table as a list of series.
template <class T>
Json series_of(const Matrix<T>& table, const TableInfo& info) {
  const bool turned = info.places_in_columns();
  const int series = turned ? table.rows() : table.cols();
  const int places = turned ? table.cols() : table.rows();
  Json out = Json::array();
  for (int s = 1; s <= series; ++s) {
    std::vector<T> values;
    values.reserve(static_cast<std::size_t>(places));
    for (int p = 1; p <= places; ++p) values.push_back(turned ? table(s, p) : table(p, s));
    out.push_back(std::move(values));
  }
  return out;
}

Json quantities_json(const Quantities& q) {
  Json out = Json::object();
  std::size_t t = 0;
  each_table(q, [&](const char* name, const Matrix<double>& table) {
    out[name] = series_of(table, table_infos()[t++]);
  });
  return out;
}

Json envelope_json(const Envelope& e) {
  Json out = Json::object();
  const Tables high = tables_of(e.high), low = tables_of(e.low);
  for (std::size_t t = 0; t < e.high_stage.size(); ++t) {
    const TableInfo& info = table_infos()[t];
    out[info.name] = {{"high", series_of(*high[t], info)},
                      {"high_stage", series_of(e.high_stage[t], info)},
                      {"low", series_of(*low[t], info)},
                      {"low_stage", series_of(e.low_stage[t], info)}};
  }
  return out;
}

Json tables_json(const SectionPattern& pattern, const Quantities& q) {
  Json out = Json::object();
  const Tables tables = tables_of(q);
  for (std::size_t t = 0; t < tables.size(); ++t) {
    const TableInfo& info = table_infos()[t];
    const int series = info.places_in_columns() ? tables[t]->rows() : tables[t]->cols();
    out[info.name] = {{"title", info.title},
                      {"unit", info.unit},
                      {"along", ALONG_NAMES[static_cast<int>(info.along)]},
                      {"series", series_names(info, pattern, series)},
                      {"positive", info.positive},
                      {"linear", info.linear}};
  }
  return out;
}

Json governor_json(const Governor& g, const TableInfo& info) {
  if (g.stage == 0) return nullptr;
  const bool turned = info.places_in_columns();
  return {{"value", g.value},
          {"stage", g.stage},
          {"series", turned ? g.row : g.column},
          {"place", turned ? g.column : g.row}};
}

Json governing_json(const Envelope& totals) {
  Json out = Json::object();
  std::size_t t = 0;
  for (const Governing& g : governing_values(totals)) {
    const TableInfo& info = table_infos()[t++];
    out[info.name] = {{"high", governor_json(g.high, info)}, {"low", governor_json(g.low, info)}};
  }
  return out;
}

Json member_stress_json(const Structure& structure, const Envelope& totals) {
  const MemberStress high = member_stress(structure, totals.high),
                     low = member_stress(structure, totals.low);
  const auto both = [](const char* name, const Matrix<double>& h, const Matrix<double>& l) {
    const auto info = std::find_if(table_infos().begin(), table_infos().end(),
                                   [&](const auto& i) { return std::string_view(i.name) == name; });
    return Json{{"high", series_of(h, *info)}, {"low", series_of(l, *info)}};
  };
  return {{"internal", both("internal", high.internal, low.internal)},
          {"external", both("external", high.external, low.external)},
          {"laterals", both("laterals", high.laterals, low.laterals)}};
}

// --- camber ---

// The lines whose camber is given: (nstn,girders) tables of the motion.
struct GirderLine {
  const char* name;
  Matrix<double> GirderMotion::*table;
};
constexpr GirderLine LINES[] = {{"left web top", &GirderMotion::left_top},
                                {"right web top", &GirderMotion::right_top},
                                {"deflection", &GirderMotion::deflection}};

// Values at the tenth points, for each girder and line; of(table) gives the stations' values.
template <class Of>
Json at_points(const std::vector<TenthPoint>& points, int girders, Of of) {
  Json out = Json::array();
  for (int g = 1; g <= girders; ++g)
    for (const GirderLine& line : LINES) {
      const Matrix<double> values = of(line.table);
      Json row = Json::array();
      for (const TenthPoint& p : points) row.push_back(at_position(values, g, p.position));
      out.push_back(std::move(row));
    }
  return out;
}

Json camber_json(const Model& model, const History& h) {
  const std::vector<TenthPoint> points = tenth_points(model);
  Json list = Json::array(), series = Json::array(), to_come = Json::array(),
       totals = Json::array();
  for (const TenthPoint& p : points)
    list.push_back({{"span", p.span}, {"tenth", p.tenth}, {"position_in", p.position}});
  for (int g = 1; g <= model.ngird; ++g)
    for (const GirderLine& line : LINES)
      series.push_back("girder " + std::to_string(g) + " " + line.name);
  const GirderMotion& last = h.stage.back().total.motion;
  for (const StageRecord& s : h.stage) {
    const GirderMotion& motion = s.total.motion;
    totals.push_back(at_points(points, model.ngird, [&](auto table) { return motion.*table; }));
    to_come.push_back(at_points(points, model.ngird, [&](auto table) {
      return still_to_come(last.*table, motion.*table);
    }));
  }
  Json final_camber =
      at_points(points, model.ngird, [&](auto table) { return camber(last.*table); });
  return {{"points", std::move(list)},
          {"series", std::move(series)},
          {"camber", std::move(final_camber)},
          {"to_come", std::move(to_come)},
          {"totals", std::move(totals)}};
}

// --- uplift, limits ---

Json uplift_json(const std::vector<const Quantities*>& totals) {
  Json out = Json::array();
  for (const Uplift& u : uplifts(totals))
    out.push_back({{"support", u.support},
                   {"girder", u.girder},
                   {"bearing", u.bearing},
                   {"stage", u.stage},
                   {"value", u.value}});
  return out;
}

// What a limit is compared with.
struct Compared {
  double value = 0;
  int stage = 0;
  Json place;
  bool met = true;
};

Compared governed(const Model& model, const Envelope& totals, const Limit& limit,
                  std::initializer_list<const char*> names) {
  const std::vector<Governing> all = governing_values(totals);
  std::vector<Governing> wanted;
  Along along = Along::STATION;
  for (std::size_t t = 0; t < all.size(); ++t)
    for (const char* name : names)
      if (table_infos()[t].name == std::string_view(name)) {
        wanted.push_back(all[t]);
        along = table_infos()[t].along;
      }
  const bool least = limit.name == "reaction";
  const Governor g = least ? wanted[0].low : largest_magnitude(wanted);
  if (g.stage == 0) return {};
  const double position = along == Along::STATION ? STATION_SPACING * (g.row - 1.0)
                          : along == Along::BAY   ? BAY_LENGTH * (g.row - 0.5)
                                                  : model.supp_pos(g.row);
  return {g.value, g.stage, position,
          least ? g.value >= limit.value : std::abs(g.value) <= limit.value};
}

Compared factor_found(const History& h, const Limit& limit) {
  const LowestFactor f = lowest_factor(h, &StageRecord::history);
  if (f.stage == 0) return {};
  return {f.factor, f.stage, nullptr, f.factor >= limit.value};
}

Json limits_json(const Job& job, const History& h) {
  const struct {
    const char *name, *unit;
    std::initializer_list<const char*> tables;
  } rules[] = {{"deflection", "in", {"deflection"}},
               {"differential", "in", {"differential"}},
               {"twist", "rad", {"twist"}},
               {"top_flange", "ksi", {"flange_mean"}},
               {"bottom_flange", "ksi", {"bottom_high", "bottom_low"}},
               {"web_shear", "ksi", {"web_shear"}},
               {"reaction", "kip", {"reaction"}},
               {"factor", "", {}}};
  Json out = Json::array();
  for (const Limit& limit : job.annotations.limits)
    for (const auto& rule : rules) {
      if (limit.name != rule.name) continue;
      const Compared c = rule.tables.size() == 0
                             ? factor_found(h, limit)
                             : governed(job.input.model, h.totals, limit, rule.tables);
      out.push_back({{"name", limit.name},
                     {"limit", limit.value},
                     {"value", c.stage == 0 ? Json() : Json(c.value)},
                     {"stage", c.stage == 0 ? Json() : Json(c.stage)},
                     {"place_in", c.place},
                     {"unit", rule.unit},
                     {"met", c.stage == 0 ? Json() : Json(c.met)}});
    }
  return out;
}

// --- the whole ---

Json stages_json(const Job& job, const History& h) {
  Json out = Json::array();
  for (const StageRecord& s : h.stage) out.push_back(stage_json(job, s));
  return out;
}

Json equilibrium_json(const History& h) {
  double imbalance = 0, residual = 0;
  for (const StageRecord& s : h.stage) {
    imbalance = std::max(imbalance, s.checks.imbalance);
    residual = std::max(residual, s.checks.residual);
  }
  return {{"worst_imbalance", imbalance}, {"worst_residual", residual}};
}

}  // namespace

HistoryOptions history_options(const Job& job, const CheckChoice& checks) {
  HistoryOptions options;
  options.load_factor = job.annotations.load_factor;
  options.bearing_spacing = job.annotations.bearing_spacing;
  options.checks = checks;
  options.eigen.nev = job.input.model.nev;
  return options;
}

Json results_json(const Job& job, const History& h, const std::string& date) {
  const Model& model = job.input.model;
  const Annotations& a = job.annotations;
  std::vector<const Quantities*> all;
  Json increments = Json::array(), totals = Json::array(), warnings = Json::array();
  for (const StageRecord& s : h.stage) {
    increments.push_back(quantities_json(s.increment));
    totals.push_back(quantities_json(s.total));
    all.push_back(&s.total);
  }
  for (const Note& n : job.input.notes.warnings)
    warnings.push_back({{"line", n.line}, {"text", n.text}});
  Json out = {
      {"format", "zelvo-results"},
      {"version", 1},
      {"program", "zelvo-desk " ZELVO_VERSION},
      {"date", date},
      {"input", {{"file", job.path}, {"sha256", sha256(job.content)}, {"text", job.content}}},
      {"title", a.title.empty() ? model.prname : a.title},
      {"warnings", std::move(warnings)}};
  out["bridge"] = bridge_json(job, h);
  out["stages"] = stages_json(job, h);
  out["places"] = places_json(model);
  out["tables"] = tables_json(*h.structure.section, h.stage.front().total);
  out["increments"] = std::move(increments);
  out["totals"] = std::move(totals);
  out["envelopes"] = {{"increments", envelope_json(h.increments)},
                      {"totals", envelope_json(h.totals)}};
  out["governing"] = governing_json(h.totals);
  out["member_stress"] = member_stress_json(h.structure, h.totals);
  out["camber"] = camber_json(model, h);
  out["bearings_uplift"] = uplift_json(all);
  out["limits"] = limits_json(job, h);
  out["buckling"] = buckling_json(h);
  out["equilibrium"] = equilibrium_json(h);
  return out;
}

std::string json_text(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace zelvo
