// Nodes of the structure: coordinates and the three nodal axes that the shell needs.
#pragma once
#include "base/arrays.h"
#include "model/description.h"

namespace zelvo {

struct Nodes {
  int nnode = 0;
  Matrix<double> xyz;  // (3,nnode) inches; x across, y up from the bottom flange, z along
  Matrix<double> vn;   // (3,nnode) unit director, vn = vt1 x vt2
  Matrix<double> vt1;  // (3,nnode) unit tangent across the plate
  Matrix<double> vt2;  // (3,nnode) unit tangent along the girder
};

// Nodes of a model, checked: a bridge whose equations an int cannot count throws MemoryFailure.
int node_count(const Model& model);

// Generate all nodes, station by station. The first section lies in the x-y plane, the girder runs
// toward negative z and, when curved, bends toward positive x about the vertical axis through the
// origin. The radius must be positive and larger than half the width of the structure.
void generate_nodes_one(const Model& model, Nodes& nodes);
void generate_nodes_two(const Model& model, Nodes& nodes);

}  // namespace zelvo
