// What differs between two results, or between two inputs.
#pragma once
#include <string>
#include <vector>

#include "exchange/job.h"
#include "exchange/results_view.h"

namespace zelvo {

struct Difference {
  std::string what;  // "deflection, total 3, girder 1, 80 ft", "webthick row 2 thickness"
  std::string a, b;  // empty where one of the two has no such value
  double share = 0;  // how large, 0 to 1 or more; 1 for texts and for what only one has
};

// Of every table and every stage's total (of stresses of members, which have none, the envelope) the
// place where the two differ most, as a share of the largest magnitude in the table in any stage of
// either. Stages and series are matched by their order, places by position and member. Shares below
// 1e-9 are no difference. The largest first.
std::vector<Difference> compare_results(const ResultsView& a, const ResultsView& b);

// Every value, keyword by keyword and row by row, and the annotations; shares are of the larger of
// the two. Both jobs are sound. The largest first.
std::vector<Difference> compare_inputs(const Job& a, const Job& b);

// Prints the differences of two files, both results.json or both inputs. Returns 0 if there are none,
// 1 if there are, 2 if the two are not of a kind or no results, EXIT_BAD_INPUT for faulty inputs.
int diff_command(const std::string& a, const std::string& b, bool json);

}  // namespace zelvo
