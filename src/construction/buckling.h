// Buckling of a bridge with the stress that its construction has left in it.
//
// At stage k: K_k x = lambda (-KG) x with K_k the stiffness of the stage and KG from the forces and
// stresses that have accumulated. lambda multiplies all loads so far by one number, in the same
// sequence. The deck has no part in KG. Steel never changes, so its shells and bars take the summed
// displacements; frames are condensed on their total forces.
#pragma once
#include <string>
#include <vector>

#include "buckling/check.h"
#include "buckling/quality.h"
#include "construction/modes.h"
#include "shell/kernel.h"

namespace zelvo {

// One check of one stage.
struct HistoryCheck {
  EigenOutcome outcome;
  BucklingModes modes;
  Vector<PairQuality> quality;     // (nev) of the pairs found; empty where none were
  std::vector<ModeNature> nature;  // the same
};

// Two modes by kind 1, tolerance 1e-6, with 20 Lanczos vectors: fewer restarts than the batch
// program's 10 have, at this tolerance.
constexpr EigenOptions SHARP_CHECK{2, 1, 1.0e-6, 0.0, 20};

// The stiffness of a stage and a solver that holds its factors.
struct FactoredStiffness {
  const SymmetricMatrix& K;
  SolverHandle* factors;
};

// What a check works in. KG has the pattern of K and is overwritten.
struct CheckWork {
  LastInverse& last;
  SymmetricMatrix& KG;
  ShiftedStiffness& shifted;  // with the same pattern in all checks
};

// The check of a stiffness under the stresses of the displacements U, for steel of analysis k:
//   history     K_k, U the sum of the stages' displacements
//   batch rule  K_k, U = K_k^-1 (sum of the loads)
//   softest     K of the softest model, U = K^-1 (sum of the loads)
// The smallest positive factors, none left out (buckling/check.h: lowest_factors). Without stress
// (U = 0) nothing is found.
HistoryCheck check_state(const Structure& structure, const FactoredStiffness& stiffness,
                         const Vector<double>& U, int k, const EigenOptions& options,
                         CheckWork& work);

// What the factors mean to a reader, each remark one clause: a factor below 1 or a negative one,
// modes that have not converged or are not sharp, and a check that found none.
std::vector<std::string> check_remarks(const HistoryCheck& check);

// The model with every deck segment at its softest: in each stage the smallest modulus and the
// smallest stud stiffness that the segment has in any.
Model softest_model(const Model& model);

}  // namespace zelvo
