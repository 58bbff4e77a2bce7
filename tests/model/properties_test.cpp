#include "model/properties.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/models.h"

TEST(ShellMaterials, FollowTheSegmentsOfTheirPlate) {
  Model m = one_girder(240);
  set_webs(m, {96, 144}, {0.5, 0.75});
  set_bottom(m, {48, 192}, {1, 1});
  set_top(m, {120, 120}, {1, 2});
  set_stages(m, {72, 96, 72}, 2);
  m.pour_e(2, 3) = 3600;
  const Properties p = generate(m).properties;
  const int bays[][5] = {
      {1, 7, 5, 1, 3}, {3, 7, 5, 1, 4}, {4, 8, 5, 1, 4},  // deck, top, web, bottom
      {5, 8, 5, 2, 4}, {6, 8, 6, 2, 4}, {10, 9, 6, 2, 4}};
  for (const auto& [bay, deck, top, web, bottom] : bays)
    for (int e = 1; e <= 26; ++e)
      EXPECT_EQ(p.shmat(26 * (bay - 1) + e), e <= 10              ? deck
                                             : e <= 14            ? top
                                             : e >= 19 && e <= 22 ? bottom
                                                                  : web)
          << "bay " << bay << " strip " << e;
  const double steel[4] = {29600, 0.3, 2, 1}, deck[4] = {3600, 0.2, 8, 2};
  for (int c = 1; c <= 4; ++c) {
    EXPECT_EQ(p.shprop(2, c, 6), steel[c - 1]);
    EXPECT_EQ(p.shprop(2, c, 9), deck[c - 1]);
  }
  EXPECT_EQ(p.shprop(1, 1, 9), 0.1);
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
  constexpr double few = 1.0e-8f, none = 1.0e-10f;
  struct Row {
    double spacing;
    int count;
    double edge, web;
  };
  for (const Row& c :
       {Row{6, 3, 2, 2}, Row{6, 6, 4, 4}, Row{6, 1, 2 * few, 2}, Row{6, 2, 2, 2 * few},
        Row{24, 0, few / 2, few / 2}, Row{0, 3, none, none}, Row{9, 4, 16.0 / 9, 16.0 / 9}}) {
    Model m = two_girders(48);  // a negative count keeps the studs of the row before
    set_studs(m, {24, 24}, {c.spacing, c.spacing}, {c.count, -1});
    const Vector<double> studnum = generate(m).properties.studnum;
    for (int l = 1; l <= 60; ++l)
      EXPECT_DOUBLE_EQ(studnum(l), l % 3 == 2 ? c.web : c.edge) << c.spacing << " " << c.count;
  }
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
  const auto expect_row = [](const Matrix<double>& prop, int e, double second, double third) {
    EXPECT_EQ(prop(1, e), 29600);
    EXPECT_EQ(prop(2, e), second);
    EXPECT_EQ(prop(3, e), third);
  };
  expect_row(p.ibprop, 3, 5, 2);
  expect_row(p.ibprop, 4, 7, 2);
  expect_row(p.ebprop, 1, 4, 3);
  expect_row(p.latprop, 3, 2.5, 1);
  expect_row(p.latprop, 4, 2.5, 2);
  expect_row(p.wsprop, 4, 6, 0.5);
  expect_row(p.wsprop, 5, 8, 0.5);
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
    EXPECT_NEAR(SHAPE.gpt(1, g), ((g - 1) / 3 - 1) * std::sqrt(0.6), 1e-16);
    EXPECT_NEAR(SHAPE.gpt(2, g), ((g - 1) % 3 - 1) * std::sqrt(0.6), 1e-16);
    EXPECT_EQ(SHAPE.shp(6, g), lagrange::shape(6, SHAPE.gpt(1, g), SHAPE.gpt(2, g)));
    EXPECT_EQ(SHAPE.d(2, 8, g), lagrange::derivative(2, 8, SHAPE.gpt(1, g), SHAPE.gpt(2, g)));
    for (int i = 1; i <= 9; ++i)
      EXPECT_EQ(lagrange::shape(i, lagrange::NODE_R[g - 1], lagrange::NODE_S[g - 1]), i == g);
  }
}
