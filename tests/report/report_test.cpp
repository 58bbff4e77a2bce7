// The page made from results written by hand: a bridge of one girder, two stages and one of each
// kind of member. What a browser has to say of a page stands in tests/desk/browser_test.py.
#include "report/report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "report/chart.h"
#include "report/pack.h"
#include "report/units.h"

namespace zelvo {

namespace {

constexpr const char* HOSTILE = "</script><img src=x onerror='alert(1)'>\"&";

struct TableKind {
  const char *name, *unit, *along;
  int series, places;
};
constexpr TableKind TABLES[] = {{"deflection", "in", "station", 1, 5},
                                {"twist", "rad", "station", 1, 5},
                                {"differential", "in", "station", 0, 5},
                                {"own_V", "kip", "section", 1, 3},
                                {"own_M", "kip-in", "section", 1, 3},
                                {"own_T", "kip-in", "section", 1, 3},
                                {"whole_V", "kip", "section", 1, 3},
                                {"whole_M", "kip-in", "section", 1, 3},
                                {"whole_T", "kip-in", "section", 1, 3},
                                {"flange_mean", "ksi", "bay", 2, 2},
                                {"flange_bend", "ksi", "bay", 2, 2},
                                {"bottom_mean", "ksi", "bay", 1, 2},
                                {"bottom_high", "ksi", "bay", 1, 2},
                                {"bottom_low", "ksi", "bay", 1, 2},
                                {"web_shear", "ksi", "bay", 2, 2},
                                {"internal", "kip", "internal_frame", 4, 1},
                                {"external", "kip", "external_frame", 5, 0},
                                {"laterals", "kip", "lateral", 1, 1},
                                {"reaction", "kip", "support", 1, 2},
                                {"reaction_couple", "kip-in", "support", 1, 2},
                                {"reaction_lateral", "kip", "support", 1, 2},
                                {"reaction_longitudinal", "kip", "support", 1, 2},
                                {"bearings", "kip", "support", 0, 2}};

// A number that no other place has.
double next_value() {
  static int n = 0;
  return ++n % 2 == 0 ? n + 0.123456789 : -n - 0.987654321;
}
Json values(const TableKind& t, bool stages = false) {
  Json out = Json::array();
  for (int s = 0; s < t.series; ++s) {
    Json row = Json::array();
    for (int p = 0; p < t.places; ++p) row.push_back(stages ? Json(2) : Json(next_value()));
    out.push_back(row);
  }
  return out;
}
Json stage_tables() {
  Json out;
  for (const TableKind& t : TABLES) out[t.name] = values(t);
  return out;
}

Json mode() {
  return {{"factor", 0.875},
          {"residual", 1e-9},
          {"sharp", true},
          {"kind", "plate"},
          {"girder", 1},
          {"plate", "web"},
          {"side", 2},
          {"position_in", 24},
          {"share", 0.75},
          {"remark", HOSTILE},
          {"shape", {0, 0, 0, 0, 0, 0, 10000, -5000, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}}};
}

Json results() {
  Json j = Json::parse(R"({"program":"zelvo-desk 2", "date":"2026-11-23T10:00:00Z",
    "input":{"file":"a.txt","sha256":"00ff","text":""}, "warnings":[{"line":7,"text":""}],
    "bridge":{"girders":1,"radius_in":null,"length_in":48,"half_distance_in":0,
      "section":{"depth_in":60,"bottom_width_in":72,"top_spacing_in":84,"flange_width_in":14,
        "deck_width_in":168,"deck_thickness_in":8},
      "supports":[{"position_in":0,"kind":"pinned"},{"position_in":48,"kind":"roller"}],
      "spans":[{"begin_in":0,"end_in":48}],
      "plates":{"web":[{"begin_in":0,"end_in":48,"thickness_in":0.5}],"bottom_flange":[],
        "top_flange":[]},
      "internal_frames":[{"position_in":24}],"external_frames":[],
      "laterals":[{"direction":1,"begin_in":0,"end_in":48}],
      "segments":[{"begin_in":0,"end_in":24},{"begin_in":24,"end_in":48}],
      "bearing_spacing_in":null,"steel_plates_kip":61.25,"bracing_kip":{"total":3.5}},
    "places":{"station":{"position_in":[0,12,24,36,48]},"section":{"position_in":[0,24,48]},
      "bay":{"position_in":[12,36]},"support":{"position_in":[0,48]},
      "internal_frame":{"girder":[1],"number":[1],"begin_in":[24],"end_in":[24],"area_in2":[4.5]},
      "external_frame":{"girder":[],"number":[],"begin_in":[],"end_in":[],"area_in2":[]},
      "lateral":{"girder":[1],"number":[1],"begin_in":[0],"end_in":[48],"area_in2":[5]}},
    "camber":{"points":[{"span":1,"tenth":0,"position_in":0},{"span":1,"tenth":10,"position_in":48}],
      "series":["girder 1 left web top"],"camber":[[1.37,-0.004]],
      "to_come":[[[0.5,0.25]],[[0,0]]],"totals":[[[-0.87,0.25]],[[-1.37,0.004]]]},
    "bearings_uplift":[{"support":2,"girder":1,"bearing":0,"stage":2,"value":-34.5}],
    "limits":[{"name":"top_flange","unit":"ksi","limit":33,"value":-35.5,"stage":2,"place_in":12,
      "met":false}],
    "equilibrium":{"worst_imbalance":1e-12,"worst_residual":1e-11},
    "buckling":{"batch_rule":[null,null],"softest":[null,null],
      "geometry":{"section_in":[0,24,48],"nodes_per_section":2,"runs":[{"plate":"web","girder":1,
        "nodes":[1,2]}],"xyz":[0,0,0, 0,60,0, 0,0,-24, 0,60,-24, 0,0,-48, 0,60,-48]},
      "lowest":{"history":{"stage":2,"mode":1,"factor":0.875},"batch_rule":null,"softest":null}}})");
  j["title"] = j["input"]["text"] = j["warnings"][0]["text"] = HOSTILE;
  for (int k = 1; k <= 2; ++k) {
    j["stages"].push_back(Json::parse(R"({"load_factor":1,"segments":[
      {"modulus_ksi":1e-6,"stud_kip_in":0.001,"load_kip_ft":1.4,"hard":false},
      {"modulus_ksi":2400,"stud_kip_in":150,"load_kip_ft":0,"hard":true}],
      "checks":{"load_kip":5.6,"reactions_kip":5.6,"grounded_kip":0,"imbalance":1e-12,
        "residual":1e-11,"finite":true,"solver_code":0,"largest_deflection_in":-1.4,
        "position_in":24,"span_in":48}})"));
    j["stages"].back()["number"] = k;
    j["stages"].back()["name"] = HOSTILE;
    j["increments"].push_back(stage_tables());
    j["totals"].push_back(stage_tables());
  }
  for (const TableKind& t : TABLES) {
    Json series = Json::array();
    for (int s = 0; s < t.series; ++s) series.push_back(HOSTILE);
    j["tables"][t.name] = {{"title", t.name},
                           {"unit", t.unit},
                           {"along", t.along},
                           {"positive", "up"},
                           {"series", series}};
    const Json governor =
        t.series * t.places == 0
            ? Json()
            : Json{{"value", next_value()}, {"stage", 2}, {"series", 1}, {"place", 1}};
    j["governing"][t.name] = {{"high", governor}, {"low", governor}};
    j["envelopes"]["totals"][t.name] = {{"high", values(t)},
                                        {"high_stage", values(t, true)},
                                        {"low", values(t)},
                                        {"low_stage", values(t, true)}};
    if (t.along[0] == 'i' || t.along[0] == 'e' || t.along[0] == 'l')
      j["member_stress"][t.name] = {{"high", values(t)}, {"low", values(t)}};
  }
  j["buckling"]["history"] = Json::array(
      {nullptr, {{"remarks", Json::array({HOSTILE})}, {"modes", Json::array({mode()})}}});
  return j;
}

