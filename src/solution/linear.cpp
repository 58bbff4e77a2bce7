#include "solution/linear.h"

#include <cstdint>
#include <string>

#include "base/text.h"
#include "sparse/solver.h"

namespace zelvo {

void solve_linear(const MatrixPattern& pattern, const Vector<double>& K, const Vector<double>& F,
                  Vector<double>& U) {
  SolverHandle* handle = nullptr;
  int step = 0;
  const auto done = [&](int error, const char* what) {
    if (error != 0)
      console_line("Solver Returned Error Code ", std::int64_t{error});
    else
      console_line("Solver Step " + std::to_string(++step) + " of 6 - " + what + " Completed");
    return error == 0;
  };
  const int n = pattern.n;
  const int *ia = pattern.ia.data(), *ja = pattern.ja.data();
  const bool solved =
      done(solver_create(handle, 0), "Creation") &&
      done(solver_define_structure(handle, SOLVER_SYMMETRIC, ia, n, n, ja, pattern.nnz),
           "Definition") &&
      done(solver_reorder(handle, 0, nullptr), "Reordering") &&
      done(solver_factor_real(handle, SOLVER_POSITIVE_DEFINITE, K.data()), "Factorization") &&
      done(solver_solve_real(handle, 0, F.data(), 1, U.data()), "Solution");
  const int deleted = solver_delete(handle, 0);  // after a failure too, but then without a line
  if (solved) done(deleted, "Deletion");
}

}  // namespace zelvo
