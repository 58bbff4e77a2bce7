#include "matrix/symmetric.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "base/failures.h"

namespace zelvo {

namespace {

// Elements at every node, ascending.
NodeLists nodes_to_elements(int nnode, const NodeLists& elnode) {
  NodeLists ndelem{Vector<std::int64_t>(std::int64_t{nnode} + 2, "the node lists"),
                   Vector<int>(elnode.item.size(), "the node lists", UNINITIALIZED)};
  // start(n+1) counts, then points to the next free place of node n, and ends as the start of n+1.
  for (const int n : elnode.item) ++ndelem.start(n + 2);
  ndelem.start(1) = ndelem.start(2) = 1;
  for (int n = 2; n <= nnode + 1; ++n) ndelem.start(n + 1) += ndelem.start(n);
  const int nel = static_cast<int>(elnode.start.size()) - 1;
  for (int e = 1; e <= nel; ++e)
    for (std::int64_t p = elnode.start(e); p < elnode.start(e + 1); ++p)
      ndelem.item(ndelem.start(elnode.item(p) + 1)++) = e;
  return ndelem;
}

// A node itself, then every higher node that shares an element with it.
class NeighbourLists {
 public:
  NeighbourLists(int nnode, const NodeLists& elnode, const NodeLists& ndelem)
      : elnode_(elnode), ndelem_(ndelem), seen_(nnode), list_(nnode) {}
  int collect(int i) {
    int k = 0;
    ++stamp_;
    list_(++k) = i;
    for (std::int64_t q = ndelem_.start(i); q < ndelem_.start(i + 1); ++q) {
      const int e = ndelem_.item(q);
      for (std::int64_t p = elnode_.start(e); p < elnode_.start(e + 1); ++p) {
        const int n = elnode_.item(p);
        if (n <= i || seen_(n) == stamp_) continue;
        seen_(n) = stamp_;
        list_(++k) = n;
      }
    }
    return k;
  }
  const Vector<int>& sorted(int k) {
    std::sort(list_.begin(), list_.begin() + k);
    return list_;
  }

 private:
  const NodeLists& elnode_;
  const NodeLists& ndelem_;
  Vector<int> seen_;  // (nnode) stamp of the last list that took the node
  Vector<int> list_;
  int stamp_ = 0;  // lists collected so far
};

// A node whose list holds k nodes stores its own upper triangle and k-1 full blocks.
std::int64_t count_entries(int nnode, NeighbourLists& lists) {
  std::int64_t nnz = 0;
  for (int i = 1; i <= nnode; ++i) nnz += 25 * std::int64_t{lists.collect(i)} - 10;
  return nnz;
}

void fill_rows(int nnode, NeighbourLists& lists, MatrixPattern& pattern) {
  Vector<int>&ia = pattern.ia, &ja = pattern.ja;
  int next = 1;
  for (int i = 1; i <= nnode; ++i) {
    const int k = lists.collect(i);
    const Vector<int>& node = lists.sorted(k);
    for (int q = 1; q <= NDOF; ++q) {
      ia(equation(i, q)) = next;
      for (int d = q; d <= NDOF; ++d) ja(next++) = equation(i, d);
      for (int j = 2; j <= k; ++j)
        for (int d = 1; d <= NDOF; ++d) ja(next++) = equation(node(j), d);
    }
  }
  ia(pattern.n + 1) = next;
}

}  // namespace

MatrixPattern build_pattern(int nnode, const NodeLists& elements) {
  assert(std::all_of(elements.item.begin(), elements.item.end(),
                     [=](int n) { return 1 <= n && n <= nnode; }));
  const NodeLists ndelem = nodes_to_elements(nnode, elements);
  NeighbourLists lists(nnode, elements, ndelem);

  const std::int64_t nnz = count_entries(nnode, lists);
  constexpr std::int64_t most = std::numeric_limits<int>::max();
  if (nnz >= most || std::int64_t{NDOF} * nnode >= most)
    throw MemoryFailure{static_cast<double>(nnz) * (sizeof(int) + sizeof(double)),
                        "the stiffness matrix"};
  MatrixPattern pattern;
  pattern.n = NDOF * nnode;
  pattern.nnz = static_cast<int>(nnz);
  pattern.ia = Vector<int>(std::int64_t{pattern.n} + 1, "the stiffness matrix", UNINITIALIZED);
  pattern.ja = Vector<int>(nnz, "the stiffness matrix", UNINITIALIZED);
  fill_rows(nnode, lists, pattern);
  return pattern;
}

SymmetricMatrix zero_matrix(std::shared_ptr<const MatrixPattern> pattern, const char* what) {
  const int nnz = pattern->nnz;
  return {std::move(pattern), Vector<double>(nnz, what)};
}

void add_element(const double* ke, int ld, const int* dof, int n, SymmetricMatrix& K) {
  const MatrixPattern& pattern = *K.pattern;
  assert(ld >= n && K.values.size() == pattern.nnz);
  const MatrixView<const double> k{ke, n, n, ld};
  for (int a = 1; a <= n; ++a) {
    for (int b = a; b <= n; ++b) {
      const int row = std::min(dof[a - 1], dof[b - 1]), column = std::max(dof[a - 1], dof[b - 1]);
      int t = pattern.ia(row);
      while (t < pattern.ia(row + 1) && pattern.ja(t) != column) ++t;
      if (t < pattern.ia(row + 1)) K.values(t) += k(a, b);
    }
  }
}

namespace {

constexpr int MAX_NODES = 9;  // of an element

// Nodes of an element in ascending order; at is the place of each in the element.
struct SortedNodes {
  int node[MAX_NODES], at[MAX_NODES];

