// CHOLMOD, supernodal L L', with its METIS ordering or the one handed over.
#include <cholmod.h>

#include <algorithm>

#include "peers.h"

namespace zelvo {

namespace {

struct Cholmod {
  cholmod_common c;
  cholmod_factor* L = nullptr;
  Vector<int> p, i, order;
};
Cholmod own_order, given_order;

// The upper triangle by rows is the lower one by columns.
cholmod_sparse view(Cholmod& s, const Bridge& b) {
  cholmod_sparse A{};
  A.nrow = A.ncol = static_cast<std::size_t>(b.pattern().n);
  A.nzmax = static_cast<std::size_t>(b.pattern().nnz);
  A.p = s.p.data();
  A.i = s.i.data();
  A.x = const_cast<double*>(b.K.values.data());
  A.stype = -1;
  A.itype = CHOLMOD_INT;
  A.xtype = CHOLMOD_REAL;
  A.dtype = CHOLMOD_DOUBLE;
  A.sorted = A.packed = 1;
  return A;
}

Vector<int> from_zero(const int* v, int n) {
  Vector<int> out(n, "a copy", UNINITIALIZED);
  std::transform(v, v + n, out.begin(), [](int x) { return x - 1; });
  return out;
}

void prepare_cholmod(void* state, const Bridge& b, const int* order) {
  Cholmod& s = *static_cast<Cholmod*>(state);
  cholmod_start(&s.c);
  s.c.supernodal = CHOLMOD_SUPERNODAL;
  s.c.nmethods = 1;
  s.c.method[0].ordering = order ? CHOLMOD_GIVEN : CHOLMOD_METIS;
  s.c.postorder = 1;
  s.p = from_zero(b.pattern().ia.data(), b.pattern().n + 1);
  s.i = from_zero(b.pattern().ja.data(), b.pattern().nnz);
  s.order = Vector<int>();
  if (order) s.order = from_zero(order, b.pattern().n);
}

void analyse_cholmod(void* state, const Bridge& b) {
  Cholmod& s = *static_cast<Cholmod*>(state);
  cholmod_sparse A = view(s, b);
  s.L = cholmod_analyze_p(&A, s.order.size() > 0 ? s.order.data() : nullptr, nullptr, 0, &s.c);
}

void factor_cholmod(void* state, const Bridge& b) {
  Cholmod& s = *static_cast<Cholmod*>(state);
  cholmod_sparse A = view(s, b);
  cholmod_factorize(&A, s.L, &s.c);
}

void solve_cholmod(void* state, const Bridge& b, double* x) {
  Cholmod& s = *static_cast<Cholmod*>(state);
  cholmod_dense f{};
  f.nrow = f.d = f.nzmax = static_cast<std::size_t>(b.pattern().n);
  f.ncol = 1;
  f.x = const_cast<double*>(b.F.data());
  f.xtype = CHOLMOD_REAL;
  f.dtype = CHOLMOD_DOUBLE;
  cholmod_dense* u = cholmod_solve(CHOLMOD_A, s.L, &f, &s.c);
  std::copy_n(static_cast<double*>(u->x), b.pattern().n, x);
  cholmod_free_dense(&u, &s.c);
}

void release_cholmod(void* state) {
  Cholmod& s = *static_cast<Cholmod*>(state);
  cholmod_free_factor(&s.L, &s.c);
  cholmod_finish(&s.c);
  s = Cholmod{};
}

}  // namespace

Peer cholmod(bool takes_order) {
  return {takes_order ? "CHOLMOD, compressed order" : "CHOLMOD, own METIS",
          takes_order,
          takes_order ? &given_order : &own_order,
          prepare_cholmod,
          analyse_cholmod,
          factor_cholmod,
          solve_cholmod,
          release_cholmod};
}

}  // namespace zelvo
