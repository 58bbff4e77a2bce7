#include "control/console_lines.h"

#include <gtest/gtest.h>

// The number in the time sentence.
static std::string written(float seconds, TimeScale scale) {
  const std::string text = time_sentence(seconds, scale);
  EXPECT_EQ(text.substr(0, 4) + text.substr(text.size() - 8), " in  seconds");
  return text.substr(4, text.size() - 12);
}

TEST(TimeSentence, HasOneDecimalForAssemblyInAFieldThatGrows) {
  const std::pair<float, const char*> cases[] = {
      {0.04f, "0.0"},      {2.5f, "2.5"},       {9.96f, "***"},  // rounds up out of its columns
      {10.0f, "10.0"},     {99.9f, "99.9"},     {100.0f, "100.0"},
      {1000.0f, "1000.0"}, {10000.0f, "******"}};
  for (const auto& [t, text] : cases) EXPECT_EQ(written(t, TimeScale::ASSEMBLY), text);
}

TEST(TimeSentence, HasMoreDecimalsForShortSolutions) {
  const std::pair<float, const char*> cases[] = {
      {0.365f, "0.365"}, {0.9996f, "1.000"}, {1.0f, "1.00"},     {9.996f, "****"},
      {10.0f, "10.0"},   {100.0f, "100.0"},  {1000.0f, "1000.0"}};
  for (const auto& [t, text] : cases) EXPECT_EQ(written(t, TimeScale::SOLUTION), text);
}
