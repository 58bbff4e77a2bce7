// The buckling check of a stage: the lowest factors lambda and shapes x of K x = lambda (-KG) x.
#pragma once
#include "base/arrays.h"
#include "matrix/product.h"
#include "model/matrix.h"

namespace zelvo {

// What the input says about the eigenvalue iteration, and the stage.
struct EigenOptions {
  int nev;          // factors wanted
  int solver_type;  // 1: K is factored; 2: K + sigma KG is factored, shift-and-invert about sigma
  double tol;       // relative accuracy asked of the iteration's own values (see docs/theory.md)
  double sigma;     // shift of kind 2: a load factor, best near half the first one
  int stage = 0;    // analysis number, named in warnings
};

// Lanczos vectors of a check; nev stays below.
constexpr int LANCZOS_VECTORS = 10;

// Finds nev factors and shapes by implicitly restarted Lanczos iteration (Lehoucq, Sorensen, Yang
// 1998), ARPACK modes 2 and 4, with the sparse solver inside.
//   K       (nnz)     in      stiffness with the support penalties
//   KG      (nnz)     in/out  geometric stiffness; all its values change sign
//   ncv               in      Lanczos vectors, more than nev
//   eigval  (nev)     out     factors, the nearest to zero (kind 1: smallest positive) first
//   eigvec  (n,nev)   out     shapes, scaled to x'K x = 1
// Writes a dot to the console for each solve. A failure writes its line to the console and leaves
// eigval and eigvec as they were, except that what a failed extraction left is stored. A pair that
// satisfies its equation poorly is told on standard error.
void buckling_solve(const MatrixPattern& pattern, const Vector<double>& K, Vector<double>& KG,
                    const EigenOptions& options, int ncv, Vector<double>& eigval,
                    Matrix<double>& eigvec);

}  // namespace zelvo
