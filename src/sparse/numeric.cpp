#include "sparse/numeric.h"

#include <algorithm>
#include <cstring>

#include "sparse/dense_kernels.h"

namespace {

// A supernode as a dense rectangle: columns f to f + c - 1, rows row[0..r-1].
struct Supernode {
  int f, c, r;
  const int* row;
  double* p;
  std::ptrdiff_t ld() const { return r; }
};

Supernode supernode(const FactorStructure& s, int J, Vector<double>& lnz) {
  const int f = s.xsuper(J), c = s.xsuper(J + 1) - f;
  const int r = static_cast<int>(s.xlindx(J + 1) - s.xlindx(J));
  return {f, c, r, s.lindx.data() + s.xlindx(J) - 1, lnz.data() + s.xlnz(f) - 1};
}

// Puts K, of whose rows n are unused, on the list of the supernode that holds the first of them.
void wait_for_target(const FactorStructure& s, int K, const Supernode& k, int n, NumericWork& w) {
  w.remaining(K) = n;
  if (n == 0) return;
  const int target = s.snode(k.row[k.r - n]);
  w.link(K) = w.head(target);
  w.head(target) = K;
}

// Supernodes that the panel limit cut from one follow each other, each with the rows of the one
// before less its columns: a chain. Returns the last of the chain that begins with J.
int last_of_chain(const FactorStructure& s, int J) {
  const auto rows = [&](int K) { return s.xlindx(K + 1) - s.xlindx(K); };
  while (s.sparent(J) == J + 1 && rows(J + 1) == rows(J) - (s.xsuper(J + 1) - s.xsuper(J))) ++J;
  return J;
}

// Makes the chain from J to last the target: its columns side by side, in which the rows of J, from
// 0, have the same numbers everywhere.
void set_target(const FactorStructure& s, int J, int last, NumericWork& w) {
  const Supernode j = supernode(s, J, w.lnz);
  for (int q = 0; q < j.r; ++q) w.indmap(j.row[q]) = j.r - 1 - q;
  double** column = w.column.data();
  for (int K = J; K <= last; ++K) {
    const Supernode k = supernode(s, K, w.lnz);
    for (int q = 0; q < k.c; ++q) *column++ = k.p + k.ld() * q - (k.f - j.f);
  }
}

// Applies what K, with n unused rows, contributes to the target, a chain from J to column `end`:
//   L2 = L(the n rows,       columns of K)   n x K.c
//   L1 = L(the first m rows, columns of K)   the top of L2; these rows are columns of the target
// target(rows of L2, columns of L1) -= L2 D L1', D = 1 for Cholesky. Returns m.
int apply_update(const Supernode& K, int n, const Supernode& J, int end, bool ldl, NumericWork& w) {
  const auto update = have_avx2() ? kernels_avx2::update : kernels_plain::update;
  const int* row = K.row + (K.r - n);
  const double* L2 = K.p + (K.r - n);
  double* d = nullptr;
  if (ldl) {
    d = w.pivots.data();
    for (int q = 0; q < K.c; ++q) d[q] = K.p[q * (K.ld() + 1)];
  }
  int m = 1, in_first = 1;
  while (m < n && row[m] <= end) in_first += row[m++] < J.f + J.c;
  const int bottom = J.r - 1;
  const int* place = nullptr;
  if (w.indmap(row[0]) - w.indmap(row[n - 1]) != n - 1) {  // not consecutive in the target
    if (std::int64_t{n} * in_first > w.temp_size) return FACTOR_TEMP_SMALL;
    for (int i = 0; i < n; ++i) w.place(i + 1) = bottom - w.indmap(row[i]);
    place = w.place.data();
  }
  update(w.column.data(), place, bottom - w.indmap(row[0]), L2, K.ld(), d, n, m, K.c,
         w.packed.data());
  return m;
}

// All updates by the supernodes that wait for J. What they contribute to the rest of its chain is
// applied at once, while they are at hand.
int update_target(const FactorStructure& s, int J, bool ldl, NumericWork& w) {
  if (w.head(J) == 0) return FACTOR_DONE;
  const Supernode j = supernode(s, J, w.lnz);
  const int last = last_of_chain(s, J), end = s.xsuper(last + 1) - 1;
  set_target(s, J, last, w);
  for (int K = w.head(J), next; K != 0; K = next) {
    next = w.link(K);
    const Supernode k = supernode(s, K, w.lnz);
    const int m = apply_update(k, w.remaining(K), j, end, ldl, w);
    if (m < 0) return m;
    wait_for_target(s, K, k, w.remaining(K) - m, w);
  }
  return FACTOR_DONE;
}

// Supernodes are taken in ascending order. It is a postorder of their tree, so that most updates
// come from rectangles just made and still in the caches; level by level (snorder) is slower.
int factor(const FactorStructure& s, const double* a, bool ldl, NumericWork& w) {
  const auto factor_panel = have_avx2() ? kernels_avx2::factor_panel : kernels_plain::factor_panel;
  scatter_a(s, a, w.lnz);
  std::fill_n(w.head.data(), s.nsuper, 0);
  for (int J = 1; J <= s.nsuper; ++J) {
    if (const int fault = update_target(s, J, ldl, w); fault != FACTOR_DONE) return fault;
    const Supernode j = supernode(s, J, w.lnz);
    if (factor_panel(j.p, j.r, j.r, j.c, ldl, w.packed.data()) != 0) return FACTOR_BAD_PIVOT;
    wait_for_target(s, J, j, j.r - j.c, w);
  }
  return FACTOR_DONE;
}

void solve(const FactorStructure& s, bool ldl, NumericWork& work, const double* b, double* x) {
  const auto forward = have_avx2() ? kernels_avx2::forward_panel : kernels_plain::forward_panel;
  const auto backward = have_avx2() ? kernels_avx2::backward_panel : kernels_plain::backward_panel;
  double* w = work.work.data();  // right-hand side in new order
  double* z = w + s.neqns;       // its rows of one supernode
  for (int i = 1; i <= s.neqns; ++i) w[i - 1] = b[s.perm(i) - 1];
  for (int J = 1; J <= s.nsuper; ++J) {
    const Supernode j = supernode(s, J, work.lnz);
    std::copy_n(w + j.f - 1, j.c, z);
    std::fill_n(z + j.c, j.r - j.c, 0.0);
    forward(j.p, j.r, j.r, j.c, ldl, z);
    std::copy_n(z, j.c, w + j.f - 1);
    for (int i = j.c; i < j.r; ++i) w[j.row[i] - 1] += z[i];
  }
  if (ldl)
    for (int J = 1; J <= s.nsuper; ++J) {
      const Supernode j = supernode(s, J, work.lnz);
      for (int q = 0; q < j.c; ++q) w[j.f + q - 1] /= j.p[q * (j.ld() + 1)];
    }
  // Descending, so that each follows its parent, gives the sums of topdown and walks the factor in
  // one direction, which the memory likes better.
  for (int J = s.nsuper; J >= 1; --J) {
    const Supernode j = supernode(s, J, work.lnz);
    for (int q = 0; q < j.r; ++q) z[q] = w[j.row[q] - 1];
    backward(j.p, j.r, j.r, j.c, ldl, z);
    std::copy_n(z, j.c, w + j.f - 1);
  }
  for (int i = 1; i <= s.neqns; ++i) x[s.perm(i) - 1] = w[i - 1];
}

template <class T>
void reserve(Vector<T>& v, std::int64_t n, const char* what) {
  if (v.size() < n) {
    v = Vector<T>();  // give the old one back first
    v = Vector<T>(n, what, UNINITIALIZED);
  }
}

}  // namespace

