// Geometric stiffness of braces and top laterals under the displacements U of an analysis: what the
// buckling check adds to that of the shells. Tension adds positive diagonal
// values.
#pragma once
#include "bars/braces.h"

namespace zelvo {

// Condensed geometric stiffness of a brace, overwritten. M is condensed on the geometric matrix
// alone. A brace whose forces balance at M adds nothing (see geometric.cpp).
//   kg12  out  kip/in
//   f12   in   kips, nodal forces k12 u12 of the internal brace
//   u15   in   inches, displacements of M and the corners of the external brace
void ibrace_geo_stiffness(BraceMatrix& kg12, const BraceCorners& c12, const BraceCorners& f12);
void ebrace_geo_stiffness(BraceMatrix& kg12, const BraceCorners& c12, const BarProperty& prop,
                          const PatchVector& u15);

// Add every element of their kind to KG.
void assemble_ibraces_geo(const Structure& structure, const Vector<double>& U, SymmetricMatrix& KG);
void assemble_ebraces_geo(const Structure& structure, const Vector<double>& U, SymmetricMatrix& KG);
void assemble_laterals_geo(const Structure& structure, const Vector<double>& U,
                           SymmetricMatrix& KG);

}  // namespace zelvo
