// Elastic stiffness of all shells.
#pragma once
#include "model/matrix.h"
#include "shell/kernel.h"

namespace zelvo {

// Adds every shell, integrated with its properties of analysis k, to K in element order.
void assemble_shells(const Nodes& nodes, const Elements& elements, const Properties& properties,
                     int k, const MatrixPattern& pattern, Vector<double>& K);

}  // namespace zelvo
