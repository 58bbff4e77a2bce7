// How well a computed pair (lambda, x) satisfies K x = lambda B x, B = -KG.
#pragma once
#include "base/arrays.h"
#include "buckling/check.h"
#include "matrix/product.h"

namespace zelvo {

struct PairQuality {
  double residual;  // |K x - lambda B x| / |K x| over the unrestrained equations
  double rayleigh;  // x'K x / x'B x: the factor that belongs to the shape
};

// Limits of a pair that can be trusted to three digits.
constexpr double RESIDUAL_LIMIT = 1.0e-3, RAYLEIGH_LIMIT = 1.0e-3;

// Measures a pair. Two things are kept out, since they say nothing about the shape:
//   - the rounding of x at a rigid support, which its 1e20 penalty would blow up, is taken as zero;
//   - the three translations of a node on a support, whose rows hold reactions, are left out of the
//     norms. Such a node is known by the penalty on its vertical.
//   K, B  in  values over one pattern of whole nodes, K with its penalties
//   x     (n) in  shape
PairQuality measure_pair(const RowBundles& pattern, const Vector<double>& K,
                         const Vector<double>& B, double lambda, const double* x);

// One line on standard error for each of the first nconv pairs beyond a limit, with the input that
// would sharpen it, and one line when fewer than nev have converged.
void warn_of_loose_pairs(const RowBundles& pattern, const Vector<double>& K,
                         const Vector<double>& B, const EigenOptions& options, int nconv,
                         const Vector<double>& eigval, const Matrix<double>& eigvec);

}  // namespace zelvo
