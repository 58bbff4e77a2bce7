// Small sparse symmetric matrices for the solver's tests: upper triangle by rows, numbers from 1.
#pragma once
#include <algorithm>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace zelvo {

struct SmallMatrix {
  int n = 0;
  std::vector<int> ia{1}, ja{};
  std::vector<double> a{};
  int nnz() const { return static_cast<int>(ja.size()); }
  double& diagonal(int i) { return a[ia[i - 1] - 1]; }
};

using Pairs = std::set<std::pair<int, int>>;  // coupled vertices (u,v), u < v

// Every vertex stands for w equations, coupled with each other and with those of its neighbours:
// w(v-1)+1 to wv, or v, v+n, v+2n, ... when scattered. Couplings lie in -1 to 1 and the diagonals
// dominate (an indefinite matrix comes from signs on the diagonal).
inline SmallMatrix small_matrix(int n, const Pairs& pairs, int w = 1, bool scattered = false) {
  std::mt19937 random(12345);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  std::vector<int> degree(n + 1, 1);
  for (const auto& [u, v] : pairs) ++degree[u], ++degree[v];
  SmallMatrix m{.n = w * n};
  for (int i = 1; i <= m.n; ++i) {
    for (int j = i; j <= m.n; ++j) {
      const int u = scattered ? (i - 1) % n + 1 : (i - 1) / w + 1;
      const int v = scattered ? (j - 1) % n + 1 : (j - 1) / w + 1;
      if (u != v && !pairs.contains(std::minmax(u, v))) continue;
      m.ja.push_back(j);
      m.a.push_back(i == j ? w * degree[u] : value(random));
    }
    m.ia.push_back(m.nnz() + 1);
  }
  return m;
}

inline Pairs random_pairs(int n, int count, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> vertex(1, n);
  Pairs pairs;
  while (count-- > 0) {
    const int u = vertex(random), v = vertex(random);
    if (u != v) pairs.insert(std::minmax(u, v));
  }
  return pairs;
}

inline Pairs grid_pairs(int rows, int cols) {
  Pairs pairs;
  for (int i = 1; i <= rows * cols; ++i) {
    if (i % cols != 0) pairs.insert({i, i + 1});
    if (i + cols <= rows * cols) pairs.insert({i, i + cols});
  }
  return pairs;
}

// visit(i, j, t) for every stored value, t its place from 1.
template <class Visit>
void each_value(const SmallMatrix& m, Visit visit) {
  for (int i = 1; i <= m.n; ++i)
    for (int t = m.ia[i - 1]; t < m.ia[i]; ++t) visit(i, m.ja[t - 1], t);
}

}  // namespace zelvo
