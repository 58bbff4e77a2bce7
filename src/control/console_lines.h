// The lines that the driver itself writes to the console, and the clock behind its time sentences.
#pragma once
#include <string>
#include <string_view>

#include "model/description.h"
#include "model/elements.h"

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

}  // namespace zelvo
