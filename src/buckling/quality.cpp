#include "buckling/quality.h"

#include <cmath>

#include "matrix/product.h"

namespace zelvo {

namespace {

// A diagonal of this size carries the penalty of a rigid support, 1e20 kip/in.
constexpr double RIGID = 1.0e19;

constexpr double RESIDUAL_LIMIT = 1.0e-3, RAYLEIGH_LIMIT = 1.0e-3;

PairQuality measure_pair(const RowBundles& rows, const SymmetricMatrix& K, const SymmetricMatrix& B,
                         double lambda, const double* x) {
  const int n = K.n();
  const auto rigid = [&](int i) { return K.diagonal(i) >= RIGID; };
  Vector<double> u(n), Ku(n), Bu(n);
  for (int i = 1; i <= n; ++i) u(i) = rigid(i) ? 0.0 : x[i - 1];
  sym_matvec(rows, K, u.data(), Ku.data());
  sym_matvec(rows, B, u.data(), Bu.data());
  double kk = 0, bb = 0, rr = 0, k2 = 0;
  for (int i = 1; i <= n; ++i) {
    kk += u(i) * Ku(i);
    bb += u(i) * Bu(i);
    const int node = (i - 1) / NDOF + 1;
    if (i < equation(node, 4) && rigid(equation(node, 2))) continue;
    const double r = Ku(i) - lambda * Bu(i);
    rr += r * r;
    k2 += Ku(i) * Ku(i);
  }
  return {std::sqrt(rr / k2), kk / bb};
}

}  // namespace

Vector<PairQuality> measure_pairs(const SymmetricMatrix& K, const SymmetricMatrix& B,
                                  const BucklingModes& modes) {
  assert(B.pattern == K.pattern && modes.eigvec.rows() == K.n());
  const RowBundles rows = find_bundles(K.pattern);
  Vector<PairQuality> quality(modes.eigval.size());
  for (int m = 1; m <= modes.eigval.size(); ++m)
    quality(m) = measure_pair(rows, K, B, modes.eigval(m), modes.eigvec.column(m));
  return quality;
}

bool is_sharp(const PairQuality& quality, double lambda) {
  const double off = std::abs(quality.rayleigh - lambda) / std::abs(lambda);
  return quality.residual <= RESIDUAL_LIMIT && off <= RAYLEIGH_LIMIT;
}

}  // namespace zelvo
