// Arrays that count from 1, first index fastest, contiguous. operator() asserts its bounds in debug
// and sanitizer builds and costs nothing in release. data() hands the storage to METIS and ARPACK.
#pragma once
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

#include "base/failures.h"

namespace zelvo {

// Owning array of n values. A new one is all zero unless made with UNINITIALIZED.
// Memory that cannot be had throws MemoryFailure, which names the use given in what.
enum Fill { ZERO, UNINITIALIZED };

template <class T>
class Vector {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  Vector() = default;
  explicit Vector(std::int64_t n, const char* what = "a work array", Fill fill = ZERO) : n_(n) {
    assert(n >= 0);
    if (n == 0) return;
    constexpr auto limit = std::numeric_limits<std::ptrdiff_t>::max() / std::ptrdiff_t{sizeof(T)};
    void* block = n < 0 || n > limit ? nullptr : ::operator new(bytes(), ALIGNMENT, std::nothrow);
    if (block == nullptr) throw MemoryFailure{static_cast<double>(n) * double{sizeof(T)}, what};
    p_ = static_cast<T*>(block);
    if (fill == ZERO) clear();
  }
  Vector(const Vector& other) : Vector(other.n_, "a copy of an array", UNINITIALIZED) {
    if (n_ > 0) std::memcpy(p_, other.p_, bytes());
  }
  Vector(Vector&& other) noexcept { swap(other); }
  Vector& operator=(Vector other) noexcept {
    swap(other);
    return *this;
  }
  ~Vector() { ::operator delete(p_, ALIGNMENT); }
  void swap(Vector& other) noexcept {
    std::swap(p_, other.p_);
    std::swap(n_, other.n_);
  }

  std::int64_t size() const { return n_; }
  T& operator()(std::int64_t i) {
    assert(1 <= i && i <= n_);
    return p_[i - 1];
  }
  const T& operator()(std::int64_t i) const {
    assert(1 <= i && i <= n_);
    return p_[i - 1];
  }
  T* data() { return p_; }
  const T* data() const { return p_; }
  T* begin() { return p_; }
  T* end() { return p_ + n_; }
  const T* begin() const { return p_; }
  const T* end() const { return p_ + n_; }
  // Sets every value to zero.
  void clear() {
    if (n_ > 0) std::memset(static_cast<void*>(p_), 0, bytes());
  }

 private:
  // A cache line, and room for any vector register: results never depend on where an array lies.
  static constexpr std::align_val_t ALIGNMENT{64};
  std::size_t bytes() const { return static_cast<std::size_t>(n_) * sizeof(T); }
  T* p_ = nullptr;
  std::int64_t n_ = 0;
};

// Owning table (rows,cols).
template <class T>
class Matrix {
 public:
  Matrix() = default;
  Matrix(int rows, int cols, const char* what = "a work table")
      : values_(std::int64_t{rows} * cols, what), rows_(rows), cols_(cols) {}
  int rows() const { return rows_; }
  int cols() const { return cols_; }
  T& operator()(int i, int j) {
    assert(1 <= i && i <= rows_ && 1 <= j && j <= cols_);
    return values_.data()[(i - 1) + std::ptrdiff_t{rows_} * (j - 1)];
  }
  const T& operator()(int i, int j) const {
    assert(1 <= i && i <= rows_ && 1 <= j && j <= cols_);
    return values_.data()[(i - 1) + std::ptrdiff_t{rows_} * (j - 1)];
  }
  // First value of column j.
  T* column(int j) {
    assert(1 <= j && j <= cols_);
    return values_.data() + std::ptrdiff_t{rows_} * (j - 1);
  }
  const T* column(int j) const {
    assert(1 <= j && j <= cols_);
    return values_.data() + std::ptrdiff_t{rows_} * (j - 1);
  }
  T* data() { return values_.data(); }
  const T* data() const { return values_.data(); }
  void clear() { values_.clear(); }

 private:
  Vector<T> values_;
  int rows_ = 0, cols_ = 0;
};

// Owning table (n1,n2,n3).
template <class T>
class Array3 {
 public:
  Array3() = default;
  Array3(int n1, int n2, int n3, const char* what = "a work table")
      : values_(std::int64_t{n1} * n2 * n3, what), n1_(n1), n2_(n2), n3_(n3) {}
  T& operator()(int i, int j, int k) { return values_.data()[place(i, j, k)]; }
  const T& operator()(int i, int j, int k) const { return values_.data()[place(i, j, k)]; }
  int extent1() const { return n1_; }
  int extent2() const { return n2_; }
  int extent3() const { return n3_; }

 private:
  std::ptrdiff_t place(int i, int j, int k) const {
    assert(1 <= i && i <= n1_ && 1 <= j && j <= n2_ && 1 <= k && k <= n3_);
    return (i - 1) + std::ptrdiff_t{n1_} * ((j - 1) + std::ptrdiff_t{n2_} * (k - 1));
  }
  Vector<T> values_;
  int n1_ = 0, n2_ = 0, n3_ = 0;
};

// Fixed sizes on the stack, for element work. FixedVector<double, 3> a{{1, 2, 3}} and
// FixedMatrix<double, 3, 3> m{} (zero) initialise them; a FixedMatrix lists its columns in turn.
template <class T, int n>
struct FixedVector {
  T v[n];
  static constexpr int size() { return n; }
  constexpr T& operator()(int i) {
    assert(1 <= i && i <= n);
    return v[i - 1];
  }
  constexpr const T& operator()(int i) const {
    assert(1 <= i && i <= n);
    return v[i - 1];
  }
  T* data() { return v; }
  const T* data() const { return v; }
  void clear() {
    for (T& x : v) x = T{};
  }
};

template <class T, int r, int c>
struct FixedMatrix {
  T v[r * c];
  static constexpr int rows() { return r; }
  static constexpr int cols() { return c; }
  constexpr T& operator()(int i, int j) {
    assert(1 <= i && i <= r && 1 <= j && j <= c);
    return v[(i - 1) + r * (j - 1)];
  }
  constexpr const T& operator()(int i, int j) const {
    assert(1 <= i && i <= r && 1 <= j && j <= c);
    return v[(i - 1) + r * (j - 1)];
  }
  T* data() { return v; }
  const T* data() const { return v; }
  void clear() {
    for (T& x : v) x = T{};
  }
};

// A rows x cols rectangle inside storage that it does not own, columns ld apart.
template <class T>
struct MatrixView {
  T* p;
  int rows, cols, ld;
  T& operator()(int i, int j) const {
    assert(1 <= i && i <= rows && 1 <= j && j <= cols);
    return p[(i - 1) + std::ptrdiff_t{ld} * (j - 1)];
  }
};

}  // namespace zelvo
