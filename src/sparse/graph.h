// The graph of a sparse symmetric matrix, drawn on groups of equations that have the same
// neighbours.
//
// Two equations whose closed neighbourhoods (the equation and all it is coupled with) agree cannot
// be distinguished by any ordering: they are eliminated side by side, and one vertex with a weight
// stands for all of them (Ashcraft 1995). A finite element matrix with five freedoms per node
// shrinks to a fifth of its vertices and a twenty-fifth of its edges.
#pragma once
#include "base/arrays.h"
#include "sparse/details.h"

namespace zelvo {

// Equations by groups. Groups are numbered by their smallest equation.
struct Groups {
  int count = 0;
  Vector<int> group;            // (neqns) group of each equation
  Vector<int> xmember, member;  // (count+1), (neqns) equations of each group, ascending

  int weight(int g) const { return xmember(g + 1) - xmember(g); }
};

// Undirected graph without loops; both ends of an edge list it, and each list ascends.
struct Graph {
  int n = 0;
  Vector<int> xadj, adjncy;  // (n+1), neighbours of vertex v: xadj(v) to xadj(v+1)-1
};

// Finds the groups and the graph between them from the upper triangle of the pattern.
//
//   ia, ja    in   rows of the upper triangle, numbers from 1; the diagonal need not be stored
//   compress  in   false makes every equation its own group
//
// Returns 0, BAD_ROW or BAD_COLUMN. Rows whose columns do not ascend are accepted but not compressed.
// A graph with more than 2^31-1 list entries throws MemoryFailure.
Detail build_graph(int neqns, const int* ia, const int* ja, bool compress, Groups& groups,
                   Graph& graph);

}  // namespace zelvo
