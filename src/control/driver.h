// The run: model, stages, result files. The batch program is run_program; another program may fill
// run.model itself (or with read_input), call generate_model, then run_analysis for k = 1 to nanal,
// and look at the arrays in between.
#pragma once
#include "base/arrays.h"
#include "base/text.h"
#include "buckling/check.h"
#include "model/description.h"
#include "model/elements.h"
#include "model/matrix.h"
#include "model/nodes.h"
#include "model/properties.h"

namespace zelvo {

// One block is added to each in every stage. A file that is not open keeps its text in memory.
struct ResultFiles {
  ResultFile rxn;  // support reactions
  ResultFile axf;  // top lateral forces
  ResultFile def;  // deflections
  ResultFile sec;  // cross-section forces
  ResultFile str;  // cross-section stresses
  ResultFile ibr;  // internal brace forces
  ResultFile ebr;  // external brace forces
  ResultFile rot;  // cross-section rotations
  ResultFile csc;  // buckling factors and buckled cross-sections
};

// Owns every array of a run.
struct Run {
  Model model;
  Nodes nodes;
  Elements elements;
  Properties properties;
  MatrixPattern pattern;
  Vector<double> K;           // (nnz) stiffness with support penalties
  Vector<double> KG;          // (nnz) geometric stiffness, only with the buckling check
  Vector<double> F, U;        // (5*nnode) loads, displacements
  Vector<double> eigval;      // (nev) buckling factors, zero until a check has found some
  Matrix<double> eigvec;      // (5*nnode,nev) buckling modes
  int ncv = LANCZOS_VECTORS;  // of the buckling check
  ResultFiles files;
};

// Nodes, elements, properties and matrix pattern of run.model, and the arrays of the analyses.
// Prints the model summary. The model has to be sound (control/input_check.h).
void generate_model(Run& run);

// Analysis k, 1 to nanal, to be called in this order: stage k reuses what stage k-1 left. Writes the
// result blocks of the stage and flushes the files.
void run_analysis(Run& run, int k);

// True if stage k > 1 has the deck moduli and stud stiffnesses of stage k-1: nothing else in the
// stiffness depends on the stage.
bool stiffness_holds(const Model& model, int k);

// The whole program, in the working directory. Returns the exit status.
int run_program();

}  // namespace zelvo
