// MUMPS, sequential, positive definite, with the order handed over.
#include <dmumps_c.h>

#include <algorithm>

#include "peers.h"

namespace zelvo {

namespace {

struct Mumps {
  DMUMPS_STRUC_C id{};
  Vector<int> row, col, place;
  Vector<double> values;
};
Mumps it;

constexpr int USE_COMM_WORLD = -987654;

void job(int n) {
  it.id.job = n;
  dmumps_c(&it.id);
}

void prepare_mumps(void*, const Bridge& b, const int* order) {
  const MatrixPattern& p = b.pattern();
  it.id.par = 1;
  it.id.sym = 1;
  it.id.comm_fortran = USE_COMM_WORLD;
  job(-1);
  std::fill_n(it.id.icntl, 4, 0);  // silent
  it.row = Vector<int>(p.nnz);
  for (int i = 1; i <= p.n; ++i) std::fill(&it.row(p.ia(i)), &it.row(p.ia(i + 1) - 1) + 1, i);
  it.col = p.ja;
  it.values = b.K.values;
  it.place = Vector<int>(p.n);
  for (int i = 1; i <= p.n; ++i) it.place(order[i - 1]) = i;
  it.id.n = p.n;
  it.id.nnz = p.nnz;
  it.id.irn = it.row.data();
  it.id.jcn = it.col.data();
  it.id.a = it.values.data();
  it.id.perm_in = it.place.data();
  it.id.icntl[6] = 1;   // ordering: perm_in
  it.id.icntl[27] = 1;  // sequential analysis
}

void analyse_mumps(void*, const Bridge&) { job(1); }

void factor_mumps(void*, const Bridge&) { job(2); }

void solve_mumps(void*, const Bridge& b, double* x) {
  std::copy_n(b.F.data(), b.pattern().n, x);
  it.id.rhs = x;
  job(3);
}

void release_mumps(void*) {
  job(-2);
  it = Mumps{};
}

}  // namespace

Peer mumps() {
  return {"MUMPS, compressed order",
          true,
          nullptr,
          prepare_mumps,
          analyse_mumps,
          factor_mumps,
          solve_mumps,
          release_mumps};
}

}  // namespace zelvo
