#include "buckling/quality.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "model/pattern.h"

namespace zelvo {

namespace {

// A diagonal of this size carries the penalty of a rigid support, 1e20 kip/in.
constexpr double RIGID = 1.0e19;

// Tolerance that makes factors good to some 1e-7 and shapes to 1e-4.
constexpr double SHARP_TOL = 1.0e-6;

// The record that would sharpen the factors: the same kind with a sharp tolerance; for kind 2 with
// the shift at half the first factor.
void print_record(const EigenOptions& options, double first) {
  if (options.solver_type == 2)
    std::fprintf(stderr, "\"2 %.1E\" and \"%.3g\"", SHARP_TOL, 0.5 * first);
  else
    std::fprintf(stderr, "\"1 %.1E\"", SHARP_TOL);
}

}  // namespace

PairQuality measure_pair(const RowBundles& pattern, const Vector<double>& K,
                         const Vector<double>& B, double lambda, const double* x) {
  const int n = pattern.n;
  const auto rigid = [&](int i) { return K(pattern.ia[i - 1]) >= RIGID; };
  Vector<double> u(n), Ku(n), Bu(n);
  for (int i = 1; i <= n; ++i) u(i) = rigid(i) ? 0.0 : x[i - 1];
  sym_matvec(pattern, K.data(), u.data(), Ku.data());
  sym_matvec(pattern, B.data(), u.data(), Bu.data());
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

void warn_of_loose_pairs(const RowBundles& pattern, const Vector<double>& K,
                         const Vector<double>& B, const EigenOptions& options, int nconv,
                         const Vector<double>& eigval, const Matrix<double>& eigvec) {
  if (nconv < options.nev)
    std::fprintf(stderr, "zelvo: analysis %d: only %d of %d buckling modes have converged\n",
                 options.stage, nconv, options.nev);
  for (int m = 1; m <= options.nev; ++m) {
    const PairQuality q = measure_pair(pattern, K, B, eigval(m), eigvec.column(m));
    const double off = std::abs(q.rayleigh - eigval(m)) / std::abs(eigval(m));
    // Written so that a value that is no number is warned of.
    if (q.residual <= RESIDUAL_LIMIT && off <= RAYLEIGH_LIMIT) continue;
    std::fprintf(stderr,
                 "zelvo: analysis %d, mode %d: buckling factor %.6g is loose (relative residual "
                 "%.1e, factor of its shape %.6g), sharper with solver ",
                 options.stage, m, eigval(m), q.residual, q.rayleigh);
    print_record(options, eigval(1));
    std::fputs("\n", stderr);
  }
}

}  // namespace zelvo
