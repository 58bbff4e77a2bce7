// Checks of a model that has been read: what cannot be analysed, and what hardly can be meant.
#pragma once
#include "control/input.h"

namespace zelvo {

// Adds a fault for everything that leaves the generation of the model without a sound meaning:
// keywords missing, counts, segment lists that do not cover the girder, positions outside it,
// dimensions that are no physical quantity. Rows with values that did not convert are not judged
// again.
void check_input(Input& in);

// Adds warnings for what is legal but hardly meant. To be called for input without faults.
void doubt_input(Input& in);

// Largest distance of a node from the reference line, across the section.
double half_width(const Model& m);

}  // namespace zelvo
