// Analysis of a sparse symmetric matrix from the pattern of its upper triangle alone: order,
// elimination tree, supernodes and the complete structure of the factor.
//
// Equations with the same neighbours are ordered and analysed as one (sparse/graph.h); all results
// are those of the single equations.
#pragma once
#include "sparse/structure.h"
#include "sparse/symbolic.h"

namespace zelvo {

// Columns that a supernode has at most. More than four processors need more, and so smaller,
// supernodes to be busy.
constexpr int PANEL_LIMIT = 80, SHARED_PANEL_LIMIT = 64;
constexpr int panel_limit(int processors) {
  return processors <= 4 ? PANEL_LIMIT : SHARED_PANEL_LIMIT;
}

// What ordering leaves for the structure of the factor.
struct Reordering {
  Groups groups;
  Graph graph;
  GroupTree tree;
  Chains chains;
};

// Graph, order, elimination tree and supernodes.
//
//   ia, ja     in   rows of the upper triangle, numbers from 1
//   user_perm  in   (neqns) user_perm(new) = old, or null: nested dissection. A given order is
//                   refined by postorders of its tree only, which leaves the fill as it is.
//
// Fills neqns, perm, invp, parent, colcnt, nsuper, xsuper, snode. Returns 0 or a fault of the pattern or the
// order.
Detail reorder(int neqns, const int* ia, const int* ja, const int* user_perm, int maxsup,
               Reordering& r, FactorStructure& f);

// Row structure of the factor and the tree of its supernodes. Returns 0 or BAD_STRUCTURE.
Detail symbolic(const int* ia, const int* ja, Reordering& r, FactorStructure& f);

// Both; nnza = ia(neqns+1)-1 stored values.
Detail analyse(int neqns, int nnza, const int* ia, const int* ja, const int* user_perm,
               FactorStructure& f);

}  // namespace zelvo
