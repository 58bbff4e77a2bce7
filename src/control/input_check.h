// Checks of a model that has been read: what cannot be analysed.
#pragma once
#include "control/input.h"

namespace zelvo {

// Adds a fault for everything that leaves the generation of the model without a sound meaning:
// keywords missing, counts, segment lists that do not cover the girder, positions outside it, sizes
// that are no physical quantity or beyond any bridge by many orders of magnitude. Rows with values
// that did not convert are not judged again, and values that nothing uses are not judged.
void check_input(Input& in);

}  // namespace zelvo
