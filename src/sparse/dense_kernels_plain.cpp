// The dense kernels for any processor: vectors of two doubles (SSE2, NEON) where the compiler has
// them, single doubles elsewhere.
#include <cassert>

#include "sparse/dense_kernels.h"

namespace zelvo {

namespace {
constexpr int LANES = 2, MAX_NV = 4;
#include "sparse/dense_kernels-inl.h"
}  // namespace

const DenseKernels DENSE_KERNELS_PLAIN{update_work,  update,        panel_work,
                                       factor_panel, forward_panel, backward_panel};

const DenseKernels& dense_kernels() {
  static const DenseKernels& suited = have_avx2() ? DENSE_KERNELS_AVX2 : DENSE_KERNELS_PLAIN;
  return suited;
}

}  // namespace zelvo
