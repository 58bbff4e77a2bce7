#include "solution/loads.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/models.h"

using namespace zelvo;

namespace {

using Rows = std::vector<double>;

struct Loaded {
  Model m;
  Structure structure;
  Vector<double> F;

  explicit Loaded(const Model& model, SteelWeight weight = SteelWeight::LEFT_OUT)
      : m(model), structure(generate_structure(model)), F(NDOF * structure.nodes.nnode) {
    add(weight);
  }
  void add(SteelWeight weight = SteelWeight::LEFT_OUT) {
    (m.ngird == 2 ? load_two_girders : load_one_girder)(m, 1, weight, web_width(structure), F);
  }
  double at(int station, int n, int d) const {
    return F(equation(station * section_pattern(m.ngird).nodes + n, d));
  }
  double total(int d = 2) const {
    double sum = 0;
    for (int n = 1; n <= structure.nodes.nnode; ++n) sum -= F(equation(n, d));
    return sum;
  }
  // Each of these nodes carries rows[s] at station s.
  void expect_rows(const Rows& rows, const std::vector<int>& node) const {
    for (int s = 0; s < m.nstn(); ++s)
      for (const int n : node) EXPECT_NEAR(-at(s, n, 2), rows[static_cast<std::size_t>(s)], 1e-9);
  }
};

Model with_pattern(Model m, int code) {
  m.load_pattern = code;
  return m;
}

// 3 kip/ft on the first 24 of 72 inches, 6 on the rest.
Model two_pours(const Model& base, int code) {
  Model m = with_pattern(base, code);
  set_stages(m, {24, 48}, 1);
  m.pour_load(1, 2) = 6;
  return m;
}

}  // namespace

// A row takes the 12 inches of plate that it opens, the inner nodes of a strip twice its ends.
TEST(SelfWeight, OfARowIsThatOfThePlateItOpens) {
  Model m = with_pattern(one_girder(72), 0);
  set_webs(m, {{24, 1e-9}, {48, 1e-9}});
  set_top(m, {{24, 1}, {48, 3}});
  set_bottom(m, {{48, 2}, {24, 5}});
  const Loaded f(m, SteelWeight::INCLUDED);
  const double top = STEEL_DENSITY * 6 * 12, bottom = STEEL_DENSITY * 18 * 12;
  Rows edge{0.25, 0.5, 1.5, 1.5, 1.5, 1.5, 0.75}, inner{1, 2, 2, 2, 5, 5, 2.5};
  for (double& w : edge) w *= top;
  for (double& w : inner) w *= bottom;
  EXPECT_EQ(STEEL_DENSITY, 0.00028356481481481483);
  f.expect_rows(edge, {22, 25, 26, 29});
  f.expect_rows(inner, {40, 42, 44});
  for (double& w : edge) w *= 2;
  f.expect_rows(edge, {30, 54});
  f.expect_rows(Rows(7, 0), {39, 41, 23});
}

TEST(PourLoad, FollowsThePatternOfItsCode) {
  // A boundary row takes half from each segment on the top flanges, all of both on the bottom.
  Rows top{1.5, 3, 4.5, 6, 6, 6, 3}, bottom{3, 3, 9, 6, 6, 6, 6};
  for (double& q : top) q /= 6;
  for (double& q : bottom) q /= 9;
  Loaded f(two_pours(one_girder(72), 1));
  f.expect_rows(top, {22, 30, 25, 26, 54, 29});
  EXPECT_NEAR(f.total(), 3 * 2 + 6 * 4, 1e-13);
  f.add();
  EXPECT_NEAR(f.total(), 2 * (3 * 2 + 6 * 4), 1e-13);
  const Loaded g(two_pours(one_girder(72), 2));
  g.expect_rows(bottom, {38, 39, 40, 41, 42, 43, 44, 45, 46});
  const Loaded two(two_pours(two_girders(72), 5));  // the code is not read here
  for (double& q : top) q /= 2;
  two.expect_rows(top, {42, 50, 45, 46, 74, 49, 75, 83, 78, 79, 107, 82});
  EXPECT_NEAR(two.total(), 3 * 2 + 6 * 4, 1e-13);
}

TEST(PourLoad, AsEndForcesIsStoredAndNotAdded) {
  Loaded f(with_pattern(one_girder(48), 3));
  f.add();
  EXPECT_NEAR(f.at(0, 30, 3), -1.2 / 6, 1e-15);
  EXPECT_NEAR(f.at(4, 22, 3), 1.2 / 6, 1e-15);
  EXPECT_NEAR(f.at(0, 42, 3), 1.2 / 5, 1e-15);
  EXPECT_NEAR(f.at(4, 46, 3), -1.2 / 5, 1e-15);
  EXPECT_EQ(f.at(4, 45, 3), 0);
  EXPECT_NEAR(f.total(3), 0, 1e-15);
  // The first segment's load stands for the whole length.
  EXPECT_NEAR(Loaded(two_pours(one_girder(72), 3)).at(0, 30, 3), -2.7 / 6, 1e-14);
  const Loaded axial(with_pattern(one_girder(48), 5));
  EXPECT_EQ(axial.total(3), -100);
  EXPECT_EQ(axial.at(4, 40, 3), 20);
}

TEST(PourLoad, OfOtherCodesIsNoneAndOfAGirderWithoutLengthFinite) {
  for (const int code : {0, 4, -1, 6})
    for (const double f : Loaded(with_pattern(one_girder(48), code)).F) ASSERT_EQ(f, 0);
  for (const int code : {1, 2, 3, 5})
    EXPECT_TRUE(
        std::isfinite(Loaded(with_pattern(one_girder(0), code), SteelWeight::INCLUDED).total()));
}
