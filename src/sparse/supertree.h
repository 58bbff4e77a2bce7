// The tree of the supernodes.
#pragma once
#include "sparse/structure.h"

namespace zelvo {

// sparent and the schedule, from the row lists of f.
void supernode_tree(FactorStructure& f);

}  // namespace zelvo
