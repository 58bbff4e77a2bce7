// A stage as an input deck for CalculiX, so that the mesh and its loads can be taken to another
// program.
//
//   plates       S8R on the outer eight nodes of each shell, with the program's directors (*NORMAL)
//   hard deck    C3D20R upward from the deck nodes; a deck softer than HARD_FROM is left out
//   studs        SPRING2 along x, y and z from flange to deck
//   bars         SPRINGA of E A / L; the mid nodes of frames are nodes here and stand on SPRING1 of
//                BRACE_EPS
//   stiffeners   B32R, two segments each
//   supports     *BOUNDARY, radial rollers *EQUATION; what the program holds by penalties is rigid
//   loads        nodal, those of the stage alone, unfactored; of a centre node, which S8R has not,
//                those that do the same work on the outer nodes
//
// Nodes keep their numbers; mid nodes of frames follow, internal ones first. Over deck node n stand
// n + L at the middle of the thickness and n + 2 L on top; L, told in the heading, is the smallest
// power of ten above all these, since CalculiX allocates by the highest number. Node sets: FEET (web
// feet of all stations), SUPPORTn (held nodes), and ENDS of the bars. CalculiX's total force of a
// SUPPORTn is the reaction less what the bars bring there, which follows from the displacements of
// ENDS, plus the loads on its nodes.
#pragma once
#include <string>

#include "model/structure.h"

namespace zelvo {

// The deck of stage k.
std::string calculix_deck(const Model& model, const Structure& structure, int k);

}  // namespace zelvo
