// (9) Buckling: factors found three ways, and the shapes.
#include <algorithm>
#include <cmath>

#include "report/buckled_picture.h"
#include "report/pack.h"
#include "report/sections.h"
#include "report/wording.h"

namespace zelvo::report {

namespace {

// --- factors ---

const ModeText* mode_of(const std::vector<CheckText>& checks, std::size_t stage, std::size_t mode) {
  if (stage >= checks.size() || mode >= checks[stage].modes.size()) return nullptr;
  return &checks[stage].modes[mode];
}

Html factor_cell(const ModeText* mode, bool governs) {
  if (mode == nullptr) return html("<td>–</td>");
  return html("<td", governs ? html(" class=\"governs\"") : html(), " data-u=\"factor\" data-v=\"",
              full(mode->factor), "\">", fixed(mode->factor, 3), mode->sharp ? "" : " ~", "</td>");
}

bool is_lowest(const LowestText& l, std::size_t stage, std::size_t mode) {
  return l.stage == static_cast<int>(stage) + 1 && l.mode == static_cast<int>(mode) + 1;
}

bool was_checked(const Results& r, std::size_t k) {
  for (const auto* checks : {&r.history, &r.batch_rule, &r.softest})
    if (k < checks->size() && (*checks)[k].made) return true;
  return false;
}

Html factor_rows(const Results& r, std::size_t k) {
  std::size_t modes = 0;
  for (const auto* checks : {&r.history, &r.batch_rule, &r.softest})
    if (k < checks->size()) modes = std::max(modes, (*checks)[k].modes.size());
  Html out = html("<tbody>");
  if (modes == 0)
    put(out, "<tr><th scope=\"row\">", stage_label(r, static_cast<int>(k) + 1),
        "</th><td class=\"l\" colspan=\"6\">",
        was_checked(r, k) ? "no factor was found" : "not checked", "</td></tr>");
  for (std::size_t m = 0; m < modes; ++m) {
    const ModeText* mode = mode_of(r.history, k, m);
    put(out, "<tr>");
    if (m == 0)
      put(out, "<th scope=\"row\" rowspan=\"", static_cast<int>(modes), "\">",
          stage_label(r, static_cast<int>(k) + 1), "</th>");
    put(out, "<td>", static_cast<int>(m) + 1, "</td>",
        factor_cell(mode, is_lowest(r.lowest_history, k, m)), "<td class=\"l\">",
        mode != nullptr ? mode_words(*mode, r.bridge) : html(), "</td>",
        mode != nullptr ? cell(mode->share, Unit::FACTOR) : html("<td></td>"),
        factor_cell(mode_of(r.batch_rule, k, m), is_lowest(r.lowest_batch_rule, k, m)),
        factor_cell(mode_of(r.softest, k, m), is_lowest(r.lowest_softest, k, m)), "</tr>");
  }
  return html(out, "</tbody>");
}

Html factor_table(const Results& r) {
  Html body;
  for (std::size_t k = 0; k < r.stages.size(); ++k) put(body, factor_rows(r, k));
  return table("factors",
               html("<tr><th>After stage</th><th>Mode</th><th>By history</th><th>What buckles</th>"
                    "<th>Share</th><th>Batch rule</th><th>All segments soft</th></tr>"),
               body);
}

Html lowest_line(const Results& r, const char* name, const LowestText& l) {
  if (l.stage == 0) return {};
  return html("<li>", name, ": lowest factor <b>", number(l.factor, Unit::FACTOR), "</b>, stage ",
              stage_label(r, l.stage), ", mode ", l.mode, "</li>");
}

Html remarks(const Results& r) {
  Html out;
  for (std::size_t k = 0; k < r.history.size(); ++k) {
    for (const std::string& text : r.history[k].remarks)
      put(out, "<li>stage ", static_cast<int>(k) + 1, ": ", text, "</li>");
    for (std::size_t m = 0; m < r.history[k].modes.size(); ++m)
      if (const std::string& text = r.history[k].modes[m].remark; !text.empty())
        put(out, "<li>stage ", static_cast<int>(k) + 1, ", mode ", static_cast<int>(m) + 1, ": ",
            text, "</li>");
  }
  return out.text.empty() ? out : html("<h3>Remarks</h3><ul>", out, "</ul>");
}

// --- the view to turn ---

// Lists along the bridge, one for each node of a section and component, packed; |values| stay below
// 2^20.
template <class Value>
std::string packed(const Geometry& g, Value value) {
  const std::size_t width = 3 * static_cast<std::size_t>(g.nodes_per_section);
  std::string out;
  std::vector<int> list(g.section.size());
  for (std::size_t c = 0; c < width; ++c) {
    for (std::size_t j = 0; j < list.size(); ++j) list[j] = value(j * width + c);
    pack(list, out);
  }
  return out;
}

constexpr double STEPS_PER_INCH = 10;   // of coordinates
constexpr double SHAPE_STEPS = 127e-4;  // of 10000, a shape's largest component

// What viewer.js draws from: machine text alone, no word of the input.
Html viewer_data(const Results& r) {
  const Geometry& g = r.geometry;
  std::string runs, shapes;
  for (const Run& run : g.runs) {
    runs += runs.empty() ? "[" : ",[";
    for (std::size_t i = 0; i < run.nodes.size(); ++i)
      runs += (i > 0 ? "," : "") + std::to_string(run.nodes[i] - 1);
    runs += "]";
  }
  for (const CheckText& check : r.history)
    for (const ModeText& mode : check.modes)
      if (!mode.shape.empty())
        shapes += (shapes.empty() ? "\"" : ",\"") +
                  packed(g,
                         [&](std::size_t i) {
                           return static_cast<int>(std::lround(SHAPE_STEPS * mode.shape[i]));
                         }) +
                  "\"";
  const std::string xyz = packed(
      g, [&](std::size_t i) { return static_cast<int>(std::lround(STEPS_PER_INCH * g.xyz[i])); });
  const std::string json = "{\"sections\":" + std::to_string(g.section.size()) +
                           ",\"nodes\":" + std::to_string(g.nodes_per_section) +
                           ",\"depth\":" + full(r.bridge.depth) + ",\"runs\":[" + runs +
                           "],\"xyz\":\"" + xyz + "\",\"shapes\":[" + shapes + "]}";
  Html out;
  out.text = json;  // digits, base64 and punctuation
  return html("<script type=\"application/json\" id=\"viewer-data\">", out, "</script>");
}

Html shape_options(const Results& r) {
  Html out;
  for (std::size_t k = 0; k < r.history.size(); ++k)
    for (std::size_t m = 0; m < r.history[k].modes.size(); ++m) {
      const ModeText& mode = r.history[k].modes[m];
      if (mode.shape.empty()) continue;
      const std::string& name = r.stages.at(k).name;
      const std::string number = "stage " + std::to_string(k + 1);
      put(out, "<option data-position=\"", full(mode.position), "\"",
          is_lowest(r.lowest_history, k, m) ? html(" selected") : html(), ">", number,
          name == number ? "" : " " + name, ", mode ", static_cast<int>(m) + 1, ": ",
          fixed(mode.factor, 3), ", ", mode.kind, "</option>");
    }
  return out;
}

Html viewer(const Results& r) {
  return html(
      "<div id=\"viewer\"><div class=\"controls\"><label>Shape <select id=\"shape\">",
      shape_options(r),
      "</select></label><label>Amplitude <input type=\"range\" id=\"amplitude\" min=\"-100\" "
      "max=\"100\" value=\"40\"></label><label><input type=\"checkbox\" id=\"ghost\" checked> "
      "undeformed</label><button type=\"button\" id=\"at-buckle\">At the buckle</button><button "
      "type=\"button\" id=\"whole\">Whole bridge</button></div><div id=\"scene\" tabindex=\"0\" "
      "aria-label=\"buckled shape to turn\"></div><p class=\"note\">Drag to turn, wheel to zoom, "
      "drag with Shift or the right button to move; arrow keys turn too.</p></div>",
      viewer_data(r));
}

// The mode drawn on paper: that of the lowest factor, or the first with a shape.
const ModeText* drawn_mode(const Results& r) {
  const LowestText& l = r.lowest_history;
  if (l.stage > 0) {
    const ModeText* mode = mode_of(r.history, static_cast<std::size_t>(l.stage - 1),
                                   static_cast<std::size_t>(l.mode - 1));
    if (mode != nullptr && !mode->shape.empty()) return mode;
  }
  for (const CheckText& check : r.history)
    for (const ModeText& mode : check.modes)
      if (!mode.shape.empty()) return &mode;
  return nullptr;
}

Html shapes(const Results& r) {
  const ModeText* mode = drawn_mode(r);
  if (mode == nullptr || r.geometry.xyz.size() != mode->shape.size()) return {};
  return html("<h3>Buckled shape</h3>", viewer(r), "<figure><figcaption><b>Factor ",
              number(mode->factor, Unit::FACTOR), "</b>: ", mode_words(*mode, r.bridge),
              ". Left the stretch that moves, right the section there; amplitudes are free, the "
              "undeformed bridge is dashed.</figcaption>",
              buckled_picture(r.geometry, *mode, r.bridge), "</figure>");
}

bool any_made(const std::vector<CheckText>& checks) {
  return std::any_of(checks.begin(), checks.end(), [](const CheckText& c) { return c.made; });
}

}  // namespace

Html buckling(const Results& r) {
  if (!any_made(r.history) && !any_made(r.batch_rule) && !any_made(r.softest))
    return html("<p class=\"note\">Buckling was not checked in this run.</p>");
  return html(
      "<ul>", lowest_line(r, "By history", r.lowest_history),
      lowest_line(r, "Batch rule", r.lowest_batch_rule),
      lowest_line(r, "All segments soft", r.lowest_softest),
      "</ul><p class=\"note\">A factor multiplies all loads so far, by one number and in the same "
      "sequence. <b>By history</b>: with the stresses that have accumulated stage by stage. "
      "<b>Batch "
      "rule</b>: all loads so far at once on the structure of the stage; it can be too favourable "
      "once "
      "concrete has hardened. <b>All segments soft</b>: all loads on every segment at its softest; "
      "a "
      "comparison, no bound. Negative: the loads would have to change their sign. A factor with ~ "
      "is "
      "not sharp. Share: of the motion that the mode is named by. The lowest of each is in "
      "bold.</p>",
      factor_table(r), remarks(r), shapes(r));
}

}  // namespace zelvo::report
