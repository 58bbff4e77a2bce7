// Structure of the factor: supernodes, their row lists, and the place of every value of A.
//
// The row lists are found on chains of groups: runs of columns that share one structure, before
// the panel limit cuts them into supernodes. A chain's list, its own columns first, is the list of
// each of its supernodes less the columns passed.
#pragma once
#include "sparse/graph.h"
#include "sparse/structure.h"
#include "sparse/tree.h"

namespace zelvo {

struct Chains {
  int count = 0;
  Vector<int> xchain;          // (count+1) first group of each chain, new numbers
  Vector<int> chain;           // (groups) chain of each group
  Vector<std::int64_t> xrows;  // (count+1) start of each list in rows
  Vector<int> rows;            // groups below each chain, ascending
};

// Groups of equal structure: v+1 continues the chain of v if it is the parent of v and the first
// column of v+1 is one shorter than the last of v.
void find_chains(const GroupTree& tree, Chains& chains);

// Row lists of all chains by merging those of the children. Returns 0 or BAD_STRUCTURE.
Detail chain_rows(const Graph& graph, const GroupTree& tree, Chains& chains);

// The order, tree and column lengths of the equations, and supernodes of at most maxsup columns.
void expand_tree(const Groups& groups, const GroupTree& tree, const Chains& chains, int maxsup,
                 FactorStructure& f);

// xlnz, xlindx, lindx and the sizes of the factor.
void expand_rows(const GroupTree& tree, const Chains& chains, FactorStructure& f);

// luperm: the place in lnz of each stored value of A.
void place_values(const int* ia, const int* ja, const Groups& groups, const Graph& graph,
                  const GroupTree& tree, const Chains& chains, FactorStructure& f);

}  // namespace zelvo
