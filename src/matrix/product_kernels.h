// The kernel of the bundled product, once for each instruction set (see product_kernels_body.h).
#pragma once

namespace zelvo {

namespace product_plain {
void bundle(int count, const int* columns, const double* const* v, const double* xi, double* sums,
            const double* x, double* y);
}
namespace product_avx2 {
void bundle(int count, const int* columns, const double* const* v, const double* xi, double* sums,
            const double* x, double* y);
}

}  // namespace zelvo
