// The straight two-node bar, of which every brace, lateral and support frame is made.
//
// A pin-ended bar carries axial force only and acts on the translations of its nodes. Its six
// freedoms are (ua va wa ub vb wb) in global axes; forces are kips, positive in tension.
#pragma once
#include "base/vec3.h"
#include "model/properties.h"

namespace zelvo {

using BarMatrix = FixedMatrix<double, 6, 6>;

// Adds the stiffness of a bar to ke, with t the unit vector from a to b:
// (E A / L) [ t t'  -t t' ; -t t'  t t' ]. The caller clears ke.
//   ke    in/out  kip/in
//   c     in      inches, ends (xa ya za xb yb zb); they are distinct points
//   prop  in      modulus and area
void bar_stiffness(BarMatrix& ke, const FixedVector<double, 6>& c, const BarProperty& prop);

// Axial force p = (E A / L) t . (ub - ua) of a bar with the end displacements d [in].
void bar_force(const FixedVector<double, 6>& c, const FixedVector<double, 6>& d,
               const BarProperty& prop, double& p);

// Adds the geometric stiffness of a bar with the axial force p to kg: (p / L) [ I  -I ; -I  I ].
// The full unit matrix, not I - t t', so the entry along the bar is not zero: the bar resists
// stretching by its force as well as turning (Przemieniecki 1968 in its simplest, isotropic form).
// The caller clears kg.
void bar_geo_stiffness(BarMatrix& kg, const FixedVector<double, 6>& c, double p);

}  // namespace zelvo
