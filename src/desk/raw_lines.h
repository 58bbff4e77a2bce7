// What the free format hides: values that stand on other lines than they seem to.
#pragma once
#include "desk/findings.h"

namespace zelvo {

// Finds numbers behind the last value of a record, records that run on over the next line, values
// on the line of their keyword, lines of numbers that no keyword takes, titles without quotes, and
// keywords behind `end`.
void check_lines(Checked& c);

// Lines of the file from 1, line 0 being empty, without their ends.
std::vector<std::string_view> lines_of(std::string_view content);

}  // namespace zelvo
