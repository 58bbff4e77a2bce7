// Top laterals: single bars in the plane of the web tops, from web to web.
#pragma once
#include "model/elements.h"
#include "model/matrix.h"
#include "model/nodes.h"
#include "model/properties.h"

namespace zelvo {

// Adds every top lateral to K.
void assemble_laterals(const Nodes& nodes, const Elements& elements, const Properties& properties,
                       const MatrixPattern& pattern, Vector<double>& K);

}  // namespace zelvo
