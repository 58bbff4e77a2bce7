// A curved simple span with cross frames and crossed top laterals against the statics of curved
// beams, Bredt's torsion of a closed section, and the bracing forces that follow from both.
#include <gtest/gtest.h>

#include <cmath>

#include "support/measured.h"
#include "support/models.h"
#include "support/run.h"
#include "verification/beam.h"

using namespace zelvo;

static constexpr int SPAN = 1440, PANEL = 120;
static constexpr double RADIUS = 7200, ANGLE = SPAN / RADIUS, AREA = 5;
static constexpr double DEPTH = 60, TOP = 84, BOTTOM = 72, FLANGE = 12;
static constexpr double A0 = 0.5 * (TOP + BOTTOM) * DEPTH;  // within the closed section

// Moment and torque in kip-ft at angle f of a curved beam whose ends cannot twist, from
// M'' + M/R^2 = -w and T' = -M/R.
static double beam_moment(double f) {
  return DECK_LOAD * RADIUS * RADIUS * (std::cos(ANGLE / 2 - f) / std::cos(ANGLE / 2) - 1) / 12;
}
static double beam_torque(double f) {
  return DECK_LOAD * RADIUS * RADIUS *
         (std::sin(ANGLE / 2 - f) / std::cos(ANGLE / 2) - (ANGLE / 2 - f)) / 12;
}

TEST(CurvedSpan, BendsTwistsAndLoadsItsBracingAsCurvedBeamsDo) {
  Model m = one_girder(SPAN, RADIUS);
  brace_every(m, PANEL, Laterals::CROSSED);
  const Bridge bridge = analyse(m);
  const SectionResults& sections = bridge.results(1).sections;
  std::vector<double> moment, torque, moment_theory, torque_theory, laterals, frames;
  for (int i = 1; i <= sections.moment.size(); ++i) {
    const double f = 24 * (i - 1) / RADIUS;
    EXPECT_NEAR(sections.moment(i) / 12, beam_moment(f), 1e-4 * beam_moment(ANGLE / 2)) << i;
    EXPECT_NEAR(std::abs(sections.torque(i)) / 12, std::abs(beam_torque(f)), 1e-3 * beam_torque(0))
        << i;
    moment.push_back(sections.moment(i) / 12), moment_theory.push_back(beam_moment(f));
    torque.push_back(sections.torque(i) / 12), torque_theory.push_back(beam_torque(f));
  }

  // Twist of the quasi-closed section. Kollbrunner and Basler 1969: crossed laterals act as a plate
  // of thickness (E/G) s a / (d^3/2A_d + s^3/6A_f); J = 4 A0^2 / sum(b/t).
  const double G = STEEL_E / 2.6, d = std::hypot(TOP, PANEL), s = PANEL;
  const double t_star =
      STEEL_E / G * s * TOP / (d * d * d / (2 * AREA) + s * s * s / (6 * FLANGE * 1.5));
  const double web = std::hypot(DEPTH, 0.5 * (TOP - BOTTOM));
  const double J = 4 * A0 * A0 / (TOP / t_star + BOTTOM / 1.0 + 2 * web / 0.5);
  const double D = (ANGLE / 4 * std::tan(ANGLE / 2) - 1) / std::cos(ANGLE / 2);
  const double twist =
      DECK_LOAD * std::pow(RADIUS, 3) * (1 / (G * J) + 1 / tub_section(m).EI()) * (1 + D);
  EXPECT_NEAR(std::abs(bridge.rotation(1, SPAN / 2)), twist, 0.03 * twist);

  // Bredt's flow q = T / 2 A0 in the plane of the laterals: q d / 2 in either diagonal, of opposite
  // signs; what both share comes from bending. The panel before midspan has next to no torque.
  const BarForces& bars = bridge.results(1).bars;
  for (int p = 1; p < SPAN / PANEL / 2; ++p) {
    const double half = 0.5 * (bars.laterals(2 * p - 1) - bars.laterals(2 * p));
    const double expected = beam_torque((p - 0.5) * PANEL / RADIUS) * 12 * d / (4 * A0);
    EXPECT_NEAR(std::abs(half), expected, (p == 1 ? 0.02 : 0.015) * expected) << p;
    laterals.push_back(std::abs(half) / expected);
  }

  // Fan and Helwig 2002: curvature turns bending into the couple M/R per length, which distorts the
  // section; a frame every s holds it with diagonals of (M/R) s L_D / 2 A0.
  const double diagonal = std::hypot(DEPTH, BOTTOM / 2);
  for (int i = 3; i <= 6; ++i) {
    const double M = beam_moment(i * PANEL / RADIUS) * 12;
    const double expected = M / RADIUS * PANEL * diagonal / (2 * A0);
    const double half = 0.5 * (bars.internal(3, i) - bars.internal(4, i));
    EXPECT_NEAR(std::abs(half), expected, 0.03 * expected) << i;
    frames.push_back(std::abs(half) / expected);
  }
  measured("curved.moment", moment);
  measured("curved.moment.theory", moment_theory);
  measured("curved.torque", torque);
  measured("curved.torque.theory", torque_theory);
  measured("curved.twist", {std::abs(bridge.rotation(1, SPAN / 2)) / twist});
  measured("curved.laterals", laterals);
  measured("curved.frames", frames);
}
