// Fill-reducing order of a graph.
#pragma once
#include "sparse/graph.h"

namespace zelvo {

// Multilevel nested dissection (Karypis and Kumar 1998) by METIS with its default options; the
// vertex weights are the sizes of the groups, so separators are small in equations.
//
//   perm   (n)  out  perm(new) = old
//   invp   (n)  out  invp(old) = new
//
// Memory that METIS cannot have throws MemoryFailure; false where it fails otherwise.
bool dissect(Graph& graph, const Groups& groups, Vector<int>& perm, Vector<int>& invp);

// The caller's order of the equations, (neqns) perm(new) = old, as perm and invp. Returns false if
// it is not a permutation of 1 to neqns; a missing one (null) is none.
bool take_order(int neqns, const int* user_perm, Vector<int>& perm, Vector<int>& invp);

}  // namespace zelvo
