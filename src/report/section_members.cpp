// (7) Bars of frames and laterals.
#include <algorithm>
#include <cmath>

#include "report/plan.h"
#include "report/sections.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

struct Kind {
  const char *title, *table, *row;
};
constexpr Kind KINDS[] = {{"Internal frames", "internal", "Frame"},
                          {"External frames", "external", "Frame"},
                          {"Top laterals", "laterals", "Lateral"}};

const MemberPlaces& places_of(const Results& r, const Kind& kind) {
  return r.members.at(r.tables.at(kind.table).along);
}

// Tension and compression are shown where they are: a bar that is never pulled has no tension.
Html extreme(const Results& r, double force, int stage, double stress, bool shown) {
  if (!shown) return html("<td>–</td><td></td><td>–</td>");
  return html(cell(force, Unit::FORCE), "<td>", stage_chip(r, stage), "</td>",
              cell(stress, Unit::STRESS));
}

Html member_row(const Results& r, const Kind& kind, std::size_t bar, std::size_t i) {
  const EnvelopeTable &force = r.envelope.at(kind.table), &stress = r.member_stress.at(kind.table);
  const double high = force.high.at(bar).at(i), low = force.low.at(bar).at(i);
  return html(extreme(r, high, force.high_stage.at(bar).at(i), stress.high.at(bar).at(i), high > 0),
              extreme(r, low, force.low_stage.at(bar).at(i), stress.low.at(bar).at(i), low < 0));
}

// One bar of all frames of a kind, or all laterals, in a block of rows.
Html member_rows(const Results& r, const Kind& kind) {
  const MemberPlaces& m = places_of(r, kind);
  const std::vector<std::string>& bars = r.tables.at(kind.table).series;
  const bool frame = bars.size() > 1;
  Html body;
  for (std::size_t i = 0; i < m.begin.size(); ++i) {
    put(body, "<tbody>");
    for (std::size_t bar = 0; bar < bars.size(); ++bar) {
      put(body, "<tr>");
      if (bar == 0) {
        const Html span =
            html("<th scope=\"row\" rowspan=\"", static_cast<int>(bars.size()), "\">");
        const Html data = html("<td rowspan=\"", static_cast<int>(bars.size()), "\"");
        put(body, span, m.number[i], "</th>", data, ">",
            m.girder[i] > 0 ? std::to_string(m.girder[i]) : "–", "</td>", data,
            " data-u=\"place\" data-v=\"", full(m.begin[i]), "\">", fixed(m.begin[i] / 12, 1),
            "</td>");
        if (!frame) put(body, cell(m.end[i], Unit::PLACE));
        put(body, data, " data-u=\"area\" data-v=\"", full(m.area[i]), "\">", fixed(m.area[i], 2),
            "</td>");
      }
      if (frame) put(body, "<td class=\"l\">", bars[bar], "</td>");
      put(body, member_row(r, kind, bar, i), "</tr>");
    }
    put(body, "</tbody>");
  }
  return body;
}

Html member_table(const Results& r, const Kind& kind) {
  if (places_of(r, kind).begin.empty()) return {};
  const bool frame = r.tables.at(kind.table).series.size() > 1;
  const Html place_unit = unit_name(Unit::PLACE), force = unit_name(Unit::FORCE),
             stress = unit_name(Unit::STRESS);
  const Html group = html("<th>", force, "</th><th>stage</th><th>", stress, "</th>");
  const Html head = html("<tr><th rowspan=\"2\">", kind.row, "</th><th rowspan=\"2\">Girder</th>",
                         frame ? html("<th rowspan=\"2\">At, ", place_unit, "</th>")
                               : html("<th rowspan=\"2\">From, ", place_unit,
                                      "</th><th rowspan=\"2\">To, ", place_unit, "</th>"),
                         "<th rowspan=\"2\">Area, ", unit_name(Unit::AREA), "</th>",
                         frame ? html("<th rowspan=\"2\">Bar</th>") : html(),
                         "<th colspan=\"3\" class=\"group\">Largest tension</th><th colspan=\"3\" "
                         "class=\"group\">Largest compression</th></tr><tr>",
                         group, group, "</tr>");
  return html("<h3>", kind.title, "</h3>",
              table(frame ? "members frames" : "members", head, member_rows(r, kind)));
}

// --- plan in colours ---

// The force of largest magnitude of any bar of a frame, or of a lateral.
double largest_force(const Results& r, const char* name, std::size_t place) {
  const EnvelopeTable& e = r.envelope.at(name);
  double worst = 0;
  for (const Values* side : {&e.high, &e.low})
    for (const std::vector<double>& series : *side)
      if (std::abs(series.at(place)) > std::abs(worst)) worst = series[place];
  return worst;
}

// White over grey to blue for tension, to red for compression.
std::string force_color(double share) {
  constexpr double ZERO[] = {205, 208, 212}, PULL[] = {20, 80, 170}, PUSH[] = {190, 30, 30};
  const double t = std::min(1.0, std::sqrt(std::abs(share)));
  std::string out = "rgb(";
  for (int c = 0; c < 3; ++c) {
    const double end = share > 0 ? PULL[c] : PUSH[c];
    out += std::to_string(static_cast<int>(ZERO[c] + t * (end - ZERO[c]))) + (c < 2 ? "," : ")");
  }
  return out;
}

Html colored_plan(const Results& r) {
  double most = 0;
  for (const Kind& kind : KINDS)
    for (std::size_t i = 0; i < places_of(r, kind).begin.size(); ++i)
      if (const double f = largest_force(r, kind.table, i); std::abs(f) > std::abs(most)) most = f;
  if (most == 0) return {};
  const auto color = [&](const char* name, std::size_t i) {
    return force_color(largest_force(r, name, i) / std::abs(most));
  };
  Html key;
  for (const double share : {-1.0, -0.4, -0.1, 0.1, 0.4, 1.0})
    put(key, "<svg class=\"swatch\" viewBox=\"0 0 20 12\"><rect width=\"20\" height=\"12\" fill=\"",
        force_color(share), "\"/></svg>");
  return html("<h3>Plan, coloured by force</h3>", plan_drawing(r, color),
              "<p class=\"note\">Compression ", key, " tension; full colour at ",
              quantity(most, Unit::FORCE),
              ". A frame takes the colour of its bar with the largest force of all stages.</p>");
}

}  // namespace

Html members(const Results& r) {
  Html out = html(
      "<p class=\"note\">Largest tension (+) and compression (−) of the totals of all stages, with "
      "the stage that governs; stress is force over area. A dash: the bar is never in tension, or "
      "never in compression.</p>",
      colored_plan(r));
  Html tables;
  for (const Kind& kind : KINDS) put(tables, member_table(r, kind));
  if (tables.text.empty())
    put(tables, "<p class=\"note\">The bridge has no frames or laterals.</p>");
  return html(out, tables);
}

}  // namespace zelvo::report
