// One stage of a run: assembly, loads, solution, buckling check, results, with its console lines.
#pragma once
#include "model/structure.h"
#include "results/stage_results.h"
#include "solution/loads.h"

namespace zelvo {

// What goes on from stage to stage besides the arrays; the input gives its first values.
struct StageState {
  SteelWeight weight;  // enters the loads once, in the first stage
  int solver_type;     // eigenvalue iteration: 1, 2, or 0 while none is chosen
  double tol, sigma;   // its tolerance and shift
  int ncv = LANCZOS_VECTORS;
};
StageState first_state(const Model& model);

// Owns all that the stages of a model share.
struct Run {
  Structure structure;
  SymmetricMatrix K;    // stiffness with support penalties
  SymmetricMatrix KG;   // geometric stiffness; without values where the model has no check
  Vector<double> F, U;  // (5*nnode) loads, displacements
  BucklingModes modes;  // zero until a check has found some; empty where the model has no check
  StageState state;
  LastInverse inverses;
};

// The arrays of the analyses over the pattern of run.structure.
void allocate_arrays(const Model& model, MatrixPattern pattern, Run& run);

// Analysis k, 1 to nanal, to be called in this order: stage k reuses what stage k-1 left.
StageResults run_analysis(const Model& model, int k, Run& run);

}  // namespace zelvo
