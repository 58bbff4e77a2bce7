#include "report/wording.h"

#include <cmath>

#include "report/chart.h"

namespace zelvo::report {

Html place(double position, const Bridge& bridge) {
  if (!std::isfinite(position)) return html("–");
  Html out = quantity(position, Unit::PLACE);
  for (std::size_t i = 0; i < bridge.supports.size(); ++i)
    if (bridge.supports[i].position == position)
      return html(out, ", support ", static_cast<int>(i) + 1);
  for (std::size_t i = 0; i < bridge.spans.size(); ++i)
    if (bridge.spans[i].begin < position && position < bridge.spans[i].end)
      return html(out, ", span ", static_cast<int>(i) + 1);
  return out;
}

Html table_place(const Results& r, const TableText& table, int index) {
  const auto i = static_cast<std::size_t>(index - 1);
  if (const auto found = r.members.find(table.along); found != r.members.end()) {
    const MemberPlaces& m = found->second;
    Html out = html(table.along == "lateral" ? "lateral " : "frame ", m.number.at(i));
    if (m.girder.at(i) > 0) put(out, " of girder ", m.girder[i]);
    return html(out, ", ", place(m.begin.at(i), r.bridge));
  }
  return place(r.position.at(table.along).at(i), r.bridge);
}

Html stage_chip(const Results& r, int k) {
  const int n = static_cast<int>(r.stages.size());
  if (k < 1 || k > n) return html("–");
  return html("<svg class=\"chip\" viewBox=\"0 0 20 14\" role=\"img\" aria-label=\"", k,
              "\"><rect width=\"20\" height=\"14\" rx=\"2\" fill=\"", stage_color(k, n),
              "\"/><text x=\"10\" y=\"10.5\">", k, "</text></svg>");
}

Html stage_label(const Results& r, int k) {
  Html out = stage_chip(r, k);
  if (k < 1 || k > static_cast<int>(r.stages.size())) return out;
  const std::string& name = r.stages[static_cast<std::size_t>(k - 1)].name;
  if (name != "stage " + std::to_string(k)) put(out, " ", name);
  return out;
}

Html stage_key(const Results& r) {
  Html out = html("<p class=\"key\">Stages");
  for (const StageText& s : r.stages)
    put(out, " <span>", stage_chip(r, s.number), " ", s.name, "</span>");
  put(out, "</p>");
  return out;
}

Html mode_words(const ModeText& mode, const Bridge& bridge) {
  const char* side = mode.side == 1 ? ", left" : mode.side == 2 ? ", right" : "";
  Html out;
  if (mode.kind == "plate")
    put(out, mode.plate, " of girder ", mode.girder, side, ", bulges at ");
  else if (mode.kind == "flange")
    put(out, "top flange of girder ", mode.girder, side, ", moves sideways at ");
  else if (mode.kind == "frame")
    put(out, "bracing of girder ", mode.girder, ", gives way at ");
  else
    put(out, "girder ", mode.girder, " as a whole, most at ");
  return html(out, place(mode.position, bridge));
}

std::string counted(int n, const std::string& thing) {
  return std::to_string(n) + " " + thing + (n == 1 ? "" : "s");
}

Html table(const char* kind, const Html& head, const Html& body) {
  return html("<div class=\"scroll\"><table class=\"", kind, "\"><thead>", head, "</thead>", body,
              "</table></div>");
}

}  // namespace zelvo::report
