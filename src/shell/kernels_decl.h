// Declarations of the shell's kernels; kernels.h includes this once for each variant.

// All of f; a determinant is not tested.
void point_frames(const LaneTables& t, const ShellData& s, PointFrames& f);

// ke (45,45) = sum over the points of B' D B det weight, both triangles.
void shell_product(const LaneTables& t, const ShellData& s, const PointFrames& f, double* ke);

// Stresses under the displacements d (45) of the nodes.
void point_stresses(const LaneTables& t, const ShellData& s, const PointFrames& f, const double* d,
                    PointStresses& S);

// force (5) of one node (0 to 8): its rows of the sum of B' stress det weight.
void node_forces(const LaneTables& t, const ShellData& s, const PointFrames& f,
                 const PointStresses& S, int node, double* force);

// c (18,18), upper triangle: sums of a' M b det weight, M the stress tensor, for a, b the gradients
// of N of the nine nodes, then those of zeta N.
void gradient_products(const LaneTables& t, const ShellData& s, const PointFrames& f,
                       const PointStresses& S, double* c);
