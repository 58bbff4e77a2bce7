// Small sparse symmetric matrices for the solver's tests: upper triangle by rows, numbers from 1.
#pragma once
#include <map>
#include <random>
#include <set>
#include <utility>
#include <vector>

struct SmallMatrix {
  int n;
  std::vector<int> ia, ja;
  std::vector<double> a;
  int nnz() const { return static_cast<int>(ja.size()); }
  double& diagonal(int i) {
    return a[static_cast<std::size_t>(ia[static_cast<std::size_t>(i) - 1]) - 1];
  }
};

using Pairs = std::set<std::pair<int, int>>;  // coupled equations (i,j), i < j

// Diagonals are stored; off-diagonal values lie in -1 to 1, diagonals make the rows dominant by
// `shift` (an indefinite matrix comes from signs on the diagonal).
inline SmallMatrix small_matrix(int n, const Pairs& pairs, double shift = 1.0) {
  std::mt19937 random(12345);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  std::map<std::pair<int, int>, double> entries;
  std::vector<double> row_sum(static_cast<std::size_t>(n) + 1, shift);
  for (const auto& [i, j] : pairs) {
    const double v = entries[{i, j}] = value(random);
    row_sum[static_cast<std::size_t>(i)] += std::abs(v);
    row_sum[static_cast<std::size_t>(j)] += std::abs(v);
  }
  for (int i = 1; i <= n; ++i) entries[{i, i}] = row_sum[static_cast<std::size_t>(i)];
  SmallMatrix m{n, {1}, {}, {}};
  auto at = entries.begin();
  for (int i = 1; i <= n; ++i) {
    for (; at != entries.end() && at->first.first == i; ++at) {
      m.ja.push_back(at->first.second);
      m.a.push_back(at->second);
    }
    m.ia.push_back(m.nnz() + 1);
  }
  return m;
}

inline Pairs random_pairs(int n, int count, unsigned seed) {
  std::mt19937 random(seed);
  Pairs pairs;
  for (int k = 0; k < count; ++k) {
    const int i = 1 + static_cast<int>(random() % static_cast<unsigned>(n));
    const int j = 1 + static_cast<int>(random() % static_cast<unsigned>(n));
    if (i != j) pairs.insert(std::minmax(i, j));
  }
  return pairs;
}

inline Pairs grid_pairs(int rows, int cols) {
  Pairs pairs;
  for (int r = 0; r < rows; ++r) {
    for (int c = 1; c <= cols; ++c) {
      const int i = r * cols + c;
      if (c < cols) pairs.insert({i, i + 1});
      if (r + 1 < rows) pairs.insert({i, i + cols});
    }
  }
  return pairs;
}

// Every vertex becomes w equations, all coupled with each other and with those of its neighbours.
// Equations of vertex v: w(v-1)+1 to wv, or v, v+n, v+2n, ... when scattered.
inline Pairs blown_up(int n, const Pairs& pairs, int w, bool scattered) {
  const auto equation = [&](int v, int d) { return scattered ? v + n * d : w * (v - 1) + d + 1; };
  Pairs out;
  const auto couple = [&](int u, int v) {
    for (int d = 0; d < w; ++d) {
      for (int e = 0; e < w; ++e) {
        if (equation(u, d) != equation(v, e)) {
          out.insert(std::minmax(equation(u, d), equation(v, e)));
        }
      }
    }
  };
  for (int v = 1; v <= n; ++v) couple(v, v);
  for (const auto& [u, v] : pairs) couple(u, v);
  return out;
}
