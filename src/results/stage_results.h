// What a stage leaves: the one form in which its numbers go to files and other programs.
#pragma once
#include "bars/forces.h"
#include "buckling/check.h"
#include "buckling/quality.h"
#include "buckling/shape.h"
#include "shell/sections.h"
#include "solution/nodal.h"

namespace zelvo {

// Of a stage with the buckling check; all empty without it.
struct BucklingResults {
  EigenOutcome outcome;
  BucklingModes modes;          // those of an earlier stage, or zero, where this check found none
  Vector<PairQuality> quality;  // (nev) of the pairs found; empty where none were
  BuckledSections sections;
};

// Full precision, inches, kips, ksi, radians. With the buckling check everything but the check
// itself stands at the first buckling load of the stage.
struct StageResults {
  int k = 0;            // analysis, from 1
  int solver_code = 0;  // of the linear solution: with another than 0 all displacements are zero
  bool finite = true;   // all displacements are numbers
  StationDisplacements stations;
  Reactions reactions;
  SectionResults sections;
  BarForces bars;
  BucklingResults buckling;
};

}  // namespace zelvo
