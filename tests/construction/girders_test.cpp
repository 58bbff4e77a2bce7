// Girder resultants, stresses for design, motions and bearings against statics and beam theory.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "construction/girders.h"
#include "construction/motion.h"
#include "solution/linear.h"
#include "solution/stiffness.h"
#include "support/models.h"
#include "support/run.h"
#include "verification/beam.h"

using namespace zelvo;

static constexpr double LOAD = 3.0 / 12, SPACING = 60;  // kip/in; of bearings

static Quantities recover(Bridge& b) {
  Structure loose = b.run.structure;  // the penalty refers to the stiffness without supports
  loose.elements.nfix = 0;
  SymmetricMatrix K = matrix_of(loose);
  assemble_stiffness(b.model, loose, 1, b.run.inverses, no_progress, K);
  const double penalty = 1000 * *std::max_element(K.values.begin(), K.values.end());
  Quantities q;
  recover_reactions(b.model, b.run.structure, b.run.U, penalty, SPACING, q);
  recover_girders(b.model, b.run.structure, b.run.U, 1, b.run.inverses, q);
  return q;
}

using Pairs = std::initializer_list<std::pair<double, double>>;
static void expect_near(double tolerance, Pairs pairs) {
  for (const auto& [value, expected] : pairs) EXPECT_NEAR(value, expected, tolerance);
}

// The load of one girder has the arm -90 about the common point.
TEST(GirderResultants, AreHalvesUnderEqualLoadAndTheLoadedGirdersAlone) {
  constexpr int SPAN = 480;
  Model m = two_girders(SPAN);
  add_ibraces(m, {120, 240, 360});
  Bridge b = analyse(m);
  const Quantities even = recover(b);
  for (int n = 1; n <= b.run.structure.nodes.nnode; ++n)
    if ((n - 1) % b.pattern().nodes + 1 >= b.pattern().girder[1].first) b.run.F(equation(n, 2)) = 0;
  ASSERT_EQ(solve_linear(b.run.K, b.run.F, no_progress, b.run.U), 0);
  const Quantities one = recover(b);
  const double near = 1e-4 * LOAD / 2 * SPAN * SPAN / 8;
  for (int j = 1; j <= SPAN / 24 + 1; ++j) {
    const double x = 24 * (j - 1), M = LOAD / 4 * x * (SPAN - x);
    expect_near(near, {{even.own.M(j, 1), M}, {one.own.M(j, 1), M}, {one.own.M(j, 2), 0}});
    expect_near(1e-5 * near, {{even.own.M(j, 2), even.own.M(j, 1)}});
    expect_near(near, {{one.own.T(j, 1), 0}, {one.whole.T(j, 1), 90 * one.whole.V(j, 1)}});
  }
}

TEST(GirderResultants, OfACurvedPairSumToTheSectionAndMeetTheReactions) {
  Model m = two_girders(192, 1500);
  set_supports(m, {0, 96, 192});
  add_ebraces(m, {96});
  add_laterals(m, {{1, 0, 48}, {2, 48, 96}, {2, 120, 192}});
  set_stages(m, {72, 120}, 1, 1000, 10);
  m.pour_load(1, 2) = 1;
  Bridge b = analyse(m);
  const Quantities q = recover(b);
  const SectionResults& s = b.results(1).sections;
  const auto both = [](const Matrix<double>& r, int i) { return r(i, 1) + r(i, 2); };
  for (int j = 1; j <= 9; ++j) {
    expect_near(1e-9 * 10, {{both(q.girders.V, j), s.shear(j)}});
    expect_near(1e-9 * 200, {{both(q.girders.M, j), s.moment(j)}, {both(q.own.M, j), s.moment(j)}});
    expect_near(1e-9 * 200, {{both(q.girders.T, j), s.torque(j)}});
    expect_near(1e-9 * 200, {{q.own.L(j, 2), q.girders.L(j, 2) - 90 * q.girders.N(j, 2)},
                             {q.own.T(j, 2), q.girders.T(j, 2) + 90 * q.girders.V(j, 2)}});
  }
  // The part before the first cut is half a foot of load on the pinned support; the part behind the
  // last one half a foot on a roller.
  const auto couple = [&](int i) {
    return both(q.couple, i) + 90 * (q.vertical(i, 1) - q.vertical(i, 2)) - 60 * both(q.lateral, i);
  };
  expect_near(1e-6, {{q.whole.V(1, 1), 1.5 - both(q.vertical, 1)},
                     {q.whole.H(1, 1), -both(q.lateral, 1)},
                     {q.whole.N(1, 1), -both(q.longitudinal, 1)},
                     {q.whole.V(9, 1), both(q.vertical, 3) - 0.5},
                     {q.whole.H(9, 1), both(q.lateral, 3)}});
  expect_near(1e-4, {{q.whole.T(1, 1), -couple(1)}, {q.whole.T(9, 1), couple(3)}});
  EXPECT_GT(std::abs(both(q.lateral, 3)), 1e-4);
}

