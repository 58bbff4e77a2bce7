// Stress resultants of each girder and stresses for design, from the shells' edge forces.
#pragma once
#include "construction/quantities.h"
#include "model/structure.h"
#include "shell/kernel.h"

namespace zelvo {

// Resultants of the girders, the laterals and the whole, and the strips' stresses at mid-thickness,
// of analysis k under the displacements U, into q: girders, own, bracing, whole, mid22, mid12 and
// the stresses for design that follow.
void recover_girders(const Model& model, const Structure& structure, const Vector<double>& U, int k,
                     LastInverse& last, Quantities& q);

// What follows from mid22 and mid12: flange_mean, flange_bend, bottom_mean, bottom_high, bottom_low,
// web_shear. For totals it is called with the summed stresses.
void design_stresses(const Structure& structure, Quantities& q);

}  // namespace zelvo