  SortedNodes(const int* nodes, int nen) {
    for (int a = 0; a < nen; ++a) {
      int i = a;
      for (; i > 0 && node[i - 1] > nodes[a]; --i) {
        node[i] = node[i - 1];
        at[i] = at[i - 1];
      }
      node[i] = nodes[a];
      at[i] = a;
    }
  }
};

// Places of the higher nodes in the columns of every node's first row, counted from 0. False if a
// pair is not in the pattern, or if the element names a node twice.
bool find_places(const SortedNodes& s, int nen, const MatrixPattern& pattern,
                 int (&place)[MAX_NODES][MAX_NODES]) {
  for (int a = 0; a < nen; ++a) {
    const int row = equation(s.node[a], 1), end = pattern.ia(row + 1) - 1;
    int t = pattern.ia(row) - 1;
    const int first = t;
    for (int b = a + 1; b < nen; ++b) {
      const int column = equation(s.node[b], 1);
      while (t < end && pattern.ja.data()[t] < column) t += NDOF;
      if (t >= end || pattern.ja.data()[t] != column || s.node[b] == s.node[b - 1]) return false;
      place[a][b] = t - first;
    }
  }
  return true;
}

// Row by row of the matrix, so that memory is walked in order: an element spreads over a few
// hundred cache lines, and fetching them is what the add costs.
template <int ndof>
void add_rows(const double* ke, std::ptrdiff_t ld, const SortedNodes& s, int nen,
              const int (&place)[MAX_NODES][MAX_NODES], const MatrixPattern& pattern, double* K) {
  for (int a = 0; a < nen; ++a) {
    const int ka = ndof * s.at[a];
    for (int q = 0; q < ndof; ++q) {
      // Row q of a node lacks the q columns before its diagonal.
      double* row = K + (pattern.ia(equation(s.node[a], q + 1)) - 1) - q;
      for (int c = q; c < ndof; ++c) row[c] += ke[(ka + q) + ld * (ka + c)];
      for (int b = a + 1; b < nen; ++b) {
        double* run = row + place[a][b];
        const int kb = ndof * s.at[b];
        if (ka < kb)
          for (int c = 0; c < ndof; ++c) run[c] += ke[(ka + q) + ld * (kb + c)];
        else
          for (int c = 0; c < ndof; ++c) run[c] += ke[(kb + c) + ld * (ka + q)];
      }
    }
  }
}

// The rule by single equations, for elements that are not as elements should be.
void add_by_equations(const double* ke, int n, const int* node, int nen, SymmetricMatrix& K) {
  const int ndof = n / nen;
  int dof[MAX_NODES * NDOF];
  for (int a = 0; a < nen; ++a)
    for (int d = 1; d <= ndof; ++d) dof[ndof * a + d - 1] = equation(node[a], d);
  add_element(ke, n, dof, n, K);
}

}  // namespace

void add_node_blocks(const double* ke, int n, const int* node, int nen, SymmetricMatrix& K) {
  const MatrixPattern& pattern = *K.pattern;
  assert((n == 3 * nen || n == NDOF * nen) && nen <= MAX_NODES);
  assert(K.values.size() == pattern.nnz);
  const SortedNodes sorted(node, nen);
  int place[MAX_NODES][MAX_NODES];
  if (!find_places(sorted, nen, pattern, place))
    add_by_equations(ke, n, node, nen, K);
  else if (n == NDOF * nen)
    add_rows<NDOF>(ke, n, sorted, nen, place, pattern, K.values.data());
  else
    add_rows<3>(ke, n, sorted, nen, place, pattern, K.values.data());
}

}  // namespace zelvo
