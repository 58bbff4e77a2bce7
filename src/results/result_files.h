// The nine result files of a run.
#pragma once
#include <array>

#include "base/text.h"
#include "results/stage_results.h"

namespace zelvo {

// One block is added to each in every stage. A file that is not open keeps its text in memory.
struct ResultFiles {
  ResultFile rxn{"rxn0987.txt"};  // support reactions
  ResultFile axf{"axf0987.txt"};  // top lateral forces
  ResultFile def{"def0987.txt"};  // deflections
  ResultFile sec{"sec0987.txt"};  // cross-section forces
  ResultFile str{"str0987.txt"};  // cross-section stresses
  ResultFile ibr{"ibr0987.txt"};  // internal brace forces
  ResultFile ebr{"ebr0987.txt"};  // external brace forces
  ResultFile rot{"rot0987.txt"};  // cross-section rotations
  ResultFile csc{"csc0987.txt"};  // buckling factors and buckled cross-sections
};

// All nine, in the order in which they are opened.
inline std::array<ResultFile*, 9> all_files(ResultFiles& f) {
  return {&f.rxn, &f.axf, &f.def, &f.sec, &f.str, &f.ibr, &f.ebr, &f.rot, &f.csc};
}

// Throws FileFailure where the nine cannot be opened without harm: one of their names stands for a file
// of a kind that is not written to (a directory, a pipe), for the file `input`, or for the same file as
// another. A device is nobody's.
void require_distinct_files(const char* input);

// Opens and empties all nine in the working directory.
ResultFiles open_result_files();
// Adds the blocks of a stage to all files that concern it and flushes the files. Returns the names of
// the open ones that got values which are no finite numbers, "sec0987.txt, str0987.txt"; empty if none
// did.
std::string write_stage(const Structure& structure, const StageResults& results,
                        ResultFiles& files);
void close_result_files(ResultFiles& files);

}  // namespace zelvo
