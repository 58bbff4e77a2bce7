// Geometric stiffness of the steel plates under the stresses of a stage.
#pragma once
#include "model/structure.h"
#include "shell/kernel.h"

namespace zelvo {

// kge, kip/in: exactly symmetric, all of it written. d (45) are the displacements that make the
// stresses; all six components take part at all 18 points, tension adds positive stiffness.
void shell_geometric(const ShellWork& w, const ShellVector& d, LastInverse& last, ShellMatrix& kge);

// Adds every steel shell to KG with the properties of analysis k and the displacements U. Deck
// elements are left out whatever their stress.
void assemble_shell_geometric(const Structure& structure, int k, const Vector<double>& U,
                              LastInverse& last, SymmetricMatrix& KG);

}  // namespace zelvo
