#include "sparse/numeric.h"

#include <algorithm>
#include <cstring>

#include "sparse/dense_kernels.h"

namespace zelvo {

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
// before less its columns: a chain, target and source of updates as a whole.
struct Chain {
  int first, last;  // supernodes
  int begin, end;   // columns
  int r;            // rows of its first column
};

bool continues(const FactorStructure& s, int J) {
  const auto rows = [&](int K) { return s.xlindx(K + 1) - s.xlindx(K); };
  return s.sparent(J) == J + 1 && rows(J + 1) == rows(J) - (s.xsuper(J + 1) - s.xsuper(J));
}

Chain chain_from(const FactorStructure& s, int J) {
  int last = J;
  while (continues(s, last)) ++last;
  const auto r = static_cast<int>(s.xlindx(J + 1) - s.xlindx(J));
  return {J, last, s.xsuper(J), s.xsuper(last + 1) - 1, r};
}

// Makes the chain the target: its columns side by side, in which the rows of its first supernode,
// from 0, have the same numbers everywhere.
void set_target(const FactorStructure& s, const Chain& t, NumericWork& w) {
  const int* row = s.lindx.data() + s.xlindx(t.first) - 1;
  for (int q = 0; q < t.r; ++q) w.indmap(row[q]) = t.r - 1 - q;
  double** column = w.column.data();
  for (int J = t.first; J <= t.last; ++J) {
    const Supernode j = supernode(s, J, w.lnz);
    for (int q = 0; q < j.c; ++q) *column++ = j.p + j.ld() * q - (j.f - t.begin);
  }
}

// Subtracts L2 D L1' from the target, D = 1 for Cholesky: L2 holds the last n rows of the supernodes
// K to last, pieces of one chain, and L1 the first m of these.
void subtract(const FactorStructure& s, int K, int last, int n, int m, const int* place, int shift,
              bool ldl, NumericWork& w) {
  UpdatePiece* piece = w.pieces.data();
  for (int q = K; q <= last; ++q) {
    const Supernode k = supernode(s, q, w.lnz);
    piece[q - K] = {k.p + (k.r - n), k.ld(), k.c, ldl ? k.p : nullptr, k.ld() + 1};
  }
  dense_kernels().update(w.column.data(), place, shift, piece, last - K + 1, n, m, w.packed.data());
}

// Applies what K, the last of a chain, contributes to the target t in whose supernode J its unused
// rows begin, and puts it on its next list.
int apply_update(const FactorStructure& s, int K, int J, const Chain& t, bool ldl, NumericWork& w) {
  const Supernode k = supernode(s, K, w.lnz);
  const int n = w.remaining(K), bottom = t.r - 1;
  const int* row = k.row + (k.r - n);
  int m = 1, in_first = 1, first = K;
  while (m < n && row[m] <= t.end) in_first += row[m++] < s.xsuper(J + 1);
  while (first > 1 && continues(s, first - 1)) --first;
  const int* place = nullptr;
  if (w.indmap(row[0]) - w.indmap(row[n - 1]) != n - 1) {  // not consecutive in the target
    if (std::int64_t{n} * in_first > w.temp_size) return FACTOR_TEMP_SMALL;
    for (int i = 0; i < n; ++i) w.place(i + 1) = bottom - w.indmap(row[i]);
    place = w.place.data();
  }
  subtract(s, first, K, n, m, place, bottom - w.indmap(row[0]), ldl, w);
  wait_for_target(s, K, k, n - m, w);
  return FACTOR_DONE;
}

// All updates of the target by the chains that wait for one of its supernodes. What they contribute
// to its other supernodes is applied at once, while they are at hand.
int update_chain(const FactorStructure& s, const Chain& t, bool ldl, NumericWork& w) {
  for (int J = t.first; J <= t.last; ++J)
    for (int K = w.head(J), next; K != 0; K = next) {
      next = w.link(K);
      if (const int fault = apply_update(s, K, J, t, ldl, w); fault != FACTOR_DONE) return fault;
    }
  return FACTOR_DONE;
}

// Factors the supernodes J to last of the target, by halves: so that most of the updates among them
// have many terms.
int factor_chain(const FactorStructure& s, int J, int last, const Chain& t, bool ldl,
                 NumericWork& w) {
  if (J == last) {
    const Supernode j = supernode(s, J, w.lnz);
    const int fault = dense_kernels().factor_panel(j.p, j.r, j.r, j.c, ldl, w.packed.data());
    return fault != 0 ? FACTOR_BAD_PIVOT : FACTOR_DONE;
  }
  const int half = (J + last) / 2;
  if (const int fault = factor_chain(s, J, half, t, ldl, w); fault != FACTOR_DONE) return fault;
  const int from = s.xsuper(half + 1), n = t.r - (from - t.begin), m = s.xsuper(last + 1) - from;
  subtract(s, J, half, n, m, nullptr, from - t.begin, ldl, w);
  return factor_chain(s, half + 1, last, t, ldl, w);
}

// Chains are taken in ascending order. It is a postorder of their tree, so that most updates come
// from rectangles just made and still in the caches; level by level (snorder) is slower.
int factor(const FactorStructure& s, const double* a, bool ldl, NumericWork& w) {
  scatter_a(s, a, w.lnz);
  std::fill_n(w.head.data(), s.nsuper, 0);
  for (int J = 1; J <= s.nsuper;) {
    const Chain t = chain_from(s, J);
    set_target(s, t, w);
    if (const int fault = update_chain(s, t, ldl, w); fault != FACTOR_DONE) return fault;
    if (const int fault = factor_chain(s, J, t.last, t, ldl, w); fault != FACTOR_DONE) return fault;
    const Supernode end = supernode(s, t.last, w.lnz);
    wait_for_target(s, t.last, end, end.r - end.c, w);
    J = t.last + 1;
  }
  return FACTOR_DONE;
}

void solve(const FactorStructure& s, bool ldl, NumericWork& work, const double* b, double* x) {
  const DenseKernels& kernels = dense_kernels();
  double* w = work.work.data();  // right-hand side in new order
  double* z = w + s.neqns;       // its rows of one supernode
  for (int i = 1; i <= s.neqns; ++i) w[i - 1] = b[s.perm(i) - 1];
  for (int J = 1; J <= s.nsuper; ++J) {
    const Supernode j = supernode(s, J, work.lnz);
    std::copy_n(w + j.f - 1, j.c, z);
    std::fill_n(z + j.c, j.r - j.c, 0.0);
    kernels.forward_panel(j.p, j.r, j.r, j.c, ldl, z);
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
    kernels.backward_panel(j.p, j.r, j.r, j.c, ldl, z);
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
  const DenseKernels& kernels = dense_kernels();
  const std::int64_t packed = std::max(kernels.update_work(s.neqns, c), kernels.panel_work(c));
  reserve(w.lnz, s.factor_size + pad, "the factor");
  w.temp_size = temp_size;
  reserve(w.packed, packed, "the packed operands");
  reserve(w.pieces, s.nsuper, "the pieces of an update");
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

}  // namespace zelvo
