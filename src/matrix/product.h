// Products with the symmetric matrix.
#pragma once
#include "matrix/symmetric.h"

namespace zelvo {

// y = A x. Each stored row acts once as a row and once, without its diagonal, as a column.
//   x, y  (n)  in, out; they do not overlap
void sym_matvec(const SymmetricMatrix& A, const double* x, double* y);

// What makes many products with one pattern fast: the bundles of BUNDLE rows in which each row has
// the columns of the row before it but for that row's diagonal. The equations of a node are such.
// Their shared columns are kept once, so that a product reads little more than the values.
constexpr int BUNDLE = 5;
struct RowBundles {
  std::shared_ptr<const MatrixPattern> pattern;
  Vector<int> first;    // first row of each bundle, ascending
  Vector<int> columns;  // their columns behind the bundle's own rows, bundle after bundle
};
RowBundles find_bundles(std::shared_ptr<const MatrixPattern> pattern);

// y = A x as above, sums in another order; A has the pattern of the bundles.
void sym_matvec(const RowBundles& rows, const SymmetricMatrix& A, const double* x, double* y);

}  // namespace zelvo
