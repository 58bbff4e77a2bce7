// (1) What governs, and whether anything is amiss.
#include <algorithm>
#include <cmath>

#include "report/sections.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

Html sentence(bool good, const Html& words) {
  return good ? html("<li class=\"good\">", words, "</li>")
              : html("<li class=\"bad\">", words, "</li>");
}

Html limits_sentence(const Results& r) {
  int missed = 0;
  for (const LimitText& l : r.limits) missed += l.met ? 0 : 1;
  const int n = static_cast<int>(r.limits.size());
  if (n == 0) return html("<li class=\"none\">The input sets no limits.</li>");
  return missed == 0 ? sentence(true, html(n == 1 ? "The limit" : "All " + counted(n, "limit"),
                                           n == 1 ? " is met." : " are met."))
                     : sentence(false, html(missed, " of ", counted(n, "limit"), " not met."));
}

Html uplift_sentence(const Results& r) {
  if (r.uplift.empty())
    return sentence(
        true, html("No uplift: all total reactions stay above zero",
                   std::isfinite(r.bridge.bearing_spacing) ? ", bearing by bearing" : "", "."));
  const UpliftText* worst = &r.uplift[0];
  for (const UpliftText& u : r.uplift)
    if (u.value < worst->value) worst = &u;
  return sentence(false, html("Uplift in ", counted(static_cast<int>(r.uplift.size()), "place"),
                              ", most at support ", worst->support, " of girder ", worst->girder,
                              worst->bearing == 1   ? ", left bearing"
                              : worst->bearing == 2 ? ", right bearing"
                                                    : "",
                              ": ", quantity(worst->value, Unit::FORCE), " after stage ",
                              stage_label(r, worst->stage), "."));
}

Html buckling_sentence(const Results& r) {
  const ModeText* mode = lowest_mode(r);
  const auto made =
      std::count_if(r.history.begin(), r.history.end(), [](const CheckText& c) { return c.made; });
  if (mode == nullptr) {
    return made > 0 ? sentence(true, html("No positive buckling factor was found."))
                    : html("<li class=\"none\">Buckling was not checked.</li>");
  }
  const LowestText& l = r.lowest_history;
  return sentence(l.factor >= 1,
                  html("Lowest buckling factor ", number(l.factor, Unit::FACTOR), " after stage ",
                       stage_label(r, l.stage), ": ", mode_words(*mode, r.bridge), ".",
                       made < std::ssize(r.history) ? " Not every stage was checked." : ""));
}

Html equilibrium_sentence(const Results& r) {
  bool sound = true;
  for (const StageText& s : r.stages) sound = sound && s.finite && s.solver_code == 0;
  return sentence(sound && r.worst_imbalance < 1e-3,
                  html("Reactions balance the loads of every stage to ",
                       scientific(r.worst_imbalance), " of the load."));
}

Html warnings_list(const Results& r) {
  const int n = static_cast<int>(r.warnings.size());
  if (n == 0) return sentence(true, html("No warnings about the input."));
  Html out = html("<li class=\"warn\">", counted(n, "warning"), " about the input:<ul>");
  for (const Warning& w : r.warnings) {
    put(out, "<li>");
    if (w.line > 0) put(out, "line ", w.line, ": ");
    put(out, w.text, "</li>");
  }
  return html(out, "</ul></li>");
}

// --- tables ---

Html limits_table(const Results& r) {
  if (r.limits.empty()) return {};
  Html body = html("<tbody>");
  for (const LimitText& l : r.limits) {
    const Unit unit = unit_of(l.unit);
    put(body, "<tr", l.met ? html(">") : html(" class=\"bad\">"), "<th scope=\"row\">", l.name,
        "</th>", cell(l.value, unit), cell(l.limit, unit), "<td class=\"l\">", unit_name(unit),
        "</td><td class=\"l\">", place(l.place, r.bridge), "</td><td class=\"l\">",
        stage_label(r, l.stage), "</td><td class=\"l\">",
        l.stage == 0 ? "not compared"
        : l.met      ? "met"
                     : "NOT MET",
        "</td></tr>");
  }
  return html("<h3>Limits</h3>",
              table("limits",
                    html("<tr><th>Limit on</th><th>Found</th><th>Limit</th><th></th><th>At</th>"
                         "<th>Stage</th><th></th></tr>"),
                    html(body, "</tbody>")));
}

