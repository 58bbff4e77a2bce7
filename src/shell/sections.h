// Cross-section forces and plate stresses along the girders.
#pragma once
#include "shell/kernel.h"

namespace zelvo {

// Axes of a section: across the girder, along it, up.
struct SectionFrame {
  Vec3 a, b, c;
};

// What the rest of the structure applies to three edge nodes of an element (first, second, middle):
// column i is node i, rows along a, b, c; kips and kip-inches. Stresses along the girder and in
// plane shear, ksi, at the centre of the element and its second thickness point.
struct EdgeForces {
  FixedMatrix<double, 3, 3> force, moment;
  double s22, s12;
};

// The edge where an element begins (nodes 1, 2, 5) and where it ends (3, 4, 7).
enum class Edge { BEGIN, END };

void shell_edge_forces(const ShellWork& w, const ShellVector& d, Edge edge,
                       const SectionFrame& frame, LastInverse& last, EdgeForces& out);

// Forces of whole cross-sections, summed over the shells alone, both girders and the deck together,
// and the stresses of every strip of every bay. Section j + 1 stands at the end of bay j, the first
// at the beginning of bay 1.
struct SectionResults {
  Vector<double> shear, moment, torque;  // (nbay+1) kips, kip-inches
  Matrix<double> s22, s12;               // (strips,nbay) ksi, along the girder and in plane shear
};

// Sections and stresses of analysis k under the displacements U.
SectionResults section_results(const Model& model, const Structure& structure,
                               const Vector<double>& U, int k, LastInverse& last);

}  // namespace zelvo
