// (8) Reactions and bearings.
#include "report/sections.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

Html reaction_cell(double value) {
  const UnitInfo& u = info(Unit::FORCE);
  return html("<td", value < 0 ? html(" class=\"below\"") : html(), " data-u=\"", u.key,
              "\" data-v=\"", full(value), "\">", fixed(value, u.us.decimals), "</td>");
}

// Rows: supports and series; columns: totals after each stage, and the least with its stage.
Html vertical_table(const Results& r, const char* name) {
  const TableText& t = r.tables.at(name);
  const EnvelopeTable& e = r.envelope.at(name);
  Html head = html("<tr><th>Support</th><th>At, ", unit_name(Unit::PLACE), "</th><th></th>"), body;
  for (const StageText& s : r.stages) put(head, "<th>", stage_chip(r, s.number), "</th>");
  put(head, "<th>least</th><th>stage</th><th>largest</th><th>stage</th></tr>");
  for (std::size_t i = 0; i < r.bridge.supports.size(); ++i) {
    put(body, "<tbody>");
    for (std::size_t s = 0; s < t.series.size(); ++s) {
      put(body, "<tr>");
      if (s == 0) {
        const int rows = static_cast<int>(t.series.size());
        const double at = r.bridge.supports[i].position;
        put(body, "<th scope=\"row\" rowspan=\"", rows, "\">", static_cast<int>(i) + 1,
            "</th><td rowspan=\"", rows, "\" data-u=\"place\" data-v=\"", full(at), "\">",
            fixed(at / 12, 1), "</td>");
      }
      put(body, "<td class=\"l\">", t.series[s], "</td>");
      for (const auto& total : r.totals) put(body, reaction_cell(total.at(name).at(s).at(i)));
      put(body, reaction_cell(e.low.at(s).at(i)), "<td>", stage_chip(r, e.low_stage.at(s).at(i)),
          "</td>", reaction_cell(e.high.at(s).at(i)), "<td>",
          stage_chip(r, e.high_stage.at(s).at(i)), "</td></tr>");
    }
    put(body, "</tbody>");
  }
  return table("reactions", head, body);
}

Html range_cells(const Results& r, const char* name, std::size_t s, std::size_t i) {
  const EnvelopeTable& e = r.envelope.at(name);
  const Unit unit = unit_of(r.tables.at(name).unit);
  return html(cell(e.low.at(s).at(i), unit), "<td>", stage_chip(r, e.low_stage.at(s).at(i)),
              "</td>", cell(e.high.at(s).at(i), unit), "<td>",
              stage_chip(r, e.high_stage.at(s).at(i)), "</td>");
}

Html other_table(const Results& r) {
  constexpr const char* NAMES[] = {"reaction_couple", "reaction_lateral", "reaction_longitudinal"};
  Html head = html("<tr><th rowspan=\"2\">Support</th><th rowspan=\"2\"></th>"), second, body;
  for (const char* name : NAMES) {
    const TableText& t = r.tables.at(name);
    put(head, "<th colspan=\"4\" class=\"group\">", t.title, ", ", unit_name(unit_of(t.unit)),
        "</th>");
    put(second, "<th>least</th><th>stage</th><th>largest</th><th>stage</th>");
  }
  for (std::size_t i = 0; i < r.bridge.supports.size(); ++i) {
    put(body, "<tbody>");
    for (int g = 1; g <= r.bridge.girders; ++g) {
      put(body, "<tr><th scope=\"row\">", static_cast<int>(i) + 1, "</th><td class=\"l\">girder ",
          g, "</td>");
      for (const char* name : NAMES)
        put(body, range_cells(r, name, static_cast<std::size_t>(g - 1), i));
      put(body, "</tr>");
    }
    put(body, "</tbody>");
  }
  return table("reactions", html(head, "</tr><tr>", second, "</tr>"), body);
}

Html positives(const Results& r) {
  Html out = html("<p class=\"note\">Positive: ");
  for (const char* name : {"reaction_couple", "reaction_lateral", "reaction_longitudinal"})
    put(out, r.tables.at(name).title, ": ", r.tables.at(name).positive,
        std::string_view(name) == "reaction_longitudinal" ? "." : "; ");
  return html(out, "</p>");
}

}  // namespace

Html reactions(const Results& r) {
  Html out = html("<h3>Vertical reactions after each stage, ", unit_name(Unit::FORCE),
                  "</h3><p class=\"note\">What the ground exerts on the bridge, up. Below zero "
                  "(red) a bearing would have to hold the girder down.</p>",
                  stage_key(r), vertical_table(r, "reaction"));
  if (!r.tables.at("bearings").series.empty())
    put(out, "<h3>Bearings after each stage, ", unit_name(Unit::FORCE), "</h3>",
        "<p class=\"note\">The vertical reaction and its couple on two bearings ",
        quantity(r.bridge.bearing_spacing, Unit::LENGTH), " apart.</p>",
        vertical_table(r, "bearings"));
  put(out, "<h3>Couples and horizontal reactions, range of the totals</h3>", other_table(r),
      positives(r));
  return out;
}

}  // namespace zelvo::report
