// The tree of the supernodes and the orders in which the numeric stages walk it.
#pragma once
#include "sparse/structure.h"

namespace zelvo {

// From the row lists of f: sparent, ncolupd, snorder, xchild, child, topdown and update_size.
void supernode_tree(FactorStructure& f);

}  // namespace zelvo
