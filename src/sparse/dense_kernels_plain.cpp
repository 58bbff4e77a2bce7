// The dense kernels for any processor: vectors of two doubles (SSE2, NEON) where the compiler has
// them, single doubles elsewhere.
#include "sparse/dense_kernels.h"

#ifndef __GNUC__
#include <math.h>
#endif

namespace zelvo {

namespace kernels_plain {
constexpr int LANES = 2, MAX_NV = 4;
#include "sparse/dense_kernels_body.h"
}  // namespace kernels_plain

bool have_avx2() {
#if defined(__GNUC__) && defined(__x86_64__)
  static const bool have = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  return have;
#else
  return false;
#endif
}

}  // namespace zelvo
