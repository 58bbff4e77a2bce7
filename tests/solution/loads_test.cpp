#include "solution/loads.h"

#include <gtest/gtest.h>

#include <cmath>

#include "model/pattern.h"
#include "support/models.h"

namespace {

struct Loaded {
  Model m;
  Nodes nodes;
  Vector<double> F;

  explicit Loaded(const Model& model, bool selfwt = false, int k = 1) : m(model) {
    nodes = generate(m).nodes;
    F = Vector<double>(5 * nodes.nnode);
    add(selfwt, k);
  }
  void add(bool selfwt, int k) {
    const double dw = web_width(m, nodes);
    if (m.ngird == 2)
      load_two_girders(m, k, selfwt, dw, F);
    else
      load_one_girder(m, k, selfwt, dw, F);
  }
  // Downward load of pattern node n at a station, and of a whole station.
  double down(int station, int n) const { return -at(station, n, 2); }
  double at(int station, int n, int d) const {
    return F(equation(station * section_pattern(m.ngird).nodes + n, d));
  }
  double row(int station, int d = 2) const {
    double sum = 0;
    for (int n = 1; n <= section_pattern(m.ngird).nodes; ++n) sum -= at(station, n, d);
    return sum;
  }
  double total(int d = 2) const {
    double sum = 0;
    for (int s = 0; s < m.nstn(); ++s) sum += row(s, d);
    return sum;
  }
};

Model two_pours(Model m) {
  m.lgbr = 72;
  set_stages(m, {24, 48}, 1);
  m.pour_load(1, 2) = 6;
  return m;
}

}  // namespace

TEST(SelfWeight, IsTheWeightOfAllPlates) {
  EXPECT_EQ(STEEL_DENSITY, 0.00028356481481481483);
  Model m = one_girder(96);
  m.load_pattern = 0;
  const double dw = std::hypot(6, 60), plates = 2 * dw * 0.5 + 72 * 1.0 + 2 * 12 * 1.5;
  EXPECT_NEAR(Loaded(m, true).total(), STEEL_DENSITY * plates * 96, 1e-12);
  Model two = two_girders(96);
  two.pour_load.clear();
  EXPECT_NEAR(Loaded(two, true).total(), 2 * STEEL_DENSITY * plates * 96, 1e-12);
}

TEST(SelfWeight, OfARowIsThatOfThePlateItOpens) {
  Model m = one_girder(96);
  m.load_pattern = 0;
  set_webs(m, {48, 48}, {1e-9, 1e-9});
  set_bottom(m, {48, 48}, {1e-9, 1e-9});
  set_top(m, {24, 72}, {1, 3});
  const Loaded f(m, true);
  const double w = STEEL_DENSITY * 6 * 12;  // a panel of 6 in, 12 inches long, 1 in thick
  const double webs[9] = {0.5, 1, 3, 3, 3, 3, 3, 3, 1.5};
  for (int s = 0; s <= 8; ++s) {
    for (const int n : {22, 25, 26, 29}) EXPECT_NEAR(f.down(s, n), w * webs[s] / 2, 1e-9);
    for (const int n : {30, 54}) EXPECT_NEAR(f.down(s, n), w * webs[s], 1e-9);
  }
}

TEST(SelfWeight, OfWebAndBottomFlangeHalvesAtTheEndsOfTheStrip) {
  Model m = one_girder(48);
  m.load_pattern = 0;
  const Loaded f(m, true);
  const double web = STEEL_DENSITY * std::hypot(6, 60) / 4 * 0.5 * 12;
  const double bottom = STEEL_DENSITY * 18 * 1.0 * 12;
  EXPECT_NEAR(f.down(2, 32), web, 1e-15);
  EXPECT_NEAR(f.down(2, 52), web, 1e-15);
  EXPECT_NEAR(f.down(2, 38), web / 2 + bottom / 2, 1e-15);
  EXPECT_NEAR(f.down(2, 42), bottom, 1e-15);
  EXPECT_EQ(f.down(2, 41), 0);
  EXPECT_NEAR(f.down(4, 44), bottom / 2, 1e-15);
}

TEST(PourLoad, OnTheTopFlangesSharesABoundaryRow) {
  const Loaded f(two_pours(one_girder(72)));
  const double rows[7] = {1.5, 3, 4.5, 6, 6, 6, 3};
  for (int s = 0; s <= 6; ++s) {
    EXPECT_NEAR(f.row(s), rows[s], 1e-14);
    for (const int n : {22, 30, 25, 26, 54, 29}) EXPECT_NEAR(f.down(s, n), rows[s] / 6, 1e-15);
  }
}

TEST(PourLoad, OnTheBottomFlangeFillsBothEndRows) {
  Model m = two_pours(one_girder(72));
  m.load_pattern = 2;
  const Loaded f(m);
  const double rows[7] = {3, 3, 9, 6, 6, 6, 6};
  for (int s = 0; s <= 6; ++s) {
    EXPECT_NEAR(f.row(s), rows[s], 1e-14);
    for (int n = 38; n <= 46; ++n) EXPECT_NEAR(f.down(s, n), rows[s] / 9, 1e-15);
  }
}

TEST(PourLoad, OfTwoGirdersIgnoresTheLoadPattern) {
  Model m = two_pours(two_girders(72));
  m.load_pattern = 5;
  const Loaded f(m);
  for (const int n : {42, 50, 45, 46, 74, 49, 75, 83, 78, 79, 107, 82})
    EXPECT_NEAR(f.down(2, n), 4.5 / 12, 1e-15);
  EXPECT_NEAR(f.total(), 3 * 2 + 6 * 4, 1e-13);
}

TEST(PourLoad, OfSegmentsAddsUpOverCallsAndEndCouplesDoNot) {
  Model m = one_girder(48);
  Loaded f(m);
  f.add(false, 1);
  EXPECT_NEAR(f.total(), 2 * 3 * 4, 1e-13);
  m.load_pattern = 3;
  Loaded couple(m);
  couple.add(false, 1);
  const double force = 48.0 * 48 * 3 / 12 / (8 * 60);
  EXPECT_NEAR(couple.at(0, 30, 3), -force / 6, 1e-15);
  EXPECT_NEAR(couple.at(4, 22, 3), force / 6, 1e-15);
  EXPECT_NEAR(couple.at(0, 42, 3), force / 5, 1e-15);
  EXPECT_NEAR(couple.at(4, 46, 3), -force / 5, 1e-15);
  EXPECT_EQ(couple.at(4, 45, 3), 0);
  EXPECT_NEAR(couple.row(0, 3), 0, 1e-15);
}

TEST(PourLoad, OfOtherPatternCodesIsNoneOrTheAxialLoad) {
  Model m = one_girder(48);
  for (const int code : {0, 4, -1, 6}) {
    m.load_pattern = code;
    for (const double f : Loaded(m).F) ASSERT_EQ(f, 0);
  }
  m.load_pattern = 5;
  const Loaded f(m);
  EXPECT_EQ(f.total(3), -100);
  EXPECT_EQ(f.at(4, 40, 3), 20);
}

TEST(Loads, OfAGirderWithoutLengthCancel) {
  for (const int code : {1, 2, 3, 5}) {
    Model m = one_girder(0);
    m.load_pattern = code;
    Loaded f(m, true);
    EXPECT_TRUE(std::isfinite(f.total()));
    EXPECT_EQ(f.down(0, 32), 0);
  }
}
