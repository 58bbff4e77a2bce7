#include "bars/stiffener_geometric.h"

#include "bars/gather.h"

namespace zelvo {

namespace {

// Rows of f6.
enum { AXIAL = 1, TORSION = 4, BENDING = 6 };

// Beam-column geometric stiffness of the segment of length h between two nodes, with the axial
// force P, the torque Mx, and the bending moments Ma and Mb at its ends (McGuire, Gallagher and
// Ziemian 2000). The weak axis has no rotation, so only terms with a partner among the five local
// freedoms remain; polar_ratio is J/A here.
SegmentMatrix segment_geo_stiffness(double h, double P, double Mx, double Ma, double Mb,
                                    double polar_ratio) {
  const double stretch = P / h, sway = 6 * P / (5 * h), twist = polar_ratio * P / h;
  const struct {
    int i, j;
    double value;
  } entries[] = {
      {1, 1, stretch},      {6, 6, stretch},        {1, 6, -stretch},
      {2, 2, sway},         {7, 7, sway},           {2, 7, -sway},
      {3, 3, sway},         {8, 8, sway},           {3, 8, -sway},
      {4, 4, twist},        {9, 9, twist},          {4, 9, -twist},
      {2, 5, P / 10},       {2, 10, P / 10},        {5, 7, -P / 10},
      {7, 10, -P / 10},     {5, 5, 2 * P * h / 15}, {10, 10, 2 * P * h / 15},
      {5, 10, -P * h / 30}, {3, 5, Mx / h},         {8, 10, Mx / h},
      {3, 10, -Mx / h},     {5, 8, -Mx / h},        {3, 4, Ma / h},
      {3, 9, Mb / h},       {4, 8, -Ma / h},        {8, 9, -Mb / h},
  };
  SegmentMatrix s{};
  for (const auto& [i, j, value] : entries) s(i, j) = s(j, i) = value;
  return s;
}

// Local nodal forces f6 of the element: tm (ke d). The moment about local axis 2 has no freedom.
FixedMatrix<double, 6, 9> local_forces(const StiffenerMatrix& ke, const StiffenerTransform& tm,
                                       const StiffenerVector& d) {
  const StiffenerVector q = multiply(ke, d);
  FixedMatrix<double, 6, 9> f6{};
  for (int k = 1; k <= STIFFENER_NODES; ++k)
    for (int i = 1; i <= 5; ++i) {
      const int at = 5 * (k - 1);
      double r = 0;
      for (int j = 1; j <= 5; ++j) r += tm(i, at + j) * q(at + j);
      f6(i == 5 ? int{BENDING} : i, k) = r;
    }
  return f6;
}

}  // namespace

void stiffener_geo_stiffness(StiffenerMatrix& kg, const FixedVector<double, 27>& c27,
                             const StiffenerFrame& frame, const StiffenerProperty& prop,
                             StiffenerTransform& tm, const FixedMatrix<double, 6, 9>& f6) {
  const StiffenerSection section = stiffener_section(prop);
  const double h = segment_length(c27);
  stiffener_transform(tm, frame);
  StiffenerMatrix kgl{};
  for (int m = 1; m <= STIFFENER_SEGMENTS; ++m) {
    const int a = m, b = m + 1;
    add_segment(segment_geo_stiffness(h, f6(AXIAL, b), f6(TORSION, b), f6(BENDING, a),
                                      f6(BENDING, b), section.J / section.A),
                m, kgl);
  }
  to_element_freedoms(kgl, tm, kg);
}

void assemble_stiffeners_geo(const Structure& structure, const Vector<double>& U,
                             SymmetricMatrix& KG) {
  const auto& [section, nodes, elements, properties] = structure;
  StiffenerMatrix ke, kg;
  StiffenerTransform tm;
  for (int e = 1; e <= elements.nwsel; ++e) {
    const FixedVector<double, 27> c27 = gather_points<9>(nodes, elements.wsconn, e);
    const StiffenerFrame frame = stiffener_frame(structure, e);
    const StiffenerProperty& prop = properties.wsprop(e);
    stiffener_stiffness(ke, c27, frame, prop, tm);
    const StiffenerVector d = gather_displacements<9, 5>(U, elements.wsconn, e);
    stiffener_geo_stiffness(kg, c27, frame, prop, tm, local_forces(ke, tm, d));
    add_node_blocks(kg, elements.wsconn.column(e), STIFFENER_NODES, KG);
  }
}

}  // namespace zelvo
