#include "exchange/describe.h"

#include <nlohmann/json.hpp>

#include "construction/camber.h"
#include "model/segments.h"

namespace zelvo {

namespace {

// A list of consecutive segments, what else there is to say of each entered by add(j, entry).
template <class Add>
Json segments_json(int n, const Vector<int>& len, Add add) {
  Json out = Json::array();
  each_segment(n, len, 1, [&](int j, int begin, int end) {
    Json entry = {{"begin_in", begin}, {"end_in", end}};
    add(j, entry);
    out.push_back(std::move(entry));
  });
  return out;
}

Json plates_json(const PlateSegments& plates) {
  return segments_json(plates.n, plates.len,
                       [&](int j, Json& entry) { entry["thickness_in"] = plates.t(j); });
}

Json frames_json(int n, const Vector<int>& position, const Vector<int>& type,
                 const Vector<double>& area) {
  Json out = Json::array();
  for (int i = 1; i <= n; ++i)
    out.push_back({{"position_in", position(i)}, {"type", type(i)}, {"area_in2", area(i)}});
  return out;
}

Json laterals_json(const Model& m) {
  Json out = Json::array();
  for (int i = 1; i <= m.nlat; ++i)
    out.push_back({{"direction", m.lat_type(i)},
                   {"begin_in", m.lat_from(i)},
                   {"end_in", m.lat_to(i)},
                   {"area_in2", m.lat_area(i)}});
  return out;
}

Json stiffeners_json(const Model& m) {
  Json out = Json::array();
  for (int i = 1; i <= m.nstiff; ++i)
    out.push_back(
        {{"position_in", m.ws_pos(i)}, {"width_in", m.ws_b(i)}, {"thickness_in", m.ws_t(i)}});
  return out;
}

Json supports_json(const Model& m) {
  Json out = Json::array();
  for (int i = 1; i <= m.nsupp; ++i)
    out.push_back({{"position_in", m.supp_pos(i)}, {"kind", i == 1 ? "pinned" : "roller"}});
  return out;
}

Json spans_json(const Model& m) {
  Json out = Json::array();
  for (const Span& s : spans_of(m)) out.push_back({{"begin_in", s.begin}, {"end_in", s.end}});
  return out;
}

Json section_json(const SectionDimensions& s) {
  return {{"depth_in", s.depth},
          {"bottom_width_in", s.bottom_width},
          {"top_spacing_in", s.top_spacing},
          {"flange_width_in", s.flange_width},
          {"deck_width_in", s.deck_width},
          {"deck_thickness_in", s.deck_thickness}};
}

Json studs_json(const Model& m) {
  return segments_json(m.nstudrow, m.stud_len, [&](int j, Json& entry) {
    entry["spacing_in"] = m.stud_spacing(j);
    entry["count"] = m.stud_count(j);
  });
}

Json even_places(int count, double first, double spacing) {
  std::vector<double> position(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < position.size(); ++i)
    position[i] = first + spacing * static_cast<double>(i);
  return {{"position_in", std::move(position)}};
}

// Frames and laterals of all girders in the order of their elements: girder by girder.
//   girders  0 for frames between the girders
Json member_places(int girders, int n, const Vector<int>& begin, const Vector<int>& end,
                   const Vector<double>& area) {
  Json out = {{"girder", Json::array()},
              {"number", Json::array()},
              {"begin_in", Json::array()},
              {"end_in", Json::array()},
              {"area_in2", Json::array()}};
  for (int g = 1; g <= (girders == 0 ? 1 : girders); ++g)
    for (int i = 1; i <= n; ++i) {
      out["girder"].push_back(girders == 0 ? Json() : Json(g));
      out["number"].push_back(i);
      out["begin_in"].push_back(begin(i));
      out["end_in"].push_back(end(i));
      out["area_in2"].push_back(area(i));
    }
  return out;
}

Json checks_json(const StageRecord& s) {
  const StageChecks& c = s.checks;
  return {{"load_kip", c.load},
          {"reactions_kip", c.reactions},
          {"grounded_kip", c.grounded},
          {"imbalance", c.imbalance},
          {"residual", c.residual},
          {"finite", s.results.finite},
          {"solver_code", s.results.solver_code},
          {"largest_deflection_in", c.largest.value},
          {"position_in", c.largest.position},
          {"span_in", c.largest.span}};
}

}  // namespace

Json bridge_json(const Job& job, const History& h) {
  const Model& m = job.input.model;
  const double bearing = job.annotations.bearing_spacing;
  const BracingWeight& b = h.bracing;
  return {{"girders", m.ngird},
          {"radius_in", m.curved() ? Json(m.rcurv) : Json()},
          {"length_in", m.lgbr},
          {"half_distance_in", m.ngird == 2 ? m.offset : 0.0},
          {"section", section_json(m.secdim)},
          {"supports", supports_json(m)},
          {"spans", spans_json(m)},
          {"plates",
           {{"web", plates_json(web_segments(m))},
            {"bottom_flange", plates_json(bottom_segments(m))},
            {"top_flange", plates_json(top_segments(m))}}},
          {"internal_frames", frames_json(m.nibrace, m.ib_pos, m.ib_type, m.ib_area)},
          {"external_frames", frames_json(m.nebrace, m.eb_pos, m.eb_type, m.eb_area)},
          {"laterals", laterals_json(m)},
          {"stiffeners", stiffeners_json(m)},
          {"studs", studs_json(m)},
          {"segments", segments_json(m.npour, m.pour_len, [](int, Json&) {})},
          {"bearing_spacing_in", bearing > 0 ? Json(bearing) : Json()},
          {"steel_plates_kip", h.plates},
          {"bracing_kip",
           {{"internal", b.internal},
            {"external", b.external},
            {"laterals", b.laterals},
            {"stiffeners", b.stiffeners},
            {"total", b.total()}}},
          {"buckling_check", m.buckle}};
}

std::string stage_name(const Annotations& annotations, int k) {
  const std::string& name = annotations.stage_name[static_cast<std::size_t>(k - 1)];
  return name.empty() ? "stage " + std::to_string(k) : name;
}

Json stage_json(const Job& job, const StageRecord& s) {
  const Model& m = job.input.model;
  const int k = s.results.k;
  Json segments = Json::array();
  for (int j = 1; j <= m.npour; ++j)
    segments.push_back({{"modulus_ksi", m.pour_e(k, j)},
                        {"stud_kip_in", m.pour_k(k, j)},
                        {"load_kip_ft", m.pour_load(k, j)},
                        {"hard", m.pour_e(k, j) >= HARD_FROM}});
  return {{"number", k},
          {"name", stage_name(job.annotations, k)},
          {"load_factor", job.annotations.load_factor[static_cast<std::size_t>(k - 1)]},
          {"segments", std::move(segments)},
          {"checks", checks_json(s)}};
}

Json places_json(const Model& m) {
  Json supports = Json::array();
  for (int i = 1; i <= m.nsupp; ++i) supports.push_back(m.supp_pos(i));
  return {{"station", even_places(m.nstn(), 0, STATION_SPACING)},
          {"section", even_places(m.nbay() + 1, 0, BAY_LENGTH)},
          {"bay", even_places(m.nbay(), BAY_LENGTH / 2.0, BAY_LENGTH)},
          {"support", {{"position_in", std::move(supports)}}},
          {"internal_frame", member_places(m.ngird, m.nibrace, m.ib_pos, m.ib_pos, m.ib_area)},
          {"external_frame", member_places(0, m.nebrace, m.eb_pos, m.eb_pos, m.eb_area)},
          {"lateral", member_places(m.ngird, m.nlat, m.lat_from, m.lat_to, m.lat_area)}};
}

}  // namespace zelvo
