// The sparse symmetric matrix of a model: upper triangle with diagonal, by rows, counted from 1.
//
// The pattern is by whole nodes: if two nodes share an element, all 5 x 5 equations of the pair are
// stored, whether the element uses them or not. Columns ascend; a row begins with its diagonal.
#pragma once
#include <cstdint>
#include <memory>

#include "base/arrays.h"

namespace zelvo {

// Equation of freedom d (1 to 5) of a node: u, v, w along x, y, z, then alpha about vt1, beta about
// vt2.
constexpr int NDOF = 5;
constexpr int equation(int node, int d) { return NDOF * (node - 1) + d; }

struct MatrixPattern {
  int n = 0;       // equations, five per node
  int nnz = 0;     // stored entries
  Vector<int> ia;  // (n+1) place in ja of the first entry of each row
  Vector<int> ja;  // (nnz) column of each entry
};

// Nodes of the elements, one element behind the other: element e has item(start(e)) to
// item(start(e+1) - 1).
struct NodeLists {
  Vector<std::int64_t> start;
  Vector<int> item;
};

// Finds the pattern of nnode nodes joined by the elements. A matrix of more entries than an int
// counts throws MemoryFailure.
MatrixPattern build_pattern(int nnode, const NodeLists& elements);

// Values over a pattern. Matrices of one model (K, KG) share theirs.
struct SymmetricMatrix {
  std::shared_ptr<const MatrixPattern> pattern;
  Vector<double> values;  // (nnz)

  int n() const { return pattern->n; }
  // Entry of freedoms d and c >= d of one node.
  double& own_value(int node, int d, int c) {
    assert(1 <= d && d <= c && c <= NDOF);
    return values(pattern->ia(equation(node, d)) + (c - d));
  }
  double diagonal(int i) const { return values(pattern->ia(i)); }
};

// The zero matrix; what names it where memory fails.
SymmetricMatrix zero_matrix(std::shared_ptr<const MatrixPattern> pattern, const char* what);

// Adds an element matrix.
//
//   ke    (n,n)  in      leading dimension ld; its upper triangle alone is read
//   dof   (n)    in      equations, in any order
//
// Entries outside the pattern are dropped.
void add_element(const double* ke, int ld, const int* dof, int n, SymmetricMatrix& K);

// The same, to the last bit, for an element whose equations are the first n/nen freedoms (3 or 5)
// of each of its nen nodes: the place of a node pair is looked up once for its whole block.
//
//   ke    (n,n)  in   freedoms node by node
//   node  (nen)  in   global nodes
void add_node_blocks(const double* ke, int n, const int* node, int nen, SymmetricMatrix& K);
template <int n>
void add_node_blocks(const FixedMatrix<double, n, n>& ke, const int* node, int nen,
                     SymmetricMatrix& K) {
  add_node_blocks(ke.data(), n, node, nen, K);
}

}  // namespace zelvo
