#include "sparse/ordering.h"

#include <metis.h>

#include "base/platform.h"

namespace zelvo {

static_assert(sizeof(idx_t) == sizeof(int), "METIS must be built with 32-bit indices");

bool dissect(Graph& graph, const Groups& groups, Vector<int>& perm, Vector<int>& invp) {
  assert(groups.count == graph.n && graph.xadj.size() == graph.n + 1);
  perm = Vector<int>(graph.n, "the order of the equations");
  invp = Vector<int>(graph.n, "the order of the equations");
  if (graph.adjncy.size() == 0) {  // nothing to dissect, and METIS does not expect it
    for (int v = 1; v <= graph.n; ++v) perm(v) = invp(v) = v;
    return true;
  }
  Vector<int> weight(graph.n, "vertex weights");
  for (int v = 1; v <= graph.n; ++v) weight(v) = groups.weight(v);
  idx_t options[METIS_NOPTIONS];
  METIS_SetDefaultOptions(options);
  options[METIS_OPTION_NUMBERING] = 1;  // METIS counts from 1 too
  idx_t n = graph.n;
  // METIS takes SIGTERM over and would jump out of whatever it interrupts, an allocation too.
  const HeldTermination held;
  // METIS shifts the graph to its own numbering and back, hence not const.
  const int status = METIS_NodeND(&n, graph.xadj.data(), graph.adjncy.data(), weight.data(),
                                  options, perm.data(), invp.data());
  if (status == METIS_ERROR_MEMORY)
    throw MemoryFailure{static_cast<double>(graph.adjncy.size()) * sizeof(idx_t), "ordering"};
  return status == METIS_OK;
}

bool take_order(int neqns, const int* user_perm, Vector<int>& perm, Vector<int>& invp) {
  if (user_perm == nullptr) return false;
  perm = Vector<int>(neqns, "the order of the equations");
  invp = Vector<int>(neqns, "the order of the equations");
  for (int k = 1; k <= neqns; ++k) {
    const int old = user_perm[k - 1];
    if (old < 1 || old > neqns || invp(old) != 0) return false;
    perm(k) = old;
    invp(old) = k;
  }
  return true;
}

}  // namespace zelvo
