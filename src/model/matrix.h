// The sparse symmetric matrix of the model: upper triangle with diagonal, by rows, counted from 1.
//
// The pattern is by whole nodes: if two nodes share an element, all 5 x 5 equations of the pair are
// stored, whether the element uses them or not. Columns ascend; a row begins with its diagonal.
#pragma once
#include "base/arrays.h"
#include "model/elements.h"

struct MatrixPattern {
  int n = 0;       // equations, five per node
  int nnz = 0;     // stored entries
  Vector<int> ia;  // (n+1) place in ja of the first entry of each row
  Vector<int> ja;  // (nnz) column of each entry
};
