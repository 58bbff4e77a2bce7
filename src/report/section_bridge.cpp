// (2) The bridge, its plates and the order of its pours.
#include <cmath>

#include "report/plan.h"
#include "report/sections.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

Html spans_text(const Bridge& b) {
  Html out;
  for (std::size_t i = 0; i < b.spans.size(); ++i)
    put(out, i > 0 ? " + " : "", number(b.spans[i].end - b.spans[i].begin, Unit::PLACE));
  return html(out, " ", unit_name(Unit::PLACE));
}

Html fact(const char* name, const Html& value) {
  return html("<dt>", name, "</dt><dd>", value, "</dd>");
}

Html facts(const Bridge& b) {
  const bool curved = std::isfinite(b.radius);
  Html out = html("<dl class=\"facts\">");
  put(out,
      fact("Girders",
           html(b.girders, curved && b.girders == 2 ? ", girder 1 is the outer one" : "")),
      fact("Plan", curved
                       ? html("radius ", quantity(b.radius, Unit::PLACE), ", curves to the right")
                       : html("straight")),
      fact("Length", quantity(b.length, Unit::PLACE)), fact("Spans", spans_text(b)),
      fact("Depth, between mid-planes", quantity(b.depth, Unit::LENGTH)),
      fact("Top flanges, width", quantity(b.flange_width, Unit::LENGTH)),
      fact("Deck, thickness", quantity(b.deck_thickness, Unit::LENGTH)),
      fact("Steel plates", quantity(b.steel_plates, Unit::WEIGHT)),
      fact("Bracing (not in the loads)", quantity(b.bracing, Unit::WEIGHT)),
      fact("Frames, laterals", html(static_cast<int>(b.internal_frames.size()), " internal, ",
                                    static_cast<int>(b.external_frames.size()), " external, ",
                                    static_cast<int>(b.laterals.size()), " laterals a girder")));
  if (std::isfinite(b.bearing_spacing))
    put(out, fact("Bearings of a girder, apart", quantity(b.bearing_spacing, Unit::LENGTH)));
  return html(out, "</dl>");
}

Html supports_table(const Bridge& b) {
  Html body = html("<tbody>");
  int n = 0;
  for (const SupportLine& s : b.supports)
    put(body, "<tr><th scope=\"row\">", ++n, "</th>", cell(s.position, Unit::PLACE),
        "<td class=\"l\">", s.kind, "</td></tr>");
  return table("narrow",
               html("<tr><th>Support</th><th>At, ", unit_name(Unit::PLACE), "</th><th></th></tr>"),
               html(body, "</tbody>"));
}

// What every segment is in every stage: modulus, stud stiffness, load, one below the other.
Html calendar_table(const Results& r) {
  Html head = html("<tr><th>Stage</th><th>Factor</th><th></th>"), body;
  for (std::size_t j = 0; j < r.bridge.segments.size(); ++j)
    put(head, "<th>", static_cast<int>(j) + 1, "</th>");
  for (const StageText& s : r.stages) {
    Html modulus, stud, load;
    for (const SegmentState& e : s.segments) {
      put(modulus, cell(e.modulus, Unit::MODULUS));
      put(stud, cell(e.stud, Unit::STUD));
      put(load, cell(e.load, Unit::LOAD));
    }
    put(body, "<tbody><tr><th scope=\"row\" rowspan=\"3\">", stage_label(r, s.number),
        "</th><td rowspan=\"3\" data-u=\"factor\" data-v=\"", full(s.load_factor), "\">",
        fixed(s.load_factor, 3), "</td><td class=\"l\">E, ", unit_name(Unit::MODULUS), "</td>",
        modulus, "</tr><tr><td class=\"l\">stud, ", unit_name(Unit::STUD), "</td>", stud,
        "</tr><tr><td class=\"l\">load, ", unit_name(Unit::LOAD), "</td>", load, "</tr></tbody>");
  }
  return table("pours", html(head, "</tr>"), body);
}

}  // namespace

Html bridge_and_pours(const Results& r) {
  const auto plain = [](const char*, std::size_t) { return std::string("#7d8894"); };
  return html(
      "<div class=\"columns\"><div>", facts(r.bridge), supports_table(r.bridge), "</div><div>",
      section_drawing(r.bridge),
      "<p class=\"note\">Seen along the bridge from its first end; dimensions in ",
      unit_name(Unit::LENGTH), " between mid-planes.</p></div></div><h3>Plan</h3>",
      plan_drawing(r, plain), "<h3>Plates, ", unit_name(Unit::LENGTH), "</h3>",
      plate_drawing(r.bridge), "<h3>Calendar of pours</h3>", stage_key(r), calendar_drawing(r),
      "<p class=\"note\"><svg class=\"swatch wet\" viewBox=\"0 0 20 12\"><rect width=\"20\" "
      "height=\"12\"/></svg> loaded while soft <svg class=\"swatch hard\" viewBox=\"0 0 20 "
      "12\"><rect "
      "width=\"20\" height=\"12\"/></svg> hard <svg class=\"swatch soft\" viewBox=\"0 0 20 "
      "12\"><rect "
      "width=\"20\" height=\"12\"/></svg> soft, no load in this stage. Figures: load, ",
      unit_name(Unit::LOAD), " of bridge. The steel acts in the first stage.</p>",
      calendar_table(r));
}

}  // namespace zelvo::report
