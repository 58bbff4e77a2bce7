#include "model/pattern.h"

#include <gtest/gtest.h>

static void expect_strip(const SectionPattern& s, int e, int p, int m, int q, Plate plate) {
  const Strip& strip = s.strip[e - 1];
  EXPECT_EQ(strip.p, p) << "strip " << e;
  EXPECT_EQ(strip.m, m) << "strip " << e;
  EXPECT_EQ(strip.q, q) << "strip " << e;
  EXPECT_EQ(strip.plate, plate) << "strip " << e;
}

TEST(SectionPattern, OrdersThePlatesOfOneGirder) {
  expect_strip(ONE_GIRDER, 10, 19, 20, 21, Plate::DECK);
  expect_strip(ONE_GIRDER, 11, 22, 23, 30, Plate::TOP_FLANGE);
  expect_strip(ONE_GIRDER, 14, 54, 28, 29, Plate::TOP_FLANGE);
  expect_strip(ONE_GIRDER, 15, 30, 31, 32, Plate::WEB);
  expect_strip(ONE_GIRDER, 22, 44, 45, 46, Plate::BOTTOM_FLANGE);
  expect_strip(ONE_GIRDER, 26, 52, 53, 54, Plate::WEB);
}

TEST(SectionPattern, OrdersThePlatesOfTwoGirders) {
  expect_strip(TWO_GIRDERS, 22, 50, 44, 45, Plate::TOP_FLANGE);
  expect_strip(TWO_GIRDERS, 34, 72, 73, 74, Plate::WEB);
  expect_strip(TWO_GIRDERS, 35, 46, 47, 74, Plate::TOP_FLANGE);
  expect_strip(TWO_GIRDERS, 39, 83, 84, 85, Plate::WEB);
  expect_strip(TWO_GIRDERS, 46, 97, 98, 99, Plate::BOTTOM_FLANGE);
  expect_strip(TWO_GIRDERS, 52, 107, 81, 82, Plate::TOP_FLANGE);
}

TEST(SectionPattern, PairsFlangeAndDeckNodesOfTheStuds) {
  const int one[6][2] = {{22, 5}, {30, 7}, {25, 9}, {26, 13}, {54, 15}, {29, 17}};
  for (int l = 0; l < 6; ++l) {
    EXPECT_EQ(ONE_GIRDER.link[l].flange, one[l][0]);
    EXPECT_EQ(ONE_GIRDER.link[l].deck, one[l][1]);
  }
  const int second[6][2] = {{75, 25}, {83, 27}, {78, 29}, {79, 33}, {107, 35}, {82, 37}};
  for (int l = 0; l < 6; ++l) {
    EXPECT_EQ(TWO_GIRDERS.link[l + 6].flange, second[l][0]);
    EXPECT_EQ(TWO_GIRDERS.link[l + 6].deck, second[l][1]);
  }
}
