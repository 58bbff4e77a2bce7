// The bundle kernel compiled for AVX2 and FMA.
#include "matrix/product_kernels.h"

namespace zelvo {

namespace {
#include "matrix/product_kernels-inl.h"
}

const ProductKernels PRODUCT_KERNELS_AVX2{bundle};

}  // namespace zelvo
