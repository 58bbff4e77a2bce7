// The bundle kernel compiled for any processor.
#include "matrix/product_kernels.h"

namespace zelvo {

namespace {
#include "matrix/product_kernels_body.h"
}

namespace product_plain {
void bundle(int count, const int* columns, const double* const* v, const double* xi, double* sums,
            const double* x, double* y) {
  multiply_bundle(count, columns, v, xi, sums, x, y);
}
}  // namespace product_plain

}  // namespace zelvo
