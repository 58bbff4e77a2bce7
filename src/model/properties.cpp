#include "model/properties.h"

#include <algorithm>

#include "model/pattern.h"

namespace zelvo {

namespace {

constexpr double STEEL_POISSON = 0.3, CONCRETE_POISSON = 0.2;

void set_material(Array3<double>& shprop, int k, int m, double modulus, double poisson,
                  double thickness, double kind) {
  shprop(k, MODULUS, m) = modulus;
  shprop(k, POISSON, m) = poisson;
  shprop(k, THICKNESS, m) = thickness;
  shprop(k, KIND, m) = kind;
}

// Segments of webs, bottom flanges, top flanges and deck, one behind the other. Only the deck
// modulus changes between analyses.
Array3<double> shell_properties(const Model& model) {
  const int nanal = std::max(model.nanal, 0);
  Array3<double> shprop(nanal, 4, model.nweb + model.nbotf + model.ntopf + model.npour);
  for (int k = 1; k <= nanal; ++k) {
    int m = 0;
    for (const PlateSegments& plates :
         {web_segments(model), bottom_segments(model), top_segments(model)})
      for (int i = 1; i <= plates.n; ++i)
        set_material(shprop, k, ++m, STEEL_E, STEEL_POISSON, plates.t(i), STEEL_PLATE);
    for (int j = 1; j <= model.npour; ++j)
      set_material(shprop, k, ++m, model.pour_e(k, j), CONCRETE_POISSON,
                   model.secdim.deck_thickness, CONCRETE_DECK);
  }
  return shprop;
}

// Gives the shells of one plate the property of the segment that holds their bay: number before + i
// for segment i.
void assign_segments(const SectionPattern& pattern, const Model& model, Plate plate, int n,
                     const Vector<int>& len, int before, Vector<int>& shmat) {
  int bay = 0;
  for (int i = 1; i <= n; ++i) {
    const int end = std::min(bay + len(i) / BAY_LENGTH, model.nbay());
    for (; bay < end; ++bay)
      for (int e = 1; e <= pattern.strips; ++e)
        if (pattern.strip[e - 1].plate == plate) shmat(bay * pattern.strips + e) = before + i;
  }
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

// Visits the stations (from 0) of each segment, its end included: the later segment wins at a
// shared station.
template <class Visit>
void each_station(const Model& model, int n, const Vector<int>& len, Visit visit) {
  int start = 0;
  for (int j = 1; j <= n; ++j) {
    const int end = start + len(j) / STATION_SPACING;
    for (int s = start; s <= std::min(end, model.nstn() - 1); ++s) visit(j, s);
    start = end;
  }
}

Matrix<double> stud_stiffness(const SectionPattern& pattern, const Model& model, int nstud) {
  const int nanal = std::max(model.nanal, 0);
  Matrix<double> studk(nanal, nstud, "the stud properties");
  each_station(model, model.npour, model.pour_len, [&](int j, int s) {
    for (int l = 1; l <= pattern.links; ++l)
      for (int k = 1; k <= nanal; ++k) studk(k, s * pattern.links + l) = model.pour_k(k, j);
  });
  return studk;
}

// Studs of a group that each of the six links of a girder stands for. Two links of a flange carry
// nothing when one stud stands over the web or two at the edges. A negative count changes nothing.
void link_weights(int count, FixedVector<double, LINKS_PER_GIRDER>& weight) {
  constexpr double none = 1.0e-8f;  // the single precision number on purpose
  if (count < 0) return;
  const double shared = count / 3.0;
  const double edge = count >= 3 ? shared : count == 2 ? 1.0 : none;
  const double web = count >= 3 ? shared : count == 1 ? 1.0 : none;
  weight = {{edge, web, edge, edge, web, edge}};
}

// Studs at each link: groups in the 12 inches of a station times the studs of a group.
Vector<double> stud_numbers(const SectionPattern& pattern, const Model& model, int nstud) {
  constexpr double no_group = 1.0e-10f;  // the single precision number on purpose
  Vector<double> studnum(nstud, "the stud properties");
  FixedVector<double, LINKS_PER_GIRDER> weight{};
  int row = 0;
  each_station(model, model.nstudrow, model.stud_len, [&](int j, int s) {
    for (; row < j; ++row) link_weights(model.stud_count(row + 1), weight);
    const double spacing = model.stud_spacing(j);
    const double groups = spacing == 0 ? no_group : STATION_SPACING / spacing;
    for (int l = 1; l <= pattern.links; ++l)
      studnum(s * pattern.links + l) = groups * weight((l - 1) % LINKS_PER_GIRDER + 1);
  });
  return studnum;
}

// Rows of three reals. Row i of the input fills the columns column(i,1) to column(i,copies).
template <class Column>
Matrix<double> bar_rows(int n, int copies, const Vector<double>& second, const auto& third,
                        Column column) {
  Matrix<double> prop(3, std::max(n, 0) * copies, "the bar properties");
  for (int i = 1; i <= n; ++i) {
    for (int c = 1; c <= copies; ++c) {
      double* row = prop.column(column(i, c));
      row[0] = STEEL_E;
      row[1] = second(i);
      row[2] = third(i);
    }
  }
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

  // Braces and laterals: all of girder 1, then all of girder 2. Stiffeners: row by row.
  const int girders = pattern.girders, webs = 2 * girders;
  const auto by_girder = [](int n) { return [n](int i, int g) { return (g - 1) * n + i; }; };
  p.ibprop =
      bar_rows(model.nibrace, girders, model.ib_area, model.ib_type, by_girder(model.nibrace));
  p.ebprop = bar_rows(model.nebrace, 1, model.eb_area, model.eb_type, by_girder(model.nebrace));
  p.latprop = bar_rows(model.nlat, girders, model.lat_area, model.lat_type, by_girder(model.nlat));
  p.wsprop = bar_rows(model.nstiff, webs, model.ws_b, model.ws_t,
                      [&](int i, int web) { return webs * (i - 1) + web; });
  return p;
}

}  // namespace zelvo
