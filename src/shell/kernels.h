// Inner loops of the shell, vectorised over the integration points of one element.
//
// The 18 points (9 of the surface for the first thickness point, then 9 for the second) lie side by
// side in lanes; two more lanes repeat the last point with weight 0 and fill the vectors. The same
// code, kernels_body.h, is compiled twice: for the baseline of the platform and for AVX2 with FMA.
// Plain arrays counted from 0 here, so that nothing is shared between the two but these structs.
#pragma once

namespace zelvo {

constexpr int SHELL_POINTS = 18, SHELL_LANES = 20;

// Shape functions of the nine nodes and their surface derivatives at every lane, weights.
struct alignas(32) LaneTables {
  double N[9][SHELL_LANES], dxi[9][SHELL_LANES], deta[9][SHELL_LANES];
  double weight[SHELL_LANES];
};

// Nodal data and moduli of an element: four tables (3,9) of global components.
struct ShellData {
  const double *xyz, *vn, *vt1, *vt2;
  double h;            // half the thickness
  const double* zeta;  // thickness coordinate of every lane
  double c1, c2, G;    // E/(1-nu^2), nu c1, shear modulus
};

// Mapping and local frame at every point; 3 x 3 tables by rows.
struct alignas(32) PointFrames {
  double J[9][SHELL_LANES];  // row a: derivatives of x, y, z along natural coordinate a
  double R[9][SHELL_LANES];  // inverse: row b, column a: of natural coordinate a along x, y, z
  double e[9][SHELL_LANES];  // row i: unit vector e_i
  double det[SHELL_LANES];   // of J
};

// Stresses of every point.
struct alignas(32) PointStresses {
  double local[6][SHELL_LANES];   // 11, 22, 33, 12, 13, 23
  double global[6][SHELL_LANES];  // xx, yy, zz, xy, xz, yz
};

namespace shell_plain {
#include "shell/kernels_decl.h"
}
namespace shell_avx2 {
#include "shell/kernels_decl.h"
}

}  // namespace zelvo
