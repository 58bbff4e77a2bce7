// The run of a job: the nine result files and results.json, all of them or none.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "construction/history.h"
#include "exchange/job.h"
#include "exchange/json.h"

namespace zelvo {

constexpr int EXIT_CLEAN = 0, EXIT_WARNINGS = 1, EXIT_ERRORS = 2;

// Which buckling checks a run makes.
enum class Buckling {
  AS_INPUT,  // three ways where the input has `buckle`, else none
  NONE,
  HISTORY,
  ALL
};

struct RunOptions {
  std::string path;
  std::string folder;  // of the results; that of the input if empty
  Buckling buckling = Buckling::AS_INPUT;
  std::vector<int> checked;  // stages whose buckling is checked; empty: all
  bool strict = false;       // warnings are errors
  bool json = false;         // standard output is a JSON summary
};

// Runs the analysis in a scratch folder beside the results and moves them into place when all
// stages have succeeded: a refused, failed or interrupted run leaves the last results as they were.
// Progress goes to standard output, faults and warnings to standard error. Returns the exit status:
// clean, warnings, errors (a stage that failed), EXIT_BAD_INPUT, or 128 + the signal that ended it.
// Files that cannot be written throw FileFailure.
int run_command(const RunOptions& options);

// results.json of a job: read where it lies beside the input and belongs to it, else by a run.
// status is that of the run; other than clean or warnings there are no results.
Json results_of(const RunOptions& options, int& status);

// Where the results of a run lie.
std::filesystem::path folder_of(const RunOptions& options);

// The checks of a pass over the stages of a model.
CheckChoice check_choice(const RunOptions& options, const Model& model);

// Faults and warnings, a line each, on standard error.
void print_notes(const Job& job);

// Prints the notes of a job that is to be analysed and says whether it can be: clean or warnings if
// so; else EXIT_BAD_INPUT, or errors (strict and warnings, no stages, checks of a stage that is not
// there).
int opening_status(const Job& job, const RunOptions& options);
// Whether there is a stage of that number; says so if not.
bool stage_exists(int stage, const Model& model);
// Of a job that can be: clean or warnings.
int status_of(const Job& job);

}  // namespace zelvo
