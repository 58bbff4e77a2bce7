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

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

double number_or_none(const Json& j) { return j.is_number() ? j.get<double>() : NO_NUMBER; }

std::vector<double> list(const Json& j) {
  std::vector<double> values;
  for (const Json& v : j) values.push_back(number_or_none(v));
  return values;
}

// The values of a table's series along its places.
Values lists(const Json& j, const TableView& t) {
  Values values;
  for (const Json& series : j) {
    values.push_back(list(series));
    if (values.back().size() != t.places.size())
      throw std::runtime_error(t.name + ": values and places differ in number");
  }
  if (values.size() != t.series.size())
    throw std::runtime_error(t.name + ": values and series differ in number");
  return values;
}

// The same of each stage.
std::vector<Values> stages(const Json& j, std::size_t count, const TableView& t) {
  std::vector<Values> values;
  for (const Json& stage : j)
    values.push_back(lists(stage.is_object() ? stage.at(t.name) : stage, t));
  if (values.size() != count)
    throw std::runtime_error(t.name + ": not a list of values for each stage");
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
  const Json& position = j.at(member ? "begin_in" : "position_in");
  for (std::size_t p = 0; p < position.size(); ++p) {
    PlaceView place;
    place.position = number_or_none(position[p]);
    if (member) {
      const Json& girder = j.at("girder").at(p);
      place.member = words(along) + " " + std::to_string(j.at("number").at(p).get<int>());
      place.girder = girder.is_number() ? girder.get<int>() : 0;
    } else if (along == "support") {
      place.member = "support " + std::to_string(p + 1);
    }
    places.push_back(place);
  }
  return places;
}

EnvelopeView envelope_view(const Json& j, const TableView& t) {
  return {lists(j.at("high"), t), lists(j.at("low"), t), lists(j.at("high_stage"), t),
          lists(j.at("low_stage"), t)};
}

TableView table_view(const Json& results, const std::string& name, const Json& info) {
  TableView t;
  t.name = name;
  t.title = info.at("title");
  t.unit = info.at("unit");
  t.positive = info.at("positive");
  t.along = info.at("along");
  const Json& names = info.at("series");
  const auto units = units_of(t.unit, names.size());
  for (std::size_t s = 0; s < units.size(); ++s)
    t.series.push_back(series_view(names[s], t.title, units[s]));
  t.places = places_view(t.along, results.at("places").at(t.along));
  const std::size_t count = results.at("stages").size();
  t.increment = stages(results.at("increments"), count, t);
  t.total = stages(results.at("totals"), count, t);
  t.increment_envelope = envelope_view(results.at("envelopes").at("increments").at(name), t);
  t.envelope = envelope_view(results.at("envelopes").at("totals").at(name), t);
  return t;
}

// Stresses of members: their forces over their areas, so the same stages govern.
void add_member_stresses(const Json& results, ResultsView& view) {
  const std::size_t given = view.tables.size();
  for (std::size_t i = 0; i < given; ++i) {
    const TableView& force = view.tables[i];
    const auto stress = results.at("member_stress").find(force.name);
    if (stress == results.at("member_stress").end()) continue;
    TableView t = force;
    t.name += "_stress";
    t.title = "Stress of " + words(force.along) + "s";
    t.unit = "ksi";
    for (SeriesView& s : t.series) s.unit = t.unit;
    t.increment.clear();
    t.total.clear();
    t.increment_envelope = {};
    t.envelope.high = lists(stress->at("high"), t);
    t.envelope.low = lists(stress->at("low"), t);
    view.tables.push_back(t);
  }
}

void add_camber(const Json& camber, ResultsView& view) {
  TableView t;
  t.unit = "in";
  t.along = "tenth point";
  t.positive = "up";
  for (const Json& s : camber.at("series")) t.series.push_back(series_view(s, "", t.unit));
  for (const Json& p : camber.at("points"))
    t.places.push_back({0, number_or_none(p.at("position_in")),
                        "span " + std::to_string(p.at("span").get<int>()) + " tenth " +
                            std::to_string(p.at("tenth").get<int>())});
  TableView later = t;
  t.name = "camber";
  t.title = "Camber";
  t.single = lists(camber.at("camber"), t);
  later.name = "to_come";
  later.title = "Still to come after the stage";
  later.total = stages(camber.at("to_come"), view.stage_name.size(), later);
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
      const Json& check = buckling.at(kind).at(k);
      if (!check.is_null())
        for (const Json& mode : check.at("modes"))
          factors.push_back(number_or_none(mode.at("factor")));
      modes = std::max(modes, factors.size());
      t.total[k].push_back(factors);
    }
  }
  for (std::size_t m = 1; m <= modes; ++m) {
    t.places.push_back({0, NO_NUMBER, "mode " + std::to_string(m)});
    for (Values& stage : t.total)
      for (auto& factors : stage)
        if (factors.size() < m) factors.push_back(NO_NUMBER);
  }
  if (modes > 0) view.tables.push_back(t);
}

ResultsView view_of(const Json& results) {
  ResultsView view;
  view.title = results.at("title");
  for (const Json& stage : results.at("stages")) view.stage_name.push_back(stage.at("name"));
  for (const auto& [name, info] : results.at("tables").items()) {
    TableView t = table_view(results, name, info);
    if (!t.series.empty() && !t.places.empty()) view.tables.push_back(std::move(t));
  }
  add_member_stresses(results, view);
  add_camber(results.at("camber"), view);
  add_factors(results.at("buckling"), view);
  return view;
}

}  // namespace

ResultsView view_results(const Json& results) {
  if (!results.is_object() || results.value("format", Json()) != "zelvo-results")
    throw std::runtime_error("no results.json of this program");
  try {
    return view_of(results);
  } catch (const Json::exception& e) {
    throw std::runtime_error(std::string("results.json: ") + e.what());
  }
}

ResultsView read_results(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw FileFailure{path, std::strerror(errno)};
  const Json json = Json::parse(file, nullptr, false);
  try {
    return view_results(json);
  } catch (const std::runtime_error& e) {
    throw std::runtime_error(path + ": " + e.what());
  }
}

}  // namespace zelvo
