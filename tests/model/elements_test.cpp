#include "model/elements.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/models.h"

using List = std::vector<int>;
struct Row {
  const Matrix<int>& conn;
  int element;
  List nodes;
};

static void expect_rows(const std::vector<Row>& rows) {
  for (const auto& [conn, e, nodes] : rows)
    EXPECT_EQ(List(conn.column(e), conn.column(e) + conn.rows()), nodes) << "element " << e;
}

static Elements attached(Model m) {
  add_ibraces(m, {24, 96});
  add_laterals(m, {{1, 24, 48}, {2, 24, 48}});
  add_stiffeners(m, {12, 36});
  if (m.ngird == 2) add_ebraces(m, {24});
  return generate(m).elements;
}

TEST(Elements, OfOneGirderRunBayByBayAndStandAtTheirStations) {
  const Elements el = attached(one_girder(120));
  expect_rows({{el.shconn, 1, {1, 3, 111, 109, 2, 57, 110, 55, 56}},
               {el.shconn, 14, {54, 29, 137, 162, 28, 83, 136, 108, 82}},
               {el.shconn, 27, {109, 111, 219, 217, 110, 165, 218, 163, 164}},
               {el.ibconn, 2, {462, 486, 470, 478}},
               {el.latconn, 1, {162, 246}},
               {el.latconn, 2, {138, 270}},
               {el.wsconn, 2, {100, 101, 102, 103, 104, 105, 106, 107, 108}},
               {el.supconn, 1, {30, 54, 38, 46}},
               {el.studconn, 7, {76, 59}},
               {el.studconn, 11, {108, 69}}});
  ASSERT_EQ(el.nfix, 18);
  for (int i = 1; i <= 9; ++i) EXPECT_EQ(el.fixnode(i), 37 + i);
}

TEST(Elements, OfTwoGirdersFillTheTablesGirderByGirder) {
  const Elements el = attached(two_girders(120));
  expect_rows({{el.shconn, 36, {74, 49, 263, 288, 48, 156, 262, 181, 155}},
               {el.shconn, 52, {107, 82, 296, 321, 81, 189, 295, 214, 188}},
               {el.shconn, 53, {215, 217, 431, 429, 216, 324, 430, 322, 323}},
               {el.ibconn, 4, {939, 963, 947, 955}},
               {el.ebconn, 1, {288, 297, 280, 305}},
               {el.latconn, 4, {297, 535}},
               {el.wsconn, 4, {206, 207, 208, 209, 210, 211, 212, 213, 214}},
               {el.supconn, 3, {83, 107, 91, 99}},
               {el.supconn, 5, {74, 83, 66, 91}}});
  const List fixed = {el.nfix, el.fixnode(9), el.fixnode(10), el.fixnode(19)};
  EXPECT_EQ(fixed, (List{36, 66, 91, 1070 + 58}));
}
