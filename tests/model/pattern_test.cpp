#include "model/pattern.h"

#include <gtest/gtest.h>

TEST(SectionPattern, OrdersThePlates) {
  using enum Plate;
  const struct {
    const SectionPattern& pattern;
    int e, p, m, q;
    Plate plate;
  } rows[] = {
      {ONE_GIRDER, 10, 19, 20, 21, DECK},           {ONE_GIRDER, 11, 22, 23, 30, TOP_FLANGE},
      {ONE_GIRDER, 14, 54, 28, 29, TOP_FLANGE},     {ONE_GIRDER, 15, 30, 31, 32, WEB},
      {ONE_GIRDER, 22, 44, 45, 46, BOTTOM_FLANGE},  {ONE_GIRDER, 26, 52, 53, 54, WEB},
      {TWO_GIRDERS, 22, 50, 44, 45, TOP_FLANGE},    {TWO_GIRDERS, 34, 72, 73, 74, WEB},
      {TWO_GIRDERS, 35, 46, 47, 74, TOP_FLANGE},    {TWO_GIRDERS, 39, 83, 84, 85, WEB},
      {TWO_GIRDERS, 46, 97, 98, 99, BOTTOM_FLANGE}, {TWO_GIRDERS, 52, 107, 81, 82, TOP_FLANGE}};
  for (const auto& [pattern, e, p, m, q, plate] : rows) {
    const Strip& strip = pattern.strip[e - 1];
    EXPECT_TRUE(strip.p == p && strip.m == m && strip.q == q && strip.plate == plate) << e;
  }
}

TEST(SectionPattern, PairsFlangeAndDeckNodesOfTheStuds) {
  const int one[6][2] = {{22, 5}, {30, 7}, {25, 9}, {26, 13}, {54, 15}, {29, 17}};
  const int second[6][2] = {{75, 25}, {83, 27}, {78, 29}, {79, 33}, {107, 35}, {82, 37}};
  for (int l = 0; l < 6; ++l) {
    const auto &a = ONE_GIRDER.link[l], &b = TWO_GIRDERS.link[l + 6];
    EXPECT_TRUE(a.flange == one[l][0] && a.deck == one[l][1]) << l;
    EXPECT_TRUE(b.flange == second[l][0] && b.deck == second[l][1]) << l;
  }
}
