#include "bars/braces.h"

#include "bars/gather.h"

namespace zelvo {

namespace {

constexpr int MID = 3;  // freedoms of M, the first of the patch

// kb: all bars of the brace on the five points, and BRACE_EPS on the diagonal of M.
void patch_stiffness(const BracePattern& brace, const BraceCorners& c12, const BarProperty& prop,
                     PatchMatrix& kb) {
  const PatchVector points = patch_points(brace, c12);
  kb.clear();
  for (int m = 0; m < brace.bars; ++m) {
    const auto [a, b] = brace.bar[m];
    BarMatrix ke{};
    bar_stiffness(ke, ends(points, a, b), prop);
    add_bar(ke, a, b, kb);
  }
  for (int i = 1; i <= MID; ++i) kb(i, i) += BRACE_EPS;
}

// Gaussian elimination of M without exchange of rows: with the grounded M, kb is positive definite
// there. The third pivot is BRACE_EPS up to rounding when the plane of the brace is x-y.
void eliminate_mid_node(PatchMatrix& kb) {
  constexpr int n = PatchMatrix::rows();
  for (int p = 1; p <= MID; ++p)
    for (int r = p + 1; r <= n; ++r) {
      const double f = kb(r, p) / kb(p, p);
      for (int c = 1; c <= n; ++c) kb(r, c) -= f * kb(p, c);
    }
}

void brace_stiffness(const BracePattern& brace, const BraceCorners& c12, const BarProperty& prop,
                     BraceMatrix& k12) {
  PatchMatrix kb;
  patch_stiffness(brace, c12, prop, kb);
  eliminate_mid_node(kb);
  for (int j = 1; j <= 12; ++j)
    for (int i = 1; i <= 12; ++i) k12(i, j) = kb(MID + i, MID + j);
}

// Blocks at M of the uncondensed brace.
void brace_parts(const BracePattern& brace, const BraceCorners& c12, const BarProperty& prop,
                 Matrix3& kii, FixedMatrix<double, 3, 12>& kib) {
  PatchMatrix kb;
  patch_stiffness(brace, c12, prop, kb);
  for (int i = 1; i <= MID; ++i) {
    for (int j = 1; j <= MID; ++j) kii(i, j) = kb(i, j);
    for (int j = 1; j <= 12; ++j) kib(i, j) = kb(i, MID + j);
  }
}

// u_M = -kii^-1 kib u12.
Vec3 mid_displacement(const BracePattern& brace, const BraceCorners& c12, const BraceCorners& u12,
                      const BarProperty& prop) {
  Matrix3 kii, inverse;
  FixedMatrix<double, 3, 12> kib;
  brace_parts(brace, c12, prop, kii, kib);
  inverse3(kii, inverse);
  Vec3 mid = multiply(inverse, multiply(kib, u12));
  for (double& u : mid.v) u = -u;
  return mid;
}

// Sum of the vertical displacements of the mid nodes of all frames of a kind.
double sum_of_mids(const BracePattern& brace, const Nodes& nodes, const Matrix<int>& conn,
                   const Vector<BarProperty>& prop, const Vector<double>& U) {
  double sum = 0;
  for (int e = 1; e <= conn.cols(); ++e)
    sum += mid_displacement(brace, gather_points<4>(nodes, conn, e),
                            gather_displacements<4, 3>(U, conn, e), prop(e))(2);
  return sum;
}

void assemble_braces(const BracePattern& brace, const Nodes& nodes, const Matrix<int>& conn,
                     const Vector<BarProperty>& prop, SymmetricMatrix& K) {
  assert(conn.cols() == prop.size());
  BraceMatrix k12;
  for (int e = 1; e <= conn.cols(); ++e) {
    brace_stiffness(brace, gather_points<4>(nodes, conn, e), prop(e), k12);
    add_node_blocks(k12, conn.column(e), 4, K);
  }
}

}  // namespace

PatchVector patch_points(const BracePattern& brace, const BraceCorners& c12) {
  PatchVector points;
  for (int i = 1; i <= 12; ++i) points(MID + i) = c12(i);
  for (int i = 1; i <= 3; ++i)
    points(i) = (points(3 * (brace.left - 1) + i) + points(3 * (brace.right - 1) + i)) / 2;
  return points;
}

void ibrace_stiffness(BraceMatrix& k12, const BraceCorners& c12, const BarProperty& prop) {
  brace_stiffness(INTERNAL_FRAME, c12, prop, k12);
}

void ebrace_stiffness(BraceMatrix& k12, const BraceCorners& c12, const BarProperty& prop) {
  brace_stiffness(EXTERNAL_FRAME, c12, prop, k12);
}

void ebrace_parts(Matrix3& kii, FixedMatrix<double, 3, 12>& kib, const BraceCorners& c12,
                  const BarProperty& prop) {
  brace_parts(EXTERNAL_FRAME, c12, prop, kii, kib);
}

PatchVector ebrace_displacements(const BraceCorners& c12, const BraceCorners& u12,
                                 const BarProperty& prop) {
  const Vec3 mid = mid_displacement(EXTERNAL_FRAME, c12, u12, prop);
  PatchVector u15;
  for (int i = 1; i <= MID; ++i) u15(i) = mid(i);
  for (int i = 1; i <= 12; ++i) u15(MID + i) = u12(i);
  return u15;
}

double grounded_force(const Structure& structure, const Vector<double>& U) {
  const auto& [section, nodes, elements, properties] = structure;
  return -BRACE_EPS * (sum_of_mids(INTERNAL_FRAME, nodes, elements.ibconn, properties.ibprop, U) +
                       sum_of_mids(EXTERNAL_FRAME, nodes, elements.ebconn, properties.ebprop, U));
}

void inverse3(const Matrix3& a, Matrix3& ai) {
  const double det =
      a(1, 1) * cofactor(a, 1, 1) + a(1, 2) * cofactor(a, 1, 2) + a(1, 3) * cofactor(a, 1, 3);
  for (int j = 1; j <= 3; ++j)
    for (int i = 1; i <= 3; ++i) ai(i, j) = det == 0 ? 0.0 : cofactor(a, j, i) / det;
}

void assemble_ibraces(const Structure& structure, SymmetricMatrix& K) {
  assemble_braces(INTERNAL_FRAME, structure.nodes, structure.elements.ibconn,
                  structure.properties.ibprop, K);
}

void assemble_ebraces(const Structure& structure, SymmetricMatrix& K) {
  assemble_braces(EXTERNAL_FRAME, structure.nodes, structure.elements.ebconn,
                  structure.properties.ebprop, K);
}

}  // namespace zelvo
