// Nodes of the structure: coordinates and the three nodal axes that the shell needs.
#pragma once
#include "base/arrays.h"
#include "model/description.h"

struct Nodes {
  int nnode = 0;
  Matrix<double> xyz;  // (3,nnode) inches; x across, y up from the bottom flange, z along
  Matrix<double> vn;   // (3,nnode) unit director, vn = vt1 x vt2
  Matrix<double> vt1;  // (3,nnode) unit tangent across the plate
  Matrix<double> vt2;  // (3,nnode) unit tangent along the girder
};
