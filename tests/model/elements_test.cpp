#include "model/elements.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/models.h"

using List = std::vector<int>;
static List column(const Matrix<int>& conn, int e) {
  return {conn.column(e), conn.column(e) + conn.rows()};
}

TEST(Shells, RunBayByBayAlongTheStrips) {
  const Matrix<int> one = generate(one_girder(48)).elements.shconn;
  ASSERT_EQ(one.cols(), 52);
  EXPECT_EQ(column(one, 1), (List{1, 3, 111, 109, 2, 57, 110, 55, 56}));
  EXPECT_EQ(column(one, 11), (List{22, 30, 138, 130, 23, 84, 131, 76, 77}));
  EXPECT_EQ(column(one, 14), (List{54, 29, 137, 162, 28, 83, 136, 108, 82}));
  EXPECT_EQ(column(one, 26), (List{52, 54, 162, 160, 53, 108, 161, 106, 107}));
  EXPECT_EQ(column(one, 27), (List{109, 111, 219, 217, 110, 165, 218, 163, 164}));
  const Matrix<int> two = generate(two_girders(48)).elements.shconn;
  ASSERT_EQ(two.cols(), 104);
  EXPECT_EQ(column(two, 1), (List{1, 3, 217, 215, 2, 110, 216, 108, 109}));
  EXPECT_EQ(column(two, 21), (List{42, 50, 264, 256, 43, 157, 257, 149, 150}));
  EXPECT_EQ(column(two, 36), (List{74, 49, 263, 288, 48, 156, 262, 181, 155}));
  EXPECT_EQ(column(two, 52), (List{107, 82, 296, 321, 81, 189, 295, 214, 188}));
  EXPECT_EQ(column(two, 53), (List{215, 217, 431, 429, 216, 324, 430, 322, 323}));
}

static Elements attached(Model m) {
  add_ibraces(m, {24, 96});
  add_laterals(m, {{1, 24, 48}, {2, 24, 48}});
  add_stiffeners(m, {12, 36});
  if (m.ngird == 2) add_ebraces(m, {24});
  return generate(m).elements;
}

TEST(BarElements, OfOneGirderStandAtTheirStations) {
  const Elements el = attached(one_girder(120));
  EXPECT_EQ(column(el.ibconn, 2), (List{462, 486, 470, 478}));
  EXPECT_EQ(column(el.latconn, 1), (List{162, 246}));
  EXPECT_EQ(column(el.latconn, 2), (List{138, 270}));
  EXPECT_EQ(column(el.wsconn, 2), (List{100, 101, 102, 103, 104, 105, 106, 107, 108}));
  EXPECT_EQ(el.wsconn(1, 3), 192);
  EXPECT_EQ(column(el.supconn, 1), (List{30, 54, 38, 46}));
  const List pairs[6] = {{76, 59}, {84, 61}, {79, 63}, {80, 67}, {108, 69}, {83, 71}};
  for (int l = 1; l <= 6; ++l) EXPECT_EQ(column(el.studconn, 6 + l), pairs[l - 1]);
  ASSERT_EQ(el.nfix, 18);
  for (int i = 1; i <= 9; ++i) EXPECT_EQ(el.fixnode(i), 37 + i);
}

TEST(BarElements, OfTwoGirdersFillTheTableGirderByGirder) {
  const Elements el = attached(two_girders(120));
  EXPECT_EQ(column(el.ibconn, 2), (List{906, 930, 914, 922}));
  EXPECT_EQ(column(el.ibconn, 4), (List{939, 963, 947, 955}));
  EXPECT_EQ(column(el.ebconn, 1), (List{288, 297, 280, 305}));
  EXPECT_EQ(column(el.latconn, 1), (List{288, 478}));
  EXPECT_EQ(column(el.latconn, 4), (List{297, 535}));
  ASSERT_EQ(el.nwsel, 8);
  EXPECT_EQ(el.wsconn(1, 3), 107 + 83);
  EXPECT_EQ(el.wsconn(9, 4), 107 + 107);
  EXPECT_EQ(column(el.supconn, 1), (List{50, 74, 58, 66}));
  EXPECT_EQ(column(el.supconn, 3), (List{83, 107, 91, 99}));
  EXPECT_EQ(column(el.supconn, 5), (List{74, 83, 66, 91}));
  ASSERT_EQ(el.nfix, 36);
  EXPECT_EQ(el.fixnode(9), 66);
  EXPECT_EQ(el.fixnode(10), 91);
  EXPECT_EQ(el.fixnode(19), 1070 + 58);
}
