#include "control/driver.h"

#include <gtest/gtest.h>

#include "control/input.h"
#include "support/input_text.h"
#include "support/run.h"

// Three stages; the second repeats the deck and studs of the first.
static Model three_stages(const char* buckle) {
  Input in;
  read_input(plain_girder("48")
                 .set("pour_seq", "3\n1\n48\n.1 .01 1\n.1 .01 2\n.1 .02 0\n1")
                 .set("buckle", buckle)
                 .text(),
             in);
  return in.model;
}

// Total downward load, kips.
static double load(const Vector<double>& F) {
  double sum = 0;
  for (int i = 2; i <= F.size(); i += NDOF) sum -= F(i);
  return sum;
}

TEST(Driver, KeepsTheStiffnessWhileDeckAndStudsStayTheSame) {
  Model m = three_stages("F 1\n2");
  EXPECT_TRUE(!stiffness_holds(m, 1) && stiffness_holds(m, 2) && !stiffness_holds(m, 3));
  const Bridge b = analyse(m);
  EXPECT_NE(b.console.find(" Assembly Completed in Analysis 1\n Formation"), std::string::npos);
  EXPECT_EQ(b.console.find(" Assembly Completed in Analysis 2"), std::string::npos);
  // Twice the load, twice the deflection: the penalties were not added again.
  m.selfwt = false;
  const Bridge unweighted = analyse(m);
  EXPECT_NEAR(unweighted.deflection(2, 24), 2 * unweighted.deflection(1, 24), 1e-12);
  m.pour_e(2, 1) = 0.2;
  EXPECT_FALSE(stiffness_holds(m, 2));
}

TEST(Driver, LoadsTheSelfWeightOnceAndAddsUpStagesOnlyIfBucklingIsChecked) {
  const Bridge plain = analyse(three_stages("F 1\n2")), checked = analyse(three_stages("T 1\n1"));
  const double first = load(plain.stage[0].F);
  EXPECT_GT(first, 4.1);  // 1 kip/ft on 4 ft, and the steel
  EXPECT_NEAR(load(plain.stage[1].F), 8.0, 1e-12);
  EXPECT_EQ(load(plain.stage[2].F), 0.0);
  EXPECT_NEAR(load(checked.stage[2].F), first + 8.0, 1e-12);
  const double factor = checked.stage[0].eigval(1);
  EXPECT_NEAR(checked.deflection(1, 24) / factor, plain.deflection(1, 24), 1e-12);
  EXPECT_EQ(checked.run.model.tol, 9.999999747378752e-05) << "the default in single precision";
}
