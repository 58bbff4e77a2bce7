#include "bars/kernel.h"

#include <gtest/gtest.h>

using namespace zelvo;

TEST(Bar, MatchesHandCalculationOf3By4By12Bar) {  // 13 long: exact by hand
  const BarProperty prop{29600.0, 5.0, 0.0};
  const FixedVector<double, 6> c{{1, 2, 3, 4, 6, 15}}, back{{4, 6, 15, 1, 2, 3}};
  BarMatrix ke{}, kg{}, swapped{};
  bar_stiffness(ke, c, prop);
  bar_stiffness(swapped, back, prop);
  bar_geo_stiffness(kg, c, 2.5);
  EXPECT_NEAR(ke(1, 1), 606.2813, 5e-5);
  EXPECT_NEAR(ke(1, 2), 808.3751, 5e-5);
  for (int j = 1; j <= 6; ++j)
    for (int i = 1; i <= 6; ++i) {
      EXPECT_EQ(swapped(i, j), ke((i + 2) % 6 + 1, (j + 2) % 6 + 1));
      EXPECT_NEAR(kg(i, j), i == j ? 0.192308 : i % 3 == j % 3 ? -0.192308 : 0.0, 5e-7);
    }
  double p = 0, q = 0;
  bar_force(c, {{1, 1, 1, 1.1, 1.2, 1.3}}, prop, p);
  bar_force(back, {{1.1, 1.2, 1.3, 1, 1, 1}}, prop, q);
  EXPECT_NEAR(p, 29600.0 * 5.0 / 13 * (0.3 + 0.8 + 3.6) / 13, 1e-9);
  EXPECT_EQ(p, q) << "tension whichever end comes first";
}
