// The buckling check of a stage: the lowest factors lambda and shapes x of K x = lambda (-KG) x.
#pragma once
#include "matrix/symmetric.h"
#include "solution/progress.h"
#include "sparse/solver.h"

namespace zelvo {

// Lanczos vectors of a check.
constexpr int LANCZOS_VECTORS = 10;

// What the input says about the eigenvalue iteration.
struct EigenOptions {
  int nev;          // factors to find, below ncv: the iteration needs room beyond them
  int solver_type;  // 1: K is factored; 2: K + sigma KG is factored, shift-and-invert about sigma
  double tol;       // relative, on the iteration's own values mu or nu (see docs/theory.md)
  double sigma;     // shift of kind 2: a load factor, best near half the first one
  int ncv = LANCZOS_VECTORS;
};

struct BucklingModes {
  Vector<double> eigval;  // (nev) factors
  Matrix<double> eigvec;  // (n,nev) shapes, scaled to x'K x = 1
};

// How a check ended. Factors and shapes are new if found is true, else what they were.
struct EigenOutcome {
  int negative_terms = 0;  // diagonals of the shifted matrix that are not positive: no iteration
  int solver_code = 0;     // of the sparse solver, or 1 where no shift could be applied
  int dsaupd_info = 0;     // of ARPACK's iteration: negative failed, 1 at the limit of iterations
  int dseupd_info = 0;     // of ARPACK's extraction; what a failed one left is stored
  bool iterated = false;   // the iteration ran to its end
  bool found = false;
  int nconv = 0;  // pairs that have converged
  // Kind 2: factors between 0 and the shift, which are the negative eigenvalues of K - sigma B.
  int below_shift = 0;
};
constexpr int ITERATION_LIMIT_REACHED = 1;  // dsaupd_info

// Finds nev factors and shapes by implicitly restarted Lanczos iteration (Lehoucq, Sorensen, Yang
// 1998), ARPACK modes 2 and 4, with the sparse solver inside.
//   K      in      stiffness with the support penalties
//   KG     in/out  geometric stiffness over the same pattern; all its values change sign
//   modes  in/out  kind 1: the smallest positive factor first; kind 2: those nearest to the shift,
//                  in the order of ARPACK
EigenOutcome buckling_solve(const SymmetricMatrix& K, SymmetricMatrix& KG,
                            const EigenOptions& options, const Progress& done,
                            BucklingModes& modes);

// The same by kind 1 where the solver holds the factors of K already.
EigenOutcome buckling_solve_factored(const SymmetricMatrix& K, SolverHandle* factors,
                                     SymmetricMatrix& KG, const EigenOptions& options,
                                     const Progress& done, BucklingModes& modes);

// A matrix K - sigma B and its factors. The pattern is analysed once for all shifts.
struct ShiftedStiffness {
  SymmetricMatrix matrix;
  OwnedSolver solver;
};

// The smallest positive factors, the first one first, sharp and with none left out, where the solver
// holds the factors of K. A loose iteration by kind 1 finds where they begin; kind 2 about a shift
// below finds them. That K - sigma B has a Cholesky factor proves that none lies between 0 and sigma
// (Sylvester's law of inertia; Parlett 1998, ch. 3). Close factors, which kind 1 takes apart slowly,
// lie far apart in nu. Where there are no positive ones, and where no shift is found, the check is
// kind 1 alone. KG changes sign; options are those of kind 1.
EigenOutcome lowest_factors(const SymmetricMatrix& K, SolverHandle* factors, SymmetricMatrix& KG,
                            const EigenOptions& options, ShiftedStiffness& shifted,
                            BucklingModes& modes);

}  // namespace zelvo
