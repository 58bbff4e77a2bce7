#include "bars/stiffeners.h"

#include <cmath>

#include "bars/gather.h"

namespace zelvo {

namespace {

// Chain of beam segments (12 6 -12 6; ...) with unit length and EI, first the deflections, then
// the rotations (Gere and Weaver 1965); the rotations are eliminated from the last to the first.
constexpr FixedMatrix<double, 9, 9> condensed_chain() {
  constexpr int n = STIFFENER_NODES;
  constexpr double beam[4][4] = {{12, 6, -12, 6}, {6, 4, -6, 2}, {-12, -6, 12, -6}, {6, 2, -6, 4}};
  FixedMatrix<double, 2 * n, 2 * n> k{};
  for (int m = 1; m <= STIFFENER_SEGMENTS; ++m) {
    const int at[4] = {m, n + m, m + 1, n + m + 1};
    for (int i = 0; i < 4; ++i)
      for (int j = 0; j < 4; ++j) k(at[i], at[j]) += beam[i][j];
  }
  for (int p = 2 * n; p > n; --p)
    for (int i = 1; i < p; ++i) {
      const double f = k(i, p) / k(p, p);
      for (int j = 1; j < p; ++j) k(i, j) -= f * k(p, j);
    }
  FixedMatrix<double, 9, 9> table{};
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= n; ++i) table(i, j) = static_cast<float>(k(i, j));
  return table;
}

// Axial force, strong-axis bending and torsion of one segment of length h.
SegmentMatrix segment_stiffness(const StiffenerSection& q, double h) {
  const double axial = q.E * q.A / h, torsion = STEEL_G * q.J / h, bending = q.E * q.Is / h;
  const struct {
    int i, j;
    double value;
  } entries[] = {
      {1, 1, axial},
      {6, 6, axial},
      {1, 6, -axial},
      {2, 2, 12 * bending / (h * h)},
      {7, 7, 12 * bending / (h * h)},
      {2, 7, -12 * bending / (h * h)},
      {2, 5, 6 * bending / h},
      {2, 10, 6 * bending / h},
      {5, 7, -6 * bending / h},
      {7, 10, -6 * bending / h},
      {5, 5, 4 * bending},
      {10, 10, 4 * bending},
      {5, 10, 2 * bending},
      {4, 4, torsion},
      {9, 9, torsion},
      {4, 9, -torsion},
  };
  SegmentMatrix s{};
  for (const auto& [i, j, value] : entries) s(i, j) = s(j, i) = value;
  return s;
}

}  // namespace

constinit const FixedMatrix<double, 9, 9> C9 = condensed_chain();

StiffenerSection stiffener_section(const StiffenerProperty& prop) {
  const double b = prop.width, t = prop.thickness;
  return {prop.modulus, b * t, b * b * b * t / 12, t * t * t * b / 12, t * t * t * b / 3};
}

double segment_length(const FixedVector<double, 27>& c27) {
  const double dx = c27(4) - c27(1), dy = c27(5) - c27(2), dz = c27(6) - c27(3);
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

StiffenerFrame stiffener_frame(const Structure& structure, int e) {
  const Nodes& nodes = structure.nodes;
  const int n = structure.elements.wsconn(5, e);
  return {column3(nodes.vt1, n), column3(nodes.vn, n), column3(nodes.vt2, n)};
}

void stiffener_transform(StiffenerTransform& tm, const StiffenerFrame& frame) {
  tm.clear();
  for (int k = 1; k <= STIFFENER_NODES; ++k) {
    const int at = 5 * (k - 1);
    for (int i = 1; i <= 3; ++i) {
      tm(1, at + i) = frame.web(i);
      tm(2, at + i) = frame.normal(i);
      tm(3, at + i) = frame.along(i);
    }
    tm(4, at + 4) = k == 1 || k == STIFFENER_NODES ? 0.0 : 1.0;
    tm(5, at + 5) = -1.0;
  }
}

void add_segment(const SegmentMatrix& s, int m, StiffenerMatrix& chain) {
  const int at = 5 * (m - 1);
  for (int j = 1; j <= 10; ++j)
    for (int i = 1; i <= 10; ++i) chain(at + i, at + j) += s(i, j);
}

void to_element_freedoms(const StiffenerMatrix& kl, const StiffenerTransform& tm,
                         StiffenerMatrix& ke) {
  for (int bt = 0; bt < 45; bt += 5)
    for (int at = 0; at < 45; at += 5) {
      FixedMatrix<double, 5, 5> half{};  // kl block times the block of tm
      for (int j = 1; j <= 5; ++j)
        for (int l = 1; l <= 5; ++l)
          for (int i = 1; i <= 5; ++i) half(i, j) += kl(at + i, bt + l) * tm(l, bt + j);
      for (int j = 1; j <= 5; ++j)
        for (int i = 1; i <= 5; ++i) {
          double sum = 0;
          for (int l = 1; l <= 5; ++l) sum += tm(l, at + i) * half(l, j);
          ke(at + i, bt + j) = sum;
        }
    }
}

void stiffener_stiffness(StiffenerMatrix& ke, const FixedVector<double, 27>& c27,
                         const StiffenerFrame& frame, const StiffenerProperty& prop,
                         StiffenerTransform& tm) {
  const StiffenerSection section = stiffener_section(prop);
  const double h = segment_length(c27);
  stiffener_transform(tm, frame);
  StiffenerMatrix kl{};
  const SegmentMatrix s = segment_stiffness(section, h);
  for (int m = 1; m <= STIFFENER_SEGMENTS; ++m) add_segment(s, m, kl);
  const double weak = section.E * section.Iw / (h * h * h);
  for (int j = 1; j <= STIFFENER_NODES; ++j)
    for (int i = 1; i <= STIFFENER_NODES; ++i)
      kl(5 * (i - 1) + 3, 5 * (j - 1) + 3) = weak * C9(i, j);
  to_element_freedoms(kl, tm, ke);
}

void assemble_stiffeners(const Structure& structure, SymmetricMatrix& K) {
  const Elements& el = structure.elements;
  StiffenerMatrix ke;
  StiffenerTransform tm;
  for (int e = 1; e <= el.nwsel; ++e) {
    stiffener_stiffness(ke, gather_points<9>(structure.nodes, el.wsconn, e),
                        stiffener_frame(structure, e), structure.properties.wsprop(e), tm);
    add_node_blocks(ke, el.wsconn.column(e), STIFFENER_NODES, K);
  }
}

}  // namespace zelvo
