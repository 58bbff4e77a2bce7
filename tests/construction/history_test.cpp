// The pass over the stages: increments are the batch program's, totals their sums.
#include "construction/history.h"

#include <gtest/gtest.h>

#include <cmath>

#include "construction/camber.h"
#include "support/models.h"
#include "support/run.h"
#include "verification/beam.h"

using namespace zelvo;

namespace {

constexpr double WET_E = 1e-6, WET_K = 0.001, HARD_E = 3600, HARD_K = 250;

// Three spans of two curved girders with every kind of bar; the segments are poured in this order
// and hard in the stage after, or stay soft. A stage of steel alone goes before, barriers behind.
Model staged_bridge(const std::vector<int>& order, bool hardens) {
  Model m = two_girders(288, 1500);
  set_supports(m, {96, 0, 192, 288});
  add_ibraces(m, {48, 144, 240});
  add_ebraces(m, {48, 144});
  add_laterals(m, {{1, 0, 48}, {2, 48, 96}, {1, 96, 144}});
  add_stiffeners(m, {96, 192});
  const int pours = static_cast<int>(order.size());
  set_stages(m, Positions(order.size(), 288 / pours), pours + 2, WET_E, WET_K, 0);
  m.selfwt = true;
  for (int i = 1; i <= pours; ++i) {
    const int j = order[static_cast<std::size_t>(i - 1)];
    m.pour_load(i + 1, j) = 3 + 0.1 * j;
    for (int k = i + 2; k <= m.nanal && hardens; ++k) {
      m.pour_e(k, j) = HARD_E;
      m.pour_k(k, j) = HARD_K;
    }
  }
  for (int j = 1; j <= pours; ++j) m.pour_load(m.nanal, j) = 1;
  return m;
}

History history_of(const Model& m, const HistoryOptions& options = {}) {
  return construct(m, options, no_progress);
}

// Largest difference of two tables over the largest value of the first.
double difference(const Matrix<double>& a, const Matrix<double>& b) {
  double largest = 0, worst = 0;
  for (int i = 1; i <= a.rows(); ++i)
    for (int j = 1; j <= a.cols(); ++j) {
      largest = std::max(largest, std::abs(a(i, j)));
      worst = std::max(worst, std::abs(a(i, j) - b(i, j)));
    }
  return largest > 0 ? worst / largest : worst;
}

double worst_difference(const Quantities& a, const Quantities& b) {
  const auto ta = tables_of(a), tb = tables_of(b);
  double worst = 0;
  for (std::size_t t = 0; t < ta.size(); ++t) worst = std::max(worst, difference(*ta[t], *tb[t]));
  return worst;
}

}  // namespace

TEST(Construction, SumsTheStagesOfTheBatchProgramInEquilibrium) {
  const Model m = staged_bridge({4, 2, 6, 1, 3, 5}, true);
  const History h = history_of(m);
  const Bridge batch = analyse(m);
  ASSERT_EQ(h.stage.size(), 8u);
  Matrix<double> deflection(m.nstn(), 2), reaction(4, 2), s22(52, 12), frames(4, 6);
  const auto add = [](const Matrix<double>& x, Matrix<double>& sum) {
    for (int i = 1; i <= x.rows(); ++i)
      for (int j = 1; j <= x.cols(); ++j) sum(i, j) += x(i, j);
  };
  for (int k = 1; k <= 8; ++k) {
    const StageRecord& s = h.stage[static_cast<std::size_t>(k - 1)];
    const StageResults& r = batch.results(k);
    EXPECT_EQ(difference(r.stations.deflection, s.increment.motion.deflection), 0) << k;
    add(r.stations.deflection, deflection);
    add(r.reactions.vertical, reaction);
    add(r.sections.s22, s22);
    add(r.bars.internal, frames);
    EXPECT_LT(difference(deflection, s.total.motion.deflection), 1e-12) << k;
    EXPECT_LT(difference(reaction, s.total.vertical), 1e-12) << k;
    EXPECT_LT(difference(s22, s.total.s22), 1e-12) << k;
    EXPECT_LT(difference(frames, s.total.internal), 1e-12) << k;
    EXPECT_LT(s.checks.imbalance, 1e-9) << k;
    EXPECT_LT(s.checks.residual, 1e-8) << k;
  }
  EXPECT_NEAR(h.stage[0].checks.load, h.plates, 1e-9 * h.plates);
}

TEST(Construction, IsLinearInTheLoadFactors) {
  const Model m = staged_bridge({2, 1, 3}, true);
  HistoryOptions twice, mixed;
  twice.load_factor = {2, 2, 2, 2, 2};
  mixed.load_factor = {1.25, -0.5, 0, 1.75};  // the last stage keeps 1
  const History one = history_of(m), two = history_of(m, twice), some = history_of(m, mixed);
  for (std::size_t k = 0; k < 5; ++k) {
    Matrix<double> doubled = one.stage[k].total.girders.M;
    for (int g = 1; g <= 2; ++g)
      for (int j = 1; j <= doubled.rows(); ++j) doubled(j, g) *= 2;
    EXPECT_LT(difference(doubled, two.stage[k].total.girders.M), 1e-12) << k;
  }
  double sum = 0;
  for (std::size_t k = 0; k < 5; ++k)
    sum += (k < 4 ? mixed.load_factor[k] : 1) * one.stage[k].increment.mid22(30, 6);
  EXPECT_NEAR(some.stage[4].total.mid22(30, 6), sum, 1e-12 * std::abs(sum));
}

