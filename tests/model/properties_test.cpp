#include "model/properties.h"

#include <gtest/gtest.h>

#include "support/models.h"

using namespace zelvo;

TEST(BarProperties, RepeatTheInputRowsForEveryElementOfTheRow) {
  Model m = two_girders(96);
  add_ibraces(m, {24, 48}, 2);
  add_ebraces(m, {48}, 3, 4);
  add_stiffeners(m, {24, 48});
  m.ib_area(2) = m.ws_b(2) = 7;
  const Properties p = generate_structure(m).properties;
  EXPECT_EQ(p.ibprop(3).area, 5);
  EXPECT_EQ(p.ibprop(4).area, 7);
  EXPECT_EQ(p.ibprop(4).type, 2);
  EXPECT_EQ(p.ebprop(1).area, 4);
  EXPECT_EQ(p.ebprop(1).type, 3);
  EXPECT_EQ(p.wsprop(4).width, 6);
  EXPECT_EQ(p.wsprop(5).width, 7);
  EXPECT_EQ(p.wsprop(5).thickness, 0.5);
}

TEST(StudLinks, StandForTheStudsOfTwelveInchesInTheLaterSegmentAtASharedStation) {
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
    set_studs(m, {{24, c.spacing, double(c.count)}, {24, c.spacing, -1}});
    set_stages(m, {24, 24}, 1);
    m.pour_k(1, 2) = 20;
    const Properties p = generate_structure(m).properties;
    for (int l = 1; l <= 60; ++l) {
      EXPECT_DOUBLE_EQ(p.studnum(l), l % 3 == 2 ? c.web : c.edge) << c.spacing << " " << c.count;
      EXPECT_EQ(p.studk(1, l), l <= 24 ? 0.0001 : 20) << "link " << l;
    }
  }
}
