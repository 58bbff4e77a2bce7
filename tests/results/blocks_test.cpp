#include "results/blocks.h"

#include <gtest/gtest.h>

using namespace zelvo;

// Its field is one column wide up to 9, two from 10 on, and has no room for more.
TEST(Blocks, NumberTheStagesOfReactions) {
  Reactions r{Vector<int>(2), Matrix<double>(2, 1)};
  r.station(2) = 160;
  r.vertical(1, 1) = 12.34567, r.vertical(2, 1) = -1e6;
  std::string out;
  for (const int k : {9, 10, 99, 100}) write_reactions(r, k, out);
  const std::string block = " Pinned\n    0\n   12.3457\n Roller\n  160\n**********\n";
  EXPECT_EQ(out,
            " run 9\n" + block + " run 10\n" + block + " run 99\n" + block + " run **\n" + block);
}
