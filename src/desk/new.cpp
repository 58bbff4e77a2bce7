#include "desk/new.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "base/failures.h"
#include "base/text.h"
#include "construction/checks.h"
#include "control/input_check.h"
#include "control/input_doubts.h"
#include "desk/check.h"
#include "desk/scratch.h"

namespace zelvo {

namespace {

constexpr double FOOT = 12, CONCRETE = 0.150 / (FOOT * FOOT);  // kip/ft per in^2 of deck
constexpr double WEB_SLOPE = 1.0 / 4;                          // horizontal to vertical
constexpr double PIER_PLATES = 0.2, PIER_POUR = 0.25;          // of the span on either side

[[noreturn]] void refuse(const std::string& text) { throw std::invalid_argument(text); }

// A length in inches; `unit` is that of a number alone.
double length_of(const std::string& text, const char* name, double unit, double missing) {
  if (text.empty()) return missing;
  double value = 0;
  const char* end = text.data() + text.size();
  const auto r = std::from_chars(text.data(), end, value);
  const std::string_view rest(r.ptr, static_cast<std::size_t>(end - r.ptr));
  if (r.ec != std::errc() || !std::isfinite(value) || value <= 0 || value > 1e6)
    refuse(std::string(name) + ": '" + text + "' must be a length above 0");
  if (rest == "ft") return FOOT * value;
  if (rest == "in") return value;
  if (!rest.empty())
    refuse(std::string(name) + ": '" + text + "' must end in ft, in or its number");
  return unit * value;
}

int snap(double inches, int grid) {
  return std::max(grid, grid * static_cast<int>(std::lround(inches / grid)));
}

// A zone along the bridge: over an inner support or between two.
struct Zone {
  int begin, end;
  bool pier;
};

struct Pour {
  std::vector<int> segments;  // from 1
};

// All that the file says, in inches.
struct Plan {
  int girders = 1, length = 0;
  double radius = 0, offset = 0;
  double depth = 0, bottom_width = 0, top_spacing = 0, flange_width = 0;
  double deck_width = 0, deck_thickness = 0;
  double web[2], bottom[2], top[2];          // in the spans, over the piers
  std::vector<int> supports, frames, links;  // links: frames between the girders
  std::vector<int> panel;                    // ends of the laterals
  std::vector<Zone> plates, segments;
  std::vector<Pour> pours;
  double bracing = 0;  // kip/ft
};

std::vector<Zone> zones(const std::vector<int>& supports, double share) {
  std::vector<Zone> out;
  int begin = 0;
  for (std::size_t i = 1; i + 1 < supports.size(); ++i) {
    const int before = snap(share * (supports[i] - supports[i - 1]), BAY_LENGTH);
    const int behind = snap(share * (supports[i + 1] - supports[i]), BAY_LENGTH);
    if (supports[i] - before > begin) out.push_back({begin, supports[i] - before, false});
    out.push_back({supports[i] - before, supports[i] + behind, true});
    begin = supports[i] + behind;
  }
  if (begin < supports.back()) out.push_back({begin, supports.back(), false});
  return out;
}

void plan_length(const BridgeSketch& s, Plan& p) {
  if (s.girders != 1 && s.girders != 2) refuse("girders: must be 1 or 2");
  if (s.spans.empty()) refuse("spans: at least one must be given");
  p.girders = s.girders;
  p.supports = {0};
  for (const std::string& span : s.spans)
    p.supports.push_back(p.supports.back() + snap(length_of(span, "spans", FOOT, 0), BAY_LENGTH));
  p.length = p.supports.back();
  if (p.length > 240000) refuse("spans: 20,000 ft in all are the most");
  p.radius = length_of(s.radius, "radius", FOOT, 0);
}

void plan_section(const BridgeSketch& s, Plan& p) {
  int longest = 0;
  for (std::size_t i = 1; i < p.supports.size(); ++i)
    longest = std::max(longest, p.supports[i] - p.supports[i - 1]);
  p.depth =
      length_of(s.depth, "depth", 1, std::clamp(2.0 * std::round(longest / 52.0), 36.0, 144.0));
  p.bottom_width =
      length_of(s.bottom_width, "bottom-width", 1, std::max(48.0, 2 * std::round(0.4 * p.depth)));
  p.top_spacing =
      length_of(s.top_spacing, "top-spacing", 1, p.bottom_width + 2 * WEB_SLOPE * p.depth);
  p.flange_width = length_of(s.flange_width, "flange-width", 1,
                             std::clamp(2 * std::round(longest / 240.0), 14.0, 30.0));
  const double gap = p.top_spacing;  // between the girders' inner web tops
  const double spacing = length_of(s.spacing, "spacing", FOOT, p.top_spacing + gap);
  p.offset = p.girders == 2 ? spacing / 2 : 0;
  const double webs = p.top_spacing + 2 * p.offset;
  p.deck_width =
      length_of(s.deck_width, "deck-width", FOOT, 6 * std::round((webs + 0.8 * p.top_spacing) / 6));
  p.deck_thickness = length_of(s.deck_thickness, "deck-thickness", 1, 8.5);
}

void plan_plates(const BridgeSketch& s, Plan& p) {
  const auto take = [](const std::vector<double>& given, const char* name, double span, double pier,
                       double out[2]) {
    if (given.size() > 2) refuse(std::string(name) + ": one or two thicknesses");
    out[0] = given.empty() ? span : given[0];
    out[1] = given.empty() ? pier : given.back();
  };
  const double web = p.depth <= 60 ? 0.5 : p.depth <= 84 ? 0.5625 : 0.75;
  take(s.web, "web", web, web + 0.125, p.web);
  take(s.bottom, "bottom", 0.875, 1.5, p.bottom);
  take(s.top, "top", 1.25, 2.25, p.top);
  p.plates = zones(p.supports, PIER_PLATES);
}

// Even panels in every span; supports have stiff frames of their own.
void plan_bracing(const BridgeSketch& s, Plan& p) {
  const double wanted = length_of(s.frame_spacing, "frame-spacing", FOOT, 16 * FOOT);
  for (std::size_t i = 1; i < p.supports.size(); ++i) {
    const int begin = p.supports[i - 1], span = p.supports[i] - begin;
    int panels = std::max(1, static_cast<int>(std::lround(span / wanted)));
    panels = std::min(panels, span / BAY_LENGTH);
    p.panel.push_back(begin);
    for (int j = 1; j < panels; ++j) {
      const int at = begin + snap(double(span) * j / panels, STATION_SPACING);
      p.frames.push_back(at);
      p.panel.push_back(at);
      if (p.girders == 2 && j % 2 == 0) p.links.push_back(at);
    }
  }
  p.panel.push_back(p.length);
}

// "1+5,3,2,4": pours divided by commas, segments poured together by plus signs.
std::vector<Pour> read_order(const std::string& order, int segments) {
  std::vector<Pour> pours(1);
  std::vector<bool> seen(static_cast<std::size_t>(segments));
  const char *at = order.data(), *end = at + order.size();
  while (true) {
    int j = 0;
    const auto r = std::from_chars(at, end, j);
    if (r.ec != std::errc() || j < 1 || j > segments || seen[static_cast<std::size_t>(j - 1)])
      refuse("order: '" + order + "' must name each of the segments 1 to " +
             std::to_string(segments) + " once");
    seen[static_cast<std::size_t>(j - 1)] = true;
    pours.back().segments.push_back(j);
    if (r.ptr == end) break;
    if (*r.ptr == ',')
      pours.emplace_back();
    else if (*r.ptr != '+')
      refuse("order: '" + order + "' must be divided by , and +");
    at = r.ptr + 1;
  }
  if (std::find(seen.begin(), seen.end(), false) != seen.end())
    refuse("order: '" + order + "' leaves out a segment");
  return pours;
}

void plan_pours(const BridgeSketch& s, Plan& p) {
  p.segments = zones(p.supports, PIER_POUR);
  const int n = static_cast<int>(p.segments.size());
  if (!s.order.empty()) {
    p.pours = read_order(s.order, n);
    return;
  }
  for (const bool pier : {false, true})
    for (int j = 1; j <= n; ++j)
      if (p.segments[static_cast<std::size_t>(j - 1)].pier == pier) p.pours.push_back({{j}});
}

// --- the file ---

void add_plates(const Plan& p, const char* keyword, const double thickness[2], std::string& out) {
  out += formatted("%s\n%zu\n", keyword, p.plates.size());
  for (const Zone& z : p.plates)
    out += formatted("%5d  %.4f   %s\n", z.end - z.begin, thickness[z.pier],
                     z.pier ? "over a support" : "span");
}

void add_frames(const char* keyword, const std::vector<int>& at, double area, std::string& out) {
  if (at.empty()) return;
  out += formatted("%s\n%zu\n", keyword, at.size());
  for (const int position : at) out += formatted("%5d 1  %.2f\n", position, area);
}

void add_laterals(const Plan& p, std::string& out) {
  out += formatted(
      "! single diagonals from frame to frame: direction, from, to, area\ntop_lateral\n%zu\n",
      p.panel.size() - 1);
  for (std::size_t i = 1; i < p.panel.size(); ++i)
    out += formatted("%d %5d %5d  8.00\n", i % 2 == 1 ? 1 : 2, p.panel[i - 1], p.panel[i]);
}

void add_supports(const Plan& p, std::string& out) {
  out += formatted("! bearing stiffeners: position, width, thickness\nweb_stiffener\n%zu\n",
                   p.supports.size());
  for (const int at : p.supports) out += formatted("%5d  8.0  1.000\n", at);
  out += formatted("! the first support is the pinned one\nsupport\n%zu\n", p.supports.size());
  for (const int at : p.supports) out += formatted("%5d\n", at);
  out += formatted("! length, spacing of the groups, studs across a flange\nstuds\n%zu\n",
                   p.plates.size());
  for (const Zone& z : p.plates)
    out += formatted("%5d  %.1f 3\n", z.end - z.begin, z.pier ? 24.0 : 18.0);
}

std::string pour_name(const Pour& pour) {
  std::string name = pour.segments.size() == 1 ? "segment " : "segments ";
  for (std::size_t i = 0; i < pour.segments.size(); ++i)
    name += (i == 0 ? "" : " + ") + std::to_string(pour.segments[i]);
  return name;
}

// In stage k of 1 (steel), the pours, and the barriers: what segment j carries and how hard it is.
void add_stages(const Plan& p, double barrier, std::string& out) {
  const double wet = CONCRETE * p.deck_width * p.deck_thickness;
  const int segments = static_cast<int>(p.segments.size()),
            pours = static_cast<int>(p.pours.size());
  std::vector<int> poured(p.segments.size());
  for (int i = 0; i < pours; ++i)
    for (const int j : p.pours[static_cast<std::size_t>(i)].segments)
      poured[static_cast<std::size_t>(j - 1)] = i + 2;
  out += formatted(
      "! stages, segments, their lengths; then for every stage and segment: modulus of the deck,\n"
      "! stiffness per stud, load in kip per foot of bridge\npour_seq\n%d\n%d\n",
      pours + 2, segments);
  for (int j = 1; j <= segments; ++j) {
    const Zone& z = p.segments[static_cast<std::size_t>(j - 1)];
    out +=
        formatted("%5d   segment %d: %s\n", z.end - z.begin, j, z.pier ? "over a support" : "span");
  }
  for (int k = 1; k <= pours + 2; ++k)
    for (int j = 1; j <= segments; ++j) {
      const int at = poured[static_cast<std::size_t>(j - 1)];
      const double load = k == 1 ? p.bracing : k == at ? wet : k == pours + 2 ? barrier : 0;
      const char* what = k == 1           ? "steel; the load is the weight of the bracing"
                         : k == pours + 2 ? "barriers"
                         : k == at        ? "poured"
                         : k > at         ? "hard"
                                          : "";
      out +=
          formatted("%s %8.4f   stage %d, segment %d%s%s\n",
                    k > at ? " 3600.  250. " : "1.0E-6 0.001", load, k, j, *what ? ": " : "", what);
    }
  out += "1   with the weight of the steel plates, in stage 1\n";
}

std::string file_text(const BridgeSketch& s, const Plan& p) {
  std::string out =
      "! Lengths in inches, forces in kips, moduli in ksi, pour loads in kips per foot of "
      "bridge.\n";
  if (!s.title.empty()) out += "!@ title " + s.title + "\n";
  out += "!@ stage 1 steel\n";
  for (std::size_t i = 0; i < p.pours.size(); ++i)
    out += formatted("!@ stage %zu %s\n", i + 2, pour_name(p.pours[i]).c_str());
  out += formatted("!@ stage %zu barriers\n", p.pours.size() + 2);
  out += formatted("ngird\n%d\n", p.girders);
  if (p.radius > 0) out += formatted("! radius of the reference line\nrcurv\n%.12g\n", p.radius);
  out += formatted("lgbr\n%d\n", p.length);
  if (p.girders == 2)
    out +=
        formatted("! half the distance between the girder centrelines\noffset\n%.12g\n", p.offset);
  out += formatted(
      "! depth, bottom flange, between web tops, top flange, deck width, deck thickness\nsecdim\n"
      "%.12g %.12g %.12g %.12g %.12g %.12g\n",
      p.depth, p.bottom_width, p.top_spacing, p.flange_width, p.deck_width, p.deck_thickness);
  out += "! plates: number of segments, then length and thickness of each\n";
  add_plates(p, "webthick", p.web, out);
  add_plates(p, "botfthick", p.bottom, out);
  add_plates(p, "tfthick", p.top, out);
  out += "! cross frames: position, type, bar area\n";
  add_frames("internal_brace", p.frames, 5.5, out);
  add_frames("external_brace", p.links, 6.5, out);
  add_laterals(p, out);
  add_supports(p, out);
  add_stages(p, s.barrier, out);
  if (p.girders == 1 || s.buckle)
    out += formatted(
        "! %s; load pattern 1: the pour loads stand on the top flanges\nbuckle\n%s 1\n2\n",
        s.buckle ? "with a buckling check" : "no buckling check", s.buckle ? "T" : "F");
  if (s.buckle) out += "! kind, tolerance\nsolver\n1 1.0E-6\n";
  return out + "end\n";
}

// The model of a text that leaves nothing to be said.
Model sound_model(const std::string& text) {
  Input in;
  if (read_input(text, in) == ReadOutcome::COMPLETE) check_input(in);
  if (in.notes.faults.empty()) doubt_input(in);
  for (const auto* notes : {&in.notes.faults, &in.notes.warnings})
    if (!notes->empty()) refuse(notes->front().text);
  return std::move(in.model);
}

// A file of which `check` would have something to say is not written.
void pass_check(const std::string& text) {
  const CheckResult result = check_job(job_of("new", text));
  if (!result.findings.empty()) refuse(finding_text(result.findings.front()));
}

std::vector<std::string> list_of(const nlohmann::json& value) {
  std::vector<std::string> out;
  const auto text = [](const nlohmann::json& v) {
    return v.is_string() ? v.get<std::string>() : v.dump();
  };
  if (!value.is_array()) return {text(value)};
  for (const auto& v : value) out.push_back(text(v));
  return out;
}

void take_key(const std::string& key, const nlohmann::json& value, BridgeSketch& s) {
  const std::pair<const char*, std::string BridgeSketch::*> texts[] = {
      {"title", &BridgeSketch::title},
      {"radius", &BridgeSketch::radius},
      {"spacing", &BridgeSketch::spacing},
      {"depth", &BridgeSketch::depth},
      {"bottom-width", &BridgeSketch::bottom_width},
      {"top-spacing", &BridgeSketch::top_spacing},
      {"flange-width", &BridgeSketch::flange_width},
      {"deck-width", &BridgeSketch::deck_width},
      {"deck-thickness", &BridgeSketch::deck_thickness},
      {"frame-spacing", &BridgeSketch::frame_spacing},
      {"order", &BridgeSketch::order}};
  for (const auto& [name, member] : texts)
    if (key == name) {
      s.*member = list_of(value).front();
      return;
    }
  if (key == "girders")
    s.girders = value.get<int>();
  else if (key == "spans")
    s.spans = list_of(value);
  else if (key == "web")
    s.web = value.get<std::vector<double>>();
  else if (key == "bottom")
    s.bottom = value.get<std::vector<double>>();
  else if (key == "top")
    s.top = value.get<std::vector<double>>();
  else if (key == "barrier")
    s.barrier = value.get<double>();
  else if (key == "buckle")
    s.buckle = value.get<bool>();
  else
    refuse("'" + key + "' is no key of a sketch");
}

void read_sketch(const std::string& path, BridgeSketch& s) {
  std::ifstream file(path);
  if (!file) throw FileFailure{path, "cannot be read"};
  try {
    const nlohmann::json json = nlohmann::json::parse(file);
    if (!json.is_object()) refuse("must be an object");
    for (const auto& [key, value] : json.items()) take_key(key, value, s);
  } catch (const nlohmann::json::exception& e) {
    refuse(path + ": " + e.what());
  }
}

}  // namespace

std::string bridge_text(const BridgeSketch& sketch) {
  if (sketch.title.find_first_of("\r\n") != std::string::npos) refuse("title: one line");
  Plan plan;
  plan_length(sketch, plan);
  plan_section(sketch, plan);
  plan_plates(sketch, plan);
  plan_bracing(sketch, plan);
  plan_pours(sketch, plan);
  // The weight of the bracing is known when there is a model.
  const Model model = sound_model(file_text(sketch, plan));
  plan.bracing = bracing_weight(generate_structure(model)).total() / (plan.length / FOOT);
  std::string text = file_text(sketch, plan);
  sound_model(text);
  pass_check(text);
  return text;
}

int new_command(const NewOptions& options) try {
  BridgeSketch sketch = options.sketch;
  if (!options.json.empty()) read_sketch(options.json, sketch);
  const std::string text = bridge_text(sketch);
  if (options.output.empty()) {
    std::fputs(text.c_str(), stdout);
    return 0;
  }
  if (!options.force && std::filesystem::exists(options.output))
    throw FileFailure{options.output, "exists; --force writes over it"};
  write_file(options.output, text);
  return 0;
} catch (const std::invalid_argument& e) {
  std::fprintf(stderr, "error: %s\n", e.what());
  return 2;
}

}  // namespace zelvo
