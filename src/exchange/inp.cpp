#include "exchange/inp.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>
#include <vector>

#include "bars/braces.h"
#include "bars/gather.h"
#include "bars/stiffeners.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "base/text.h"
#include "exchange/describe.h"
#include "solution/loads.h"
#include "solution/supports.h"

namespace zelvo {

namespace {

constexpr int CORNERS = 4, OUTER = 8;  // nodes of an S8R
constexpr int ITEMS_PER_LINE = 10;     // below CalculiX's 16, and its 132 columns

// Springs of one kind, direction and stiffness share a set.
struct SpringKind {
  std::string type, freedoms;
  double k;
  bool operator<(const SpringKind& o) const {
    return std::tie(type, freedoms, k) < std::tie(o.type, o.freedoms, o.k);
  }
};

struct Deck {
  const Model& model;
  const Structure& structure;
  int k;
  int layer;  // node numbers between the layers of a hard deck
  std::string out;
  int element = 0;     // the last one
  std::set<int> used;  // nodes of the program's mesh that the deck has elements on
  std::map<SpringKind, std::vector<std::vector<int>>> springs;
  std::set<int> ends;  // of bars
};

// CalculiX reads 20 columns, and some of its cards take no number without a point.
std::string real(double value) {
  std::string number = formatted("%.12g", value);
  if (number.find('.') == number.npos)
    number.insert(std::min(number.find('e'), number.size()), ".");
  return number;
}

// Numbers of a record, over as many lines as it takes.
template <class Numbers>
void put_numbers(const Numbers& numbers, std::string& out) {
  int count = 0;
  for (const int n : numbers) {
    if (count > 0) out += count % ITEMS_PER_LINE == 0 ? ",\n" : ", ";
    out += std::to_string(n);
    ++count;
  }
  out += "\n";
}

template <class Numbers>
void put_set(const std::string& name, const Numbers& nodes, std::string& out) {
  if (nodes.empty()) return;
  out += "*NSET, NSET=" + name + "\n";
  int count = 0;
  for (const int n : nodes) out += std::to_string(n) + (++count % ITEMS_PER_LINE == 0 ? "\n" : ",");
  if (out.back() == ',') out.back() = '\n';
}

void put_node(int n, double x, double y, double z, std::string& out) {
  out += std::to_string(n) + ", " + real(x) + ", " + real(y) + ", " + real(z) + "\n";
}

const ShellProperty& shell_property(const Deck& d, int e) {
  const Properties& p = d.structure.properties;
  return p.shprop(d.k, p.shmat(e));
}
bool solid(const Deck& d, int e) { return shell_property(d, e).kind == CONCRETE_DECK; }
bool left_out(const Deck& d, int e) {
  return solid(d, e) && shell_property(d, e).modulus < HARD_FROM;
}

// Corners below and above, middles of the sides below and above, upright edges.
std::vector<int> solid_nodes(const Matrix<int>& conn, int e, int layer) {
  std::vector<int> nodes;
  const auto add = [&](int from, int to, int layers) {
    for (int a = from; a <= to; ++a) nodes.push_back(conn(a, e) + layers * layer);
  };
  add(1, CORNERS, 0);
  add(1, CORNERS, 2);
  add(CORNERS + 1, OUTER, 0);
  add(CORNERS + 1, OUTER, 2);
  add(1, CORNERS, 1);
  return nodes;
}

// Elements of each property under its own set, which the section names.
void put_shells(Deck& d, std::map<int, int>& number_of) {
  const Elements& el = d.structure.elements;
  std::map<int, std::vector<int>> by_property;
  for (int e = 1; e <= el.nshell; ++e)
    if (!left_out(d, e)) by_property[d.structure.properties.shmat(e)].push_back(e);
  for (const auto& [property, shells] : by_property) {
    const std::string set = "P" + std::to_string(property);
    const ShellProperty& p = shell_property(d, shells.front());
    const bool is_solid = solid(d, shells.front());
    d.out += "*ELEMENT, TYPE=" + std::string(is_solid ? "C3D20R" : "S8R") + ", ELSET=" + set + "\n";
    for (const int e : shells) {
      std::vector<int> record = {++d.element};
      for (int a = 1; a <= OUTER; ++a) d.used.insert(el.shconn(a, e));
      if (is_solid) {
        const std::vector<int> nodes = solid_nodes(el.shconn, e, d.layer);
        record.insert(record.end(), nodes.begin(), nodes.end());
      } else {
        for (int a = 1; a <= OUTER; ++a) record.push_back(el.shconn(a, e));
        number_of[e] = d.element;
      }
      put_numbers(record, d.out);
    }
    d.out += "*MATERIAL, NAME=M" + set + "\n*ELASTIC\n" + real(p.modulus) + ", " + real(p.poisson);
    d.out += is_solid ? "\n*SOLID" : "\n*SHELL";
    d.out += " SECTION, ELSET=" + set;
    d.out += ", MATERIAL=M" + set + "\n";
    if (!is_solid) d.out += real(p.thickness) + "\n";
  }
}

void put_normals(Deck& d, const std::map<int, int>& number_of) {
  const Nodes& nodes = d.structure.nodes;
  d.out += "*NORMAL\n";
  for (const auto& [e, number] : number_of)
    for (int a = 1; a <= OUTER; ++a) {
      const int n = d.structure.elements.shconn(a, e);
      d.out += std::to_string(number) + ", ";
      put_node(n, nodes.vn(1, n), nodes.vn(2, n), nodes.vn(3, n), d.out);
    }
}

void add_bar(int a, int b, const FixedVector<double, 6>& c, const BarProperty& p, Deck& d) {
  const double L = length({{c(4) - c(1), c(5) - c(2), c(6) - c(3)}});
  if (p.area == 0) return;
  d.springs[{"SPRINGA", "", p.modulus * p.area / L}].push_back({a, b});
  d.ends.insert({a, b});
}

// Frames of a kind; their mid nodes, numbered from `mid` on, are written.
void add_frames(const BracePattern& brace, const Matrix<int>& conn, const Vector<BarProperty>& prop,
                int mid, Deck& d) {
  for (int e = 1; e <= conn.cols(); ++e) {
    const PatchVector points = patch_points(brace, gather_points<4>(d.structure.nodes, conn, e));
    const int m = mid + e - 1;
    const auto node = [&](int point) { return point == 1 ? m : conn(point - 1, e); };
    put_node(m, points(1), points(2), points(3), d.out);
    for (int b = 0; b < brace.bars; ++b)
      add_bar(node(brace.bar[b].a), node(brace.bar[b].b),
              zelvo::ends(points, brace.bar[b].a, brace.bar[b].b), prop(e), d);
    for (const char* freedom : {"1", "2", "3"})
      d.springs[{"SPRING1", freedom, BRACE_EPS}].push_back({m});
  }
}

void add_laterals_and_supports(Deck& d) {
  const auto& [section, nodes, el, prop] = d.structure;
  for (int e = 1; e <= el.nlatel; ++e)
    add_bar(el.latconn(1, e), el.latconn(2, e), gather_points<2>(nodes, el.latconn, e),
            prop.latprop(e), d);
  for (int e = 1; e <= el.nsupel; ++e) {
    const auto corners = gather_points<4>(nodes, el.supconn, e);
    for (int a = 1; a <= 4; ++a)
      for (int b = a + 1; b <= 4; ++b)
        add_bar(el.supconn(a, e), el.supconn(b, e), zelvo::ends(corners, a, b),
                {STEEL_E, SUPPORT_AREA, 1.0}, d);
  }
}

void add_studs(Deck& d) {
  const auto& [section, nodes, el, prop] = d.structure;
  for (int e = 1; e <= el.nstud; ++e) {
    if (!d.used.contains(el.studconn(2, e))) continue;
    const double ks = prop.studk(d.k, e) * prop.studnum(e);
    const std::vector<int> link = {el.studconn(1, e), el.studconn(2, e)};
    d.springs[{"SPRING2", "1, 1", ks}].push_back(link);
    d.springs[{"SPRING2", "2, 2", STUD_UPLIFT_K}].push_back(link);
    d.springs[{"SPRING2", "3, 3", ks}].push_back(link);
  }
}

void put_springs(Deck& d) {
  int set = 0;
  for (const auto& [kind, elements] : d.springs) {
    const std::string name = "K" + std::to_string(++set);
    d.out += "*ELEMENT, TYPE=" + kind.type + ", ELSET=" + name + "\n";
    for (std::vector<int> record : elements) {
      record.insert(record.begin(), ++d.element);
      put_numbers(record, d.out);
    }
    d.out += "*SPRING, ELSET=" + name + "\n" + kind.freedoms + "\n" + real(kind.k) + "\n";
  }
}

// A flat plate whose width stands square to the web.
void put_stiffeners(Deck& d) {
  const auto& [section, nodes, el, prop] = d.structure;
  if (el.nwsel > 0) d.out += "*MATERIAL, NAME=STIFFENERS\n*ELASTIC\n" + real(STEEL_E) + ", 0.3\n";
  for (int e = 1; e <= el.nwsel; ++e) {
    const StiffenerProperty& p = prop.wsprop(e);
    if (p.width * p.thickness == 0) continue;
    const std::string set = "W" + std::to_string(e);
    const Vec3 normal = stiffener_frame(d.structure, e).normal;
    d.out += "*ELEMENT, TYPE=B32R, ELSET=" + set + "\n";
    for (int m = 1; m < STIFFENER_NODES; m += 2) {
      put_numbers(
          std::vector<int>{++d.element, el.wsconn(m, e), el.wsconn(m + 1, e), el.wsconn(m + 2, e)},
          d.out);
      for (int i = 0; i <= 2; ++i) d.used.insert(el.wsconn(m + i, e));
    }
    d.out += "*BEAM SECTION, ELSET=" + set + ", MATERIAL=STIFFENERS, SECTION=RECT\n" +
             real(p.width) + ", " + real(p.thickness) + "\n" + real(normal(1)) + ", " +
             real(normal(2)) + ", " + real(normal(3)) + "\n";
  }
}

void put_supports(Deck& d) {
  const Elements& el = d.structure.elements;
  const int nline = GirderPattern::BOTTOM_NODES * d.structure.section->girders;
  std::string held, radial;
  for (int i = 1; i <= el.nfix; ++i) {
    const std::string n = std::to_string(el.fixnode(i));
    held += n + ", 2\n";
    const PlanHold hold = plan_hold(d.model, d.structure, i);
    if (hold == PlanHold::FIXED || hold == PlanHold::ACROSS) held += n + ", 1\n";
    if (hold == PlanHold::FIXED) held += n + ", 3\n";
    if (hold != PlanHold::RADIAL) continue;
    const double t = d.model.supp_pos(1 + (i - 1) / nline) / d.model.rcurv;
    radial += "*EQUATION\n2\n" + n + ", 1, " + real(std::cos(t)) + ", ";
    radial += n + ", 3, " + real(std::sin(t)) + "\n";
  }
  d.out += radial + "*BOUNDARY\n" + held;
}

// Loads of the stage; those of nodes without elements move to the outer nodes of their shell by the
// shape functions of S8R at its centre: -1/4 to a corner, 1/2 to the middle of a side.
Vector<double> stage_loads(const Deck& d) {
  const auto& [section, nodes, el, prop] = d.structure;
  Vector<double> F(std::int64_t{NDOF} * nodes.nnode, "the loads of a deck");
  const SteelWeight weight =
      d.k == 1 && d.model.selfwt ? SteelWeight::INCLUDED : SteelWeight::LEFT_OUT;
  (d.model.ngird == 2 ? load_two_girders : load_one_girder)(d.model, d.k, weight,
                                                            web_width(d.structure), F);
  for (int e = 1; e <= el.nshell; ++e)
    for (int i = 1; i <= 3; ++i) {
      double& centre = F(equation(el.shconn(9, e), i));
      for (int a = 1; a <= OUTER; ++a)
        F(equation(el.shconn(a, e), i)) += (a <= CORNERS ? -0.25 : 0.5) * centre;
      centre = 0;
    }
  return F;
}

void put_step(Deck& d) {
  const Vector<double> F = stage_loads(d);
  d.out += "*STEP\n*STATIC\n*CLOAD\n";
  for (int n = 1; n <= d.structure.nodes.nnode; ++n)
    for (int i = 1; i <= 3; ++i)
      if (const double f = F(equation(n, i)); f != 0)
        d.out += std::to_string(n) + ", " + std::to_string(i) + ", " + real(f) + "\n";
  d.out += "*NODE PRINT, NSET=FEET\nU\n";
  if (!d.ends.empty()) d.out += "*NODE PRINT, NSET=ENDS\nU\n";
  for (int i = 1; i <= d.model.nsupp; ++i)
    d.out += "*NODE PRINT, NSET=SUPPORT" + std::to_string(i) + ", TOTALS=ONLY\nRF\n";
  d.out += "*NODE FILE, OUTPUT=2D\nU\n*EL FILE\nS\n*END STEP\n";
}

void put_sets(Deck& d) {
  const auto& [section, nodes, el, prop] = d.structure;
  std::vector<int> feet;
  for (int s = 0; s < d.model.nstn(); ++s)
    for (int g = 0; g < section->girders; ++g)
      for (const int m : {section->girder[g].left_foot(), section->girder[g].right_foot()})
        feet.push_back(s * section->nodes + m);
  put_set("FEET", feet, d.out);
  put_set("ENDS", d.ends, d.out);
  const int nline = GirderPattern::BOTTOM_NODES * section->girders;
  for (int i = 1; i <= d.model.nsupp; ++i) {
    const int* first = el.fixnode.data() + (i - 1) * nline;
    put_set("SUPPORT" + std::to_string(i), std::vector<int>(first, first + nline), d.out);
  }
}

// Nodes of the elements, and the layers over the deck's.
void put_mesh_nodes(const Deck& d, std::string& out) {
  const auto& [section, nodes, el, prop] = d.structure;
  out += "*NODE, NSET=ALL\n";
  const double thickness = d.model.secdim.deck_thickness;
  for (const int n : d.used) {
    const Vec3 p = column3(nodes.xyz, n);
    put_node(n, p(1), p(2), p(3), out);
    if ((n - 1) % section->nodes >= section->deck_nodes) continue;
    put_node(n + d.layer, p(1), p(2) + thickness / 2, p(3), out);
    put_node(n + 2 * d.layer, p(1), p(2) + thickness, p(3), out);
  }
}

}  // namespace

std::string calculix_deck(const Model& model, const Structure& structure, int k) {
  assert(1 <= k && k <= model.nanal);
  const auto& [section, nodes, el, prop] = structure;
  int layer = 1;
  while (layer <= nodes.nnode + el.nibel + el.nebel) layer *= 10;
  Deck elements{model, structure, k, layer, {}, 0, {}, {}, {}};
  std::map<int, int> number_of;  // shell -> element of the deck
  put_shells(elements, number_of);
  put_normals(elements, number_of);
  put_stiffeners(elements);
  std::string out = "*HEADING\nstage " + std::to_string(k) +
                    ", inches, kips, ksi; layers of a hard deck + " + std::to_string(layer) + "\n";
  put_mesh_nodes(elements, out);
  std::swap(out, elements.out);  // behind the nodes come those of the frames
  add_frames(INTERNAL_FRAME, el.ibconn, prop.ibprop, nodes.nnode + 1, elements);
  add_frames(EXTERNAL_FRAME, el.ebconn, prop.ebprop, nodes.nnode + 1 + el.nibel, elements);
  elements.out += out;
  add_laterals_and_supports(elements);
  add_studs(elements);
  put_springs(elements);
  put_sets(elements);
  put_supports(elements);
  put_step(elements);
  return elements.out;
}

}  // namespace zelvo
