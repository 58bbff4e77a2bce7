// The stiffness of a stage.
#pragma once
#include "shell/kernel.h"
#include "solution/progress.h"

namespace zelvo {

// K = all elements with the properties of analysis k, and the penalties of the supports. Returns the
// penalty that holds the rollers, kip/in.
double assemble_stiffness(const Model& model, const Structure& structure, int k, LastInverse& last,
                          const Progress& done, SymmetricMatrix& K);

// True if stage k > 1 has the deck moduli and stud stiffnesses of stage k-1: nothing else in the
// stiffness depends on the stage.
bool stiffness_holds(const Model& model, int k);

}  // namespace zelvo
