#include "shell/kernels.h"

namespace zelvo {

namespace {
#include "shell/kernels-inl.h"
}

const ShellKernels SHELL_KERNELS_PLAIN{point_frames, shell_product, point_stresses, node_forces,
                                       gradient_products};

const ShellKernels& shell_kernels() {
  static const ShellKernels& suited = have_avx2() ? SHELL_KERNELS_AVX2 : SHELL_KERNELS_PLAIN;
  return suited;
}

}  // namespace zelvo
