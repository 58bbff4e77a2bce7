#include "sparse/numeric.h"

#include <algorithm>
#include <cstring>

namespace zelvo {

namespace {

// A supernode as a dense rectangle: c columns of the factor from f on, at its rows row[0..r-1].
//   L = [ L1 ; L2 ]   r x c
//   L1                c x c, the diagonal block: its lower triangle, for L D L' with D on its diagonal
//   L2          (r-c) x c, the rows below
struct Supernode {
  int f;
  const int* row;
  MatrixView<double> L;
};

Supernode supernode(const FactorStructure& s, int J, Vector<double>& lnz) {
  const int f = s.xsuper(J), c = s.xsuper(J + 1) - f;
  const int r = static_cast<int>(s.xlindx(J + 1) - s.xlindx(J));
  return {f, s.lindx.data() + s.xlindx(J) - 1, {lnz.data() + s.xlnz(f) - 1, r, c, r}};
}

// The last n rows of a rectangle.
MatrixView<double> last_rows(const MatrixView<double>& L, int n) {
  assert(0 <= n && n <= L.rows);
  return {L.p + (L.rows - n), n, L.cols, L.ld};
}

// Puts K, of whose rows n are unused, on the list of the supernode that holds the first of them.
void wait_for_target(const FactorStructure& s, int K, const Supernode& k, int n, NumericWork& w) {
  w.remaining(K) = n;
  if (n == 0) return;
  const int target = s.snode(k.row[k.L.rows - n]);
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
    for (int q = 1; q <= j.L.cols; ++q) *column++ = &j.L(1, q) - (j.f - t.begin);
  }
}

// The update of the target by the supernodes K to last, pieces of one chain with k columns in all. Of
// their last n rows the first m are columns of the target:
//   L1 = L(those m rows,      the k columns)   m x k
//   L2 = L(the n-m rows left, the k columns)   (n-m) x k, under L1
// and at these rows and columns of the target, with D = 1 for Cholesky,
//   C1 -= L1 D L1'   m x m, its lower triangle
//   C2 -= L2 D L1'   (n-m) x m
// The kernel takes [ L1 ; L2 ] as one operand. place and shift say where C lies, as it takes them.
void subtract(const FactorStructure& s, int K, int last, int n, int m, const int* place, int shift,
              bool ldl, NumericWork& w) {
  assert(1 <= m && m <= n);
  UpdatePiece* piece = w.pieces.data();
  for (int q = K; q <= last; ++q) {
    const MatrixView<double> L = supernode(s, q, w.lnz).L, L12 = last_rows(L, n);
    piece[q - K] = {L12.p, L12.ld, L12.cols, ldl ? L.p : nullptr, std::ptrdiff_t{L.ld} + 1};
  }
  dense_kernels().update(w.column.data(), place, shift, piece, last - K + 1, n, m, w.packed.data());
}

// Applies what the chain that ends with K contributes to the target t, in which its unused rows
// begin, and puts it on its next list.
void apply_update(const FactorStructure& s, int K, const Chain& t, bool ldl, NumericWork& w) {
  const Supernode k = supernode(s, K, w.lnz);
  const int n = w.remaining(K), bottom = t.r - 1;
  const int* row = k.row + (k.L.rows - n);
  int m = 1, first = K;
  while (m < n && row[m] <= t.end) ++m;
  while (first > 1 && continues(s, first - 1)) --first;
  const int* place = nullptr;
  if (w.indmap(row[0]) - w.indmap(row[n - 1]) != n - 1) {  // not consecutive in the target
    for (int i = 0; i < n; ++i) w.place(i + 1) = bottom - w.indmap(row[i]);
    place = w.place.data();
  }
  subtract(s, first, K, n, m, place, bottom - w.indmap(row[0]), ldl, w);
  wait_for_target(s, K, k, n - m, w);
}

// All updates of the target by the chains that wait for one of its supernodes. What they contribute
// to its other supernodes is applied at once, while they are at hand.
void update_chain(const FactorStructure& s, const Chain& t, bool ldl, NumericWork& w) {
  for (int J = t.first; J <= t.last; ++J)
    for (int K = w.head(J), next; K != 0; K = next) {
      next = w.link(K);
      apply_update(s, K, t, ldl, w);
    }
}

// Factors the supernodes J to last of the target, by halves: so that most of the updates among them
// have many terms. One alone: L1 := its factor, L2 := L2 L1^-T, for L D L' L2 L1^-T D^-1.
int factor_chain(const FactorStructure& s, int J, int last, const Chain& t, bool ldl,
                 NumericWork& w) {
  if (J == last) {
    const MatrixView<double> L = supernode(s, J, w.lnz).L;
    const int fault = dense_kernels().factor_panel(L.p, L.ld, L.rows, L.cols, ldl, w.packed.data());
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
  assert(w.column.size() >= s.neqns && w.indmap.size() >= s.neqns && w.head.size() >= s.nsuper);
  scatter_a(s, a, w.lnz);
  std::fill_n(w.head.data(), s.nsuper, 0);
  for (int J = 1; J <= s.nsuper;) {
    const Chain t = chain_from(s, J);
    set_target(s, t, w);
    update_chain(s, t, ldl, w);
    if (const int fault = factor_chain(s, J, t.last, t, ldl, w); fault != FACTOR_DONE) return fault;
    const Supernode end = supernode(s, t.last, w.lnz);
    wait_for_target(s, t.last, end, end.L.rows - end.L.cols, w);
    J = t.last + 1;
  }
  return FACTOR_DONE;
}

// With z the rows of one supernode and w the right-hand side in new order,
//   forward    z1 := L1^-1 z1, then z2 := z2 - L2 z1, which is added to w
//   diagonal   w := D^-1 w, for L D L' only
//   backward   z1 := L1^-T (z1 - L2' z2)
void solve(const FactorStructure& s, bool ldl, NumericWork& work, const double* b, double* x) {
  assert(work.lnz.size() >= s.factor_size && work.work.size() >= s.neqns + s.max_rows);
  const DenseKernels& kernels = dense_kernels();
  double* w = work.work.data();
  double* z = w + s.neqns;
  for (int i = 1; i <= s.neqns; ++i) w[i - 1] = b[s.perm(i) - 1];
  for (int J = 1; J <= s.nsuper; ++J) {
    const auto [f, row, L] = supernode(s, J, work.lnz);
    std::copy_n(w + f - 1, L.cols, z);
    std::fill_n(z + L.cols, L.rows - L.cols, 0.0);
    kernels.forward_panel(L.p, L.ld, L.rows, L.cols, ldl, z);
    std::copy_n(z, L.cols, w + f - 1);
    for (int i = L.cols; i < L.rows; ++i) w[row[i] - 1] += z[i];
  }
  if (ldl)
    for (int J = 1; J <= s.nsuper; ++J) {
      const auto [f, row, L] = supernode(s, J, work.lnz);
      for (int q = 1; q <= L.cols; ++q) w[f + q - 2] /= L(q, q);
    }
  // Descending, so that each follows its parent, gives the sums of an order by levels and walks the
  // factor in one direction, which the memory likes better.
  for (int J = s.nsuper; J >= 1; --J) {
    const auto [f, row, L] = supernode(s, J, work.lnz);
    for (int i = 0; i < L.rows; ++i) z[i] = w[row[i] - 1];
    kernels.backward_panel(L.p, L.ld, L.rows, L.cols, ldl, z);
    std::copy_n(z, L.cols, w + f - 1);
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

void reserve_numeric(const FactorStructure& s, NumericWork& w) {
  assert(s.xlnz.size() == s.neqns + 1 && s.sparent.size() == s.nsuper);
  const std::int64_t pad = MAX_LANES - 1;  // what the kernels may read behind an operand
  const DenseKernels& kernels = dense_kernels();
  const std::int64_t packed =
      std::max(kernels.update_work(s.neqns, s.max_cols), kernels.panel_work(s.max_cols));
  reserve(w.lnz, s.factor_size + pad, "the factor");
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
  assert(lnz.size() >= s.factor_size);
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

int negative_diagonals(const FactorStructure& s, NumericWork& w) {
  int negative = 0;
  for (int J = 1; J <= s.nsuper; ++J) {
    const MatrixView<double> L = supernode(s, J, w.lnz).L;
    for (int q = 1; q <= L.cols; ++q) negative += L(q, q) < 0;
  }
  return negative;
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
