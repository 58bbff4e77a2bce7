// Element tables: node lists of the seven kinds of element, one column per element, and the list of
// restrained nodes.
#pragma once
#include "base/arrays.h"
#include "model/description.h"

namespace zelvo {

struct Elements {
  int nshell = 0, nibel = 0, nebel = 0, nlatel = 0, nwsel = 0, nstud = 0, nsupel = 0;
  Matrix<int> shconn;   // (9,nshell) shells, bay by bay
  Matrix<int> ibconn;   // (4,nibel) internal braces: top left, top right, bottom left, bottom right
  Matrix<int> ebconn;   // (4,nebel) external braces, between the girders
  Matrix<int> latconn;  // (2,nlatel) top laterals
  Matrix<int> wsconn;   // (9,nwsel) web stiffeners, in a chain along the web
  Matrix<int> studconn;  // (2,nstud) stud links: flange node, deck node
  Matrix<int> supconn;   // (4,nsupel) support frames, corners as the braces
  int nfix = 0;
  Vector<int> fixnode;  // (nfix) bottom flange nodes of each support in turn
  int nel() const { return nshell + nibel + nebel + nlatel + nwsel + nstud + nsupel; }
};

// Computes all tables from positions and the section pattern: nothing is searched. Positions must
// lie on the girder, lateral types are 1 or 2, external braces need two girders.
Elements generate_elements(const Model& model);

}  // namespace zelvo
