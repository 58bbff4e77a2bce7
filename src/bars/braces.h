// Cross frames at one station: internal braces inside a girder, external braces between two.
//
// A brace joins four corners P1 (top left), P2 (top right), P3 (bottom left), P4 (bottom right). Its
// diagonals meet a strut at a mid node M that is no node of the model: the brace is formed on the
// five points M, P1, P2, P3, P4 (15 freedoms) and M is condensed out (Guyan 1965).
//
//   internal  P1 --- M --- P2     external  P1 --------- P2
//               \         /  (from the          \       /
//                P3     P4    feet to M)   P3 --- M --- P4
#pragma once
#include "bars/kernel.h"
#include "model/structure.h"

namespace zelvo {

using BraceMatrix = FixedMatrix<double, 12, 12>;  // freedom 3(c-1)+i: translation i of corner c
using BraceCorners = FixedVector<double, 12>;     // coordinates or displacements of P1 to P4
using PatchVector = FixedVector<double, 15>;      // the same of M, P1 to P4
using PatchMatrix = FixedMatrix<double, 15, 15>;  // freedom 3(a-1)+i: translation i of point a

// kip/in, the single precision number. It grounds M: the bars lie in one plane, across which M is
// free to move and the condensation would otherwise divide by zero.
constexpr double BRACE_EPS = 1.0e-5f;

// A bar of a brace runs from point a to point b of the patch.
struct PatchBar {
  int a, b;
};
constexpr int MAX_BRACE_BARS = 5;

struct BracePattern {
  int left, right;  // M lies midway between these two points of the patch
  int bars;
  PatchBar bar[MAX_BRACE_BARS];  // bar[b - 1] is bar b
};

// Top strut in two halves, then the diagonals from the feet.
inline constexpr BracePattern INTERNAL_FRAME{2, 3, 4, {{2, 1}, {1, 3}, {4, 1}, {5, 1}}};
// Top strut in one piece, bottom strut in two halves, then the diagonals from the top.
inline constexpr BracePattern EXTERNAL_FRAME{4, 5, 5, {{2, 3}, {4, 1}, {1, 5}, {2, 1}, {3, 1}}};

// Coordinates of M and the four corners.
PatchVector patch_points(const BracePattern& brace, const BraceCorners& c12);

// Condensed stiffness K_bb - K_bi (K_ii + BRACE_EPS I)^-1 K_ib, i the freedoms of M.
//   k12   out  kip/in, overwritten
//   c12   in   inches
//   prop  in   of every bar
void ibrace_stiffness(BraceMatrix& k12, const BraceCorners& c12, const BarProperty& prop);
void ebrace_stiffness(BraceMatrix& k12, const BraceCorners& c12, const BarProperty& prop);

// Blocks of the uncondensed external brace at M, overwritten: kii (with BRACE_EPS) and kib.
void ebrace_parts(Matrix3& kii, FixedMatrix<double, 3, 12>& kib, const BraceCorners& c12,
                  const BarProperty& prop);

// Displacements of M and the corners of an external brace: u_M = -kii^-1 kib u12.
PatchVector ebrace_displacements(const BraceCorners& c12, const BraceCorners& u12,
                                 const BarProperty& prop);

// Force that all frames pass to the ground through the spring BRACE_EPS of their mid nodes under the
// displacements U, along y, kips: what the reactions lack to the load.
double grounded_force(const Structure& structure, const Vector<double>& U);

// ai = a^-1 by cofactors; zero when the determinant is exactly zero.
void inverse3(const Matrix3& a, Matrix3& ai);

// Adds every brace of its kind to K. External braces exist between two girders only.
void assemble_ibraces(const Structure& structure, SymmetricMatrix& K);
void assemble_ebraces(const Structure& structure, SymmetricMatrix& K);

}  // namespace zelvo
