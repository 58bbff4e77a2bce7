// The batch program: input, model, stages, result files. Another program may take its parts: fill a
// Model (or read one), call generate_model, then run_analysis for k = 1 to nanal.
#pragma once
#include "control/stage.h"

namespace zelvo {

// Structure, matrix pattern and arrays of a model, which has to be sound (control/input_check.h).
// Prints the model summary. Throws MemoryFailure for a model beyond this machine.
Run generate_model(const Model& model);

// The whole program, in the working directory. Returns the exit status.
int run_program();

}  // namespace zelvo
