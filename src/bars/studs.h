// Stud links: they join a top flange node to the deck node at the same place.
#pragma once
#include "model/structure.h"

namespace zelvo {

// kip/in between flange and deck, vertically: stiff in every analysis, with or without studs.
constexpr double STUD_UPLIFT_K = 100000.0;

// Adds every link to K for analysis k. Slip meets studk(k,e) * studnum(e) [kip/in] along global x
// and z, on curved girders too.
void assemble_studs(const Structure& structure, int k, SymmetricMatrix& K);

}  // namespace zelvo
