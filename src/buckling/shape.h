// The buckled cross-sections: every second station with a mode shape added at an exaggerated scale.
#pragma once
#include "buckling/check.h"
#include "model/structure.h"

namespace zelvo {

// Places of the girders' nodes in each buckled section: girder by girder in the order of the section
// pattern, sections 24 in apart, mode by mode.
struct BuckledSections {
  Array3<double> across;  // (nodes,nbay+1,nev) inches from the reference node of the undeformed
                          // section, positive towards the centre of curvature
  Array3<double> height;  // (nodes,nbay+1,nev) inches
};

BuckledSections buckled_sections(const Model& model, const Structure& structure,
                                 const Matrix<double>& eigvec);

}  // namespace zelvo
