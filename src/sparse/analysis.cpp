#include "sparse/analysis.h"

#include "sparse/ordering.h"
#include "sparse/supertree.h"

namespace zelvo {

int reorder(int neqns, const int* ia, const int* ja, const int* user_perm, int maxsup,
            Reordering& r, FactorStructure& f) {
  f = FactorStructure{};
  f.neqns = neqns;
  // A given order need not keep the members of a group together, so it meets single equations.
  const bool compress = user_perm == nullptr;
  if (const int fault = build_graph(neqns, ia, ja, compress, r.groups, r.graph); fault != 0) {
    return fault;
  }
  if (compress) {
    dissect(r.graph, r.groups, r.tree.perm, r.tree.invp);
  } else if (!take_order(neqns, user_perm, r.tree.perm, r.tree.invp)) {
    return BAD_PERMUTATION;
  }
  sfinit(r.graph, r.groups, r.tree);
  find_chains(r.tree, r.chains);
  expand_tree(r.groups, r.tree, r.chains, maxsup, f);
  return 0;
}

int symbolic(const int* ia, const int* ja, Reordering& r, FactorStructure& f) {
  if (const int fault = chain_rows(r.graph, r.tree, r.chains); fault != 0) return fault;
  expand_rows(r.tree, r.chains, f);
  place_values(ia, ja, r.groups, r.graph, r.tree, r.chains, f);
  supernode_tree(f);
  return 0;
}

int analyse(int neqns, [[maybe_unused]] int nnza, const int* ia, const int* ja,
            const int* user_perm, FactorStructure& f) {
  assert(ia[neqns] - 1 == nnza);
  Reordering r;
  const int fault = reorder(neqns, ia, ja, user_perm, PANEL_LIMIT, r, f);
  return fault != 0 ? fault : symbolic(ia, ja, r, f);
}

}  // namespace zelvo
