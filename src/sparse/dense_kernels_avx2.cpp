// The dense kernels for AVX2 and FMA: vectors of four doubles, tiles of 12 x 4 in 12 of the 16
// registers. On other processors this compiles to something that runs and is never chosen.
#include <cassert>

#include "sparse/dense_kernels.h"

namespace zelvo {

namespace {
constexpr int LANES = 4, MAX_NV = 3;
#include "sparse/dense_kernels-inl.h"
}  // namespace

const DenseKernels DENSE_KERNELS_AVX2{update_work,  update,        panel_work,
                                      factor_panel, forward_panel, backward_panel};

}  // namespace zelvo
