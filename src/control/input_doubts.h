// Doubts about a model that has been read: what can be analysed, but is likely a slip.
#pragma once
#include "control/input.h"

namespace zelvo {

// Adds warnings for what is legal but likely a slip; if there are any, of this routine or of the
// reader, also one for each position and length that the grid has moved. To be called for input
// without faults.
void doubt_input(Input& in);

}  // namespace zelvo
