#include "matrix/product.h"

#include <algorithm>
#include <utility>

#include "matrix/product_kernels.h"

namespace zelvo {

namespace {

// Row i (from 1) as a row and as a column: adds to y.
void add_row(int i, const double* values, const int* ia, const int* ja, const double* x,
             double* y) {
  const double xi = x[i - 1];
  const int begin = ia[i - 1] - 1, end = ia[i] - 1;
  double sum = values[begin] * xi;  // the diagonal stands first
  for (int t = begin + 1; t < end; ++t) {
    const int c = ja[t] - 1;
    sum += values[t] * x[c];
    y[c] += values[t] * xi;
  }
  y[i - 1] += sum;
}

// Rows i to i+4 of a bundle. Their shared columns lie behind the fifth diagonal.
void add_bundle(const ProductKernels& kernels, int i, const int* ia, const int* columns,
                const double* values, const double* x, double* y) {
  ia += i - 1;
  const double* xi = x + i - 1;
  double* yi = y + i - 1;
  const double* v[BUNDLE];
  for (int r = 0; r < BUNDLE; ++r) v[r] = values + ia[r] - 1 + BUNDLE - r;
  double sums[BUNDLE];
  kernels.bundle(ia[1] - ia[0] - BUNDLE, columns, v, xi, sums, x, y);
  // The triangle on the diagonal.
  for (int r = 0; r < BUNDLE; ++r) {
    const double* d = values + ia[r] - 1 - r;  // d[c]: entry of rows r and c of the bundle
    yi[r] += sums[r] + d[r] * xi[r];
    for (int c = r + 1; c < BUNDLE; ++c) {
      yi[r] += d[c] * xi[c];
      yi[c] += d[c] * xi[r];
    }
  }
}

// Row i+1 has the columns of row i without the diagonal of row i.
bool continues(const int* ia, const int* ja, int i) {
  const int *a = ja + ia[i - 1], *b = ja + ia[i] - 1;  // row i behind its diagonal, row i+1
  const int length = ia[i + 1] - ia[i];
  return ia[i] - ia[i - 1] == length + 1 && std::equal(b, b + length, a);
}

}  // namespace

void sym_matvec(const SymmetricMatrix& A, const double* x, double* y) {
  const MatrixPattern& p = *A.pattern;
  assert(A.values.size() == p.nnz);
  std::fill(y, y + p.n, 0.0);
  for (int i = 1; i <= p.n; ++i) add_row(i, A.values.data(), p.ia.data(), p.ja.data(), x, y);
}

RowBundles find_bundles(std::shared_ptr<const MatrixPattern> pattern) {
  const int n = pattern->n;
  const int *ia = pattern->ia.data(), *ja = pattern->ja.data();
  Vector<int> first(n / BUNDLE, "the row bundles");
  int found = 0;
  std::int64_t entries = 0;  // columns of all bundles
  for (int i = 1; i + BUNDLE - 1 <= n;) {
    int r = i;
    while (r < i + BUNDLE - 1 && continues(ia, ja, r)) ++r;
    if (r == i + BUNDLE - 1) {
      first(++found) = i;
      entries += ia[i] - ia[i - 1] - BUNDLE;
    }
    i = r + 1;
  }
  RowBundles rows{std::move(pattern), Vector<int>(found, "the row bundles", UNINITIALIZED),
                  Vector<int>(entries, "the columns of the row bundles", UNINITIALIZED)};
  std::copy(first.begin(), first.begin() + found, rows.first.begin());
  int* columns = rows.columns.data();
  for (const int i : rows.first)
    columns = std::copy(ja + ia[i - 1] - 1 + BUNDLE, ja + ia[i] - 1, columns);
  return rows;
}

void sym_matvec(const RowBundles& rows, const SymmetricMatrix& A, const double* x, double* y) {
  assert(A.pattern == rows.pattern && A.values.size() == rows.pattern->nnz);
  const ProductKernels& kernels = product_kernels();
  const int n = rows.pattern->n;
  const int *ia = rows.pattern->ia.data(), *ja = rows.pattern->ja.data();
  const double* values = A.values.data();
  std::fill(y, y + n, 0.0);
  const int* columns = rows.columns.data();
  int i = 1;
  for (const int first : rows.first) {
    for (; i < first; ++i) add_row(i, values, ia, ja, x, y);
    add_bundle(kernels, first, ia, columns, values, x, y);
    columns += ia[first] - ia[first - 1] - BUNDLE;
    i = first + BUNDLE;
  }
  for (; i <= n; ++i) add_row(i, values, ia, ja, x, y);
}

}  // namespace zelvo
