// The buckling factors of a small model by a dense eigensolver.
#pragma once
#include <gtest/gtest.h>

#include <vector>

#include "matrix/symmetric.h"

extern "C" void dsygv_(const int* itype, const char* jobz, const char* uplo, const int* n,
                       double* a, const int* lda, double* b, const int* ldb, double* w,
                       double* work, const int* lwork, int* info);

namespace zelvo {

inline std::vector<double> dense(const SymmetricMatrix& A) {
  const MatrixPattern& p = *A.pattern;
  const auto n = static_cast<std::size_t>(p.n);
  std::vector<double> a(n * n);
  for (int r = 1; r <= p.n; ++r)
    for (int t = p.ia(r); t < p.ia(r + 1); ++t)
      a[static_cast<std::size_t>(r - 1) + n * static_cast<std::size_t>(p.ja(t) - 1)] = A.values(t);
  return a;
}

// The factors by the smallest mu of KG x = mu K x, as -1/mu, smallest first.
inline std::vector<double> dense_factors(const SymmetricMatrix& K, const SymmetricMatrix& KG,
                                         std::size_t count) {
  std::vector<double> a = dense(KG), b = dense(K);
  const int n = K.n(), itype = 1, lwork = 64 * n;
  std::vector<double> w(static_cast<std::size_t>(n)), work(static_cast<std::size_t>(lwork));
  int info = 0;
  dsygv_(&itype, "N", "U", &n, a.data(), &n, b.data(), &n, w.data(), work.data(), &lwork, &info);
  EXPECT_EQ(info, 0);
  w.resize(count);
  for (double& mu : w) mu = -1 / mu;
  return w;
}

}  // namespace zelvo
