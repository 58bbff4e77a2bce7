// Geometric stiffness of the web stiffeners under the displacements U of an analysis.
#pragma once
#include "bars/stiffeners.h"

namespace zelvo {

// Geometric stiffness (45,45) of a stiffener in the freedoms of its nodes, overwritten. The forces
// are the nodal values of the whole element, not the internal forces of its segments: at an inner
// node the axial one is what the web feeds into the stiffener there.
//   c27, frame, prop, tm  as stiffener_stiffness
//   f6  in  local nodal forces: axial, two shears, torsional moment, 0, bending moment; shears and
//           the axial force at the first node are not used
void stiffener_geo_stiffness(StiffenerMatrix& kg, const FixedVector<double, 27>& c27,
                             const StiffenerFrame& frame, const StiffenerProperty& prop,
                             StiffenerTransform& tm, const FixedMatrix<double, 6, 9>& f6);

// Adds every stiffener to KG.
void assemble_stiffeners_geo(const Structure& structure, const Vector<double>& U,
                             SymmetricMatrix& KG);

}  // namespace zelvo
