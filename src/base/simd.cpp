#include "base/simd.h"

namespace zelvo {

bool have_avx2() {
#if defined(__GNUC__) && defined(__x86_64__)
  static const bool have = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  return have;
#else
  return false;
#endif
}

}  // namespace zelvo
