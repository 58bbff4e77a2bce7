// The example bridges: their loads come out at the supports, mirrored bridges answer mirrored.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <string>

#include "bars/braces.h"
#include "control/input.h"
#include "solution/loads.h"
#include "support/run.h"

using namespace zelvo;

static Model example(const std::string& name) {
  std::ifstream file(ZELVO_SOURCE_DIR "/examples/" + name + "/zvinp.txt");
  Input input;
  EXPECT_EQ(read_input({std::istreambuf_iterator<char>(file), {}}, input), ReadOutcome::COMPLETE);
  EXPECT_EQ(note_lines(input.notes), "");
  return input.model;
}

static double volume(PlateSegments plates, double width) {
  double v = 0;
  for (int i = 1; i <= plates.n; ++i) v += plates.len(i) * plates.t(i) * width;
  return v;
}

// Kips: the pour loads of the first analysis and the steel. A row of nodes at a change of thickness
// takes the load of one side only, which leaves the sum alone where both ends are equally thick.
static double applied_load(const Model& m) {
  double load = 0;
  for (int j = 1; j <= m.npour; ++j) load += m.pour_load(1, j) * m.pour_len(j) / 12;
  const double web = std::hypot(m.secdim.depth, (m.secdim.top_spacing - m.secdim.bottom_width) / 2);
  return load +
         m.ngird * STEEL_DENSITY *
             (volume(web_segments(m), 2 * web) + volume(bottom_segments(m), m.secdim.bottom_width) +
              volume(top_segments(m), 2 * m.secdim.flange_width));
}

// What the mid nodes of the braces pass to the ground: BRACE_EPS times their deflection, here that
// of the mean of their corners.
static double brace_loss(const Bridge& b) {
  double sum = 0;
  for (const Matrix<int>* conn :
       {&b.run.structure.elements.ibconn, &b.run.structure.elements.ebconn})
    for (int e = 1; e <= conn->cols(); ++e)
      for (int c = 1; c <= 4; ++c) sum -= b.stage[0].U(equation((*conn)(c, e), 2)) / 4;
  return BRACE_EPS * sum;
}

class Example : public testing::TestWithParam<const char*> {};

// Steel and the pour of the second stage in one analysis, on the structure of the first.
TEST_P(Example, ReactionsSumToTheLoad) {
  Model m = example(GetParam());
  m.nanal = 1;
  for (int j = 1; j <= m.npour; ++j) m.pour_load(1, j) += m.pour_load(2, j);
  const Bridge b = analyse(m);
  double sum = 0;
  for (const double r : b.reactions(1)) sum += r;
  EXPECT_NEAR(sum + brace_loss(b), applied_load(m), 1e-6 * applied_load(m));
}

INSTANTIATE_TEST_SUITE_P(Bridges, Example,
                         testing::Values("simple_span", "two_span_curved", "three_span_two_girders",
                                         "three_span_curved_two_girders"),
                         [](const auto& i) { return std::string(i.param); });

// The bridge is its own mirror image about the middle support, its laterals included.
TEST(TwoSpanCurved, AnswersASymmetricPourSymmetrically) {
  Model m = example("two_span_curved");
  m.nanal = 1;
  m.selfwt = false;  // lumped on one side of a change of thickness
  for (int j = 1; j <= m.npour; ++j) m.pour_load(1, j) = j == 2 ? 0 : 2;
  const Bridge b = analyse(m);
  const std::vector<double> R = b.reactions(1);  // middle, first end, last end
  EXPECT_NEAR(R[1], R[2], 1e-9 * R[0]);
  for (int x = 0; x <= m.lgbr / 2; x += 240) {
    EXPECT_NEAR(b.deflection(1, x), b.deflection(1, m.lgbr - x), 1e-9) << x;
    EXPECT_NEAR(b.rotation(1, x), b.rotation(1, m.lgbr - x), 1e-11) << x;
  }
  const BarForces& bars = b.results(1).bars;
  const int nlat = static_cast<int>(bars.laterals.size()), frames = bars.internal.cols();
  for (int i = 1; i <= nlat / 2; ++i)
    EXPECT_NEAR(bars.laterals(i), bars.laterals(nlat + 1 - i), 1e-6) << i;
  for (int i = 1; i <= frames / 2; ++i)
    for (int bar = 1; bar <= 4; ++bar)
      EXPECT_NEAR(bars.internal(bar, i), bars.internal(bar, frames + 1 - i), 1e-5)
          << i << " bar " << bar;
}
