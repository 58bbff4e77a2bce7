// Dense kernels of the supernodal factorization and solve, for blocks that are too small for BLAS
// calls to pay. Each exists twice, from one source: for any processor, and for AVX2 with FMA.
#pragma once
#include <cstddef>

namespace zelvo {

constexpr int MAX_LANES = 4;  // doubles in the widest vector register of the kernels

// k columns of the left operand of an update, in steps of lda. D has a value every `step`, or d is
// null for ones.
struct UpdatePiece {
  const double* a;
  std::ptrdiff_t lda;
  int k;
  const double* d;
  std::ptrdiff_t step;
};

namespace kernels_plain {
#include "sparse/dense_kernels_decl.h"
}
namespace kernels_avx2 {
#include "sparse/dense_kernels_decl.h"
}

// Whether this processor runs kernels_avx2.
bool have_avx2();

}  // namespace zelvo
