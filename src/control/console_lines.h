// All lines that a run writes to the console, the clock behind its time sentences, and the warnings
// of a stage, which go to standard error.
#pragma once
#include <string>
#include <string_view>

#include "base/text.h"
#include "results/stage_results.h"
#include "solution/progress.h"

namespace zelvo {

// CPU time of the process since the reading before, in seconds.
struct StepClock {
  double last = 0;
  float read();
};

// How the time of a step is written, by its size.
enum class TimeScale { ASSEMBLY, SOLUTION };

// " in 2.5 seconds"
std::string time_sentence(float seconds, TimeScale scale);

// " text in 2.5 seconds", in two pieces: the clock is read when the first one stands there.
void timed_line(std::string_view text, StepClock& clock, TimeScale scale);

// " text" and a number in one column, which an asterisk stands for from 10 on.
void numbered_line(std::string_view text, int k);

void blank_line();

// The counts of the model, one to a line.
void print_summary(const Model& model, int nnode, const Elements& elements);

// Writes the line of each step; the shells' one ends in the time since the last reading of the clock.
Progress console_steps(StepClock& clock);

// The lines behind the formation of the load vector.
void print_loads(const Model& model, int k);

void print_solver_code(int code);
// What a buckling check has to say of its failures, and the end of its line of dots.
void print_outcome(const EigenOutcome& outcome);

// Warnings of analysis k, each one line.
void warn_of_solution(int k, const StageResults& results);
void warn_not_finite(int k, const char* when);
// files: names of those that hold values which are no numbers, if any do
void warn_of_files(int k, const std::string& files);
// points of elements whose mapping could not be inverted, if there are any
void warn_of_folded(int k, int points);
// A check without factors, and factors that may not be the lowest.
void warn_of_check(int k, const EigenOptions& options, const EigenOutcome& outcome,
                   const Vector<double>& factors);
void warn_of_loose_pairs(int k, const EigenOptions& options, const BucklingResults& results);

}  // namespace zelvo
