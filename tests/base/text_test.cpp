#include "base/text.h"

#include <gtest/gtest.h>

#include <limits>

using namespace zelvo;

TEST(FixedField, AlignsToTheRightAndFillsWithAsterisksWhenTooNarrow) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  std::string out;
  for (const double x :
       {2.5, -43.81868, 9.96, 999.96, 1e300, -infinity, infinity, infinity - infinity})
    put_real(out, x, 5, 1);
  put_real(out, infinity, 9, 2);
  put_int(out, 9, 1);
  put_int(out, 10, 1);
  EXPECT_EQ(out, "  2.5-43.8 10.0********** -Inf  Inf  NaN Infinity9*");
}

TEST(FreeLine, BeginsWithABlank) {
  std::string out;
  free_line(out, "run");
  free_line(out, 26);
  free_line(out, 54, "  nodes");
  free_line(out, "F =", -std::numeric_limits<double>::infinity());
  EXPECT_EQ(out, " run\n          26\n          54  nodes\n F =                 -Infinity\n");
}
