#include "control/console_lines.h"

#include <gtest/gtest.h>

using namespace zelvo;

TEST(TimeSentence, HasMoreDecimalsForShortSolutionsInAFieldThatGrows) {
  const auto assembly = TimeScale::ASSEMBLY, solution = TimeScale::SOLUTION;
  const struct {
    TimeScale scale;
    float seconds;
    const char* number;
  } rows[] = {{assembly, 0.04f, "0.0"},      {assembly, 9.96f, "***"},  // rounds out of its columns
              {assembly, 10.0f, "10.0"},     {assembly, 100.0f, "100.0"},
              {assembly, 1000.0f, "1000.0"}, {assembly, 10000.0f, "******"},
              {solution, 0.365f, "0.365"},   {solution, 0.9996f, "1.000"},
              {solution, 1.0f, "1.00"},      {solution, 9.996f, "****"},
              {solution, 10.0f, "10.0"},     {solution, 1000.0f, "1000.0"}};
  for (const auto& [scale, seconds, number] : rows)
    EXPECT_EQ(time_sentence(seconds, scale), std::string(" in ") + number + " seconds");
}
