// (3) Deflection and the screed tables, (4) differential deflection and twist.
#include "report/chart.h"
#include "report/diagrams.h"
#include "report/sections.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

// --- screed ---

// "0.4 L of span 2", and the position.
Html point_head(const TenthPlace& p) {
  return html("<th scope=\"row\">", p.tenth == 10 ? "1.0" : "0." + std::to_string(p.tenth), "</th>",
              cell(p.position, Unit::PLACE));
}

// With sixteenths of an inch behind it.
Html screed_cell(double value) {
  return html("<td data-u=\"deflection\" data-v=\"", full(value), "\" data-x=\"", sixteenths(value),
              "\">", fixed(value, 2), "</td>");
}

struct Column {
  Html head;
  const std::vector<double>* values;
  bool screed;  // what is built in: with sixteenths
};

Html screed_rows(const CamberTables& c, const std::vector<Column>& columns) {
  Html out;
  int span = 0;
  for (std::size_t i = 0; i < c.points.size(); ++i) {
    const TenthPlace& p = c.points[i];
    if (p.span != span) {
      put(out, span > 0 ? html("</tbody>") : html(), "<tbody><tr class=\"span\"><th colspan=\"",
          static_cast<int>(columns.size()) + 2, "\">Span ", p.span, "</th></tr>");
      span = p.span;
    }
    put(out, "<tr>", point_head(p));
    for (const Column& column : columns) {
      const double value = column.values->at(i);
      put(out, column.screed ? screed_cell(value) : cell(value, Unit::DEFLECTION));
    }
    put(out, "</tr>");
  }
  return html(out, "</tbody>");
}

Html screed_table(const Results& r, const std::vector<Column>& columns) {
  Html head = html("<tr><th>x/L</th><th>", unit_name(Unit::PLACE), "</th>");
  for (const Column& c : columns) put(head, "<th>", c.head, "</th>");
  return table("screed", html(head, "</tr>"), screed_rows(r.camber, columns));
}

// Deflections of the stages and the camber that they add up to.
Html camber_table(const Results& r, std::size_t line) {
  const CamberTables& c = r.camber;
  const bool own = !c.increments.empty();
  std::vector<Column> columns;
  for (std::size_t k = 0; k < r.stages.size(); ++k)
    columns.push_back({stage_label(r, r.stages[k].number),
                       &(own ? c.increments : c.totals).at(k).at(line), false});
  columns.push_back({html("camber"), &c.camber.at(line), true});
  return html("<h4>", c.series[line], ": ",
              own ? "deflection of each stage" : "total deflection after each stage",
              ", up, and camber, ", unit_name(Unit::DEFLECTION), "</h4>", screed_table(r, columns));
}

Html to_come_table(const Results& r, std::size_t line) {
  std::vector<Column> columns;
  for (std::size_t k = 0; k + 1 < r.stages.size(); ++k)
    columns.push_back({html("after ", stage_label(r, r.stages[k].number)),
                       &r.camber.to_come.at(k).at(line), true});
  if (columns.empty()) return {};
  return html("<h4>", r.camber.series[line], ": deflection still to come, up, ",
              unit_name(Unit::DEFLECTION), "</h4>", screed_table(r, columns));
}

bool ends_with(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

Html deflection_and_screed(const Results& r) {
  Html out = stage_key(r);
  for (int g = 1; g <= r.bridge.girders; ++g)
    put(out, stages_figure(r, {"deflection", g, Sign::UP, false}));
  put(out,
      "<h3>Screed tables</h3><p class=\"note\">At the web tops, at the tenth points of every span. "
      "Camber is what the steel is built above its final line: minus the last total. A point that "
      "is set after a stage still moves by what is to come. Decimals and sixteenths of an inch are "
      "roundings of the same number.</p>");
  for (std::size_t line = 0; line < r.camber.series.size(); ++line)
    if (ends_with(r.camber.series[line], "web top"))
      put(out, camber_table(r, line), to_come_table(r, line));
  return out;
}

Html differential_and_twist(const Results& r) {
  Html out = stage_key(r);
  if (r.bridge.girders > 1)
    put(out, stages_figure(r, {"differential", 1, Sign::HIGHER, false}));
  else
    put(out, "<p class=\"note\">One girder: no differential deflection.</p>");
  for (int g = 1; g <= r.bridge.girders; ++g)
    put(out, stages_figure(r, {"twist", g, Sign::TWIST, false}));
  return out;
}

}  // namespace zelvo::report
