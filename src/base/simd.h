// Vector registers: the one vector type of the kernels, and the one test of the processor.
//
// A room with kernels writes them once, in fragments NAME-inl.h over Vec<W>, and compiles them twice:
// NAME_plain.cpp for the baseline of the platform, NAME_avx2.cpp for AVX2 with FMA. Each of the two
// fills one struct of function pointers, and the room chooses between the structs once. All that the
// twins share by source has internal linkage, here as in the fragments: a function compiled for AVX2
// must never be the copy that the linker keeps for the whole program.
#pragma once
#ifndef __GNUC__
#include <math.h>
#endif

namespace zelvo {

constexpr int MAX_LANES = 4;  // doubles in the widest vector of the kernels

// Whether this processor has AVX2 and FMA.
bool have_avx2();

#if defined(__GNUC__)

#pragma GCC diagnostic ignored "-Wpsabi"  // no vector crosses a translation unit
#define SIMD_INLINE static inline __attribute__((always_inline))
#define SIMD_UNROLL _Pragma("GCC unroll 4")

// W doubles side by side: one register of AVX for 4, of SSE2 or NEON for 2; 4 are two of these.
template <int W>
struct VectorOf;
template <>
struct VectorOf<2> {
  typedef double type __attribute__((vector_size(16), may_alias));
  typedef long long mask __attribute__((vector_size(16)));
};
template <>
struct VectorOf<4> {
  typedef double type __attribute__((vector_size(32), may_alias));
  typedef long long mask __attribute__((vector_size(32)));
};
template <int W>
using Vec = typename VectorOf<W>::type;

template <int W>
SIMD_INLINE Vec<W> splat(double x) {
  return x - Vec<W>{};
}
// Loads and stores anywhere, aligned or not.
template <int W>
SIMD_INLINE Vec<W> load(const double* p) {
  Vec<W> v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}
template <class V>
SIMD_INLINE void store(double* p, V v) {  // by value: a reference keeps v in memory
  __builtin_memcpy(p, &v, sizeof v);
}

// All bits of the first s of W lanes.
template <int W>
SIMD_INLINE typename VectorOf<W>::mask first_mask(int s) {
  static const long long bits[2 * MAX_LANES] = {-1, -1, -1, -1, 0, 0, 0, 0};
  typename VectorOf<W>::mask m;
  __builtin_memcpy(&m, bits + MAX_LANES - s, sizeof m);
  return m;
}
// v with zeros in all lanes but the first s; in the first s lanes.
template <int W>
SIMD_INLINE Vec<W> first_lanes(Vec<W> v, int s) {
  return (Vec<W>)((typename VectorOf<W>::mask)v & first_mask<W>(s));
}
template <int W>
SIMD_INLINE Vec<W> other_lanes(Vec<W> v, int s) {
  return (Vec<W>)((typename VectorOf<W>::mask)v & ~first_mask<W>(s));
}

SIMD_INLINE double root(double x) { return __builtin_sqrt(x); }
// Prefetches the cache line of p.
SIMD_INLINE void fetch(const double* p) { __builtin_prefetch(p, 0); }
SIMD_INLINE void fetch_to_write(const double* p) { __builtin_prefetch(p, 1); }

#else  // without vector types: single doubles for every W

#define SIMD_INLINE static inline
#define SIMD_UNROLL

template <int W>
using Vec = double;

template <int W>
SIMD_INLINE double splat(double x) {
  return x;
}
template <int W>
SIMD_INLINE double load(const double* p) {
  return *p;
}
SIMD_INLINE void store(double* p, double v) { *p = v; }
template <int W>
SIMD_INLINE double first_lanes(double v, int) {
  return v;
}
template <int W>
SIMD_INLINE double other_lanes(double v, int) {
  return v;
}
SIMD_INLINE double root(double x) { return sqrt(x); }
SIMD_INLINE void fetch(const double*) {}
SIMD_INLINE void fetch_to_write(const double*) {}

#endif

// The lanes that Vec<W> has with this compiler.
template <int W>
inline constexpr int LANES_OF = sizeof(Vec<W>) / sizeof(double);

}  // namespace zelvo
