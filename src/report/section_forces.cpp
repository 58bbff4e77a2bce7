// (5) Shear, moment and torque, (6) stresses of the flanges.
#include "report/diagrams.h"
#include "report/sections.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

// Shear, moment and torque of a part: increments and total, then totals and envelope.
Html part_figures(const Results& r, const std::string& part, int series) {
  const struct {
    const char* letter;
    Sign sign;
    bool downward;
  } kinds[] = {{"V", Sign::SHEAR, false}, {"M", Sign::SAGGING, true}, {"T", Sign::TORQUE, false}};
  Html out;
  for (const auto& kind : kinds) {
    const std::string table = part + "_" + kind.letter;
    const DiagramOf of{table.c_str(), series, kind.sign, kind.downward};
    put(out, "<div class=\"pair\">", stages_figure(r, of), envelope_figure(r, of), "</div>");
  }
  return out;
}

}  // namespace

Html shear_moment_torque(const Results& r) {
  Html out = stage_key(r);
  put(out, "<h3>Whole section</h3><p class=\"note\">Girders and top laterals together.</p>",
      part_figures(r, "whole", 1));
  for (int g = 1; g <= r.bridge.girders; ++g)
    put(out, "<h3>Girder ", g,
        "</h3><p class=\"note\">Its own steel and the deck on its side of "
        "the middle, about its own point midway between its web tops; without the top "
        "laterals.</p>",
        part_figures(r, "own", g));
  return out;
}

Html flange_stresses(const Results& r) {
  Html out = html(
      "<p class=\"note\">At mid-thickness, at the middle of every bay. f_bu is the stress of a top "
      "flange without its lateral bending, f_l that of lateral bending alone, at the tip; the tips "
      "have |f_bu| + |f_l|. Below each diagram: the stage that governs the largest (+) and the "
      "smallest (−) value.</p>");
  for (int g = 1; g <= r.bridge.girders; ++g)
    put(out, "<h3>Girder ", g, "</h3>",
        sides_figure(r, "flange_mean", g, Sign::TENSION, "top_flange"),
        sides_figure(r, "flange_bend", g, Sign::RIGHT_TIP, ""), bottom_figure(r, g));
  return out;
}

}  // namespace zelvo::report
