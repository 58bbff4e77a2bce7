// The bundle kernel compiled for any processor.
#include "matrix/product_kernels.h"

namespace zelvo {

namespace {
#include "matrix/product_kernels-inl.h"
}

const ProductKernels PRODUCT_KERNELS_PLAIN{bundle};

const ProductKernels& product_kernels() {
  static const ProductKernels& suited = have_avx2() ? PRODUCT_KERNELS_AVX2 : PRODUCT_KERNELS_PLAIN;
  return suited;
}

}  // namespace zelvo
