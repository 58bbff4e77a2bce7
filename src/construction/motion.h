// Displacements of the girders' sections and reactions of their supports, from those of all nodes.
#pragma once
#include "construction/quantities.h"
#include "model/structure.h"

namespace zelvo {

// Motion of every station under the displacements U.
GirderMotion girder_motion(const Model& model, const Structure& structure, const Vector<double>& U);

// Reactions of every support line and girder into q: vertical (up), lateral (to the right) and
// longitudinal (along the girder), the couple of the vertical ones about the centre of the bottom
// flange (positive like a torque, so where the left side carries more), and those of two bearings
// `spacing` apart (0: none). A reaction is what the ground exerts on the bridge.
//
//   penalty  in  kip/in, that which holds the rollers across in the stiffness behind U
void recover_reactions(const Model& model, const Structure& structure, const Vector<double>& U,
                       double penalty, double spacing, Quantities& q);

}  // namespace zelvo
