// Geometric stiffness of braces, top laterals and web stiffeners under the displacements U of an
// analysis: what the buckling check adds to that of the shells. Tension adds positive diagonal
// values.
#pragma once
#include "bars/braces.h"
#include "bars/stiffeners.h"

namespace zelvo {

// Condensed geometric stiffness of a brace, overwritten. M is condensed on the geometric matrix
// alone. A brace whose forces balance at M adds nothing (see geometric.cpp).
//   kg12  out  kip/in
//   f12   in   kips, nodal forces k12 u12 of the internal brace
//   u15   in   inches, displacements of M and the corners of the external brace
void ibrace_geo_stiffness(BraceMatrix& kg12, const BraceCorners& c12, const BraceCorners& f12);
void ebrace_geo_stiffness(BraceMatrix& kg12, const BraceCorners& c12,
                          const FixedVector<double, 3>& prop, const PatchVector& u15);

// Geometric stiffness (45,45) of a stiffener in the freedoms of its nodes, overwritten. The forces
// are the nodal values of the whole element, not the internal forces of its segments: at an inner
// node the axial one is what the web feeds into the stiffener there.
//   c27, a1, a2, a3, prop, tm  as stiffener_stiffness
//   f6  in  local nodal forces: axial, two shears, torsional moment, 0, bending moment; shears and
//           the axial force at the first node are not used
void stiffener_geo_stiffness(StiffenerMatrix& kg, const FixedVector<double, 27>& c27,
                             const FixedVector<double, 3>& a1, const FixedVector<double, 3>& a2,
                             const FixedVector<double, 3>& a3, const FixedVector<double, 3>& prop,
                             StiffenerTransform& tm, const FixedMatrix<double, 6, 9>& f6);

// Add every element of their kind to KG.
void assemble_ibraces_geo(const Nodes& nodes, const Elements& elements,
                          const Properties& properties, const Vector<double>& U,
                          const MatrixPattern& pattern, Vector<double>& KG);
void assemble_ebraces_geo(const Nodes& nodes, const Elements& elements,
                          const Properties& properties, const Vector<double>& U,
                          const MatrixPattern& pattern, Vector<double>& KG);
void assemble_laterals_geo(const Nodes& nodes, const Elements& elements,
                           const Properties& properties, const Vector<double>& U,
                           const MatrixPattern& pattern, Vector<double>& KG);
void assemble_stiffeners_geo(const Nodes& nodes, const Elements& elements,
                             const Properties& properties, const Vector<double>& U,
                             const MatrixPattern& pattern, Vector<double>& KG);

}  // namespace zelvo
