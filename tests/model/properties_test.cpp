#include "model/properties.h"

#include <gtest/gtest.h>

#include "support/models.h"

TEST(ShellMaterials, FollowTheSegmentsOfTheirPlate) {
  Model m = one_girder(240);
  set_webs(m, {96, 144}, {0.5, 0.75});
  set_bottom(m, {48, 192}, {1, 1});
  set_top(m, {120, 120}, {1, 2});
  set_stages(m, {72, 96, 72}, 2);
  const Properties p = generate(m).properties;
  const auto expect_bay = [&](int bay, int deck, int top, int web, int bottom) {
    for (int e = 1; e <= 26; ++e) {
      const int expected = e <= 10 ? deck : e <= 14 ? top : e >= 19 && e <= 22 ? bottom : web;
      EXPECT_EQ(p.shmat(26 * (bay - 1) + e), expected) << "bay " << bay << " strip " << e;
    }
  };
  expect_bay(1, 7, 5, 1, 3);
  expect_bay(3, 7, 5, 1, 4);
  expect_bay(4, 8, 5, 1, 4);
  expect_bay(5, 8, 5, 2, 4);
  expect_bay(6, 8, 6, 2, 4);
  expect_bay(10, 9, 6, 2, 4);
}

TEST(ShellMaterials, HoldTheDeckModulusOfEachAnalysis) {
  Model m = two_girders(48);
  set_stages(m, {48}, 2);
  m.pour_e(2, 1) = 3600;
  const Properties p = generate(m).properties;
  const double steel[4] = {29600, 0.3, 1.5, 1}, deck[4] = {3600, 0.2, 8, 2};
  for (int c = 1; c <= 4; ++c) {
    EXPECT_EQ(p.shprop(2, c, 3), steel[c - 1]);
    EXPECT_EQ(p.shprop(2, c, 4), deck[c - 1]);
  }
  EXPECT_EQ(p.shprop(1, 1, 4), 0.1);
  EXPECT_EQ(p.shmat(52 + 20), 4);
  EXPECT_EQ(p.shmat(52 + 36), 3);
}

TEST(StudLinks, TakeTheStiffnessOfTheLaterSegmentAtASharedStation) {
  Model m = one_girder(120);
  set_stages(m, {48, 72}, 1);
  m.pour_k(1, 1) = 10;
  m.pour_k(1, 2) = 20;
  const Properties p = generate(m).properties;
  for (int c = 1; c <= 66; ++c) EXPECT_EQ(p.studk(1, c), c <= 24 ? 10 : 20) << "link " << c;
}

TEST(StudLinks, StandForTheStudsOfTwelveInches) {
  const auto numbers = [](double spacing, int count) {
    Model m = two_girders(24);
    set_studs(m, {24}, {spacing}, {count});
    return generate(m).properties.studnum;
  };
  const double few = 1.0e-8f, none = 1.0e-10f;
  struct Case {
    double spacing;
    int count;
    double edge, web;
  };
  for (const Case& c :
       {Case{6, 3, 2, 2}, Case{6, 6, 4, 4}, Case{6, 1, 2 * few, 2}, Case{6, 2, 2, 2 * few},
        Case{24, 0, few / 2, few / 2}, Case{0, 3, none, none},
        Case{9, 4, 4.0 / 3 * (12.0 / 9), 4.0 / 3 * (12.0 / 9)}}) {
    const Vector<double> studnum = numbers(c.spacing, c.count);
    for (int l = 1; l <= 36; ++l)
      EXPECT_DOUBLE_EQ(studnum(l), l % 3 == 2 ? c.web : c.edge) << c.spacing << " " << c.count;
  }
}

TEST(StudLinks, KeepTheWeightsOfTheRowBeforeWhenACountIsNegative) {
  Model m = one_girder(72);
  set_studs(m, {24, 48}, {12, 6}, {3, -1});
  const Vector<double> studnum = generate(m).properties.studnum;
  EXPECT_EQ(studnum(1), 1);
  EXPECT_EQ(studnum(6 * 2 + 1), 2);
}

TEST(BarProperties, RepeatTheInputRowsForEveryElementOfTheRow) {
  Model m = two_girders(96);
  add_ibraces(m, {24, 48}, 2);
  m.ib_area(2) = 7;
  add_ebraces(m, {48}, 3, 4);
  add_laterals(m, {{1, 24, 48}, {2, 48, 72}}, 2.5);
  add_stiffeners(m, {24, 48});
  m.ws_b(2) = 8;
  const Properties p = generate(m).properties;
  ASSERT_EQ(p.ibprop.cols(), 4);
  EXPECT_EQ(p.ibprop(1, 1), 29600);
  EXPECT_EQ(p.ibprop(2, 3), 5);
  EXPECT_EQ(p.ibprop(2, 4), 7);
  EXPECT_EQ(p.ibprop(3, 4), 2);
  EXPECT_EQ(p.ebprop(3, 1), 3);
  EXPECT_EQ(p.latprop(2, 3), 2.5);
  EXPECT_EQ(p.latprop(3, 4), 2);
  ASSERT_EQ(p.wsprop.cols(), 8);
  EXPECT_EQ(p.wsprop(2, 4), 6);
  EXPECT_EQ(p.wsprop(2, 5), 8);
  EXPECT_EQ(p.wsprop(3, 8), 0.5);
}

TEST(ShapeTables, HoldTheGaussRuleAndTheFunctionsAtItsPoints) {
  EXPECT_NEAR(lagrange::shape(1, 0.3, -0.7), -0.062475, 1e-15);
  EXPECT_NEAR(lagrange::derivative(1, 1, 0.3, -0.7), -0.119, 1e-15);
  EXPECT_NEAR(lagrange::derivative(2, 1, 0.3, -0.7), 0.126, 1e-15);
  EXPECT_NEAR(lagrange::shape(9, 0.3, -0.7), 0.4641, 1e-15);
  EXPECT_NEAR(lagrange::derivative(1, 9, 0.3, -0.7), -0.306, 1e-15);
  EXPECT_NEAR(lagrange::derivative(2, 9, 0.3, -0.7), 1.274, 1e-15);
  const double weight[9] = {25, 40, 25, 40, 64, 40, 25, 40, 25};
  for (int g = 1; g <= 9; ++g) {
    EXPECT_NEAR(SHAPE.gwt(g), weight[g - 1] / 81, 1e-16);
    EXPECT_EQ(SHAPE.shp(6, g), lagrange::shape(6, SHAPE.gpt(1, g), SHAPE.gpt(2, g)));
    EXPECT_EQ(SHAPE.d(2, 8, g), lagrange::derivative(2, 8, SHAPE.gpt(1, g), SHAPE.gpt(2, g)));
  }
  EXPECT_NEAR(SHAPE.gpt(1, 2) * SHAPE.gpt(1, 2), 0.6, 1e-15);  // the first coordinate runs slowest
  EXPECT_LT(SHAPE.gpt(1, 2), 0);
  EXPECT_EQ(SHAPE.gpt(2, 2), 0);
}

TEST(ShapeFunctions, AreOneAtTheirOwnNodeAndZeroAtTheOthers) {
  for (int i = 1; i <= 9; ++i)
    for (int j = 1; j <= 9; ++j)
      EXPECT_EQ(lagrange::shape(i, lagrange::NODE_R[j - 1], lagrange::NODE_S[j - 1]), i == j);
}
