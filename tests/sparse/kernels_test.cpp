#include "sparse/dense_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

namespace {

// Both variants of the kernels; the vectorised one where the processor has it.
struct Kernels {
  const char* name;
  decltype(&kernels_plain::update) update;
  decltype(&kernels_plain::factor_panel) factor_panel;
  decltype(&kernels_plain::forward_panel) forward_panel;
  decltype(&kernels_plain::backward_panel) backward_panel;
};

class DenseKernels : public testing::TestWithParam<Kernels> {
 protected:
  std::mt19937 random{7};
  std::vector<double> packed = std::vector<double>(100000);

  std::vector<double> random_values(std::ptrdiff_t n) {
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    std::vector<double> v(static_cast<std::size_t>(n) + MAX_LANES);
    for (double& x : v) x = any(random);
    return v;
  }
  // Panel of c columns with a strong diagonal; for an indefinite one its sign alternates.
  std::vector<double> panel(int c, int ld, bool indefinite) {
    std::vector<double> v = random_values(std::ptrdiff_t{ld} * c);
    for (int j = 0; j < c; ++j) v[at(j, j, ld)] = (indefinite && j % 3 == 1 ? -1.0 : 1.0) * (c + 2);
    return v;
  }
  static std::size_t at(int i, int j, int ld) {
    return static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * static_cast<std::size_t>(ld);
  }
};

TEST_P(DenseKernels, UpdateMatchesPlainLoopsAroundEveryTileBoundary) {
  struct Places {  // of the rows of the product in the target
    bool listed;
    int shift;
    std::function<int(int)> at;
  };
  const Places kinds[] = {{false, 3, [](int i) { return i + 3; }},
                          {true, 0, [](int i) { return i + i / 5; }},
                          {true, 0, [](int i) { return i + i / 17 * 4; }}};
  for (const int r : {1, 3, 4, 5, 8, 11, 12, 13, 16, 17, 25, 60, 67, 361})
    for (const int m : {1, 2, 3, 4, 5, 7, 8, 20, 33, 330})
      for (const int k : {1, 2, 9, 40})
        for (const Places& places : kinds)
          for (const bool scaled : {false, true}) {
            if (m > r || (m > 33 && k > 9)) continue;
            const int lda = r + 3, rows = places.at(r - 1) + 2, columns = places.at(m - 1) + 1;
            const auto a = random_values(lda * k), d = random_values(k);
            const auto c = random_values(std::ptrdiff_t{rows} * columns);
            auto result = c;
            std::vector<double*> column;
            std::vector<int> place, from(static_cast<std::size_t>(rows), -1);
            for (int j = 0; j < columns; ++j) column.push_back(&result[at(0, j, rows)]);
            for (int i = 0; i < r; ++i) {
              place.push_back(places.at(i));
              from[static_cast<std::size_t>(places.at(i))] = i;
            }
            GetParam().update(column.data(), places.listed ? place.data() : nullptr, places.shift,
                              a.data(), lda, scaled ? d.data() : nullptr, r, m, k, packed.data());
            for (int q = 0; q < columns; ++q)
              for (int p = 0; p < rows; ++p) {
                const int i = from[static_cast<std::size_t>(p)],
                          j = from[static_cast<std::size_t>(q)];
                double sum = 0;
                for (int t = 0; t < k && i >= j && j >= 0; ++t)
                  sum += a[at(i, t, lda)] * a[at(j, t, lda)] *
                         (scaled ? d[static_cast<std::size_t>(t)] : 1.0);
                ASSERT_NEAR(result[at(p, q, rows)], c[at(p, q, rows)] - sum, 1e-13)
                    << r << ' ' << m << ' ' << k << ' ' << p << ' ' << q;
              }
          }
}

TEST_P(DenseKernels, PanelMultipliedBackGivesTheMatrixAndTheSolvesUndoIt) {
  for (const int c : {1, 2, 3, 4, 5, 6, 8, 11, 12, 13, 15, 24, 31, 80, 93})
    for (const int below : {0, 1, 2, 3, 4, 7, 12, 30})
      for (const bool ldl : {false, true}) {
        const int r = c + below, ld = r + below % 2;
        const auto a = panel(c, ld, ldl);
        auto l = a;
        ASSERT_EQ(GetParam().factor_panel(l.data(), ld, r, c, ldl, packed.data()), 0);
        const auto L = [&](int i, int j) { return ldl && i == j ? 1.0 : l[at(i, j, ld)]; };
        const auto D = [&](int j) { return ldl ? l[at(j, j, ld)] : 1.0; };
        for (int j = 0; j < c; ++j)
          for (int i = j; i < ld; ++i) {
            double sum = 0;
            for (int p = 0; p <= j; ++p) sum += i < r ? L(i, p) * D(p) * L(j, p) : 0.0;
            ASSERT_NEAR(i < r ? sum : l[at(i, j, ld)], a[at(i, j, ld)], 1e-12 * (c + 2))
                << r << ' ' << c << ' ' << ldl << ' ' << i << ' ' << j;
          }
        // z = [L1; L2] x and zero goes back to x and zero.
        const auto x = random_values(r);
        auto z = x, y = x;
        for (int i = 0; i < r; ++i) {
          double sum = i < c ? 0.0 : x[static_cast<std::size_t>(i)];
          for (int p = 0; p <= std::min(i, c - 1); ++p)
            sum += L(i, p) * x[static_cast<std::size_t>(p)];
          z[static_cast<std::size_t>(i)] = sum;
        }
        GetParam().forward_panel(l.data(), ld, r, c, ldl, z.data());
        for (int i = 0; i < r; ++i)
          ASSERT_NEAR(z[static_cast<std::size_t>(i)], x[static_cast<std::size_t>(i)], 1e-11);
        for (int j = 0; j < c; ++j) {
          double sum = 0;
          for (int i = j; i < r; ++i) sum += L(i, j) * x[static_cast<std::size_t>(i)];
          y[static_cast<std::size_t>(j)] = sum;
        }
        GetParam().backward_panel(l.data(), ld, r, c, ldl, y.data());
        for (int j = 0; j < r; ++j)
          ASSERT_NEAR(y[static_cast<std::size_t>(j)], x[static_cast<std::size_t>(j)], 1e-11);
      }
}

TEST_P(DenseKernels, PivotsStopWhereTheyMust) {
  const auto result = [&](double pivot, bool ldl) {
    auto a = panel(10, 14, false);
    for (int i = 0; i < 14; ++i) a[at(6, std::min(i, 9), 14)] = a[at(i, 6, 14)] = 0.0;
    a[at(6, 6, 14)] = pivot;
    return GetParam().factor_panel(a.data(), 14, 14, 10, ldl, packed.data());
  };
  EXPECT_EQ(result(1.0e-300, false), 0);
  EXPECT_EQ(result(1.0e20, false), 0);
  EXPECT_EQ(result(0.0, false), -1);
  EXPECT_EQ(result(-1.0, false), -1);
  EXPECT_EQ(result(std::nan(""), false), -1);
  EXPECT_EQ(result(-1.0, true), 0);
  EXPECT_EQ(result(1.0e-300, true), 0);
  EXPECT_EQ(result(0.0, true), -1);
}

std::vector<Kernels> variants() {
  std::vector<Kernels> v{{"plain", kernels_plain::update, kernels_plain::factor_panel,
                          kernels_plain::forward_panel, kernels_plain::backward_panel}};
  if (have_avx2())
    v.push_back({"avx2", kernels_avx2::update, kernels_avx2::factor_panel,
                 kernels_avx2::forward_panel, kernels_avx2::backward_panel});
  return v;
}
INSTANTIATE_TEST_SUITE_P(Variants, DenseKernels, testing::ValuesIn(variants()),
                         [](const auto& p) { return std::string(p.param.name); });

}  // namespace