void collect(const Json& j, std::set<double>& out) {
  if (j.is_number()) out.insert(j.get<double>());
  for (const Json& entry : j)
    if (j.is_structured()) collect(entry, out);
}

}  // namespace

TEST(Report, HostileTextStaysText) {
  const std::string page = report_html(results());
  EXPECT_EQ(page.find("<img"), std::string::npos);
  EXPECT_NE(page.find("<pre id=\"input\">\n&lt;/script&gt;&lt;img src=x onerror=&#39;alert(1)"),
            std::string::npos);
  // Two blocks of data, three.js, the viewer and the page's own; each ends once.
  const std::regex end("</script");
  EXPECT_EQ(std::distance(std::sregex_iterator(page.begin(), page.end(), end), {}), 5);
}

TEST(Report, EveryFigureIsANumberOfTheResults) {
  const Json json = results();
  const std::string page = report_html(json);
  std::set<double> known;
  collect(json, known);
  const std::regex value("data-v=\"([^\"]*)\"");
  int count = 0;
  for (std::sregex_iterator m(page.begin(), page.end(), value), end; m != end; ++m, ++count)
    EXPECT_TRUE(known.count(std::stod((*m)[1]))) << (*m)[1];
  EXPECT_GT(count, 200);
  EXPECT_NE(page.find("35.50"), std::string::npos);
  EXPECT_NE(page.find("NOT MET"), std::string::npos);
  const std::size_t empty = page.find("<tbody></tbody>");
  EXPECT_EQ(empty, page.npos) << page.substr(std::max<std::size_t>(empty, 400) - 400, 400);
  EXPECT_LT(page.size(), 1.1e6);
}

TEST(Report, NumbersAreSetAsOnPaper) {
  using namespace report;
  EXPECT_EQ(fixed(-0.004, 2), "0.00");
  EXPECT_EQ(fixed(-0.006, 2), "-0.01");
  EXPECT_EQ(sixteenths(1.37), "1 3/8");
  EXPECT_EQ(sixteenths(-0.5), "-1/2");
  EXPECT_EQ(sixteenths(1.99), "2");
  EXPECT_EQ(sixteenths(-0.01), "0");
  EXPECT_EQ(number(120, Unit::MOMENT).text,
            "<span data-u=\"moment\" data-v=\"120\">10</span>");  // kip-ft of kip-in
  for (const auto& [lo, hi, first, step, count, decimals] :
       {std::tuple{-6.42, 0.3, -6.0, 2.0, 4, 0}, std::tuple{0.0, 1.0, 0.0, 0.2, 6, 1},
        std::tuple{-1200.0, 3100.0, -1000.0, 1000.0, 5, 0}}) {
    const Ticks t = nice_ticks(lo, hi, 5);
    EXPECT_NEAR(t.first, first, 1e-12);
    EXPECT_NEAR(t.step, step, 1e-12);
    EXPECT_EQ(t.count, count);
    EXPECT_EQ(t.decimals, decimals);
  }
}

TEST(Report, PackedListsAreSecondDifferences) {
  std::string out;
  report::pack({0, 0, 0, 5, 10, 15}, out);  // three zeros, a difference of 5, two zeros
  EXPECT_EQ(out, "wcv");
  out.clear();
  report::pack({1000}, out);  // 1000 + 2^23 in four digits
  EXPECT_EQ(out, "_gAPo");
}

}  // namespace zelvo
