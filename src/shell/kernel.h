// The nine-node degenerated shell (Ahmad, Irons and Zienkiewicz 1970), five freedoms a node.
//
// Directors stay straight and keep their length, the stress normal to the surface is zero, and one
// 3 x 3 x 2 Gauss rule integrates membrane, bending and transverse shear alike: nothing is reduced,
// assumed or stabilised. Freedoms of node k, at 5(k-1) + 1 to 5: u, v, w along x, y, z, then alpha
// about vt1 and beta about vt2. There is no rotation about the director.
#pragma once
#include "base/arrays.h"
#include "base/vec3.h"
#include "model/structure.h"
#include "shell/shape.h"

namespace zelvo {

constexpr int SHELL_NODES = 9, SHELL_DOFS = 45;
using ShellMatrix = FixedMatrix<double, SHELL_DOFS, SHELL_DOFS>;
using ShellVector = FixedVector<double, SHELL_DOFS>;

// One element, complete: what the element routines read.
struct ShellWork {
  FixedMatrix<double, 3, SHELL_NODES> exyz;             // inches
  FixedMatrix<double, 3, SHELL_NODES> evt1, evt2, evn;  // triads of the nodes, evn the directors
  double young, poisson, thick;                         // ksi, -, inches
  double kind;  // CONCRETE_DECK: the nodes lie on the lower face; else on the middle surface
};

// Fills w for shell e in analysis k.
void gather_shell(const Structure& structure, int k, int e, ShellWork& w);

// Displacements d of the freedoms of shell e out of U.
void gather_displacements(const Elements& elements, const Vector<double>& U, int e, ShellVector& d);

// Returns the determinant of a. From the limit up ainv becomes the inverse; below it, zero and
// negative values included, the console says so and ainv keeps what it holds.
constexpr double DETERMINANT_LIMIT = 1.0e-20f;
double invert3(const Matrix3& a, Matrix3& ainv);

// Inverse Jacobian that the last point of each use left behind, zero at first. A point whose mapping
// cannot be inverted takes it over, so it outlives the element and, in a run, the stage.
struct LastInverse {
  Matrix3 stiffness{}, stress{}, geometric{};
  int failures = 0;  // points so far whose mapping could not be inverted
};

// ke, kip/in: exactly symmetric, all of it written. A point with a determinant below the limit of
// invert3 goes on with the inverse of the point before it, of the last element if it is the first.
void shell_stiffness(const ShellWork& w, LastInverse& last, ShellMatrix& ke);

}  // namespace zelvo
