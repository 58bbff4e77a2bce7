// A buckled shape as a picture for paper.
#pragma once
#include "report/results.h"
#include "report/units.h"

namespace zelvo::report {

// A view of the stretch that buckles (of the whole bridge if girders move as a whole) and the section
// where the mode is largest, both with the undeformed outline. Nothing without a shape.
Html buckled_picture(const Geometry& geometry, const ModeText& mode, const Bridge& bridge);

// The same two views side by side as an SVG file with its own style.
Html buckled_drawing(const Geometry& geometry, const ModeText& mode, const Bridge& bridge,
                     const Html& style);

}  // namespace zelvo::report
