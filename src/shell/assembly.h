// Elastic stiffness of all shells.
#pragma once
#include "model/structure.h"
#include "shell/kernel.h"

namespace zelvo {

// Adds every shell, integrated with its properties of analysis k, to K in element order.
void assemble_shells(const Structure& structure, int k, LastInverse& last, SymmetricMatrix& K);

}  // namespace zelvo
