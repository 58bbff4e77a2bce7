// The elimination tree of the ordered group graph and the column lengths of the factor.
//
// The columns of a group are a chain in the tree of the equations: each is the parent of the one
// before, one entry shorter. So the tree of the groups with their weights holds all of it.
#pragma once
#include "sparse/graph.h"

namespace zelvo {

struct GroupTree {
  int n = 0;
  Vector<int> perm, invp;  // (n) perm(new) = old group, invp(old) = new
  Vector<int> parent;      // (n) by new numbers, 0 at a root
  Vector<int> weight;      // (n) columns of each group
  Vector<int> length;      // (n) entries of its first column of L, the diagonal included
  Vector<int> first;       // (n+1) new number of its first column
};

// Completes tree, whose perm and invp hold an order, and refines that order:
//   1. elimination tree, postorder;
//   2. column lengths of L without computing fill (Gilbert, Ng and Peyton 1994);
//   3. children reordered by the length of their columns, which keeps a large update close to its
//      use: the last child taken goes first, or last if the present last child is longer; postorder
//      again.
void sfinit(const Graph& graph, const Groups& groups, GroupTree& tree);

// Tree of the ordered graph by ancestors with path compression (Liu 1990).
void elimination_tree(const Graph& graph, GroupTree& tree);

}  // namespace zelvo
