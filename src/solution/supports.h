// Support conditions as penalties on stored values of the stiffness matrix.
#pragma once
#include "model/structure.h"

namespace zelvo {

// Stiffness that holds a freedom of the pinned support, and every support vertically, kip/in. The
// reactions are read back from the displacements it leaves.
constexpr double BIG = 1.0e20;

// How entry i of the restrained nodes is held in plan, besides its vertical penalty: not at all; in
// x and z at BIG; in x by the penalty of the rollers; along the radius by that.
enum class PlanHold { FREE, FIXED, ACROSS, RADIAL };
PlanHold plan_hold(const Model& model, const Structure& structure, int i);

// Holds the restrained nodes: y of all nine bottom flange nodes of a support line at BIG; x and z of
// the centre node too at the first (pinned) support. Rollers, all other supports, are held across
// the girder by 1000 times the largest value that K stores on entry: in a straight model every node
// in x, in a curved one the centre node along the radius.
//
//   K  in/out  assembled stiffness
//
// Returns the penalty of the rollers, kip/in.
double apply_supports(const Model& model, const Structure& structure, SymmetricMatrix& K);

}  // namespace zelvo
