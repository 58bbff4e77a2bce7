// The linear solution of a stage.
#pragma once
#include "matrix/symmetric.h"
#include "solution/progress.h"

namespace zelvo {

// Solves K U = F by the sparse direct solver: create, define, reorder, factor, solve, delete.
//
//   K  in   positive definite
//   F  (n)  in
//   U  (n)  out
//
// Returns 0 or the solver's code. With a code, as for a matrix that is not positive definite (a
// mechanism), the steps behind it are left out and U is as it was.
int solve_linear(const SymmetricMatrix& K, const Vector<double>& F, const Progress& done,
                 Vector<double>& U);

}  // namespace zelvo
