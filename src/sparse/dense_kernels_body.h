// The dense kernels, written over a vector type of LANES doubles. The including file opens a
// namespace and gives LANES and MAX_NV, the registers in the height of a tile: tiles are
// P = MAX_NV * W rows by W columns. Nothing here has external linkage but the kernels themselves:
// the twin files are compiled for different processors.

#if defined(__GNUC__)
#define KERNEL_INLINE static inline __attribute__((always_inline))
#define KERNEL_PREFETCH(p) __builtin_prefetch(p, 1)
#define KERNEL_FETCH(p) __builtin_prefetch(p, 0)
#define KERNEL_UNROLL _Pragma("GCC unroll 4")
typedef double Vec __attribute__((vector_size(LANES * sizeof(double))));
KERNEL_INLINE Vec splat(double x) { return x - Vec{}; }
KERNEL_INLINE Vec load(const double* p) {
  Vec v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}
KERNEL_INLINE void store(double* p, Vec v) { __builtin_memcpy(p, &v, sizeof v); }
KERNEL_INLINE double root(double x) { return __builtin_sqrt(x); }
typedef long long LaneMask __attribute__((vector_size(LANES * sizeof(double))));
KERNEL_INLINE LaneMask first_mask(int s) {  // all bits of the first s lanes
  static const long long bits[2 * MAX_LANES] = {-1, -1, -1, -1, 0, 0, 0, 0};
  LaneMask m;
  __builtin_memcpy(&m, bits + MAX_LANES - s, sizeof m);
  return m;
}
// v with zeros in all lanes but the first s; in the first s lanes.
KERNEL_INLINE Vec first_lanes(Vec v, int s) { return (Vec)((LaneMask)v & first_mask(s)); }
KERNEL_INLINE Vec other_lanes(Vec v, int s) { return (Vec)((LaneMask)v & ~first_mask(s)); }
#else
#define KERNEL_INLINE static inline
#define KERNEL_PREFETCH(p) (void)(p)
#define KERNEL_FETCH(p) (void)(p)
#define KERNEL_UNROLL
typedef double Vec;
KERNEL_INLINE Vec splat(double x) { return x; }
KERNEL_INLINE Vec load(const double* p) { return *p; }
KERNEL_INLINE void store(double* p, Vec v) { *p = v; }
KERNEL_INLINE double root(double x) { return sqrt(x); }
KERNEL_INLINE Vec first_lanes(Vec v, int) { return v; }
KERNEL_INLINE Vec other_lanes(Vec v, int) { return v; }
#endif

constexpr int W = sizeof(Vec) / sizeof(double);
constexpr int P = MAX_NV * W;
static_assert(W <= 4 && W <= MAX_LANES);

using Index = std::ptrdiff_t;

// acc(v,j) := sum over p of a(v,p) b(j,p), a in steps of lda, b in steps of ldb.
template <int NV, int NC>
KERNEL_INLINE void product(Vec (&acc)[NV][NC], int k, const double* a, Index lda, const double* b,
                           Index ldb) {
  for (int v = 0; v < NV; ++v)
    for (int j = 0; j < NC; ++j) acc[v][j] = splat(0.0);
  for (int p = 0; p < k; ++p) {
    Vec av[NV];
    for (int v = 0; v < NV; ++v) av[v] = load(a + v * W);
    for (int j = 0; j < NC; ++j) {
      const Vec bj = splat(b[j]);
      for (int v = 0; v < NV; ++v) acc[v][j] += av[v] * bj;
    }
    a += lda;
    b += ldb;
  }
}

#include "sparse/update_kernels_body.h"

#include "sparse/panel_kernels_body.h"
