// The file of buckling factors and buckled cross-sections.
#pragma once
#include <string>

#include "base/arrays.h"
#include "model/description.h"
#include "model/nodes.h"

namespace zelvo {

// Appends the block of analysis k: for each mode its factor and, at every second station, the
// section with the mode shape added at an exaggerated scale: distance across the section from its
// reference node (positive towards the centre of curvature) and height, in inches.
//   eigval  (nev)          in
//   eigvec  (5 nnode,nev)  in
void write_shape(const Model& model, const Nodes& nodes, const Vector<double>& eigval,
                 const Matrix<double>& eigvec, int k, std::string& out);
void write_shape_two(const Model& model, const Nodes& nodes, const Vector<double>& eigval,
                     const Matrix<double>& eigvec, int k, std::string& out);

}  // namespace zelvo