TEST(Construction, OfSteelThatStaysBareEndsAlikeInEveryOrderOfThePours) {
  const History a = history_of(staged_bridge({1, 2, 3, 4}, false)),
                b = history_of(staged_bridge({3, 1, 4, 2}, false));
  EXPECT_LT(worst_difference(a.stage.back().total, b.stage.back().total), 1e-7);
  EXPECT_GT(difference(a.stage[2].total.motion.deflection, b.stage[2].total.motion.deflection),
            0.1);
}

TEST(Envelope, NamesTheFirstOfStagesThatTie) {
  const Model m = staged_bridge({1, 2}, false);  // stages 1 to 4
  History h = history_of(m);
  const auto deflection = [&](std::size_t k) -> Matrix<double>& {
    return h.stage[k].increment.motion.deflection;
  };
  for (std::size_t k = 0; k < 4; ++k) deflection(k)(5, 1) = k == 0 ? 3 : 7 + 1e-10 * double(k);
  deflection(0)(6, 1) = 8;  // the largest magnitude of the table
  const Envelope e = envelope_of(
      {&h.stage[0].increment, &h.stage[1].increment, &h.stage[2].increment, &h.stage[3].increment});
  const std::size_t table = 4;  // deflection, fifth of each_table
  EXPECT_EQ(e.high.motion.deflection(5, 1), 7 + 3e-10);
  EXPECT_EQ(e.high_stage[table](5, 1), 2);
  EXPECT_EQ(e.low.motion.deflection(5, 1), 3);
  EXPECT_EQ(e.low_stage[table](5, 1), 1);
  EXPECT_EQ(envelope_of({&h.stage[2].increment}).low_stage[table](9, 2), 1);
}

// Wet concrete on bare steel, then barriers on the hardened deck: the top flange keeps the stress of
// the first and adds that of the composite section, M1 y / I_steel + M2 y / I_composite.
TEST(Construction, LocksTheStressOfWetConcreteIntoTheSteel) {
  constexpr int SPAN = 1440;
  Model m = braced_span(SPAN);
  set_stages(m, {SPAN}, 2, WET_E, WET_K, 3);
  m.pour_e(2, 1) = HARD_E;
  m.pour_k(2, 1) = 1e5;
  const History h = history_of(m);
  const BeamSection steel = tub_section(m);
  const double n = HARD_E / STEEL_E, deck = n * 144 * 8, arm = 60 + 4.0;
  const double A = steel.A + deck, y = (steel.A * steel.y + deck * arm) / A;
  const double I = steel.I + steel.A * std::pow(steel.y - y, 2) + deck * 8 * 8 / 12 +
                   deck * std::pow(arm - y, 2);
  const double x = SPAN / 2 + 12, M = 3.0 / 12 * x * (SPAN - x) / 2;  // middle of a bay
  const double locked = -M * (60 - steel.y) / steel.I, added = -M * (60 - y) / I;
  const int bay = SPAN / 48 + 1;
  for (int flange = 1; flange <= 2; ++flange) {
    EXPECT_NEAR(h.stage[0].total.flange_mean(bay, flange), locked, 0.01 * std::abs(locked));
    EXPECT_NEAR(h.stage[1].total.flange_mean(bay, flange), locked + added,
                0.01 * std::abs(locked + added));
  }
}

TEST(Camber, LiesBetweenStationsOnTheirCubicInEverySpan) {
  Model m = one_girder(480);
  set_supports(m, {312, 0, 480, 312});
  const std::vector<TenthPoint> points = tenth_points(m);
  ASSERT_EQ(points.size(), 22u);
  EXPECT_EQ(points[1].position, 31.2);
  EXPECT_EQ(points[11].position, 312);
  EXPECT_EQ(points[21].span, 2);
  Matrix<double> cubic(m.nstn(), 1), half = cubic;
  const auto f = [](double x) { return x * x * x / 1e6 - x * x / 1e3 + 2; };
  for (int s = 1; s <= m.nstn(); ++s) {
    cubic(s, 1) = f(12.0 * (s - 1));
    half(s, 1) = cubic(s, 1) / 2;
  }
  for (const TenthPoint& p : points)
    EXPECT_NEAR(at_position(cubic, 1, p.position), f(p.position), 1e-11) << p.position;
  EXPECT_EQ(camber(cubic)(7, 1), -cubic(7, 1));
  EXPECT_EQ(still_to_come(cubic, half)(7, 1), half(7, 1));
}

TEST(BracingWeight, IsThatOfItsBarsByHand) {
  Model m = two_girders(96);
  add_ibraces(m, {48});
  add_ebraces(m, {48});
  add_laterals(m, {{1, 0, 48}});
  add_stiffeners(m, {0});
  const BracingWeight w = bracing_weight(generate_structure(m));
  const double web = std::hypot(60, 6), slant = std::hypot(36, 60);
  EXPECT_NEAR(w.internal / STEEL_DENSITY, 2 * 5 * (84 + 2 * slant), 1e-9);
  EXPECT_NEAR(w.external / STEEL_DENSITY, 5 * (96 + 108 + 2 * std::hypot(48, 60)), 1e-9);
  EXPECT_NEAR(w.laterals / STEEL_DENSITY, 2 * 5 * std::hypot(84, 48), 1e-9);
  EXPECT_NEAR(w.stiffeners / STEEL_DENSITY, 4 * 6 * 0.5 * web, 1e-9);
}
