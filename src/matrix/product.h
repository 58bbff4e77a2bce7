// Products with a sparse symmetric matrix of which the upper triangle is stored by rows, diagonal
// first, all numbers counted from 1.
#pragma once
#include "base/arrays.h"

namespace zelvo {

// y = A x. Each stored row acts once as a row and once, without its diagonal, as a column.
//   values, ja  (nnz)   in   entries and their columns
//   ia          (n+1)   in   place of the first entry of each row
//   x, y        (n)     in, out; they do not overlap
void sym_matvec(int n, const double* values, const int* ia, const int* ja, const double* x,
                double* y);

// What makes many products with one pattern fast: the bundles of BUNDLE rows in which each row has
// the columns of the row before it but for that row's diagonal. The equations of a node are such.
// Their shared columns are kept once, so that a product reads little more than the values.
constexpr int BUNDLE = 5;
struct RowBundles {
  int n;
  const int *ia, *ja;   // the caller's; they outlive the bundles
  Vector<int> first;    // first row of each bundle, ascending
  Vector<int> columns;  // their columns behind the bundle's own rows, bundle after bundle
};
RowBundles find_bundles(int n, const int* ia, const int* ja);

// y = A x as above, sums in another order.
void sym_matvec(const RowBundles& rows, const double* values, const double* x, double* y);

}  // namespace zelvo