enum class Which { HIGH, LOW, LARGEST };
struct GoverningRow {
  const char *name, *table;
  Which which;
};
constexpr GoverningRow GOVERNING_ROWS[] = {
    {"Deflection, downward", "deflection", Which::LOW},
    {"Differential deflection", "differential", Which::LARGEST},
    {"Twist", "twist", Which::LARGEST},
    {"Moment of the whole section, sagging", "whole_M", Which::HIGH},
    {"Moment of the whole section, hogging", "whole_M", Which::LOW},
    {"Moment of a girder, sagging", "own_M", Which::HIGH},
    {"Moment of a girder, hogging", "own_M", Which::LOW},
    {"Shear of a girder", "own_V", Which::LARGEST},
    {"Torque of the whole section", "whole_T", Which::LARGEST},
    {"Torque of a girder", "own_T", Which::LARGEST},
    {"Top flange f_bu, compression", "flange_mean", Which::LOW},
    {"Top flange f_bu, tension", "flange_mean", Which::HIGH},
    {"Top flange lateral bending f_l", "flange_bend", Which::LARGEST},
    {"Bottom flange, compression", "bottom_low", Which::LOW},
    {"Bottom flange, tension", "bottom_high", Which::HIGH},
    {"Web shear", "web_shear", Which::LARGEST},
    {"Internal frames, compression", "internal", Which::LOW},
    {"Internal frames, tension", "internal", Which::HIGH},
    {"External frames, compression", "external", Which::LOW},
    {"External frames, tension", "external", Which::HIGH},
    {"Top laterals, compression", "laterals", Which::LOW},
    {"Top laterals, tension", "laterals", Which::HIGH},
    {"Least reaction", "reaction", Which::LOW},
    {"Largest reaction", "reaction", Which::HIGH},
    {"Least bearing reaction", "bearings", Which::LOW},
};

const GoverningValue& chosen(const GoverningPair& pair, Which which) {
  const bool high = which == Which::HIGH || (which == Which::LARGEST &&
                                             std::abs(pair.high.value) >= std::abs(pair.low.value));
  return high ? pair.high : pair.low;
}

Html governing_row(const Results& r, const GoverningRow& row) {
  const GoverningValue& g = chosen(r.governing.at(row.table), row.which);
  if (g.stage == 0) return {};
  const TableText& t = r.tables.at(row.table);
  const Unit unit = unit_of(t.unit);
  const std::string& series = t.series.at(static_cast<std::size_t>(g.series - 1));
  return html("<tr data-key=\"governing.", row.table, "\"><th scope=\"row\">", row.name, "</th>",
              cell(g.value, unit), "<td class=\"l\">", unit_name(unit), "</td><td class=\"l\">",
              series == t.title ? "" : series, "</td><td class=\"l\">", table_place(r, t, g.place),
              "</td><td class=\"l\">", stage_label(r, g.stage), "</td></tr>");
}

Html governing_table(const Results& r) {
  Html body = html("<tbody>");
  for (const GoverningRow& row : GOVERNING_ROWS) put(body, governing_row(r, row));
  return html("<h3>Governing totals</h3>",
              table("governing",
                    html("<tr><th>Quantity</th><th>Value</th><th></th><th>Of</th><th>At</th>"
                         "<th>After stage</th></tr>"),
                    html(body, "</tbody>")));
}

}  // namespace

const ModeText* lowest_mode(const Results& r) {
  const LowestText& l = r.lowest_history;
  if (l.stage == 0) return nullptr;
  return &r.history.at(static_cast<std::size_t>(l.stage - 1))
              .modes.at(static_cast<std::size_t>(l.mode - 1));
}

Html verdict(const Results& r) {
  return html(
      "<ul class=\"verdict\">", limits_sentence(r), uplift_sentence(r), buckling_sentence(r),
      equilibrium_sentence(r), warnings_list(r), "</ul>", limits_table(r), governing_table(r),
      "<p class=\"note\">Totals are sums of the stages' increments, each found on the "
      "structure of its own stage. Girder moments and torques are those of a girder's shells "
      "about its own point, midway between its web tops; the whole section includes the top "
      "laterals.</p>");
}

}  // namespace zelvo::report
