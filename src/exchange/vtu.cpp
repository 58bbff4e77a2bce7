#include "exchange/vtu.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "bars/stiffeners.h"
#include "base/vec3.h"

namespace zelvo {

namespace {

constexpr double NOT_THERE = std::numeric_limits<double>::quiet_NaN();
constexpr int LINE = 3, BIQUADRATIC_QUAD = 28;  // cell types of VTK

constexpr const char* PART_NAMES[] = {"deck",          "top flange",     "web",
                                      "bottom flange", "internal frame", "external frame",
                                      "top lateral",   "web stiffener"};
constexpr int PARTS = 8, INTERNAL = 4, EXTERNAL = 5, LATERAL = 6, STIFFENER = 7;
static_assert(static_cast<int>(Plate::BOTTOM_FLANGE) == 3);

std::string base64(const unsigned char* p, std::size_t n) {
  constexpr char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text((n + 2) / 3 * 4, '=');
  for (std::size_t i = 0, at = 0; i < n; i += 3, at += 4) {
    const auto byte = [&](std::size_t j) { return i + j < n ? unsigned{p[i + j]} : 0U; };
    const unsigned three = byte(0) << 16 | byte(1) << 8 | byte(2);
    for (std::size_t d = 0; d < std::min<std::size_t>(n - i, 3) + 1; ++d)
      text[at + d] = DIGITS[three >> (18 - 6 * d) & 63];
  }
  return text;
}

// Names of VTK's types.
constexpr const char* type_name(double) { return "Float64"; }
constexpr const char* type_name(std::int64_t) { return "Int64"; }
constexpr const char* type_name(std::int32_t) { return "Int32"; }
constexpr const char* type_name(std::uint8_t) { return "UInt8"; }

// <DataArray> of values with so many components; the bytes stand behind their number. Without the
// number of tuples VTK takes a field array for empty.
template <class T>
void put_array(const std::string& name, const std::vector<T>& values, int components,
               std::string& out) {
  const std::uint64_t bytes = values.size() * sizeof(T);
  std::vector<unsigned char> block(sizeof bytes + bytes);
  std::memcpy(block.data(), &bytes, sizeof bytes);
  if (bytes > 0) std::memcpy(block.data() + sizeof bytes, values.data(), bytes);
  const std::size_t tuples = values.size() / static_cast<std::size_t>(components);
  out += std::string("<DataArray type=\"") + type_name(T{}) + "\" Name=\"" + name + "\"";
  if (components > 1) out += " NumberOfComponents=\"" + std::to_string(components) + "\"";
  out += " NumberOfTuples=\"" + std::to_string(tuples) + "\" format=\"binary\">" +
         base64(block.data(), block.size()) + "</DataArray>\n";
}

struct Cells {
  std::vector<std::int64_t> nodes, ends;  // from 0; where each cell's nodes end
  std::vector<std::uint8_t> type;
  std::vector<std::int32_t> part, girder, member;
  std::vector<double> thickness, modulus, area;
};

struct CellPlace {
  int part, girder, member;
};

void add_line(int a, int b, const CellPlace& place, double modulus, double area, Cells& c) {
  c.nodes.insert(c.nodes.end(), {a - 1, b - 1});
  c.ends.push_back(static_cast<std::int64_t>(c.nodes.size()));
  c.type.push_back(LINE);
  c.part.push_back(place.part);
  c.girder.push_back(place.girder);
  c.member.push_back(place.member);
  c.thickness.push_back(NOT_THERE);
  c.modulus.push_back(modulus);
  c.area.push_back(area);
}

void add_shells(const Structure& structure, int k, Cells& c) {
  const SectionPattern& section = *structure.section;
  const Properties& properties = structure.properties;
  for (int e = 1; e <= structure.elements.nshell; ++e) {
    const int strip = (e - 1) % section.strips + 1;
    const ShellProperty& p = properties.shprop(k, properties.shmat(e));
    for (int a = 1; a <= 9; ++a) c.nodes.push_back(structure.elements.shconn(a, e) - 1);
    c.ends.push_back(static_cast<std::int64_t>(c.nodes.size()));
    c.type.push_back(BIQUADRATIC_QUAD);
    c.part.push_back(static_cast<int>(section.strip[strip - 1].plate));
    c.girder.push_back(girder_of_strip(section, strip) + 1);
    c.member.push_back(strip);
    c.thickness.push_back(p.thickness);
    c.modulus.push_back(p.modulus);
    c.area.push_back(NOT_THERE);
  }
}

// Frames of a kind; rows of the input follow one another girder by girder.
//   mid  number of the first frame's mid node
void add_frames(const BracePattern& brace, const Matrix<int>& conn, const Vector<BarProperty>& prop,
                int rows, int part, int mid, Cells& c) {
  for (int e = 1; e <= conn.cols(); ++e)
    for (int b = 0; b < brace.bars; ++b) {
      const auto node = [&](int point) { return point == 1 ? mid + e - 1 : conn(point - 1, e); };
      const int girder = part == INTERNAL ? (e - 1) / rows + 1 : 0;
      add_line(node(brace.bar[b].a), node(brace.bar[b].b), {part, girder, (e - 1) % rows + 1},
               prop(e).modulus, prop(e).area, c);
    }
}

Cells build_cells(const Model& model, const Structure& structure, int k) {
  const auto& [section, nodes, el, prop] = structure;
  Cells c;
  add_shells(structure, k, c);
  const int mids = nodes.nnode + 1;
  add_frames(INTERNAL_FRAME, el.ibconn, prop.ibprop, model.nibrace, INTERNAL, mids, c);
  add_frames(EXTERNAL_FRAME, el.ebconn, prop.ebprop, model.nebrace, EXTERNAL, mids + el.nibel, c);
  for (int e = 1; e <= el.nlatel; ++e)
    add_line(el.latconn(1, e), el.latconn(2, e),
             {LATERAL, (e - 1) / model.nlat + 1, (e - 1) % model.nlat + 1}, prop.latprop(e).modulus,
             prop.latprop(e).area, c);
  for (int e = 1; e <= el.nwsel; ++e)
    for (int m = 1; m <= STIFFENER_SEGMENTS; ++m) {
      const int web = e - 1, webs = 2 * section->girders;  // row by row, web by web
      add_line(el.wsconn(m, e), el.wsconn(m + 1, e),
               {STIFFENER, web % webs / 2 + 1, web / webs + 1}, prop.wsprop(e).modulus,
               stiffener_section(prop.wsprop(e)).A, c);
    }
  return c;
}

// The mid nodes of frames behind the values (3,nnode) of the nodes.
void add_mids(const Structure& structure, std::vector<double>& values) {
  const auto add = [&](const BracePattern& brace, const Matrix<int>& conn) {
    for (int e = 1; e <= conn.cols(); ++e)
      for (int i = 1; i <= 3; ++i) {
        const auto at = [&](int point) {
          return values[static_cast<std::size_t>(3 * (conn(point - 1, e) - 1) + i - 1)];
        };
        values.push_back((at(brace.left) + at(brace.right)) / 2);
      }
  };
  add(INTERNAL_FRAME, structure.elements.ibconn);
  add(EXTERNAL_FRAME, structure.elements.ebconn);
}

// Translations and rotation vectors alpha vt1 + beta vt2 of all points, times a factor.
void put_motion(const Structure& structure, const double* x, double factor,
                const std::string& before, std::string& out) {
  const Nodes& nodes = structure.nodes;
  std::vector<double> u, r;
  for (int n = 1; n <= nodes.nnode; ++n) {
    const double* d = x + equation(n, 1) - 1;
    for (int i = 1; i <= 3; ++i) {
      u.push_back(factor * d[i - 1]);
      r.push_back(factor * (d[3] * nodes.vt1(i, n) + d[4] * nodes.vt2(i, n)));
    }
  }
  add_mids(structure, u);
  add_mids(structure, r);
  put_array(before + "displacement", u, 3, out);
  put_array(before + "rotation", r, 3, out);
}

// Stresses of the shells and forces of the bars.
void put_forces(const Structure& structure, const Quantities& q, const std::string& before,
                std::string& out) {
  const Elements& el = structure.elements;
  const std::size_t shells = static_cast<std::size_t>(el.nshell);
  const std::vector<double> no_bars(
      static_cast<std::size_t>(4 * el.nibel + 5 * el.nebel + el.nlatel +
                               STIFFENER_SEGMENTS * el.nwsel),
      NOT_THERE);
  for (const auto& [name, table] : {std::pair("s22", &q.mid22), std::pair("s12", &q.mid12)}) {
    std::vector<double> values(table->data(), table->data() + shells);
    values.insert(values.end(), no_bars.begin(), no_bars.end());
    put_array(before + name, values, 1, out);
  }
  std::vector<double> force(shells, NOT_THERE);
  for (const Matrix<double>* table : {&q.internal, &q.external, &q.laterals})
    force.insert(force.end(), table->data(),
                 table->data() + std::int64_t{table->rows()} * table->cols());
  force.resize(shells + no_bars.size(), NOT_THERE);
  put_array(before + "axial_force", force, 1, out);
}

void put_cells(const Cells& c, std::string& out) {
  out += "<Cells>\n";
  put_array("connectivity", c.nodes, 1, out);
  put_array("offsets", c.ends, 1, out);
  put_array("types", c.type, 1, out);
  out += "</Cells>\n";
}

// Everything but the values of a state: field() adds field arrays, point() and cell() those of
// points and cells.
template <class Field, class Point, class Cell>
std::string grid(const Model& model, const Structure& structure, int k, Field field, Point point,
                 Cell cell) {
  static_assert(std::endian::native == std::endian::little, "byte_order below");
  const Cells c = build_cells(model, structure, k);
  const Nodes& nodes = structure.nodes;
  std::vector<double> xyz(nodes.xyz.data(), nodes.xyz.data() + std::int64_t{3} * nodes.nnode);
  add_mids(structure, xyz);
  std::string out =
      "<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" "
      "byte_order=\"LittleEndian\" header_type=\"UInt64\">\n<UnstructuredGrid>\n<FieldData>\n";
  put_array("stage", std::vector<std::int32_t>{k}, 1, out);
  for (int p = 0; p < PARTS; ++p)
    put_array("part " + std::to_string(p) + ": " + PART_NAMES[p], std::vector<std::int32_t>{p}, 1,
              out);
  field(out);
  out += "</FieldData>\n<Piece NumberOfPoints=\"" + std::to_string(xyz.size() / 3) +
         "\" NumberOfCells=\"" + std::to_string(c.type.size()) + "\">\n<Points>\n";
  put_array("Points", xyz, 3, out);
  out += "</Points>\n";
  put_cells(c, out);
  out += "<PointData>\n";
  point(out);
  out += "</PointData>\n<CellData>\n";
  put_array("part", c.part, 1, out);
  put_array("girder", c.girder, 1, out);
  put_array("member", c.member, 1, out);
  put_array("thickness", c.thickness, 1, out);
  put_array("modulus", c.modulus, 1, out);
  put_array("area", c.area, 1, out);
  cell(out);
  return out + "</CellData>\n</Piece>\n</UnstructuredGrid>\n</VTKFile>\n";
}

}  // namespace

std::string stage_vtu(const Model& model, const Structure& structure, const StageRecord& record,
                      const Vector<double>& U, const Vector<double>& total, double load_factor) {
  return grid(
      model, structure, record.results.k, [](std::string&) {},
      [&](std::string& out) {
        put_motion(structure, U.data(), load_factor, "increment_", out);
        put_motion(structure, total.data(), 1, "total_", out);
      },
      [&](std::string& out) {
        put_forces(structure, record.increment, "increment_", out);
        put_forces(structure, record.total, "total_", out);
      });
}

std::string mode_vtu(const Model& model, const Structure& structure, int k, const double* x,
                     double factor) {
  double largest = 0;
  for (int n = 1; n <= structure.nodes.nnode; ++n) {
    const double* u = x + equation(n, 1) - 1;
    largest = std::max(largest, length({{u[0], u[1], u[2]}}));
  }
  return grid(
      model, structure, k,
      [&](std::string& out) { put_array("factor", std::vector<double>{factor}, 1, out); },
      [&](std::string& out) { put_motion(structure, x, largest > 0 ? 1 / largest : 1, "", out); },
      [](std::string&) {});
}

std::string pvd(const std::vector<std::pair<double, std::string>>& files) {
  std::string out =
      "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"1.0\" "
      "byte_order=\"LittleEndian\">\n<Collection>\n";
  for (const auto& [time, name] : files) {
    out += "<DataSet timestep=\"" + std::to_string(time) + "\" part=\"0\" file=\"";
    for (const char c : name)
      out += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '"' ? "&quot;" : std::string(1, c);
    out += "\"/>\n";
  }
  return out + "</Collection>\n</VTKFile>\n";
}

}  // namespace zelvo