// Crossed laterals and single diagonals; those twist the span a little against its supports.
TEST(GirderResultants, WithLateralsObeyStatics) {
  for (const bool crossed : {true, false}) {
    Model m = braced_span(480, crossed ? Laterals::CROSSED : Laterals::NONE);
    if (!crossed) add_laterals(m, {{1, 0, 120}, {2, 120, 240}, {1, 240, 360}, {2, 360, 480}});
    Bridge b = analyse(m);
    const Quantities q = recover(b);
    for (int j = 1; j <= 21; ++j) {
      const double x = 24 * (j - 1);
      expect_near(1e-4 * 7200, {{q.whole.M(j, 1), LOAD / 2 * x * (480 - x)}});
      expect_near(1e-5, {{q.whole.N(j, 1), 0}, {q.whole.H(j, 1), 0}, {q.whole.L(j, 1), 0}});
      expect_near(1e-5, {{q.whole.T(j, 1), q.couple(2, 1)}, {q.whole.T(j, 1), -q.couple(1, 1)}});
      EXPECT_LT(q.bracing.N(j, 1), -0.5);
    }
    const double shear = LOAD * (24 * 5 - 252) / tub_section(m).Av;  // of bay 5
    if (crossed)
      expect_near(0.02, {{q.web_shear(5, 1) / shear, 1}, {q.web_shear(5, 2) / shear, 1}});
  }
}

TEST(Bearings, OfACurvedSpanCarryTheEndTorque) {
  constexpr int SPAN = 960;
  constexpr double R = 7200, A = SPAN / R;
  Model m = one_girder(SPAN, R);
  brace_every(m, 120, Laterals::CROSSED);
  Bridge b = analyse(m);
  const Quantities q = recover(b);
  const double T = LOAD * R * R * (std::tan(A / 2) - A / 2);
  expect_near(1e-3 * T, {{q.whole.T(1, 1), -T}, {q.couple(1, 1), T}, {q.couple(2, 1), T}});
  expect_near(1e-9, {{q.bearings(1, 1) + q.bearings(1, 2), b.results(1).reactions.vertical(1, 1)},
                     {q.bearings(1, 1) - q.bearings(1, 2), 2 * q.couple(1, 1) / SPACING}});
}

TEST(DesignStresses, OfEndCouplesAreThoseOfPureBending) {
  Model m = braced_span(960);
  m.load_pattern = 3;
  Bridge b = analyse(m);
  const Quantities q = recover(b);
  const BeamSection s = tub_section(m);
  const double M = LOAD * 960 * 960 / 8, top = -M * (60 - s.y) / s.I;
  expect_near(-0.003 * top, {{q.flange_mean(21, 1), top}, {q.flange_bend(21, 1), 0}});
  expect_near(-0.003 * top, {{q.bottom_mean(21, 1), M * s.y / s.I}});
}

// Bending about the vertical axis (Saint-Venant), x / 1000 along the girder, and a rigid motion, 0.5
// to the right and 0.01 clockwise.
TEST(DesignStresses, AndMotionsFollowAGivenField) {
  constexpr double C = 1e-3, NU = 0.3, TURN = 0.01, S = STEEL_E * C;
  Model m = two_girders(48);
  Bridge b{m, analyse(m).run, {}};
  for (int n = 1; n <= b.run.structure.nodes.nnode; ++n) {
    const double* p = b.run.structure.nodes.xyz.column(n);
    const double x = p[0], y = p[1], s = -p[2];
    const double u[5] = {0.5 + TURN * y - C / 2 * (s * s + NU * (x * x - y * y)),
                         -TURN * x - C * NU * x * y, -C * x * s, 0, 0};
    for (int d = 1; d <= 5; ++d) b.run.U(equation(n, d)) = u[d - 1];
  }
  const Quantities q = recover(b);
  expect_near(1e-7, {{q.flange_mean(1, 1), S * (-90 - 42)}, {q.flange_mean(2, 4), S * (90 + 42)}});
  expect_near(1e-7, {{q.flange_bend(1, 1), S * 6}, {q.flange_bend(2, 4), S * 6}});
  expect_near(1e-7, {{q.bottom_high(2, 2), S * (90 + 27)}, {q.bottom_low(2, 2), S * (90 - 27)}});
  EXPECT_GT(q.own.L(1, 1), 0);
  const GirderMotion g = girder_motion(m, b.run.structure, b.run.U);
  const double edge = TURN + C * NU * 60;  // slope of the deck
  expect_near(1e-12, {{g.deflection(1, 1), 90 * TURN},
                      {g.differential(5, 1), 180 * TURN},
                      {g.twist(3, 2), TURN},
                      {g.left_top(1, 1) - g.right_top(1, 1), 84 * edge},
                      {g.deck_edges(1, 1), 162 * edge},
                      {g.lateral(3, 1), 0.5 - C / 2 * (24 * 24 + NU * (90 * 90 + 36 * 36))}});
}
