// (10) Equilibrium, and the input.
#include "report/sections.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

Html check_row(const Results& r, const StageText& s) {
  return html("<tr><th scope=\"row\">", stage_label(r, s.number), "</th>",
              cell(s.load, Unit::WEIGHT), cell(s.reactions, Unit::WEIGHT), "<td>",
              scientific(s.grounded), "</td><td>", scientific(s.imbalance), "</td><td>",
              scientific(s.residual), "</td>", cell(s.largest_deflection, Unit::DEFLECTION),
              "<td class=\"l\">", place(s.position, r.bridge), "</td>", cell(s.span, Unit::PLACE),
              "<td class=\"l\">",
              !s.finite            ? html("<b class=\"below\">not finite</b>")
              : s.solver_code != 0 ? html("<b class=\"below\">solver code ", s.solver_code, "</b>")
                                   : html("solved"),
              "</td></tr>");
}

}  // namespace

Html checks_and_input(const Results& r) {
  Html body = html("<tbody>");
  for (const StageText& s : r.stages) put(body, check_row(r, s));
  const Html force = unit_name(Unit::WEIGHT);
  const Html head =
      html("<tr><th>Stage</th><th>Load, ", force, "</th><th>Reactions, ", force,
           "</th><th>Grounded, kip</th><th>Imbalance</th><th>Residual</th><th>Largest "
           "deflection, ",
           unit_name(Unit::DEFLECTION), "</th><th>At</th><th>Span, ", unit_name(Unit::PLACE),
           "</th><th></th></tr>");
  return html(
      "<h3>Equilibrium of each stage by itself</h3>", table("checks", head, html(body, "</tbody>")),
      "<p class=\"note\">Without load factors. Imbalance: what of the load neither the reactions "
      "nor "
      "the ground springs of the frames carry, over the load. Residual: norm of F − K U over that "
      "of "
      "F.</p><h3>Input, verbatim</h3><p class=\"note\">",
      r.file, ", SHA-256 <code>", r.sha256, "</code></p><pre id=\"input\">\n", r.input, "</pre>");
}

}  // namespace zelvo::report
