// The linear solution of a stage.
#pragma once
#include "base/arrays.h"
#include "model/matrix.h"

namespace zelvo {

// Solves K U = F by the sparse direct solver, with a console line for each finished step. A matrix
// that is not positive definite (a mechanism) is reported by a line and leaves U as it was.
//
//   K  (nnz)  in   symmetric, positive definite
//   F  (n)    in
//   U  (n)    out
void solve_linear(const MatrixPattern& pattern, const Vector<double>& K, const Vector<double>& F,
                  Vector<double>& U);

}  // namespace zelvo
