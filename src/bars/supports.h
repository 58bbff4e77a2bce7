// Support frames: a heavy cross frame at each support, six bars between every pair of the four
// corners of the section. It holds the shape of the section; what ties the girder to the ground are
// the support conditions.
#pragma once
#include "model/structure.h"

namespace zelvo {

constexpr double SUPPORT_AREA = 200.0;  // in^2, each bar, whatever the section

// Stiffness of one frame, overwritten; the diagonals cross without a joint.
//   k12   out  kip/in, freedom 3(c-1)+i: translation i of corner c
//   c12   in   inches: top left, top right, bottom left, bottom right
//   prop  in   of every bar
void support_stiffness(FixedMatrix<double, 12, 12>& k12, const FixedVector<double, 12>& c12,
                       const BarProperty& prop);

// Adds every support frame to K.
void assemble_supports(const Structure& structure, SymmetricMatrix& K);

}  // namespace zelvo
