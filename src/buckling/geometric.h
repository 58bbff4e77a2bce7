// The geometric stiffness of a stage.
#pragma once
#include "shell/kernel.h"
#include "solution/progress.h"

namespace zelvo {

// KG = geometric stiffness of the steel plates and of all bars under the displacements U, with the
// properties of analysis k.
void assemble_geometric(const Structure& structure, int k, const Vector<double>& U,
                        LastInverse& last, const Progress& done, SymmetricMatrix& KG);

}  // namespace zelvo
