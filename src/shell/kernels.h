// Inner loops of the shell, vectorised over the integration points of one element.
//
// The 18 points (9 of the surface for the first thickness point, then 9 for the second) lie side by
// side in lanes; two more lanes repeat the last point with weight 0 and fill the vectors. The same
// code, kernels-inl.h, is compiled twice: for the baseline of the platform and for AVX2 with FMA.
// Plain arrays counted from 0 here, so that nothing is shared between the two but these structs.
#pragma once
#include "base/simd.h"

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

struct ShellKernels {
  // All of f; a determinant is not tested.
  void (*point_frames)(const LaneTables& t, const ShellData& s, PointFrames& f);

  // ke (45,45) = sum over the points of B' D B det weight, both triangles.
  void (*shell_product)(const LaneTables& t, const ShellData& s, const PointFrames& f, double* ke);

  // Stresses under the displacements d (45) of the nodes.
  void (*point_stresses)(const LaneTables& t, const ShellData& s, const PointFrames& f,
                         const double* d, PointStresses& S);

  // force (5) of one node (0 to 8): its rows of the sum of B' stress det weight.
  void (*node_forces)(const LaneTables& t, const ShellData& s, const PointFrames& f,
                      const PointStresses& S, int node, double* force);

  // c (18,18), upper triangle: sums of a' M b det weight, M the stress tensor, for a, b the
  // gradients of N of the nine nodes, then those of zeta N.
  void (*gradient_products)(const LaneTables& t, const ShellData& s, const PointFrames& f,
                            const PointStresses& S, double* c);
};

extern const ShellKernels SHELL_KERNELS_PLAIN, SHELL_KERNELS_AVX2;

// Those that suit this processor, chosen once.
const ShellKernels& shell_kernels();

}  // namespace zelvo
