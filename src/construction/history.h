// The construction of a bridge, stage by stage: one pass over the stages gives increments, totals,
// envelopes, checks of equilibrium and, where wanted, of buckling.
//
// Every stage is its own load on its own stiffness, whatever the input says of a buckling check; an
// increment is the solution of a stage times its load factor, a total the sum of the increments up
// to a stage. Nothing is scaled anew when concrete hardens.
#pragma once
#include <algorithm>
#include <functional>
#include <vector>

#include "construction/buckling.h"
#include "construction/checks.h"
#include "construction/envelope.h"
#include "results/stage_results.h"
#include "solution/progress.h"

namespace zelvo {

// Which checks of buckling a pass makes.
struct CheckChoice {
  bool history = false;  // K of the stage, stresses that have accumulated
  bool batch_rule =
      false;             // K of the stage, the sum of all loads on it, as the batch program has it
  bool softest = false;  // all loads on every segment at its softest, a comparison and no bound
  std::vector<int> stages{};  // that are checked; empty: all

  bool include(int k) const {
    return stages.empty() || std::find(stages.begin(), stages.end(), k) != stages.end();
  }
};

struct StageRecord;

// A stage that is done: its record, its unfactored displacements and the factored ones of all stages
// so far, (5*nnode) each. Who throws here ends the pass.
using StageDone = std::function<void(const Structure& structure, const StageRecord& record,
                                     const Vector<double>& U, const Vector<double>& total)>;

struct HistoryOptions {
  std::vector<double> load_factor;  // of each stage; 1 where none is given
  double bearing_spacing = 0;       // inches between the two bearings of a girder; 0: one bearing
  CheckChoice checks;
  EigenOptions eigen = SHARP_CHECK;  // kind 1
  StageDone stage_done;              // called after each stage where it is given
};

struct StageRecord {
  StageResults results;         // unfactored: the batch program's without a buckling check
  Quantities increment, total;  // factored
  StageChecks checks;
  HistoryCheck history, batch_rule, softest;  // empty where not made
};

struct History {
  Structure structure;
  std::vector<StageRecord> stage;  // stage[k - 1] is analysis k
  Envelope increments, totals;
  BracingWeight bracing;
  double plates = 0;  // kips of steel plate
};

// Constructs a sound model (control/input_check.h). A stage that cannot be solved (its solver_code is
// not 0) adds nothing.
History construct(const Model& model, const HistoryOptions& options, const Progress& done);

}  // namespace zelvo
