// Cross-section forces and plate stresses along the girders.
#pragma once
#include "shell/kernel.h"

namespace zelvo {

// Axes of a section: across the girder, along it, up.
struct SectionFrame {
  Vec3 a, b, c;
};

// The edge where an element begins (nodes 1, 2, 5) and where it ends (3, 4, 7).
enum class Edge { BEGIN, END };

// Element nodes of an edge: its ends and its middle.
constexpr int BEGIN_NODES[3] = {1, 2, 5}, END_NODES[3] = {3, 4, 7};
constexpr const int (&edge_nodes(Edge edge))[3] {
  return edge == Edge::BEGIN ? BEGIN_NODES : END_NODES;
}

// Where section j (from 0) cuts the shells: at the end of bay j, so just before the nodes of the
// section, the first at the beginning of bay 1, just behind them. It is looked at in the frame of
// its first node, about the middle of the deck row.
struct SectionCut {
  SectionFrame frame;
  const double* ref;  // (3) inches
  Edge edge;          // of the shells that are cut
  int before;         // shells before the first of them
  // Edge forces are what the rest applies to the bay. Times this they are at every section what the
  // part beyond the cut does to the part before it.
  double sign() const { return edge == Edge::BEGIN ? -1 : 1; }
};
SectionCut section_cut(const Structure& structure, int j);

// What the rest of the structure applies to three edge nodes of an element (first, second, middle):
// column i is node i, rows along a, b, c; kips and kip-inches. Stresses along the girder and in
// plane shear, ksi, at the centre of the element: the means of both thickness points, so at
// mid-thickness.
struct EdgeForces {
  FixedMatrix<double, 3, 3> force, moment;
  double mid22, mid12;
};
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
