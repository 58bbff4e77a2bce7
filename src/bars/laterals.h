// Top laterals: single bars in the plane of the web tops, from web to web.
#pragma once
#include "model/structure.h"

namespace zelvo {

// Adds every top lateral to K.
void assemble_laterals(const Structure& structure, SymmetricMatrix& K);

}  // namespace zelvo
