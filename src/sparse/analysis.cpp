#include "sparse/analysis.h"

#include "sparse/ordering.h"
#include "sparse/supertree.h"

namespace zelvo {

Detail reorder(int neqns, const int* ia, const int* ja, const int* user_perm, int maxsup,
               Reordering& r, FactorStructure& f) {
  assert(neqns >= 1 && maxsup >= 1);
  f = FactorStructure{};
  f.neqns = neqns;
  // A given order need not keep the members of a group together, so it meets single equations.
  const bool compress = user_perm == nullptr;
  const Detail fault = build_graph(neqns, ia, ja, compress, r.groups, r.graph);
  if (fault != NO_DETAIL) return fault;
  if (compress) {
    if (!dissect(r.graph, r.groups, r.tree.perm, r.tree.invp)) return NO_ORDER;
  } else if (!take_order(neqns, user_perm, r.tree.perm, r.tree.invp)) {
    return BAD_PERMUTATION;
  }
  sfinit(r.graph, r.groups, r.tree);
  find_chains(r.tree, r.chains);
  expand_tree(r.groups, r.tree, r.chains, maxsup, f);
  return NO_DETAIL;
}

Detail symbolic(const int* ia, const int* ja, Reordering& r, FactorStructure& f) {
  assert(f.nsuper >= 1 && r.graph.n == r.tree.n);
  const Detail fault = chain_rows(r.graph, r.tree, r.chains);
  if (fault != NO_DETAIL) return fault;
  expand_rows(r.tree, r.chains, f);
  place_values(ia, ja, r.groups, r.graph, r.tree, r.chains, f);
  supernode_tree(f);
  return NO_DETAIL;
}

Detail analyse(int neqns, [[maybe_unused]] int nnza, const int* ia, const int* ja,
               const int* user_perm, FactorStructure& f) {
  assert(ia[neqns] - 1 == nnza);
  Reordering r;
  const Detail fault = reorder(neqns, ia, ja, user_perm, PANEL_LIMIT, r, f);
  return fault != NO_DETAIL ? fault : symbolic(ia, ja, r, f);
}

}  // namespace zelvo
