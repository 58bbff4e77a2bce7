#include "solution/linear.h"

#include "sparse/solver.h"

namespace zelvo {

int solve_linear(const SymmetricMatrix& K, const Vector<double>& F, const Progress& done,
                 Vector<double>& U) {
  const MatrixPattern& p = *K.pattern;
  assert(K.values.size() == p.nnz && F.size() == p.n && U.size() == p.n);
  OwnedSolver solver;
  int code = 0;
  const auto went_well = [&](int outcome, Step step) {
    code = outcome;
    if (code == 0) done(step);
    return code == 0;
  };
  const int *ia = p.ia.data(), *ja = p.ja.data();
  if (went_well(solver_create(solver.handle, 0), Step::SOLVER_CREATION) &&
      went_well(solver_define_structure(solver.handle, SOLVER_SYMMETRIC, ia, p.n, p.n, ja, p.nnz),
                Step::SOLVER_DEFINITION) &&
      went_well(solver_reorder(solver.handle, 0, nullptr), Step::SOLVER_REORDERING) &&
      went_well(solver_factor_real(solver.handle, SOLVER_POSITIVE_DEFINITE, K.values.data()),
                Step::SOLVER_FACTORIZATION) &&
      went_well(solver_solve_real(solver.handle, 0, F.data(), 1, U.data()), Step::SOLVER_SOLUTION))
    went_well(solver_delete(solver.handle, 0), Step::SOLVER_DELETION);
  return code;
}

}  // namespace zelvo
