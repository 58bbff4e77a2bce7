#include "bars/stiffeners.h"

#include <gtest/gtest.h>

TEST(StiffenerTable, MatchesTheCondensedChain) {
  const double first[9] = {1.6076951,  -3.6461709, 2.5846834,  -0.6925626, 0.1855670,
                           -0.0497054, 0.0132548,  -0.0033137, 0.0005523};
  const double middle[5] = {0.1855670, -1.1134020, 4.4536080, -10.7010307, 14.3505154};
  EXPECT_NEAR(C9(2, 2), 9.8770247, 6e-8);
  for (int j = 1; j <= 9; ++j) {
    EXPECT_NEAR(C9(1, j), first[j - 1], 6e-8);
    EXPECT_NEAR(C9(5, j), middle[j <= 5 ? j - 1 : 9 - j], 6e-8);
    for (int i = 1; i <= 9; ++i) EXPECT_EQ(C9(i, j), static_cast<float>(C9(10 - i, 10 - j)));
  }
}

// Along x, webs normal y. How the frame is turned, rigid motions show on whole girders.
TEST(Stiffener, MatchesHandCalculation) {
  StiffenerMatrix ke;
  StiffenerTransform tm;
  stiffener_stiffness(ke, {{0, 0, 0, 8, 0, 0}}, {{1, 0, 0}}, {{0, 1, 0}}, {{0, 0, 1}},
                      {{29600.0, 6.0, 0.75}}, tm);
  const double h3 = 512, Is = 6.0 * 6 * 6 * 0.75 / 12, Iw = 0.75 * 0.75 * 0.75 * 6 / 12;
  const auto node = [](int k, int j) { return 5 * (k - 1) + j; };
  EXPECT_NEAR(ke(1, 1), 16650.0, 1e-8);
  EXPECT_NEAR(ke(node(9, 1), node(9, 1)), 16650.0, 1e-8);
  EXPECT_NEAR(ke(node(5, 1), node(5, 1)), 33300.0, 1e-8);
  EXPECT_NEAR(ke(node(9, 2), node(9, 2)), 12 * 29600.0 * Is / h3, 1e-8);
  EXPECT_NEAR(ke(node(5, 3), node(5, 3)), 29600.0 * Iw / h3 * 14.3505154, 1e-6);
  EXPECT_NEAR(ke(node(2, 5), node(3, 5)), 2 * 29600.0 * Is / 8, 1e-8);
  EXPECT_NEAR(ke(node(2, 4), node(2, 4)), 2 * 11400.0 * 0.84375 / 8, 1e-9);
  for (int j = 1; j <= 45; ++j) {
    EXPECT_TRUE(ke(4, j) == 0 && ke(44, j) == 0) << "no torque on the end nodes";
    for (int i = 1; i <= 45; ++i) EXPECT_NEAR(ke(i, j), ke(j, i), 1e-9);
  }
}
