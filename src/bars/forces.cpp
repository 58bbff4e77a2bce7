#include "bars/forces.h"

#include <cmath>

#include "bars/gather.h"
#include "base/text.h"

namespace zelvo {

namespace {

constexpr int DECIMALS = 2, BRACE_WIDTH = 8, LATERAL_WIDTH = 10;

void block_head(std::string& out, int k, int count) {
  free_line(out, "run");
  free_line(out, k);
  free_line(out, count);
}

template <int n>
void force_line(std::string& out, int e, const FixedVector<double, n>& forces, int width) {
  put_int(out, e, 5);
  for (const double p : forces.v) {
    put_blanks(out, 2);
    put_real(out, p, width, DECIMALS);
  }
  out += '\n';
}

}  // namespace

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
                                     const FixedVector<double, 3>& prop) {
  const PatchVector points = patch_points(EXTERNAL_FRAME, c12);
  FixedVector<double, 5> forces;
  for (int m = 1; m <= 5; ++m) {
    const auto [a, b] = EXTERNAL_FRAME.bar[m - 1];
    bar_force(ends(points, a, b), ends(u15, a, b), prop, forces(m));
  }
  return forces;
}

void write_ibrace_forces(const Nodes& nodes, const Elements& elements, const Properties& properties,
                         const Vector<double>& U, int k, std::string& out) {
  block_head(out, k, elements.nibel);
  BraceMatrix k12;
  for (int e = 1; e <= elements.nibel; ++e) {
    const BraceCorners c12 = gather_points<4>(nodes, elements.ibconn, e);
    ibrace_stiffness(k12, c12, column_of(properties.ibprop, e));
    const BraceCorners f12 = multiply(k12, gather_displacements<4, 3>(U, elements.ibconn, e));
    force_line(out, e, ibrace_forces(c12, f12), BRACE_WIDTH);
  }
}

void write_ebrace_forces(const Nodes& nodes, const Elements& elements, const Properties& properties,
                         const Vector<double>& U, int k, std::string& out) {
  block_head(out, k, elements.nebel);
  for (int e = 1; e <= elements.nebel; ++e) {
    const BraceCorners c12 = gather_points<4>(nodes, elements.ebconn, e);
    const FixedVector<double, 3> prop = column_of(properties.ebprop, e);
    const PatchVector u15 =
        ebrace_displacements(c12, gather_displacements<4, 3>(U, elements.ebconn, e), prop);
    force_line(out, e, ebrace_forces(c12, u15, prop), BRACE_WIDTH);
  }
}

void write_lateral_forces(const Nodes& nodes, const Elements& elements,
                          const Properties& properties, const Vector<double>& U, int k,
                          std::string& out) {
  block_head(out, k, elements.nlatel);
  for (int e = 1; e <= elements.nlatel; ++e) {
    FixedVector<double, 1> p;
    bar_force(gather_points<2>(nodes, elements.latconn, e),
              gather_displacements<2, 3>(U, elements.latconn, e), column_of(properties.latprop, e),
              p(1));
    force_line(out, e, p, LATERAL_WIDTH);
  }
}

}  // namespace zelvo
