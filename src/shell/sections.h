// Cross-section forces and plate stresses along the girders.
#pragma once
#include <string>

#include "shell/kernel.h"

namespace zelvo {

// Axes of a section: across the girder, along it, up.
struct SectionFrame {
  FixedVector<double, 3> a, b, c;
};

// What the rest of the structure applies to three edge nodes of an element (first, second, middle):
// column i is node i, rows along a, b, c; kips and kip-inches. Stresses along the girder and in
// plane shear, ksi, at the centre of the element and its second thickness point.
struct EdgeForces {
  FixedMatrix<double, 3, 3> force, moment;
  double s22, s12;
};

// near_edge true: the edge where the element begins (nodes 1, 2, 5); false: where it ends (3, 4, 7).
void shell_edge_forces(const ShellWork& w, const ShellVector& d, bool near_edge,
                       const SectionFrame& frame, EdgeForces& out);

// Appends the block of analysis k under the displacements U to each file: shear [kip], moment and
// torque [kip-ft] at the ends of all bays to sec, stresses [ksi] of all strips of each bay to str.
// The sums run over the shells alone, both girders and the deck together.
void section_forces_one(const Model& model, const Nodes& nodes, const Elements& elements,
                        const Properties& properties, const Vector<double>& U, int k,
                        std::string& sec, std::string& str);
void section_forces_two(const Model& model, const Nodes& nodes, const Elements& elements,
                        const Properties& properties, const Vector<double>& U, int k,
                        std::string& sec, std::string& str);

}  // namespace zelvo
