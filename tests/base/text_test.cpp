#include "base/text.h"

#include <gtest/gtest.h>

#include <limits>

static std::string real(double value, int width, int decimals) {
  std::string out;
  put_real(out, value, width, decimals);
  return out;
}

static std::string integer(std::int64_t value, int width) {
  std::string out;
  put_int(out, value, width);
  return out;
}

TEST(FixedField, AlignsToTheRightAndFillsWithAsterisksWhenTooNarrow) {
  EXPECT_EQ(real(2.5, 3, 1), "2.5");
  EXPECT_EQ(real(9.96, 3, 1), "***");  // rounds to 10.0
  EXPECT_EQ(real(-43.81868, 10, 4), "  -43.8187");
  EXPECT_EQ(real(1e300, 12, 1), "************");
  EXPECT_EQ(integer(9, 1), "9");
  EXPECT_EQ(integer(10, 1), "*");
}

TEST(FixedField, WritesValuesThatAreNoNumbersAsWords) {
  EXPECT_EQ(real(std::numeric_limits<double>::quiet_NaN(), 8, 2), "     NaN");
  EXPECT_EQ(real(-std::numeric_limits<double>::infinity(), 8, 2), "    -Inf");
  EXPECT_EQ(real(std::numeric_limits<double>::infinity(), 9, 2), " Infinity");
}

TEST(FreeLine, BeginsWithABlank) {
  std::string out;
  free_line(out, "run");
  free_line(out, 26);
  free_line(out, 54, "  nodes");
  EXPECT_EQ(out, " run\n          26\n          54  nodes\n");
}
