#include "shell/kernels.h"

namespace zelvo {

namespace {
#include "shell/kernels-inl.h"
}

const ShellKernels SHELL_KERNELS_AVX2{point_frames, shell_product, point_stresses, node_forces,
                                      gradient_products};

}  // namespace zelvo
