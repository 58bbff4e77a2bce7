#include "bars/forces.h"

#include <cmath>

#include "bars/gather.h"

namespace zelvo {

FixedVector<double, 4> ibrace_forces(const BraceCorners& c12, const BraceCorners& f12) {
  const PatchVector points = patch_points(INTERNAL_FRAME, c12);
  FixedVector<double, 4> forces;
  for (int c = 1; c <= 4; ++c) {
    double square = 0, product = 0;
    for (int i = 1; i <= 3; ++i) {
      const double g = c12(3 * (c - 1) + i) - points(i);
      square += g * g;
      product += g * f12(3 * (c - 1) + i);
    }
    forces(c) = product / std::sqrt(square);
  }
  return forces;
}

FixedVector<double, 5> ebrace_forces(const BraceCorners& c12, const PatchVector& u15,
                                     const BarProperty& prop) {
  const PatchVector points = patch_points(EXTERNAL_FRAME, c12);
  FixedVector<double, 5> forces;
  for (int m = 1; m <= 5; ++m) {
    const auto [a, b] = EXTERNAL_FRAME.bar[m - 1];
    bar_force(ends(points, a, b), ends(u15, a, b), prop, forces(m));
  }
  return forces;
}

Matrix<double> internal_forces(const Structure& structure, const Vector<double>& U) {
  const auto& [section, nodes, elements, properties] = structure;
  Matrix<double> forces(4, elements.nibel, "the brace forces");
  BraceMatrix k12;
  for (int e = 1; e <= elements.nibel; ++e) {
    const BraceCorners c12 = gather_points<4>(nodes, elements.ibconn, e);
    ibrace_stiffness(k12, c12, properties.ibprop(e));
    const BraceCorners f12 = multiply(k12, gather_displacements<4, 3>(U, elements.ibconn, e));
    const FixedVector<double, 4> p = ibrace_forces(c12, f12);
    for (int i = 1; i <= 4; ++i) forces(i, e) = p(i);
  }
  return forces;
}

Matrix<double> external_forces(const Structure& structure, const Vector<double>& U) {
  const auto& [section, nodes, elements, properties] = structure;
  Matrix<double> forces(5, elements.nebel, "the brace forces");
  for (int e = 1; e <= elements.nebel; ++e) {
    const BraceCorners c12 = gather_points<4>(nodes, elements.ebconn, e);
    const BarProperty& prop = properties.ebprop(e);
    const PatchVector u15 =
        ebrace_displacements(c12, gather_displacements<4, 3>(U, elements.ebconn, e), prop);
    const FixedVector<double, 5> p = ebrace_forces(c12, u15, prop);
    for (int i = 1; i <= 5; ++i) forces(i, e) = p(i);
  }
  return forces;
}

Vector<double> lateral_forces(const Structure& structure, const Vector<double>& U) {
  const auto& [section, nodes, elements, properties] = structure;
  Vector<double> forces(elements.nlatel, "the lateral forces");
  for (int e = 1; e <= elements.nlatel; ++e)
    bar_force(gather_points<2>(nodes, elements.latconn, e),
              gather_displacements<2, 3>(U, elements.latconn, e), properties.latprop(e), forces(e));
  return forces;
}

}  // namespace zelvo
