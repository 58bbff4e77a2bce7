// Bar forces of the frames and laterals, kips, positive in tension.
#pragma once
#include "bars/braces.h"

namespace zelvo {

// All bars of a stage, one column per element.
struct BarForces {
  Matrix<double> internal;  // (4,nibel) bars at the corners P1 to P4 of each internal brace
  Matrix<double> external;  // (5,nebel) bars of each external brace in order
  Vector<double> laterals;  // (nlatel)
};

Matrix<double> internal_forces(const Structure& structure, const Vector<double>& U);
Matrix<double> external_forces(const Structure& structure, const Vector<double>& U);
Vector<double> lateral_forces(const Structure& structure, const Vector<double>& U);

// Forces of the bars at the corners of an internal brace from its nodal forces f12 = k12 u12 [kip]:
// each corner has one bar, so its force is that of the corner along the line from M.
FixedVector<double, 4> ibrace_forces(const BraceCorners& c12, const BraceCorners& f12);

// Forces of the bars of an external brace in the order of their list.
//   u15  in  inches, displacements of M and the corners
FixedVector<double, 5> ebrace_forces(const BraceCorners& c12, const PatchVector& u15,
                                     const BarProperty& prop);

}  // namespace zelvo
