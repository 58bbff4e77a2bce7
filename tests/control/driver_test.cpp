#include "control/driver.h"

#include <gtest/gtest.h>

#include "support/models.h"
#include "support/run.h"

using namespace zelvo;

TEST(Driver, KeepsTheStiffnessWhileDeckAndStudsStayTheSame) {
  Model m = one_girder(48);
  set_stages(m, {24, 24}, 4);
  m.pour_load(2, 2) = 7;
  m.pour_k(3, 2) = m.pour_e(4, 1) = 1;
  const bool holds[] = {stiffness_holds(m, 1), stiffness_holds(m, 2), stiffness_holds(m, 3),
                        stiffness_holds(m, 4)};
  EXPECT_TRUE(!holds[0] && holds[1] && !holds[2] && !holds[3]);
}

TEST(Driver, TakesTheDefaultToleranceOfTheEigensolverInSinglePrecision) {
  Model m = one_girder(48);
  m.buckle = true;
  m.nev = 1;
  EXPECT_EQ(analyse(m).run.model.tol, 9.999999747378752e-05);
}
