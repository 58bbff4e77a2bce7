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
#include "model/structure.h"
#include "shell/kernel.h"

namespace zelvo {

enum class ModeKind { PLATE, FLANGE, FRAME, GIRDER };

// What buckles in a mode, and where.
struct ModeNature {
  ModeKind kind = ModeKind::GIRDER;
  double share = 0;          // of the mode's measure that says so, 0 to 1
  int girder = 0;            // 1 or 2, where it is largest
  Plate plate = Plate::WEB;  // for PLATE: which one
  int side = 0;              // for PLATE webs and FLANGE: 1 left, 2 right
  double position = 0;       // inches along the reference line, where it is largest
  std::string remark;        // what the reader has to know of such a mode
};

// One check of one stage.
struct HistoryCheck {
  EigenOutcome outcome;
  BucklingModes modes;
  Vector<PairQuality> quality;     // (nev)
  std::vector<ModeNature> nature;  // (nev)
};

// Kind 1, tolerance 1e-6.
constexpr EigenOptions SHARP_CHECK{2, 1, 1.0e-6, 0.0};

// The stiffness of a stage and a solver that holds its factors.
struct FactoredStiffness {
  const SymmetricMatrix& K;
  SolverHandle* factors;
};

// What a check works in: KG is overwritten by the negated geometric stiffness.
struct CheckWork {
  LastInverse& last;
  SymmetricMatrix& KG;
};

// The check of a stiffness under the stresses of the displacements U, for steel of analysis k.
HistoryCheck check_state(const Structure& structure, const FactoredStiffness& stiffness,
                         const Vector<double>& U, int k, const EigenOptions& options,
                         CheckWork& work);

// What buckles in a shape x (n).
ModeNature mode_nature(const Structure& structure, const double* x);

}  // namespace zelvo
