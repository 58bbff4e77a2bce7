#include "sparse/supertree.h"

#include <algorithm>

namespace zelvo {

static std::int64_t first_below(const FactorStructure& f, int J) {
  return f.xlindx(J) + (f.xsuper(J + 1) - f.xsuper(J));
}

// Calls visit(target supernode, rows) for each run of rows below the block of K in one supernode.
template <class Visit>
static void for_each_run(const FactorStructure& f, int K, Visit&& visit) {
  const std::int64_t end = f.xlindx(K + 1);
  for (std::int64_t k = first_below(f, K); k < end;) {
    const int J = f.snode(f.lindx(k)), beyond = f.xsuper(J + 1);
    const std::int64_t start = k;
    while (k < end && f.lindx(k) < beyond) ++k;
    if (!visit(J, static_cast<int>(k - start))) return;
  }
}

// Room for the largest update that goes through the temporary block: twice the largest trapezoid
// of L rows by w columns, so that the whole rectangle fits. A target whose rows are no more than
// the L rows left is updated in place, and so is a single last row.
static std::int64_t largest_update(const FactorStructure& f) {
  std::int64_t s = 0;
  for (int K = f.nsuper; K >= 1; --K) {
    std::int64_t L = f.xlindx(K + 1) - first_below(f, K);
    if (L * (L + 1) / 2 <= s) continue;
    for_each_run(f, K, [&](int J, int w) {
      const bool last_row_alone = L == 1;
      if (!last_row_alone && f.xlindx(J + 1) - f.xlindx(J) > L) {
        s = std::max(s, L * w - std::int64_t{w - 1} * w / 2);
      }
      L -= w;
      return L * (L + 1) / 2 > s;
    });
  }
  return 2 * s;
}

// snorder: the leaves, then every supernode as soon as the last of its children has been passed.
static void order_upward(FactorStructure& f, const Vector<int>& children) {
  f.snorder = Vector<int>(f.nsuper, "order of the supernodes", UNINITIALIZED);
  Vector<int> left(children);
  int n = 0;
  for (int J = 1; J <= f.nsuper; ++J) {
    if (left(J) == 0) f.snorder(++n) = J;
  }
  for (int k = 1; k <= n; ++k) {
    const int p = f.sparent(f.snorder(k));
    if (p != 0 && --left(p) == 0) f.snorder(++n) = p;
  }
  assert(n == f.nsuper);
}

// topdown: the roots from the highest number down, then the children of each supernode reached.
static void order_downward(FactorStructure& f) {
  f.topdown = Vector<int>(f.nsuper, "order of the supernodes", UNINITIALIZED);
  int n = 0;
  for (int J = f.nsuper; J >= 1; --J) {
    if (f.sparent(J) == 0) f.topdown(++n) = J;
  }
  for (int k = 1; k <= n; ++k) {
    const int J = f.topdown(k);
    for (int c = f.xchild(J); c < f.xchild(J + 1); ++c) f.topdown(++n) = f.child(c);
  }
  assert(n == f.nsuper);
}

void supernode_tree(FactorStructure& f) {
  f.sparent = Vector<int>(f.nsuper, "supernodal tree");
  f.ncolupd = Vector<int>(f.nsuper, "updates per supernode");
  Vector<int> children(f.nsuper, "supernodal tree");
  for (int K = 1; K <= f.nsuper; ++K) {
    if (first_below(f, K) < f.xlindx(K + 1)) {
      f.sparent(K) = f.snode(f.lindx(first_below(f, K)));
      ++children(f.sparent(K));
    }
    for_each_run(f, K, [&](int J, int) { return ++f.ncolupd(J) > 0; });
  }
  f.xchild = Vector<int>(f.nsuper + 1, "supernodal tree", UNINITIALIZED);
  f.child = Vector<int>(f.nsuper, "supernodal tree");
  f.xchild(1) = 1;
  for (int J = 1; J <= f.nsuper; ++J) f.xchild(J + 1) = f.xchild(J) + children(J);
  Vector<int> at(f.xchild);
  for (int K = 1; K <= f.nsuper; ++K) {
    if (f.sparent(K) != 0) f.child(at(f.sparent(K))++) = K;
  }
  order_upward(f, children);
  order_downward(f);
  f.update_size = largest_update(f);
}

}  // namespace zelvo
