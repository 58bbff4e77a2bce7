#include "exchange/shape_json.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "construction/governing.h"
#include "model/description.h"

namespace zelvo {

namespace {

constexpr double SHAPE_UNITS = 10000;  // integers that the largest component of a shape has

constexpr const char* KINDS[] = {"plate", "flange", "frame", "girder"};
constexpr const char* PLATES[] = {"deck", "top flange", "web", "bottom flange"};

// Visits the steel nodes of every second station, the sections, in the order of the geometry.
template <class Visit>
void each_section_node(const Structure& s, Visit visit) {
  const int stations = s.nodes.nnode / s.section->nodes;
  for (int station = 0; station < stations; station += 2)
    for (int g = 0; g < s.section->girders; ++g)
      for (int i = 0; i < GirderPattern::NODES; ++i)
        visit(station * s.section->nodes + s.section->girder[g].first + i);
}

// Nodes that follow one another along the plates of a girder, from 1 in its 33 nodes.
struct PlateRun {
  Plate plate;
  std::vector<int> nodes;
};
std::vector<PlateRun> girder_runs() {
  const auto run = [](int from) {
    std::vector<int> nodes;
    for (int i = 0; i <= GirderPattern::SPACINGS; ++i) nodes.push_back(from + i);
    return nodes;
  };
  // Of a girder whose first node is 1.
  const GirderPattern g{1, 0};
  return {
      {Plate::TOP_FLANGE,
       {g.left_flange(1), g.left_flange(2), g.left_top(), g.left_flange(3), g.left_flange(4)}},
      {Plate::TOP_FLANGE,
       {g.right_flange(1), g.right_flange(2), g.right_top(), g.right_flange(3), g.right_flange(4)}},
      {Plate::WEB, run(g.left_top())},
      {Plate::BOTTOM_FLANGE, run(g.left_foot())},
      {Plate::WEB, run(g.right_foot())}};
}

Json geometry_json(const Structure& s) {
  Json runs = Json::array();
  std::vector<double> xyz, position;
  each_section_node(s, [&](int n) {
    for (int i = 1; i <= 3; ++i) xyz.push_back(s.nodes.xyz(i, n));
  });
  const int per_section = GirderPattern::NODES * s.section->girders;
  const int sections = static_cast<int>(xyz.size()) / (3 * per_section);
  for (int j = 0; j < sections; ++j) position.push_back(BAY_LENGTH * j);
  for (int g = 0; g < s.section->girders; ++g)
    for (PlateRun& r : girder_runs()) {
      for (int& n : r.nodes) n += GirderPattern::NODES * g;
      runs.push_back({{"plate", PLATES[static_cast<int>(r.plate)]},
                      {"girder", g + 1},
                      {"nodes", std::move(r.nodes)}});
    }
  return {{"section_in", std::move(position)},
          {"nodes_per_section", per_section},
          {"xyz", std::move(xyz)},
          {"runs", std::move(runs)}};
}

Json shape(const Structure& s, const double* x) {
  double largest = 0;
  const auto component = [&](int n, int d) { return x[NDOF * (n - 1) + d]; };
  each_section_node(s, [&](int n) {
    for (int d = 0; d < 3; ++d) largest = std::max(largest, std::abs(component(n, d)));
  });
  if (!(largest > 0) || !std::isfinite(largest)) return nullptr;
  std::vector<int> values;
  each_section_node(s, [&](int n) {
    for (int d = 0; d < 3; ++d)
      values.push_back(static_cast<int>(std::lround(SHAPE_UNITS * component(n, d) / largest)));
  });
  return values;
}

Json mode_json(const HistoryCheck& c, int m) {
  const ModeNature& n = c.nature[static_cast<std::size_t>(m - 1)];
  const PairQuality& q = c.quality(m);
  const double factor = c.modes.eigval(m);
  return {{"factor", factor},
          {"residual", q.residual},
          {"sharp", is_sharp(q, factor)},
          {"kind", KINDS[static_cast<int>(n.kind)]},
          {"girder", n.girder},
          {"plate", PLATES[static_cast<int>(n.plate)]},
          {"side", n.side},
          {"position_in", n.position},
          {"share", n.share},
          {"local", n.local},
          {"shares",
           {{"girder", n.shares.girder},
            {"section", n.shares.section},
            {"plates", n.shares.plates},
            {"bracing", n.shares.bracing}}},
          {"remark", n.remark},
          {"shape", nullptr}};
}

bool was_made(const HistoryCheck& c) { return c.modes.eigval.size() > 0; }

// One check of every stage; the first mode of each with its shape where wanted.
Json checks_json(const History& h, HistoryCheck StageRecord::*check, bool shapes) {
  Json out = Json::array();
  for (const StageRecord& s : h.stage) {
    const HistoryCheck& c = s.*check;
    if (!was_made(c)) {
      out.push_back(nullptr);
      continue;
    }
    Json modes = Json::array();
    for (int m = 1; m <= c.quality.size(); ++m) modes.push_back(mode_json(c, m));
    if (shapes && !modes.empty()) modes[0]["shape"] = shape(h.structure, c.modes.eigvec.column(1));
    out.push_back({{"found", c.outcome.found},
                   {"converged", c.outcome.nconv},
                   {"remarks", check_remarks(c)},
                   {"modes", std::move(modes)}});
  }
  return out;
}

Json lowest_json(const History& h, HistoryCheck StageRecord::*check) {
  const LowestFactor f = lowest_factor(h, check);
  if (f.stage == 0) return nullptr;
  return {{"stage", f.stage}, {"mode", f.mode}, {"factor", f.factor}};
}

}  // namespace

Json buckling_json(const History& h) {
  const bool any = std::any_of(h.stage.begin(), h.stage.end(),
                               [](const StageRecord& s) { return s.history.quality.size() > 0; });
  return {{"history", checks_json(h, &StageRecord::history, true)},
          {"batch_rule", checks_json(h, &StageRecord::batch_rule, false)},
          {"softest", checks_json(h, &StageRecord::softest, false)},
          {"lowest",
           {{"history", lowest_json(h, &StageRecord::history)},
            {"batch_rule", lowest_json(h, &StageRecord::batch_rule)},
            {"softest", lowest_json(h, &StageRecord::softest)}}},
          {"geometry", any ? geometry_json(h.structure) : Json()}};
}

}  // namespace zelvo
