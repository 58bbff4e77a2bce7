// Stresses of a shell at its integration points, in the local frame of the point: 1 along xi, across
// the plate strip; 3 normal to the surface; 2 = 3 x 1, along the girder. Tension is positive, ksi.
#pragma once
#include "shell/kernel.h"

namespace zelvo {

// S maps the displacements of the nodes to the stresses 11, 22, 33, 12, 13, 23 at point ip of the
// surface (1 to 9, 5 the centre) and thickness point iz (1 or 2): S = D T B. Row 33 is zero.
void shell_stress_op(const ShellWork& w, int ip, int iz, LastInverse& last,
                     FixedMatrix<double, 6, SHELL_DOFS>& S);

// Stresses at all points under the displacements d: column 9(iz-1) + ip of sig is S d there.
void shell_stresses(const ShellWork& w, const ShellVector& d, LastInverse& last,
                    FixedMatrix<double, 6, 18>& sig);

}  // namespace zelvo
