// Numeric factorization and solve of a sparse symmetric matrix whose structure is known.
//
// The factor of P A P' is computed supernode by supernode, left-looking, on dense rectangles
// (Ng and Peyton 1993): L L' (Cholesky), or L D L' with unit L and diagonal D. There is no numerical
// pivoting in either: the order of the structure is final.
#pragma once
#include <cstdint>

#include "base/arrays.h"
#include "sparse/dense_kernels.h"
#include "sparse/structure.h"

namespace zelvo {

// Factor and work storage of one matrix. It outlives the call: a second factorization of the same
// structure finds everything large enough and allocates nothing.
struct NumericWork {
  Vector<double> lnz;          // (factor_size) the factor; for L D L' the diagonal places hold D
  Vector<double> packed;       // operands of the dense kernels in the order of their use
  Vector<UpdatePiece> pieces;  // (nsuper) pieces of the chain that updates
  Vector<double> work;         // (neqns + max_rows) right-hand side in new order, one supernode's
  Vector<int> indmap;          // (neqns) distance of a row from the bottom of the target
  Vector<double*> column;      // (neqns) columns of the target
  Vector<int> place;           // (max_rows) row of the target of each row of an update, from 0
  Vector<int> link;            // (nsuper) lists of the supernodes that wait for the same target
  Vector<int> head;            // (nsuper) first supernode of the list that waits for each target
  Vector<int> remaining;       // (nsuper) rows of a supernode that are not yet used as targets
};

// Results of the two factorizations.
constexpr int FACTOR_DONE = 0;
constexpr int FACTOR_BAD_PIVOT = -1;  // Cholesky: a pivot not positive; L D L': a pivot of zero

// Makes w large enough for the structure. Updates pass through registers, between scattered rows too,
// so there is no block to hold them. Arrays that are large enough already are kept as they are.
void reserve_numeric(const FactorStructure& s, NumericWork& w);

// lnz(luperm(k)) = a(k) for the stored values of A, all other places of the factor zero.
void scatter_a(const FactorStructure& s, const double* a, Vector<double>& lnz);

// Factors the matrix with the stored values a (in the order of luperm). After a result other than
// FACTOR_DONE lnz holds a partial factor. No tolerance enters: a pivot of 1.0e-300 passes.
int factor_cholesky(const FactorStructure& s, const double* a, NumericWork& w);
int factor_ldl(const FactorStructure& s, const double* a, NumericWork& w);

// Negative entries of D in the L D L' of w.
int negative_diagonals(const FactorStructure& s, NumericWork& w);

// Solves A x = b with the factor in w, one right-hand side after the other.
//   b, x  (neqns,nrhs)  in, out; they may be the same array
void solve_cholesky(const FactorStructure& s, NumericWork& w, const double* b, int nrhs, double* x);
void solve_ldl(const FactorStructure& s, NumericWork& w, const double* b, int nrhs, double* x);

}  // namespace zelvo
