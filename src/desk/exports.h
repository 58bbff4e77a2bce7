// The commands that hand results to people and to other programs.
#pragma once
#include <string>

#include "desk/run.h"

namespace zelvo {

struct ExportOptions {
  RunOptions run;       // where the results lie, or how they are made if they do not
  std::string output;   // file, for vtu folder; without it a name beside the results
  std::string picture;  // report: SVG file of the lowest mode
  bool strips = false;  // csv: with the stresses of every strip
  int stage = 1;        // inp
};

// Results made into a report, a table or a workbook. Returns the exit status: that of the run, or
// where the results lay there already, clean or warnings. A file that cannot be written, or that is
// the input itself, throws FileFailure.
int report_command(const ExportOptions& options);
int csv_command(const ExportOptions& options);
int xlsx_command(const ExportOptions& options);

// Fields of every stage and, with a check by history, of every mode: a pass over the stages of its
// own, whose files are moved into place when all stages have succeeded. Statuses as of a run.
int vtu_command(const ExportOptions& options);

// A stage as an input deck of CalculiX. EXIT_ERRORS if there is no such stage.
int inp_command(const ExportOptions& options);

}  // namespace zelvo
