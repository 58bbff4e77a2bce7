// Buckling of whole girders against closed forms.
#include <cmath>
#include <numbers>

#include "support/models.h"
#include "support/run.h"

namespace {

constexpr double PI = std::numbers::pi;
constexpr double E = STEEL_E, G = STEEL_E / 2.6;

// A straight plate of the section, from (x1,y1) to (x2,y2), with the sectorial coordinate about the
// origin at both ends.
struct PlateLine {
  double x1, y1, x2, y2, t, w1, w2;
  double length() const { return std::hypot(x2 - x1, y2 - y1); }
  // Integral of f(x, y, omega) over its area; exact for cubics.
  template <class F>
  double integral(F f) const {
    const double middle = f((x1 + x2) / 2, (y1 + y2) / 2, (w1 + w2) / 2);
    return length() * t / 6 * (f(x1, y1, w1) + 4 * middle + f(x2, y2, w2));
  }
};

// The open tub as its right half; values of the whole section are twice the half's.
struct OpenTub {
  PlateLine plates[4];  // bottom flange, web, inner and outer half of the top flange

  OpenTub(const FixedVector<double, 6>& s, double web, double bottom, double top) {
    const auto sector = [](PlateLine& p) { p.w2 = p.w1 + p.x1 * p.y2 - p.x2 * p.y1; };
    plates[0] = {0, 0, s(2) / 2, 0, bottom, 0, 0};
    plates[1] = {s(2) / 2, 0, s(3) / 2, s(1), web, 0, 0};
    sector(plates[1]);
    const double w = plates[1].w2, x = s(3) / 2, f = s(4) / 2;
    plates[2] = {x, s(1), x - f, s(1), top, w, 0};
    plates[3] = {x, s(1), x + f, s(1), top, w, 0};
    sector(plates[2]);
    sector(plates[3]);
  }
  template <class F>
  double integral(F f) const {
    double sum = 0;
    for (const PlateLine& p : plates) sum += 2 * p.integral(f);
    return sum;
  }
  double torsion() const {  // St. Venant, both webs, both flanges; b is the whole width of a flange
    const double wide = 2 * plates[0].length(), top = 2 * plates[2].length();
    const auto flange = [](double b, double t) { return b * t * t * t / 3 * (1 - 0.63 * t / b); };
    return flange(wide, plates[0].t) + 2 * flange(top, plates[2].t) +
           2 * plates[1].length() * std::pow(plates[1].t, 3) / 3;
  }
};

// Critical uniform moment of a simple span, top flanges in compression (Vlasov 1961).
double lateral_buckling_moment(const OpenTub& s, double L) {
  const double A = s.integral([](double, double, double) { return 1.0; });
  const double yc = s.integral([](double, double y, double) { return y; }) / A;
  const double Ix = s.integral([&](double, double y, double) { return (y - yc) * (y - yc); });
  const double Iy = s.integral([](double x, double, double) { return x * x; });
  // Shear centre: there the sectorial coordinate w + ys x has no moment with x.
  const double ys = -s.integral([](double x, double, double w) { return w * x; }) / Iy;
  const double Cw = s.integral([&](double x, double, double w) { return std::pow(w + ys * x, 2); });
  const double wagner = s.integral([&](double x, double y, double) {
    return (y - yc) * (x * x + (y - yc) * (y - yc));
  }) / (2 * Ix);
  const double b = wagner - (ys - yc);
  const double euler = PI * PI * E * Iy / (L * L);
  return euler * (std::sqrt(b * b + Cw / Iy + G * s.torsion() / euler) - b);
}

// The stage at its first buckling load: bare steel under end couples L^2/8 times the load of 1/12
// kip/in, which compress the top flanges or, with sign -1, the bottom flange.
Bridge buckled(const FixedVector<double, 6>& section, double L, double web, double bottom,
               double sign, int brace_step) {
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
  const FixedVector<double, 6> sections[] = {{{48, 60, 156, 24, 220, 8}},
                                             {{30, 60, 180, 24, 220, 8}}};
  for (const auto& section : sections) {
    const double factor = buckled(section, L, 0.75, 1, 1, 48).stage[0].eigval(1);
    const double theory = lateral_buckling_moment(OpenTub(section, 0.75, 1, 1.5), L);
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
    FixedVector<double, 6> section;
    double strips;
  } cases[] = {{{{60, 72, 84, 12, 144, 8}}, 3.568}, {{{30, 60, 180, 12, 220, 8}}, 2.294}};
  for (const auto& [section, strips] : cases) {
    const Bridge b = buckled(section, L, T, T, -1, 120);
    EXPECT_NEAR(b.stage[0].eigval(1), strips, 0.1 * strips);
    const int centre = b.pattern().girder[0].bottom_centre();
    const double stress =
        E * (b.u(1, L / 2 + HALF, centre, 3) - b.u(1, L / 2 - HALF, centre, 3)) / (2 * HALF);
    const double plate = PI * PI * E / (12 * (1 - 0.3 * 0.3)) * std::pow(T / section(2), 2);
    EXPECT_GT(stress / plate, 4.0);
    EXPECT_LT(stress / plate, 6.97);
  }
}
