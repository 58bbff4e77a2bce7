// The sparse symmetric matrix of the model: upper triangle with diagonal, by rows, counted from 1.
//
// The pattern is by whole nodes: if two nodes share an element, all 5 x 5 equations of the pair are
// stored, whether the element uses them or not. Columns ascend; a row begins with its diagonal.
#pragma once
#include "base/arrays.h"
#include "model/elements.h"

namespace zelvo {

struct MatrixPattern {
  int n = 0;       // equations, five per node
  int nnz = 0;     // stored entries
  Vector<int> ia;  // (n+1) place in ja of the first entry of each row
  Vector<int> ja;  // (nnz) column of each entry
};

// Finds the pattern of a model with nnode nodes and prints that it is done. A matrix of more
// entries than an int counts throws MemoryFailure.
MatrixPattern build_pattern(int nnode, const Elements& elements);

// Adds an element matrix into the values of a matrix of that pattern.
//
//   ke    (n,n)  in      leading dimension ld; its upper triangle alone is read
//   dof   (n)    in      equations, in any order
//   K     (nnz)  in/out
//
// Entries outside the pattern are dropped.
void add_element(const double* ke, int ld, const int* dof, int n, const MatrixPattern& pattern,
                 Vector<double>& K);

// The same, to the last bit, for an element whose equations are the first ndof freedoms of each of
// its nodes: the place of a node pair is looked up once for its whole block.
//
//   ke    (nen*ndof,nen*ndof)  in   freedoms node by node
//   node  (nen)                in   global nodes
//   ndof                       in   3 or 5
void add_node_blocks(const double* ke, int ld, const int* node, int nen, int ndof,
                     const MatrixPattern& pattern, Vector<double>& K);

}  // namespace zelvo
