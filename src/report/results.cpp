#include "report/results.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace zelvo::report {

namespace {

double real(const Json& json) { return json.is_number() ? json.get<double>() : std::nan(""); }
int whole(const Json& json) { return json.is_number() ? json.get<int>() : 0; }

std::vector<double> reals(const Json& json) {
  std::vector<double> out;
  out.reserve(json.size());
  for (const Json& value : json) out.push_back(real(value));
  return out;
}
std::vector<int> wholes(const Json& json) {
  std::vector<int> out;
  out.reserve(json.size());
  for (const Json& value : json) out.push_back(whole(value));
  return out;
}
Values values(const Json& json) {
  Values out;
  for (const Json& series : json) out.push_back(reals(series));
  return out;
}
Governors governors(const Json& json) {
  Governors out;
  for (const Json& series : json) out.push_back(wholes(series));
  return out;
}

// read(entry) of each entry of a list.
template <class Read>
auto list(const Json& json, Read read) {
  std::vector<decltype(read(json))> out;
  for (const Json& entry : json) out.push_back(read(entry));
  return out;
}

// --- bridge and stages ---

std::vector<Stretch> stretches(const Json& json) {
  return list(json, [](const Json& e) {
    const bool plate = e.contains("thickness_in");
    return Stretch{real(e.at("begin_in")), real(e.at("end_in")),
                   plate ? real(e.at("thickness_in")) : 0};
  });
}
std::vector<double> positions(const Json& json) {
  return list(json, [](const Json& e) { return real(e.at("position_in")); });
}

Bridge read_bridge(const Json& j) {
  const Json &s = j.at("section"), &plates = j.at("plates");
  Bridge b;
  b.girders = whole(j.at("girders"));
  b.radius = real(j.at("radius_in"));
  b.length = real(j.at("length_in"));
  b.half_distance = real(j.at("half_distance_in"));
  b.depth = real(s.at("depth_in"));
  b.bottom_width = real(s.at("bottom_width_in"));
  b.top_spacing = real(s.at("top_spacing_in"));
  b.flange_width = real(s.at("flange_width_in"));
  b.deck_width = real(s.at("deck_width_in"));
  b.deck_thickness = real(s.at("deck_thickness_in"));
  b.supports = list(j.at("supports"), [](const Json& e) {
    return SupportLine{real(e.at("position_in")), e.at("kind").get<std::string>()};
  });
  b.spans = stretches(j.at("spans"));
  b.webs = stretches(plates.at("web"));
  b.bottom_flanges = stretches(plates.at("bottom_flange"));
  b.top_flanges = stretches(plates.at("top_flange"));
  b.segments = stretches(j.at("segments"));
  b.internal_frames = positions(j.at("internal_frames"));
  b.external_frames = positions(j.at("external_frames"));
  b.laterals = list(j.at("laterals"), [](const Json& e) {
    return LateralBar{whole(e.at("direction")), real(e.at("begin_in")), real(e.at("end_in"))};
  });
  b.bearing_spacing = real(j.at("bearing_spacing_in"));
  b.steel_plates = real(j.at("steel_plates_kip"));
  b.bracing = real(j.at("bracing_kip").at("total"));
  return b;
}

StageText read_stage(const Json& j) {
  const Json& c = j.at("checks");
  StageText s;
  s.number = whole(j.at("number"));
  s.name = j.at("name").get<std::string>();
  s.load_factor = real(j.at("load_factor"));
  s.segments = list(j.at("segments"), [](const Json& e) {
    return SegmentState{real(e.at("modulus_ksi")), real(e.at("stud_kip_in")),
                        real(e.at("load_kip_ft")), e.at("hard").get<bool>()};
  });
  s.load = real(c.at("load_kip"));
  s.reactions = real(c.at("reactions_kip"));
  s.grounded = real(c.at("grounded_kip"));
  s.imbalance = real(c.at("imbalance"));
  s.residual = real(c.at("residual"));
  s.finite = c.at("finite").get<bool>();
  s.solver_code = whole(c.at("solver_code"));
  s.largest_deflection = real(c.at("largest_deflection_in"));
  s.position = real(c.at("position_in"));
  s.span = real(c.at("span_in"));
  return s;
}

// --- tables ---

void read_places(const Json& json, Results& r) {
  for (const char* name : {"station", "section", "bay", "support"})
    r.position[name] = reals(json.at(name).at("position_in"));
  for (const char* name : {"internal_frame", "external_frame", "lateral"}) {
    const Json& m = json.at(name);
    r.members[name] = {wholes(m.at("girder")), wholes(m.at("number")), reals(m.at("begin_in")),
                       reals(m.at("end_in")), reals(m.at("area_in2"))};
  }
}

TableText read_table(const Json& j) {
  return {j.at("title").get<std::string>(), j.at("unit").get<std::string>(),
          j.at("along").get<std::string>(), j.at("positive").get<std::string>(),
          j.at("series").get<std::vector<std::string>>()};
}
EnvelopeTable read_envelope(const Json& j) {
  return {values(j.at("high")), values(j.at("low")), governors(j.at("high_stage")),
          governors(j.at("low_stage"))};
}
GoverningValue read_governing(const Json& j) {
  if (j.is_null()) return {};
  return {real(j.at("value")), whole(j.at("stage")), whole(j.at("series")), whole(j.at("place"))};
}

// The tables that the report shows; the others, strip by strip, are large.
constexpr const char* SHOWN_TABLES[] = {"deflection",
                                        "twist",
                                        "differential",
                                        "own_V",
                                        "own_M",
                                        "own_T",
                                        "whole_V",
                                        "whole_M",
                                        "whole_T",
                                        "flange_mean",
                                        "flange_bend",
                                        "bottom_mean",
                                        "bottom_high",
                                        "bottom_low",
                                        "web_shear",
                                        "internal",
                                        "external",
                                        "laterals",
                                        "reaction",
                                        "reaction_couple",
                                        "reaction_lateral",
                                        "reaction_longitudinal",
                                        "bearings"};

std::map<std::string, Values> stage_tables(const Json& j) {
  std::map<std::string, Values> out;
  for (const char* name : SHOWN_TABLES) out[name] = values(j.at(name));
  return out;
}

void read_tables(const Json& json, Results& r) {
  for (const char* name : SHOWN_TABLES) {
    r.tables[name] = read_table(json.at("tables").at(name));
    r.envelope[name] = read_envelope(json.at("envelopes").at("totals").at(name));
    const Json& g = json.at("governing").at(name);
    r.governing[name] = {read_governing(g.at("high")), read_governing(g.at("low"))};
  }
  r.increments = list(json.at("increments"), stage_tables);
  r.totals = list(json.at("totals"), stage_tables);
  for (const auto& [name, stress] : json.at("member_stress").items())
    r.member_stress[name] = {values(stress.at("high")), values(stress.at("low")), {}, {}};
}

CamberTables read_camber(const Json& j) {
  CamberTables c;
  c.points = list(j.at("points"), [](const Json& e) {
    return TenthPlace{whole(e.at("span")), whole(e.at("tenth")), real(e.at("position_in"))};
  });
  c.series = j.at("series").get<std::vector<std::string>>();
  c.camber = values(j.at("camber"));
  c.to_come = list(j.at("to_come"), values);
  c.totals = list(j.at("totals"), values);
  if (j.contains("increments")) c.increments = list(j.at("increments"), values);
  return c;
}

// --- buckling ---

ModeText read_mode(const Json& j) {
  ModeText m;
  m.factor = real(j.at("factor"));
  m.residual = real(j.at("residual"));
  m.position = real(j.at("position_in"));
  m.share = real(j.at("share"));
  m.sharp = j.at("sharp").get<bool>();
  m.kind = j.at("kind").get<std::string>();
  m.plate = j.at("plate").get<std::string>();
  m.remark = j.at("remark").get<std::string>();
  m.girder = whole(j.at("girder"));
  m.side = whole(j.at("side"));
  m.shape = wholes(j.at("shape"));
  return m;
}
CheckText read_check(const Json& j) {
  if (j.is_null()) return {};
  return {true, j.at("remarks").get<std::vector<std::string>>(), list(j.at("modes"), read_mode)};
}
LowestText read_lowest(const Json& j) {
  if (j.is_null()) return {};
  return {whole(j.at("stage")), whole(j.at("mode")), real(j.at("factor"))};
}
Geometry read_geometry(const Json& j) {
  if (j.is_null()) return {};
  return {
      reals(j.at("section_in")), reals(j.at("xyz")), whole(j.at("nodes_per_section")),
      list(j.at("runs"), [](const Json& e) {
        return Run{e.at("plate").get<std::string>(), whole(e.at("girder")), wholes(e.at("nodes"))};
      })};
}
void read_buckling(const Json& j, Results& r) {
  r.history = list(j.at("history"), read_check);
  r.batch_rule = list(j.at("batch_rule"), read_check);
  r.softest = list(j.at("softest"), read_check);
  r.geometry = read_geometry(j.at("geometry"));
  const Json& lowest = j.at("lowest");
  r.lowest_history = read_lowest(lowest.at("history"));
  r.lowest_batch_rule = read_lowest(lowest.at("batch_rule"));
  r.lowest_softest = read_lowest(lowest.at("softest"));
}

void read_verdicts(const Json& json, Results& r) {
  r.warnings = list(json.at("warnings"), [](const Json& e) {
    return Warning{whole(e.at("line")), e.at("text").get<std::string>()};
  });
  r.uplift = list(json.at("bearings_uplift"), [](const Json& e) {
    return UpliftText{whole(e.at("support")), whole(e.at("girder")), whole(e.at("bearing")),
                      whole(e.at("stage")), real(e.at("value"))};
  });
  r.limits = list(json.at("limits"), [](const Json& e) {
    const Json& met = e.at("met");
    return LimitText{e.at("name").get<std::string>(),
                     e.at("unit").get<std::string>(),
                     real(e.at("limit")),
                     real(e.at("value")),
                     real(e.at("place_in")),
                     whole(e.at("stage")),
                     met.is_boolean() && met.get<bool>()};
  });
  r.worst_imbalance = real(json.at("equilibrium").at("worst_imbalance"));
  r.worst_residual = real(json.at("equilibrium").at("worst_residual"));
}

}  // namespace

Results read_results(const Json& json) {
  Results r;
  r.program = json.at("program").get<std::string>();
  r.date = json.at("date").get<std::string>();
  r.title = json.at("title").get<std::string>();
  const Json& input = json.at("input");
  r.file = input.at("file").get<std::string>();
  r.sha256 = input.at("sha256").get<std::string>();
  r.input = input.at("text").get<std::string>();
  r.bridge = read_bridge(json.at("bridge"));
  r.stages = list(json.at("stages"), read_stage);
  read_places(json.at("places"), r);
  read_tables(json, r);
  r.camber = read_camber(json.at("camber"));
  read_verdicts(json, r);
  read_buckling(json.at("buckling"), r);
  return r;
}

}  // namespace zelvo::report
