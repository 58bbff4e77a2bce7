#include "bars/kernel.h"

namespace zelvo {

namespace {

struct Axis {
  double L;  // inches
  Vec3 t;    // unit vector from a to b
};

Axis bar_axis(const FixedVector<double, 6>& c) {
  const Vec3 d{{c(4) - c(1), c(5) - c(2), c(6) - c(3)}};
  return {length(d), unit(d)};
}

// ke += [ k  -k ; -k  k ] at one place of the 3 x 3 block k.
void add_to_blocks(BarMatrix& ke, int i, int j, double k) {
  ke(i, j) += k;
  ke(i + 3, j + 3) += k;
  ke(i, j + 3) -= k;
  ke(i + 3, j) -= k;
}

}  // namespace

void bar_stiffness(BarMatrix& ke, const FixedVector<double, 6>& c, const BarProperty& prop) {
  const auto [L, t] = bar_axis(c);
  const double k = prop.modulus * prop.area / L;  // axial stiffness E A / L, kip/in
  for (int j = 1; j <= 3; ++j)
    for (int i = 1; i <= 3; ++i) add_to_blocks(ke, i, j, k * t(i) * t(j));
}

void bar_force(const FixedVector<double, 6>& c, const FixedVector<double, 6>& d,
               const BarProperty& prop, double& p) {
  const auto [L, t] = bar_axis(c);
  double stretch = 0;
  for (int i = 1; i <= 3; ++i) stretch += t(i) * (d(i + 3) - d(i));
  p = prop.modulus * prop.area / L * stretch;
}

void bar_geo_stiffness(BarMatrix& kg, const FixedVector<double, 6>& c, double p) {
  const double k = p / bar_axis(c).L;
  for (int i = 1; i <= 3; ++i) add_to_blocks(kg, i, i, k);
}

}  // namespace zelvo