void reserve_numeric(const FactorStructure& s, std::int64_t temp_size, NumericWork& w) {
  const std::int64_t pad = MAX_LANES - 1;  // what the kernels may read behind an operand
  const int c = s.max_cols;
  const std::int64_t kernels =
      have_avx2() ? std::max(kernels_avx2::update_work(s.neqns, c), kernels_avx2::panel_work(c))
                  : std::max(kernels_plain::update_work(s.neqns, c), kernels_plain::panel_work(c));
  reserve(w.lnz, s.factor_size + pad, "the factor");
  w.temp_size = temp_size;
  reserve(w.packed, kernels, "the packed operands");
  reserve(w.pivots, c, "the pivots of a supernode");
  reserve(w.place, s.max_rows, "the row map");
  reserve(w.column, s.neqns, "the column map");
  reserve(w.work, std::int64_t{s.neqns} + s.max_rows + pad, "the solve work");
  reserve(w.indmap, s.neqns, "the row map");
  reserve(w.link, s.nsuper, "the update lists");
  reserve(w.head, s.nsuper, "the update lists");
  reserve(w.remaining, s.nsuper, "the update lists");
}

void scatter_a(const FactorStructure& s, const double* a, Vector<double>& lnz) {
  std::memset(lnz.data(), 0, static_cast<std::size_t>(s.factor_size) * sizeof(double));
  const std::int64_t* luperm = s.luperm.data();
  for (std::int64_t k = 0; k < s.luperm.size(); ++k) lnz(luperm[k]) = a[k];
}

int factor_cholesky(const FactorStructure& s, const double* a, NumericWork& w) {
  return factor(s, a, false, w);
}

int factor_ldl(const FactorStructure& s, const double* a, NumericWork& w) {
  return factor(s, a, true, w);
}

void solve_cholesky(const FactorStructure& s, NumericWork& w, const double* b, int nrhs,
                    double* x) {
  for (int q = 0; q < nrhs; ++q)
    solve(s, false, w, b + std::ptrdiff_t{s.neqns} * q, x + std::ptrdiff_t{s.neqns} * q);
}

void solve_ldl(const FactorStructure& s, NumericWork& w, const double* b, int nrhs, double* x) {
  for (int q = 0; q < nrhs; ++q)
    solve(s, true, w, b + std::ptrdiff_t{s.neqns} * q, x + std::ptrdiff_t{s.neqns} * q);
}
