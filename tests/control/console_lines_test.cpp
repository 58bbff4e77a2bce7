#include "control/console_lines.h"

#include <gtest/gtest.h>

static std::string assembly(float t) { return time_sentence(t, TimeScale::ASSEMBLY); }
static std::string solution(float t) { return time_sentence(t, TimeScale::SOLUTION); }

TEST(TimeSentence, HasOneDecimalForAssemblyInAFieldThatGrows) {
  EXPECT_EQ(assembly(0.04f), " in 0.0 seconds");
  EXPECT_EQ(assembly(2.5f), " in 2.5 seconds");
  EXPECT_EQ(assembly(9.96f), " in *** seconds");  // rounds up out of its columns
  EXPECT_EQ(assembly(10.0f), " in 10.0 seconds");
  EXPECT_EQ(assembly(99.9f), " in 99.9 seconds");
  EXPECT_EQ(assembly(100.0f), " in 100.0 seconds");
  EXPECT_EQ(assembly(1000.0f), " in 1000.0 seconds");
  EXPECT_EQ(assembly(10000.0f), " in ****** seconds");
}

TEST(TimeSentence, HasMoreDecimalsForShortSolutions) {
  EXPECT_EQ(solution(0.365f), " in 0.365 seconds");
  EXPECT_EQ(solution(0.9996f), " in 1.000 seconds");
  EXPECT_EQ(solution(1.0f), " in 1.00 seconds");
  EXPECT_EQ(solution(9.996f), " in **** seconds");
  EXPECT_EQ(solution(10.0f), " in 10.0 seconds");
  EXPECT_EQ(solution(100.0f), " in 100.0 seconds");
  EXPECT_EQ(solution(12345.6f), " in ****** seconds");
}

TEST(StepClock, GivesTheCpuTimeSinceTheReadingBefore) {
  StepClock clock;
  clock.read();
  volatile double x = 1;
  for (int i = 0; i < 20'000'000; ++i) x = x * 1.0000001;
  const float worked = clock.read();
  EXPECT_GT(worked, 0.0f);
  EXPECT_LT(clock.read(), worked);
}
