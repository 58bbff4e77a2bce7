// Dense kernels of the supernodal factorization and solve, for blocks that are too small for BLAS
// calls to pay. Each exists twice, from one source: for any processor, and for AVX2 with FMA.
#pragma once
#include <cstddef>

constexpr int MAX_LANES = 4;  // doubles in the widest vector register of the kernels

namespace kernels_plain {
#include "sparse/dense_kernels_decl.h"
}
namespace kernels_avx2 {
#include "sparse/dense_kernels_decl.h"
}

// Whether this processor runs kernels_avx2.
bool have_avx2();
