// Geometric stiffness of the steel plates under the stresses of a stage.
#pragma once
#include "model/matrix.h"
#include "shell/kernel.h"

namespace zelvo {

// kge, kip/in: exactly symmetric, all of it written. d (45) are the displacements that make the
// stresses; all six components take part at all 18 points, tension adds positive stiffness.
void shell_geometric(const ShellWork& w, const ShellVector& d, ShellMatrix& kge);

// Adds every steel shell to KG with the properties of analysis k and the displacements U. Deck
// elements are left out whatever their stress.
void assemble_shell_geometric(const Nodes& nodes, const Elements& elements,
                              const Properties& properties, int k, const Vector<double>& U,
                              int ngird, const MatrixPattern& pattern, Vector<double>& KG);

}  // namespace zelvo
