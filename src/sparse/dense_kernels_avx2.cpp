// The dense kernels for AVX2 and FMA: vectors of four doubles, tiles of 12 x 4 in 12 of the 16
// registers. On other processors this compiles to something that runs and is never chosen.
#include "sparse/dense_kernels.h"

#ifndef __GNUC__
#include <math.h>
#endif

namespace zelvo {

namespace kernels_avx2 {
constexpr int LANES = 4, MAX_NV = 3;
#include "sparse/dense_kernels_body.h"
}  // namespace kernels_avx2

}  // namespace zelvo
