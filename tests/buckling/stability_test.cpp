// Buckling of whole girders against closed forms.
#include <cmath>
#include <numbers>

#include "buckling/stage.h"
#include "model/pattern.h"

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

// Bare steel under end couples w lgbr^2 / 8, w in kip/ft.
Model under_couples(const FixedVector<double, 6>& section, int lgbr, double web, double bottom,
                    double top, double w, int brace_step) {
  Model m = one_girder(lgbr);
  m.secdim = section;
  set_webs(m, {lgbr}, {web});
  set_bottom(m, {lgbr}, {bottom});
  set_top(m, {lgbr}, {top});
  add_ibraces_every(m, brace_step);
  set_stages(m, {lgbr}, 1, 0.1, 0.0001, w);
  m.load_pattern = 3;
  return m;
}
double couple(int lgbr, double w) { return lgbr * (w / 12) * lgbr / 8; }

}  // namespace

TEST(OpenTubUnderUniformMoment, BucklesSidewaysAtTheMomentOfVlasov) {
  const FixedVector<double, 6> sections[] = {{{48, 60, 156, 24, 220, 8}},
                                             {{30, 60, 180, 24, 220, 8}}};
  for (const auto& section : sections) {
    const int L = 1440;
    const Stage s = make_stage(under_couples(section, L, 0.75, 1, 1.5, 1.0, 48));
    const Check c = run_check(s, {1, 1, 1e-8, 0});
    const double moment = lateral_buckling_moment(OpenTub(section, 0.75, 1, 1.5), L);
    EXPECT_GT(c.eigval(1) * couple(L, 1.0), 0.90 * moment);
    EXPECT_LT(c.eigval(1) * couple(L, 1.0), 1.02 * moment);
  }
}

// The flange is a long plate held by the webs: between simply supported and clamped long edges.
TEST(BottomFlangeInCompression, BucklesAsAPlateBetweenHingedAndClampedEdges) {
  struct Case {
    FixedVector<double, 6> section;
    double bottom;  // thickness, in
  };
  const Case cases[] = {{{{60, 72, 84, 12, 144, 8}}, 0.25},
                        {{{60, 72, 84, 12, 144, 8}}, 0.5},
                        {{{30, 60, 180, 12, 220, 8}}, 0.375}};
  for (const auto& [section, t] : cases) {
    const int L = 720, middle = L / 24;
    const Stage s = make_stage(under_couples(section, L, 0.5, t, 1.5, -1.0, 120));
    const auto along = [&](int station) {
      return s.U(equation(ONE_GIRDER.nodes * station + ONE_GIRDER.girder[0].bottom_centre(), 3));
    };
    const double stress = E * (along(middle + 5) - along(middle - 5)) / (10.0 * STATION_SPACING);
    const Check c = run_check(s, {1, 1, 1e-8, 0});
    const double plate = PI * PI * E / (12 * (1 - 0.3 * 0.3)) * std::pow(t / section(2), 2);
    EXPECT_GT(c.eigval(1) * stress / plate, 4.0);
    EXPECT_LT(c.eigval(1) * stress / plate, 6.97);
  }
}
