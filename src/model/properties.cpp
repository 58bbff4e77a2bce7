#include "model/properties.h"

#include <algorithm>

#include "model/pattern.h"
#include "model/segments.h"

namespace zelvo {

namespace {

constexpr double STEEL_POISSON = 0.3, CONCRETE_POISSON = 0.2;

// Segments of webs, bottom flanges, top flanges and deck, one behind the other. Only the deck
// modulus changes between analyses.
Matrix<ShellProperty> shell_properties(const Model& model) {
  const int nanal = std::max(model.nanal, 0);
  Matrix<ShellProperty> shprop(nanal, model.nweb + model.nbotf + model.ntopf + model.npour);
  for (int k = 1; k <= nanal; ++k) {
    int m = 0;
    for (const PlateSegments& plates :
         {web_segments(model), bottom_segments(model), top_segments(model)})
      for (int i = 1; i <= plates.n; ++i)
        shprop(k, ++m) = {STEEL_E, STEEL_POISSON, plates.t(i), STEEL_PLATE};
    for (int j = 1; j <= model.npour; ++j)
      shprop(k, ++m) = {model.pour_e(k, j), CONCRETE_POISSON, model.secdim.deck_thickness,
                        CONCRETE_DECK};
  }
  return shprop;
}

// Gives the shells of one plate the property of the segment that holds their bay: number before + i
// for segment i.
void assign_segments(const SectionPattern& pattern, const Model& model, Plate plate, int n,
                     const Vector<int>& len, int before, Vector<int>& shmat) {
  each_segment(n, len, BAY_LENGTH, [&](int i, int begin, int end) {
    for (int bay = begin; bay < std::min(end, model.nbay()); ++bay)
      for (int e = 1; e <= pattern.strips; ++e)
        if (pattern.strip[e - 1].plate == plate) shmat(bay * pattern.strips + e) = before + i;
  });
}

Vector<int> shell_materials(const SectionPattern& pattern, const Model& model, int nshell) {
  Vector<int> shmat(nshell, "the shell properties");
  const auto assign = [&](Plate plate, int n, const Vector<int>& len, int before) {
    assign_segments(pattern, model, plate, n, len, before, shmat);
  };
  const int mb = model.nweb, mt = mb + model.nbotf, md = mt + model.ntopf;
  assign(Plate::WEB, model.nweb, model.web_len, 0);
  assign(Plate::BOTTOM_FLANGE, model.nbotf, model.botf_len, mb);
  assign(Plate::TOP_FLANGE, model.ntopf, model.topf_len, mt);
  assign(Plate::DECK, model.npour, model.pour_len, md);
  return shmat;
}

// A station shared by two segments has the stiffness of the later one.
Matrix<double> stud_stiffness(const SectionPattern& pattern, const Model& model, int nstud) {
  const int nanal = std::max(model.nanal, 0);
  Matrix<double> studk(nanal, nstud, "the stud properties");
  each_segment(model.npour, model.pour_len, STATION_SPACING, [&](int j, int begin, int end) {
    for (int s = begin; s <= std::min(end, model.nstn() - 1); ++s)
      for (int l = 1; l <= pattern.links; ++l)
        for (int k = 1; k <= nanal; ++k) studk(k, s * pattern.links + l) = model.pour_k(k, j);
  });
  return studk;
}

// Studs of a group that each of the six links of a girder stands for. Two links of a flange carry
// nothing when one stud stands over the web or two at the edges. A negative count changes nothing.
void link_weights(int count, FixedVector<double, LINKS_PER_GIRDER>& weight) {
  constexpr double none = 1.0e-8f;  // a float: the double would change the last digits
  if (count < 0) return;
  const double shared = count / 3.0;
  const double edge = count >= 3 ? shared : count == 2 ? 1.0 : none;
  const double web = count >= 3 ? shared : count == 1 ? 1.0 : none;
  weight = {{edge, web, edge, edge, web, edge}};
}

// Studs at each link: groups in the 12 inches of a station times the studs of a group.
Vector<double> stud_numbers(const SectionPattern& pattern, const Model& model, int nstud) {
  constexpr double no_group = 1.0e-10f;  // a float, as none above
  Vector<double> studnum(nstud, "the stud properties");
  FixedVector<double, LINKS_PER_GIRDER> weight{};
  each_segment(model.nstudrow, model.stud_len, STATION_SPACING, [&](int j, int begin, int end) {
    link_weights(model.stud_count(j), weight);
    const double spacing = model.stud_spacing(j);
    const double groups = spacing == 0 ? no_group : STATION_SPACING / spacing;
    for (int s = begin; s <= std::min(end, model.nstn() - 1); ++s)
      for (int l = 1; l <= pattern.links; ++l)
        studnum(s * pattern.links + l) = groups * weight((l - 1) % LINKS_PER_GIRDER + 1);
  });
  return studnum;
}

// One property for each bar of a table: all of girder 1, then all of girder 2.
Vector<BarProperty> bar_properties(int n, int girders, const Vector<double>& area,
                                   const Vector<int>& type) {
  n = std::max(n, 0);
  Vector<BarProperty> prop(n * girders, "the bar properties");
  for (int g = 0; g < girders; ++g)
    for (int i = 1; i <= n; ++i) prop(g * n + i) = {STEEL_E, area(i), static_cast<double>(type(i))};
  return prop;
}

// One property for each stiffener: row by row of the table, the webs of a row in turn.
Vector<StiffenerProperty> stiffener_properties(const Model& model, int webs) {
  const int n = std::max(model.nstiff, 0);
  Vector<StiffenerProperty> prop(n * webs, "the bar properties");
  for (int i = 1; i <= n; ++i)
    for (int web = 1; web <= webs; ++web)
      prop(webs * (i - 1) + web) = {STEEL_E, model.ws_b(i), model.ws_t(i)};
  return prop;
}

}  // namespace

Properties generate_properties(const Model& model, const Elements& elements) {
  const SectionPattern& pattern = section_pattern(model.ngird);
  Properties p;
  p.shprop = shell_properties(model);
  p.shmat = shell_materials(pattern, model, elements.nshell);
  p.studk = stud_stiffness(pattern, model, elements.nstud);
  p.studnum = stud_numbers(pattern, model, elements.nstud);

  const int girders = pattern.girders;
  p.ibprop = bar_properties(model.nibrace, girders, model.ib_area, model.ib_type);
  p.ebprop = bar_properties(model.nebrace, 1, model.eb_area, model.eb_type);
  p.latprop = bar_properties(model.nlat, girders, model.lat_area, model.lat_type);
  p.wsprop = stiffener_properties(model, 2 * girders);
  return p;
}

}  // namespace zelvo
