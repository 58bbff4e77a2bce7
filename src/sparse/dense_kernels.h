// Dense kernels of the supernodal factorization and solve, for blocks that are too small for BLAS
// calls to pay. Each exists twice, from one source: for any processor, and for AVX2 with FMA.
//
// All arrays are column-major with a leading dimension. Operands may be read up to MAX_LANES - 1
// values behind their last one (never used), so storage needs that much room at its end.
#pragma once
#include <cstddef>

#include "base/simd.h"

namespace zelvo {

// k columns of the left operand of an update, in steps of lda. D has a value every `step`, or d is
// null for ones.
struct UpdatePiece {
  const double* a;
  std::ptrdiff_t lda;
  int k;
  const double* d;
  std::ptrdiff_t step;
};

struct DenseKernels {
  // Values of packed that update needs for m columns and pieces of at most k terms.
  std::ptrdiff_t (*update_work)(int m, int k);

  // C := C - A D B', the update of supernodes by another, or by the pieces of a cut one: A is r x k
  // in pieces of some of its columns, B its first m rows. The target is a list of columns: entry
  // (i,j) of the product, counted from 0, goes to col[place[j]][place[i]], or with place null to
  // col[j + shift][i + shift]. Places ascend. Nothing above the diagonal is touched.
  void (*update)(double* const* col, const int* place, int shift, const UpdatePiece* piece,
                 int pieces, int r, int m, double* packed);

  // Values of packed that factor_panel needs for c columns.
  std::ptrdiff_t (*panel_work)(int c);

  // Factors the r x c panel in place: L L' = its top square (lower triangle), rows below
  // := rows L^-T. With ldl: L D L' with unit L; the diagonal holds D, rows below := rows L^-T D^-1.
  // Returns 0, or -1 at the first pivot that is not positive (ldl: at a pivot of zero). Places above
  // the diagonal may be overwritten.
  int (*factor_panel)(double* panel, std::ptrdiff_t ld, int r, int c, bool ldl, double* packed);

  // z := [ L1^-1 z1 ; z2 - L2 L1^-1 z1 ] for the panel [L1; L2], r x c. With unit, the diagonal is
  // one.
  void (*forward_panel)(const double* panel, std::ptrdiff_t ld, int r, int c, bool unit, double* z);

  // z1 := L1^-T (z1 - L2' z2).
  void (*backward_panel)(const double* panel, std::ptrdiff_t ld, int r, int c, bool unit,
                         double* z);
};

extern const DenseKernels DENSE_KERNELS_PLAIN, DENSE_KERNELS_AVX2;

// Those that suit this processor, chosen once.
const DenseKernels& dense_kernels();

}  // namespace zelvo
