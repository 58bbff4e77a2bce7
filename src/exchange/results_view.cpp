#include "exchange/results_view.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "base/failures.h"

namespace zelvo {

namespace {

constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

double number_or_none(const Json& j) { return j.is_number() ? j.get<double>() : NONE; }

std::vector<double> list(const Json& j) {
  std::vector<double> values;
  for (const Json& v : j) values.push_back(number_or_none(v));
  return values;
}

Values lists(const Json& j) {
  Values values;
  for (const Json& series : j) values.push_back(list(series));
  return values;
}

// "girder 1 left" is "left" of girder 1.
SeriesView series_view(const std::string& name, const std::string& title, const std::string& unit) {
  SeriesView s{0, name, name == title ? "" : name, unit};
  constexpr std::size_t DIGIT = 7;
  if (name.size() <= DIGIT || name.compare(0, DIGIT, "girder ") != 0) return s;
  s.girder = name[DIGIT] - '0';
  s.rest = name.size() > DIGIT + 2 ? name.substr(DIGIT + 2) : "";
  return s;
}

// "kip, kip-in, kip-in" gives every series its own.
std::vector<std::string> units_of(const std::string& unit, std::size_t series) {
  std::vector<std::string> units;
  std::size_t from = 0;
  for (std::size_t at; (at = unit.find(", ", from)) != unit.npos; from = at + 2)
    units.push_back(unit.substr(from, at - from));
  units.push_back(unit.substr(from));
  units.resize(series, unit);
  return units;
}

std::string words(std::string key) {
  for (char& c : key)
    if (c == '_') c = ' ';
  return key;
}

std::vector<PlaceView> places_view(const std::string& along, const Json& j) {
  std::vector<PlaceView> places;
  const bool member = j.contains("number");
  const std::size_t n = (member ? j["number"] : j["position_in"]).size();
  for (std::size_t p = 0; p < n; ++p) {
    PlaceView place;
    place.position = number_or_none((member ? j["begin_in"] : j["position_in"])[p]);
    if (member) {
      place.member = words(along) + " " + std::to_string(j["number"][p].get<int>());
      place.girder = j["girder"][p].is_number() ? j["girder"][p].get<int>() : 0;
    } else if (along == "support") {
      place.member = "support " + std::to_string(p + 1);
    }
    places.push_back(place);
  }
  return places;
}

EnvelopeView envelope_view(const Json& j) {
  return {lists(j["high"]), lists(j["low"]), lists(j["high_stage"]), lists(j["low_stage"])};
}

TableView table_view(const Json& results, const std::string& name, const Json& info) {
  TableView t{
      name, info["title"], info["unit"], info["positive"], info["along"], {}, {}, {}, {}, {}, {},
      {}};
  const auto units = units_of(t.unit, info["series"].size());
  for (std::size_t s = 0; s < units.size(); ++s)
    t.series.push_back(series_view(info["series"][s], t.title, units[s]));
  t.places = places_view(t.along, results["places"][t.along]);
  for (const Json& stage : results["increments"]) t.increment.push_back(lists(stage[name]));
  for (const Json& stage : results["totals"]) t.total.push_back(lists(stage[name]));
  t.increment_envelope = envelope_view(results["envelopes"]["increments"][name]);
  t.envelope = envelope_view(results["envelopes"]["totals"][name]);
  return t;
}

// Stresses of members: their forces over their areas, so the same stages govern.
void add_member_stresses(const Json& results, ResultsView& view) {
  const std::size_t given = view.tables.size();
  for (std::size_t i = 0; i < given; ++i) {
    const TableView& force = view.tables[i];
    if (!results["member_stress"].contains(force.name)) continue;
    const Json& stress = results["member_stress"][force.name];
    TableView t = force;
    t.name += "_stress";
    t.title = "Stress of " + words(force.along) + "s";
    t.unit = "ksi";
    for (SeriesView& s : t.series) s.unit = t.unit;
    t.increment.clear();
    t.total.clear();
    t.increment_envelope = {};
    t.envelope.high = lists(stress["high"]);
    t.envelope.low = lists(stress["low"]);
    view.tables.push_back(t);
  }
}

void add_camber(const Json& camber, ResultsView& view) {
  TableView t;
  t.unit = "in";
  t.along = "tenth point";
  t.positive = "up";
  for (const Json& s : camber["series"]) t.series.push_back(series_view(s, "", t.unit));
  for (const Json& p : camber["points"])
    t.places.push_back({0, number_or_none(p["position_in"]),
                        "span " + std::to_string(p["span"].get<int>()) + " tenth " +
                            std::to_string(p["tenth"].get<int>())});
  TableView later = t;
  t.name = "camber";
  t.title = "Camber";
  t.single = lists(camber["camber"]);
  later.name = "to_come";
  later.title = "Still to come after the stage";
  for (const Json& stage : camber["to_come"]) later.total.push_back(lists(stage));
  view.tables.push_back(t);
  view.tables.push_back(later);
}

// Factors of each stage, a series for each kind of check.
void add_factors(const Json& buckling, ResultsView& view) {
  TableView t;
  t.name = "buckling_factor";
  t.title = "Buckling factor";
  t.unit = "1";
  t.along = "mode";
  t.positive = "loads as they are";
  t.total.resize(view.stage_name.size());
  std::size_t modes = 0;
  for (const char* kind : {"history", "batch_rule", "softest"}) {
    t.series.push_back({0, words(kind), words(kind), t.unit});
    for (std::size_t k = 0; k < t.total.size(); ++k) {
      std::vector<double> factors;
      const Json& check = buckling[kind][k];
      if (!check.is_null())
        for (const Json& mode : check["modes"]) factors.push_back(number_or_none(mode["factor"]));
      modes = std::max(modes, factors.size());
      t.total[k].push_back(factors);
    }
  }
  for (std::size_t m = 1; m <= modes; ++m) {
    t.places.push_back({0, NONE, "mode " + std::to_string(m)});
    for (Values& stage : t.total)
      for (auto& factors : stage)
        if (factors.size() < m) factors.push_back(NONE);
  }
  if (modes > 0) view.tables.push_back(t);
}

}  // namespace

ResultsView view_results(const Json& results) {
  if (!results.is_object() || results.value("format", "") != "zelvo-results")
    throw std::runtime_error("no results.json of this program");
  ResultsView view;
  view.title = results["title"];
  for (const Json& stage : results["stages"]) view.stage_name.push_back(stage["name"]);
  for (const auto& [name, info] : results["tables"].items()) {
    TableView t = table_view(results, name, info);
    if (!t.series.empty() && !t.places.empty()) view.tables.push_back(std::move(t));
  }
  add_member_stresses(results, view);
  add_camber(results["camber"], view);
  add_factors(results["buckling"], view);
  return view;
}

ResultsView read_results(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw FileFailure{path, std::strerror(errno)};
  const Json json = Json::parse(file, nullptr, false);
  if (json.is_discarded()) throw std::runtime_error(path + " is no JSON");
  try {
    return view_results(json);
  } catch (const Json::exception& e) {
    throw std::runtime_error(path + ": " + e.what());
  }
}

}  // namespace zelvo
