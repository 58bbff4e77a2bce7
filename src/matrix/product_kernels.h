// The kernel of the bundled product, once for each instruction set, from one source.
#pragma once
#include "base/simd.h"

namespace zelvo {

struct ProductKernels {
  // The columns that a bundle of five rows shares.
  //   columns  (count)  in      from 1, ascending
  //   v        (5)      in      the five rows' values at the columns
  //   xi       (5)      in      x at the five rows
  //   sums     (5)      out     what the columns add to y at the rows
  //   x, y              in, in/out  from column 1; y is added to at the columns
  void (*bundle)(int count, const int* columns, const double* const* v, const double* xi,
                 double* sums, const double* x, double* y);
};

extern const ProductKernels PRODUCT_KERNELS_PLAIN, PRODUCT_KERNELS_AVX2;

// Those that suit this processor, chosen once.
const ProductKernels& product_kernels();

}  // namespace zelvo
