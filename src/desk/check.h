// zelvo-desk check: what an input file says, and what about it is wrong or hardly meant.
#pragma once
#include <string>

#include "desk/understood.h"

namespace zelvo {

struct CheckOptions {
  std::string path;
  bool strict = false;  // warnings count as errors
  bool json = false;
  std::string draw;  // an SVG file for section and plan, not the input itself; empty: none
};

// All findings, settled, and what was understood: nothing of a file that is empty or ends before
// `end`.
struct CheckResult {
  Understood understood;
  std::vector<Finding> findings;
  int errors = 0, warnings = 0;
};
CheckResult check_job(const Job& job);

// The command; its exit status is 0, 1 with warnings, 2 with errors, 65 for a file that ends
// before `end`. A file that cannot be opened or written throws FileFailure.
int check_command(const CheckOptions& options);

}  // namespace zelvo
