#include "sparse/supertree.h"

namespace zelvo {

namespace {

std::int64_t first_below(const FactorStructure& f, int J) {
  return f.xlindx(J) + (f.xsuper(J + 1) - f.xsuper(J));
}

// Counts K as an update of each supernode that holds rows below the block of K.
void count_updates(const FactorStructure& f, int K, Vector<int>& ncolupd) {
  int target = 0;
  for (std::int64_t k = first_below(f, K); k < f.xlindx(K + 1); ++k) {
    const int J = f.snode(f.lindx(k));
    ncolupd(J) += J != target;
    target = J;
  }
}

// xchild and child from sparent and the number of children of each supernode.
void list_children(const Vector<int>& sparent, const Vector<int>& children, TreeSchedule& t) {
  const auto n = static_cast<int>(sparent.size());
  t.xchild = Vector<int>(n + 1, "supernodal tree", UNINITIALIZED);
  t.child = Vector<int>(n, "supernodal tree");
  t.xchild(1) = 1;
  for (int J = 1; J <= n; ++J) t.xchild(J + 1) = t.xchild(J) + children(J);
  Vector<int> at(t.xchild);
  for (int K = 1; K <= n; ++K) {
    if (sparent(K) != 0) t.child(at(sparent(K))++) = K;
  }
}

// snorder: the leaves, then every supernode as soon as the last of its children has been passed.
void order_upward(const Vector<int>& sparent, const Vector<int>& children, TreeSchedule& t) {
  const auto nsuper = static_cast<int>(sparent.size());
  t.snorder = Vector<int>(nsuper, "order of the supernodes", UNINITIALIZED);
  Vector<int> left(children);
  int n = 0;
  for (int J = 1; J <= nsuper; ++J) {
    if (left(J) == 0) t.snorder(++n) = J;
  }
  for (int k = 1; k <= n; ++k) {
    const int p = sparent(t.snorder(k));
    if (p != 0 && --left(p) == 0) t.snorder(++n) = p;
  }
  assert(n == nsuper);
}

// topdown: the roots from the highest number down, then the children of each supernode reached.
void order_downward(const Vector<int>& sparent, TreeSchedule& t) {
  const auto nsuper = static_cast<int>(sparent.size());
  t.topdown = Vector<int>(nsuper, "order of the supernodes", UNINITIALIZED);
  int n = 0;
  for (int J = nsuper; J >= 1; --J) {
    if (sparent(J) == 0) t.topdown(++n) = J;
  }
  for (int k = 1; k <= n; ++k) {
    const int J = t.topdown(k);
    for (int c = t.xchild(J); c < t.xchild(J + 1); ++c) t.topdown(++n) = t.child(c);
  }
  assert(n == nsuper);
}

}  // namespace

void supernode_tree(FactorStructure& f) {
  assert(f.xsuper.size() == f.nsuper + 1 && f.xlindx.size() == f.nsuper + 1);
  assert(f.lindx.size() == f.xlindx(f.nsuper + 1) - 1);
  f.sparent = Vector<int>(f.nsuper, "supernodal tree");
  f.schedule.ncolupd = Vector<int>(f.nsuper, "updates per supernode");
  Vector<int> children(f.nsuper, "supernodal tree");
  for (int K = 1; K <= f.nsuper; ++K) {
    if (first_below(f, K) < f.xlindx(K + 1)) {
      f.sparent(K) = f.snode(f.lindx(first_below(f, K)));
      ++children(f.sparent(K));
    }
    count_updates(f, K, f.schedule.ncolupd);
  }
  list_children(f.sparent, children, f.schedule);
  order_upward(f.sparent, children, f.schedule);
  order_downward(f.sparent, f.schedule);
}

}  // namespace zelvo
