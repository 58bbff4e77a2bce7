#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "sparse/dense_kernels.h"

using namespace zelvo;

namespace {

const DenseKernels* const VARIANTS[] = {&DENSE_KERNELS_PLAIN, &DENSE_KERNELS_AVX2};

class DenseKernelsTest : public testing::TestWithParam<const DenseKernels*> {
 protected:
  std::mt19937 random{7};
  std::vector<double> packed = std::vector<double>(100000);

  std::vector<double> random_values(int n) {
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    std::vector<double> v(n + MAX_LANES);
    for (double& x : v) x = any(random);
    return v;
  }
};
// The vectorised variant where the processor has it.
INSTANTIATE_TEST_SUITE_P(Variants, DenseKernelsTest,
                         testing::ValuesIn(VARIANTS, VARIANTS + (have_avx2() ? 2 : 1)));

TEST_P(DenseKernelsTest, UpdateMatchesPlainLoopsAroundEveryTileBoundary) {
  const struct {
    int shift, run, gap;  // product rows in the target: behind shift, with a gap after each run
  } kinds[] = {{3, 1000, 0}, {0, 5, 1}, {0, 17, 4}};
  for (const int r : {1, 3, 4, 5, 8, 11, 12, 13, 16, 17, 25, 60, 67, 361})
    for (const int m : {1, 2, 3, 4, 5, 7, 8, 20, 33, 330})
      for (const int k : {1, 2, 9, 40, 260})
        for (const auto& kind : kinds)
          for (const bool scaled : {false, true}) {
            if (m > r || (m > 33 && k > 9) || (r > 67 && k > 40)) continue;
            std::vector<int> place;
            for (int i = 0; i < r; ++i) place.push_back(kind.shift + i + i / kind.run * kind.gap);
            const int lda = r + 3, rows = place[r - 1] + 2, columns = place[m - 1] + 1;
            const auto a = random_values(lda * k), d = random_values(3 * k);
            auto result = random_values(rows * columns), expected = result;
            std::vector<double*> column;
            for (int j = 0; j < columns; ++j) column.push_back(&result[j * rows]);
            std::vector<UpdatePiece> pieces;
            for (int t = 0, n; t < k; t += n) {
              n = std::min(k - t, k > 40 ? 100 : 7);
              pieces.push_back({&a[t * lda], lda, n, scaled ? &d[3 * t] : nullptr, 3});
            }
            GetParam()->update(column.data(), kind.gap == 0 ? nullptr : place.data(), kind.shift,
                               pieces.data(), static_cast<int>(pieces.size()), r, m, packed.data());
            for (int j = 0; j < m; ++j)
              for (int i = j; i < r; ++i)
                for (int t = 0; t < k; ++t)
                  expected[place[j] * rows + place[i]] -=
                      a[t * lda + i] * a[t * lda + j] * (scaled ? d[3 * t] : 1.0);
            for (std::size_t i = 0; i < result.size(); ++i)
              ASSERT_NEAR(result[i], expected[i], k > 40 ? 2e-13 : 1e-13)
                  << r << ' ' << m << ' ' << k << ' ' << i;
          }
}

TEST_P(DenseKernelsTest, PanelMultipliedBackGivesTheMatrixAndTheSolvesUndoIt) {
  for (const int c : {1, 2, 3, 4, 5, 6, 8, 11, 12, 13, 15, 24, 31, 80, 93})
    for (const int below : {0, 1, 2, 3, 4, 7, 12, 30})
      for (const bool ldl : {false, true}) {
        const int r = c + below, ld = r + below % 2;
        auto a = random_values(ld * c);
        for (int j = 0; j < c; ++j) a[j * ld + j] = (ldl && j % 3 == 1 ? -1 : 1) * (c + 2);
        auto l = a;
        ASSERT_EQ(GetParam()->factor_panel(l.data(), ld, r, c, ldl, packed.data()), 0);
        const auto L = [&](int i, int j) { return ldl && i == j ? 1.0 : l[j * ld + i]; };
        // z = [L1; L2] x1 + [0; x2] and y = [L1' x1 + L2' x2; x2] go back to x.
        const auto x = random_values(r);
        auto z = x;
        std::fill_n(z.begin(), c, 0.0);
        auto y = z;
        for (int j = 0; j < c; ++j)
          for (int i = j; i < r; ++i) {
            double sum = 0;
            for (int p = 0; p <= j; ++p) sum += L(i, p) * L(j, p) * (ldl ? l[p * ld + p] : 1.0);
            ASSERT_NEAR(sum, a[j * ld + i], 1e-12 * (c + 2)) << r << ' ' << c << ' ' << ldl;
            z[i] += L(i, j) * x[j];
            y[j] += L(i, j) * x[i];
          }
        for (int j = 0; j < c && ld > r; ++j) ASSERT_EQ(l[j * ld + r], a[j * ld + r]);
        GetParam()->forward_panel(l.data(), ld, r, c, ldl, z.data());
        GetParam()->backward_panel(l.data(), ld, r, c, ldl, y.data());
        for (int i = 0; i < r; ++i) ASSERT_NEAR(z[i], x[i], 1e-11);
        for (int i = 0; i < r; ++i) ASSERT_NEAR(y[i], x[i], 1e-11);
      }
}

TEST_P(DenseKernelsTest, PivotsStopWhereTheyMust) {
  const struct {
    double pivot;
    int cholesky, ldl;
  } cases[] = {{1.0e-300, 0, 0},     {1.0e20, 0, 0},    {0, -1, -1},
               {-1, -1, 0},          {0x1p-1030, 0, 0},  // the reciprocal of the last overflows
               {std::nan(""), -1, 0}};
  for (const auto& wanted : cases)
    for (const bool ldl : {false, true}) {
      std::vector<double> a(140 + MAX_LANES);  // 14 x 10, diagonal
      for (int j = 0; j < 10; ++j) a[15 * j] = j == 6 ? wanted.pivot : 1.0;
      a[6 * 14 + 7] = a[6 * 14 + 13] = 3 * 0x1p-1030;
      EXPECT_EQ(GetParam()->factor_panel(a.data(), 14, 14, 10, ldl, packed.data()),
                ldl ? wanted.ldl : wanted.cholesky);
      if (wanted.pivot != 0x1p-1030) continue;
      EXPECT_EQ(a[6 * 14 + 7], ldl ? 3 : 3 * 0x1p-515);
      EXPECT_EQ(a[6 * 14 + 13], ldl ? 3 : 3 * 0x1p-515);
    }
}

}  // namespace
