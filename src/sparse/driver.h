// One entry for all stages of the solution of a sparse symmetric system, and the owner of the
// solver's memory. Each call is checked against the last one before any stage runs.
#pragma once
#include "base/arrays.h"
#include "base/failures.h"
#include "sparse/details.h"

namespace zelvo {

struct DriverState;

// What the caller keeps between calls, as it is before the first one.
struct PointerBlock {
  DriverState* state = nullptr;  // all memory of the solver; null marks a first call
  Detail detail = NO_DETAIL;     // where the last failure happened
  MemoryFailure shortage{};      // what could not be had, after DRIVER_NO_MEMORY
};

// (1) 1: take entries 2 and 5 from here; otherwise nested dissection
// (2) order: 2 nested dissection. 0 and 1 are the codes of minimum degree orders; they get nested
//     dissection as well, which gives the same solution with less fill
// (3) processors; only panel sizes depend on it
// (4) not read: iteration on an old factor does not exist here
// (5) 1: the order is perm
// (6) 0: the solution goes to x, 1: it overwrites b
using DriverParameters = FixedVector<int, 6>;

// Errors.
constexpr int DRIVER_BAD_INPUT = -1, DRIVER_NO_MEMORY = -2, DRIVER_ANALYSIS_FAILED = -3,
              DRIVER_NUMERIC_FAILED = -4;

// Runs the stages that ido encodes: its tens are the first, its units the last of 1 analysis,
// 2 numeric factorization, 3 solve (11, 12, 13, 22, 23, 33); 0 releases the factor of
// matrix_number, -1 everything.
//
//   max_fac_store     in   factors that may be kept at a time
//   matrix_number     in   which of them this call works on
//   matrix_type       in   2 positive definite (L L'), -2 indefinite (L D L'). Other types pass the
//                          checks of range but have no storage here: they are bad input
//   a, ia, ja         in   values and rows of the upper triangle, numbers from 1. a is read by
//                          stage 2 only and may be null without it
//   perm    (neqns)   in   the caller's order, perm(new) = old, when iparam(5) is 1
//   nb                in   right-hand sides
//   message_flag      in   0; statistics are not gathered
//   b, x    (neqns,nb)     right-hand sides and solution, used by stage 3 only
//   error             out  0 or a driver error; nothing else is written but one line for an ido
//                          below -1
//
// Memory stays held until ido -1, also after an error.
void sparse_driver(PointerBlock& pt, int max_fac_store, int matrix_number, int matrix_type, int ido,
                   int neqns, const double* a, const int* ia, const int* ja, const int* perm,
                   int nb, const DriverParameters& iparam, int message_flag, double* b, double* x,
                   int& error);

// How many pivots of the kept L D L' factor of a matrix are negative, which is how many of its
// eigenvalues are (Sylvester's law of inertia); none of a Cholesky factor.
int negative_pivots(const PointerBlock& pt, int matrix_number);

}  // namespace zelvo
