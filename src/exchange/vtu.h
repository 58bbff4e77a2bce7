// Full fields for ParaView and other readers of VTK's XML files, ASCII around base64, 64-bit.
//
// Points: all nodes, then the mid nodes of the internal and of the external frames. Cells: shells
// (type 28, nine nodes in the order of shconn), then lines (type 3): the bars of internal and
// external frames, laterals, the segments of stiffeners. Studs and support frames are left out.
//
// Point arrays: displacement and rotation (vectors in global axes; a rotation has no part about the
// director). The mid node of a frame is no node of the model: it is drawn midway between the ends of
// its strut. Cell arrays, nan where a cell has no such value: part, girder (0 between girders),
// member (strip of a shell, row of the input), thickness, modulus, area; of a stage stresses at
// mid-thickness at the centre of the shell, axial forces of bars. The names of the parts are those of
// field arrays `part N: NAME` of value N.
#pragma once
#include <string>
#include <utility>
#include <vector>

#include "construction/history.h"

namespace zelvo {

// A stage: everything twice, increment_... and total_..., factored. What construct() hands to
// stage_done, and the stage's load factor.
std::string stage_vtu(const Model& model, const Structure& structure, const StageRecord& record,
                      const Vector<double>& U, const Vector<double>& total, double load_factor);

// A buckled shape x (5*nnode) of stage k, its largest translation scaled to 1, with the factor in the
// field array `factor`.
std::string mode_vtu(const Model& model, const Structure& structure, int k, const double* x,
                     double factor);

// A collection: times and file names relative to its own.
std::string pvd(const std::vector<std::pair<double, std::string>>& files);

}  // namespace zelvo
