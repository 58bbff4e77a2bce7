// The integration points of a shell: thickness rule, mapping, stresses.
#pragma once
#include "shell/kernel.h"
#include "shell/kernels.h"

namespace zelvo {

// Point ip of the surface (1 to 9) at thickness point iz (1 or 2) stands in this lane, from 0.
constexpr int lane_of(int ip, int iz) { return 9 * (iz - 1) + ip - 1; }

// What the kernels read at every point.
const LaneTables& lane_tables();

// Data of w in the form of the kernels; w must outlive it.
ShellData shell_data(const ShellWork& w);

// Mapping of all points. Every failing determinant is reported once; ainv is the inverse carried
// from point to point. Returns how many fail.
int map_points(const ShellData& s, Matrix3& ainv, PointFrames& f);

// Mapping of the point in one lane: ainv the inverse, e the local frame by rows. Returns 1 if its
// determinant fails, else 0.
int map_point(const ShellData& s, int lane, Matrix3& ainv, Matrix3& e);

// The kernels that suit this processor.
void shell_product(const ShellData& s, const PointFrames& f, ShellMatrix& ke);
void point_stresses(const ShellData& s, const PointFrames& f, const ShellVector& d,
                    PointStresses& S);
void node_forces(const ShellData& s, const PointFrames& f, const PointStresses& S, int node,
                 FixedVector<double, 5>& force);
void gradient_products(const ShellData& s, const PointFrames& f, const PointStresses& S,
                       FixedMatrix<double, 18, 18>& c);

}  // namespace zelvo
