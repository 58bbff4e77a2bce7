// Buckling of whole girders against closed forms.
#include <cmath>
#include <numbers>
#include <vector>

#include "support/measured.h"
#include "support/models.h"
#include "support/run.h"

using namespace zelvo;

namespace {

constexpr double PI = std::numbers::pi;
constexpr double E = STEEL_E, G = STEEL_E / 2.6;

// A fibre of a section: place, sectorial coordinate about the origin, area.
struct Fibre {
  double x, y, w, area;
};

// The right half of the open tub: bottom flange, web, inner and outer half of the top flange.
std::vector<Fibre> half_tub(const SectionDimensions& s, double web, double bottom, double top) {
  std::vector<Fibre> fibres;
  const auto add_plate = [&](double x1, double y1, double x2, double y2, double t, double w1) {
    constexpr int PARTS = 500;
    const double sector = x1 * y2 - x2 * y1, area = std::hypot(x2 - x1, y2 - y1) * t / PARTS;
    for (int i = 0; i < PARTS; ++i) {
      const double r = (i + 0.5) / PARTS;
      fibres.push_back({x1 + r * (x2 - x1), y1 + r * (y2 - y1), w1 + r * sector, area});
    }
    return w1 + sector;
  };
  const double h = s.depth, foot = s.bottom_width / 2, x = s.top_spacing / 2,
               f = s.flange_width / 2;
  add_plate(0, 0, foot, 0, bottom, 0);
  const double w = add_plate(foot, 0, x, h, web, 0);
  add_plate(x, h, x - f, h, top, w);
  add_plate(x, h, x + f, h, top, w);
  return fibres;
}

// St. Venant's constant; b is the whole width of a flange.
double torsion_constant(const SectionDimensions& s, double web, double bottom, double top) {
  const auto flange = [](double b, double t) { return b * t * t * t / 3 * (1 - 0.63 * t / b); };
  const double slant = std::hypot(s.depth, (s.top_spacing - s.bottom_width) / 2);
  return flange(s.bottom_width, bottom) + 2 * flange(s.flange_width, top) +
         2 * slant * web * web * web / 3;
}

// Critical uniform moment of a simple span, top flanges in compression (Vlasov 1961).
double lateral_buckling_moment(const std::vector<Fibre>& half, double J, double L) {
  const auto integral = [&](auto f) {
    double sum = 0;
    for (const Fibre& p : half) sum += 2 * p.area * f(p);
    return sum;
  };
  const double A = integral([](const Fibre&) { return 1.0; });
  const double yc = integral([](const Fibre& p) { return p.y; }) / A;
  const double Ix = integral([&](const Fibre& p) { return (p.y - yc) * (p.y - yc); });
  const double Iy = integral([](const Fibre& p) { return p.x * p.x; });
  // Shear centre: there the sectorial coordinate w + ys x has no moment with x.
  const double ys = -integral([](const Fibre& p) { return p.w * p.x; }) / Iy;
  const double Cw = integral([&](const Fibre& p) { return std::pow(p.w + ys * p.x, 2); });
  const double wagner =
      integral([&](const Fibre& p) { return (p.y - yc) * (p.x * p.x + (p.y - yc) * (p.y - yc)); });
  const double b = wagner / (2 * Ix) - (ys - yc);
  const double euler = PI * PI * E * Iy / (L * L);
  return euler * (std::sqrt(b * b + Cw / Iy + G * J / euler) - b);
}

// The stage at its first buckling load: bare steel under end couples L^2/8 times the load of 1/12
// kip/in, which compress the top flanges or, with sign -1, the bottom flange.
Bridge buckled(const SectionDimensions& section, double L, double web, double bottom, double sign,
               int brace_step) {
  Model m = one_girder(static_cast<int>(L));
  m.secdim = section;
  set_webs(m, {{L, web}});
  set_bottom(m, {{L, bottom}});
  brace_every(m, brace_step);
  set_stages(m, {m.lgbr}, 1, 0.1, 0.0001, sign);
  m.load_pattern = 3;
  m.buckle = true;
  m.nev = m.solver_type = 1;
  m.tol = 1e-8;
  return analyse(m);
}

}  // namespace

TEST(OpenTubUnderUniformMoment, BucklesSidewaysAtTheMomentOfVlasov) {
  constexpr double L = 1440;
  const SectionDimensions sections[] = {{48, 60, 156, 24, 220, 8}, {30, 60, 180, 24, 220, 8}};
  for (const auto& section : sections) {
    const double factor = buckled(section, L, 0.75, 1, 1, 48).results(1).buckling.modes.eigval(1);
    const double theory = lateral_buckling_moment(half_tub(section, 0.75, 1, 1.5),
                                                  torsion_constant(section, 0.75, 1, 1.5), L);
    measured("tub.vlasov." + std::to_string(&section - sections), {factor * L * L / 96 / theory});
    EXPECT_GT(factor * L * L / 96, 0.90 * theory);
    EXPECT_LT(factor * L * L / 96, 1.02 * theory);
  }
}

// The flange is a long plate held by the webs: between simply supported and clamped long edges, and
// near the factors of simply supported finite strips (Cheung 1976).
TEST(BottomFlangeInCompression, BucklesAsAPlateBetweenHingedAndClampedEdges) {
  constexpr int L = 720, HALF = 60;
  constexpr double T = 0.5;
  const struct {
    SectionDimensions section;
    double strips;
  } cases[] = {{{60, 72, 84, 12, 144, 8}, 3.568}, {{30, 60, 180, 12, 220, 8}, 2.294}};
  for (const auto& [section, strips] : cases) {
    const Bridge b = buckled(section, L, T, T, -1, 120);
    EXPECT_NEAR(b.results(1).buckling.modes.eigval(1), strips, 0.1 * strips);
    const int centre = b.pattern().girder[0].bottom_centre();
    const double stress =
        E * (b.u(1, L / 2 + HALF, centre, 3) - b.u(1, L / 2 - HALF, centre, 3)) / (2 * HALF);
    const double plate =
        PI * PI * E / (12 * (1 - 0.3 * 0.3)) * std::pow(T / section.bottom_width, 2);
    measured("flange." + std::to_string(section.depth > 50 ? 0 : 1),
             {stress / plate, b.results(1).buckling.modes.eigval(1), strips});
    EXPECT_GT(stress / plate, 4.0);
    EXPECT_LT(stress / plate, 6.97);
  }
}
