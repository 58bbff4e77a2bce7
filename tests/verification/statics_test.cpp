// Statics and symmetry.
#include <gtest/gtest.h>

#include <cmath>

#include "support/measured.h"
#include "support/models.h"
#include "support/run.h"
#include "verification/beam.h"

using namespace zelvo;

TEST(Statics, ReactionsOfAPartLoadFollowTheLever) {
  Model m = braced_span(720);
  set_stages(m, {240, 480}, 1);
  m.pour_load(1, 2) = 0;
  const std::vector<double> r = analyse(m).reactions(1);
  EXPECT_NEAR(r[0], DECK_LOAD * 240 * (720 - 120) / 720, 1e-3);
  EXPECT_NEAR(r[1], DECK_LOAD * 240 * 120 / 720, 1e-3);
  measured("lever.reactions", r);
}

TEST(CurvedBridge, AnswersTheSumOfTwoLoadsWithTheSumOfTheirDisplacements) {
  Model m = two_girders(192, 1500);
  set_supports(m, {0, 96, 192});
  add_ibraces(m, {48, 144});
  add_ebraces(m, {96});
  add_laterals(m, {{1, 0, 48}, {2, 48, 96}});
  add_stiffeners(m, {96});
  set_stages(m, {72, 120}, 3, 1000, 10);
  m.pour_load(1, 2) = m.pour_load(2, 1) = 0;
  const Bridge b = analyse(m);
  double largest = 0, worst = 0;
  for (int i = 1; i <= b.run.K.n(); ++i) {
    const double whole = b.stage[2].U(i);
    largest = std::max(largest, std::abs(whole));
    worst = std::max(worst, std::abs(b.stage[0].U(i) + b.stage[1].U(i) - whole));
  }
  EXPECT_GT(largest, 1e-4);
  EXPECT_LT(worst, 1e-9 * largest);
}

TEST(StraightBridge, IsMirroredByMirroredLaterals) {
  Model m = braced_span(240);
  add_laterals(m, {{1, 24, 120}, {2, 120, 168}});
  const Bridge right = analyse(m);
  m.lat_type(1) = 2, m.lat_type(2) = 1;
  const Bridge left = analyse(m);
  double largest = 0;
  for (int x = 0; x <= 240; x += 12) {
    EXPECT_NEAR(right.rotation(1, x), -left.rotation(1, x), 1e-9 * right.deflection(1, 120));
    EXPECT_NEAR(right.deflection(1, x), left.deflection(1, x), 1e-9 * right.deflection(1, 120));
    largest = std::max(largest, std::abs(right.rotation(1, x)));
  }
  EXPECT_GT(largest, 1e-6);
}

// Rollers hold all nine nodes of a straight flange but only the centre of a curved one.
TEST(StraightBridge, IsTheLimitOfAWideCurve) {
  Model m = braced_span(960);
  const double straight = analyse(m).deflection(1, 480);
  m.rcurv = 1e7;
  const double curved = analyse(m).deflection(1, 480);
  EXPECT_NEAR(curved, straight, 1e-4 * straight);
  measured("curve.limit", {curved, straight});
}

// The support frames between the girders stiffen their ends a little: 2e-4 at this span.
TEST(TwoGirders, EquallyLoadedAnswerAsOneWithHalfTheLoad) {
  Model one = one_girder(480), two = two_girders(480);
  for (Model* m : {&one, &two}) add_ibraces(*m, {120, 240, 360});
  one.pour_load(1, 1) = 1.5;
  const double d = analyse(one).deflection(1, 240);
  const Bridge b = analyse(two);
  measured("girders.two", {b.deflection(1, 240, 0), d});
  EXPECT_NEAR(b.deflection(1, 240, 0), d, 3e-4 * d);
  EXPECT_NEAR(b.deflection(1, 240, 1), d, 3e-4 * d);
  EXPECT_NEAR(b.deflection(1, 240, 0), b.deflection(1, 240, 1), 1e-9 * d);
  for (const double r : b.reactions(1)) EXPECT_NEAR(r, DECK_LOAD * 480 / 4, 1e-5);
}
