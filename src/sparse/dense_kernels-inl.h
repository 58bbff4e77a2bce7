// The dense kernels. The including file opens an anonymous namespace and gives LANES, the doubles of
// a vector, and MAX_NV, the registers in the height of a tile: tiles are P = MAX_NV * W rows by W
// columns.

constexpr int W = LANES_OF<LANES>;
constexpr int P = MAX_NV * W;
static_assert(W <= 4 && W <= MAX_LANES);

using Reg = Vec<W>;
using Index = std::ptrdiff_t;

// acc(v,j) := sum over p of a(v,p) b(j,p), a in steps of lda, b in steps of ldb.
template <int NV, int NC>
SIMD_INLINE void product(Reg (&acc)[NV][NC], int k, const double* a, Index lda, const double* b,
                         Index ldb) {
  for (int v = 0; v < NV; ++v)
    for (int j = 0; j < NC; ++j) acc[v][j] = splat<W>(0.0);
  for (int p = 0; p < k; ++p) {
    Reg av[NV];
    for (int v = 0; v < NV; ++v) av[v] = load<W>(a + v * W);
    for (int j = 0; j < NC; ++j) {
      const Reg bj = splat<W>(b[j]);
      for (int v = 0; v < NV; ++v) acc[v][j] += av[v] * bj;
    }
    a += lda;
    b += ldb;
  }
}

#include "sparse/update_kernels-inl.h"

#include "sparse/panel_kernels-inl.h"
