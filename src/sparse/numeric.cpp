#include "sparse/numeric.h"

#include <algorithm>
#include <cstring>

#include "sparse/dense_kernels.h"

namespace {

// An update whose rows must be spread is formed this many rows at a time, so that it and the
// operands stay in the second-level cache.
constexpr int STRIP_ROWS = 192;

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

// An update J := J - L2 D L1' by the supernode K: L2 holds its n unused rows, L1 the first m of
// them, which are columns of J.
struct Update {
  const double *L2, *d;  // d: diagonal of K, null for Cholesky
  std::ptrdiff_t ld;
  int n, m, k;
  const int* row;
};

void product(const Update& u, int first, int n, double* c, std::ptrdiff_t ldc, bool set,
             NumericWork& w) {
  const auto kernel = have_avx2() ? kernels_avx2::update : kernels_plain::update;
  kernel(c, ldc, u.L2 + first, u.ld, u.L2, u.ld, u.d, n, u.m, u.k, first, set,
         w.packed.data() + u.k);
}

// The rows of the update lie scattered among the rows of J: strips of the product go to temp and
// from there to J in runs of consecutive rows.
void spread_update(const Update& u, const Supernode& J, NumericWork& w) {
  const auto kernel = have_avx2() ? kernels_avx2::spread : kernels_plain::spread;
  int row[STRIP_ROWS], len[STRIP_ROWS];  // runs: first row in J (from 0), length
  for (int first = 0; first < u.n; first += STRIP_ROWS) {
    const int n = std::min(u.n - first, STRIP_ROWS);
    int nrun = 0;
    for (int i = first; i < first + n; ++i) {
      const int at = J.r - 1 - w.indmap(u.row[i]);
      if (nrun > 0 && row[nrun - 1] + len[nrun - 1] == at) {
        ++len[nrun - 1];
      } else {
        row[nrun] = at;
        len[nrun++] = 1;
      }
    }
    const std::ptrdiff_t ldt = (n + MAX_LANES - 1) / MAX_LANES * MAX_LANES;
    product(u, first, n, w.temp.data(), ldt, true, w);
    for (int j = 0, next; j < u.m; j = next) {  // runs of consecutive columns
      next = j + 1;
      while (next < u.m && u.row[next] - u.row[j] == next - j) ++next;
      kernel(J.p + J.ld() * (u.row[j] - J.f), J.ld(), w.temp.data() + ldt * j, ldt, next - j, nrun,
             row, len);
    }
  }
}

// A supernode of one column: spread at once, without a call per column.
void column_update(const Update& u, const Supernode& J, const Vector<int>& indmap) {
  for (int j = 0; j < u.m; ++j) {
    const double x = u.L2[j] * (u.d == nullptr ? 1.0 : *u.d);
    double* bottom = J.p + J.ld() * (u.row[j] - J.f) + (J.r - 1);
    for (int i = j; i < u.n; ++i) bottom[-indmap(u.row[i])] -= u.L2[i] * x;
  }
}

// Applies what K, with n unused rows, contributes to J; returns how many rows are used up by that,
// or FACTOR_TEMP_SMALL.
int update_supernode(const Supernode& K, int n, const Supernode& J, bool ldl, NumericWork& w) {
  const int used = K.r - n;
  const int* row = K.row + used;
  int m = 1;
  while (m < n && row[m] < J.f + J.c) ++m;
  Update u{K.p + used, nullptr, K.ld(), n, m, K.c, row};
  if (ldl) {
    double* d = w.packed.data();
    for (int q = 0; q < K.c; ++q) d[q] = K.p[q * (K.ld() + 1)];
    u.d = d;
  }
  if (K.c == 1) {
    column_update(u, J, w.indmap);
  } else if (w.indmap(row[0]) - w.indmap(row[n - 1]) == n - 1) {  // consecutive rows of J
    const int at = J.r - 1 - w.indmap(row[0]);
    product(u, 0, n, J.p + at + J.ld() * (row[0] - J.f), J.ld(), false, w);
  } else if (std::int64_t{n} * m > w.temp_size) {
    return FACTOR_TEMP_SMALL;
  } else {
    spread_update(u, J, w);
  }
  return m;
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
// before less its columns. Returns the last of those that begin with J.
int last_of_chain(const FactorStructure& s, int J) {
  const auto rows = [&](int K) { return s.xlindx(K + 1) - s.xlindx(K); };
  while (s.sparent(J) == J + 1 && rows(J + 1) == rows(J) - (s.xsuper(J + 1) - s.xsuper(J))) ++J;
  return J;
}

// All updates by the supernodes that wait for J. What they contribute to the rest of its chain
// follows at once, while they are at hand: counted from the bottom, the rows have the same places.
int update_target(const FactorStructure& s, int J, bool ldl, NumericWork& w) {
  const Supernode j = supernode(s, J, w.lnz);
  const int last = last_of_chain(s, J);
  for (int q = 0; q < j.r; ++q) w.indmap(j.row[q]) = j.r - 1 - q;
  for (int K = w.head(J), next; K != 0; K = next) {
    next = w.link(K);
    const Supernode k = supernode(s, K, w.lnz);
    int n = w.remaining(K);
    for (int target = J; n > 0 && target <= last;) {
      const int m = update_supernode(k, n, supernode(s, target, w.lnz), ldl, w);
      if (m < 0) return m;
      n -= m;
      if (n > 0) target = s.snode(k.row[k.r - n]);
    }
    wait_for_target(s, K, k, n, w);
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
  for (int i = 1; i <= s.nsuper; ++i) {
    const Supernode j = supernode(s, s.topdown(i), work.lnz);
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
  const auto c = s.max_cols;
  const std::int64_t kernels =
      have_avx2() ? std::max(kernels_avx2::update_work(c, c), kernels_avx2::panel_work(c))
                  : std::max(kernels_plain::update_work(c, c), kernels_plain::panel_work(c));
  reserve(w.lnz, s.factor_size + pad, "the factor");
  reserve(w.temp, temp_size + pad * (c + 1), "the update block");
  w.temp_size = temp_size;
  reserve(w.packed, c + kernels, "the packed operands");
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
