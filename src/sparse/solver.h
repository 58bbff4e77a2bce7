// The sparse direct solver in six calls: create, define structure, reorder, factor, solve, delete.
// Memory that cannot be had is also told on standard error, with what it was for and its size.
//
// A x = b with A symmetric, given by the rows of its upper triangle with the diagonal, numbers from
// 1, columns ascending. All calls return 0 or a code. A negative code came with a message on
// standard output; by default every message ends the process with its code as exit status.
// SOLVER_NUMERIC_FAILURE comes without a message and never ends the process.
#pragma once
#include <cstdint>

namespace zelvo {

struct SolverHandle;

// Option words: the fields of a word are joined with |; 0 leaves everything at its default. Levels
// stay with the handle for the calls that follow.
constexpr std::uint32_t SOLVER_SYMMETRIC = 0x20000040;
constexpr std::uint32_t SOLVER_STRUCTURALLY_SYMMETRIC = 0x20000080;  // accepted, never analysed
constexpr std::uint32_t SOLVER_NONSYMMETRIC = 0x200000C0;            // accepted, never analysed
constexpr std::uint32_t SOLVER_AUTOMATIC_ORDER = 0x10000040;         // nested dissection
constexpr std::uint32_t SOLVER_USER_ORDER = 0x10000080;
constexpr std::uint32_t SOLVER_MINIMUM_DEGREE = 0x100000C0;  // served by nested dissection too
constexpr std::uint32_t SOLVER_POSITIVE_DEFINITE = 0x08000040;
constexpr std::uint32_t SOLVER_INDEFINITE = 0x08000080;

// Severities: 0 success, 1 debug, 2 info, 3 warning, 4 error, 5 fatal. Messages of at least the
// message level are written; one of at least the termination level ends the process. Both are 4.
constexpr std::uint32_t solver_message_level(std::uint32_t severity) {
  return 0x80000001 + severity;
}
constexpr std::uint32_t solver_termination_level(std::uint32_t severity) {
  return 0x40000008 + 8 * severity;
}

// Positive definite: a pivot that is not positive. Indefinite: a pivot that is exactly zero.
constexpr int SOLVER_NUMERIC_FAILURE = 1;

// Makes a handle. Options: levels.
int solver_create(SolverHandle*& handle, std::uint32_t options);

// Records the pattern: ia (n_rows+1), ja (nnz), where nnz must be ia(n_rows+1) - 1. The handle keeps
// the pointers; the arrays must live until the last solve. Options: levels, structure.
int solver_define_structure(SolverHandle* handle, std::uint32_t options, const int* ia, int n_rows,
                            int n_cols, const int* ja, int nnz);

// Orders and analyses. permutation (n_rows), permutation(new) = old, is read with SOLVER_USER_ORDER
// only. Options: levels, order.
int solver_reorder(SolverHandle* handle, std::uint32_t options, const int* permutation);

// Factors the matrix with values (nnz), which are read during the call only. May be called again
// with other values. Options: levels, positive definite (default) or indefinite.
int solver_factor_real(SolverHandle* handle, std::uint32_t options, const double* values);

// Solves for rhs (n_rows,n_rhs) into x (n_rows,n_rhs). Options: levels.
int solver_solve_real(SolverHandle* handle, std::uint32_t options, const double* rhs, int n_rhs,
                      double* x);

// How many eigenvalues of the matrix last factored as indefinite are negative: as many as pivots are
// (Sylvester's law of inertia; Parlett 1998, ch. 3). 0 without such a factor.
int solver_negative_pivots(const SolverHandle* handle);

// Frees the handle and all memory of the solver and sets the handle to null. Options: levels.
int solver_delete(SolverHandle*& handle, std::uint32_t options);

// A handle with an owner: what is left of it at the end of its scope, on an exception too, is
// released without a word and whatever its state. solver_delete before is as good.
struct OwnedSolver {
  SolverHandle* handle = nullptr;

  OwnedSolver() = default;
  OwnedSolver(const OwnedSolver&) = delete;
  OwnedSolver& operator=(const OwnedSolver&) = delete;
  ~OwnedSolver();
};

}  // namespace zelvo
