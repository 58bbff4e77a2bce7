#include <cstdlib>

#include "peers.h"
#include "sparse/analysis.h"
#include "sparse/numeric.h"
#include "sparse/ordering.h"

namespace zelvo {

namespace {

struct Own {
  FactorStructure s;
  NumericWork w;
};
Own own;

void prepare_own(void*, const Bridge&, const int*) {}
void analyse_own(void*, const Bridge& b) {
  analyse(b.pattern().n, b.pattern().nnz, b.pattern().ia.data(), b.pattern().ja.data(), nullptr,
          own.s);
}
void factor_own(void*, const Bridge& b) {
  reserve_numeric(own.s, own.w);
  if (factor_cholesky(own.s, b.K.values.data(), own.w) != FACTOR_DONE) std::abort();
}
void solve_own(void*, const Bridge& b, double* x) {
  solve_cholesky(own.s, own.w, b.F.data(), 1, x);
}
void release_own(void*) { own = Own{}; }

}  // namespace

Peer own_solver() {
  return {"this program", false,      nullptr,   prepare_own,
          analyse_own,    factor_own, solve_own, release_own};
}

Vector<int> compressed_order(const Bridge& b) {
  Groups groups;
  Graph graph;
  Vector<int> perm, invp;
  build_graph(b.pattern().n, b.pattern().ia.data(), b.pattern().ja.data(), true, groups, graph);
  dissect(graph, groups, perm, invp);
  Vector<int> order(b.pattern().n);
  std::int64_t at = 0;
  for (int v : perm)
    for (int t = groups.xmember(v); t < groups.xmember(v + 1); ++t) order(++at) = groups.member(t);
  return order;
}

}  // namespace zelvo
