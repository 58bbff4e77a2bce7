#include "control/driver.h"

#include <gtest/gtest.h>

#include "solution/stiffness.h"
#include "support/models.h"
#include "support/run.h"

using namespace zelvo;

TEST(Stage, KeepsTheStiffnessWhileDeckAndStudsStayTheSame) {
  Model m = one_girder(48);
  set_stages(m, {24, 24}, 4);
  m.pour_load(2, 2) = 7;
  m.pour_k(3, 2) = m.pour_e(4, 1) = 1;
  for (int k = 1; k <= 4; ++k) EXPECT_EQ(stiffness_holds(m, k), k == 2) << k;
}

TEST(Stage, TakesTheDefaultToleranceOfTheEigensolverInSinglePrecision) {
  Model m = one_girder(48);
  m.buckle = true;
  m.nev = 1;
  EXPECT_EQ(analyse(m).run.state.tol, 9.999999747378752e-05);
}
