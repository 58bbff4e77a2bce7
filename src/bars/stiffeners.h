// Web stiffeners: a flat plate square to the web over its full depth, one nine-node line element of
// eight equal segments on the nodes of the web.
//
// Axial force, strong-axis bending and torsion are ordinary beam segments with rotations. Weak-axis
// bending (along the girder) would need the rotation about the shell normal, which the nodes do not
// have; it acts on the nine translations alone, through a chain whose rotations are condensed out.
//
// Local freedoms of a node: translations along the web, the web normal and the girder, rotation
// about the stiffener's own axis, rotation of strong-axis bending.
#pragma once
#include "base/arrays.h"
#include "model/elements.h"
#include "model/matrix.h"
#include "model/nodes.h"
#include "model/properties.h"

namespace zelvo {

constexpr double STEEL_G = 11400.0;  // ksi

constexpr int STIFFENER_NODES = 9;
constexpr int STIFFENER_SEGMENTS = STIFFENER_NODES - 1;
using StiffenerMatrix = FixedMatrix<double, 45, 45>;
using StiffenerVector = FixedVector<double, 45>;
// The transformation from element to local freedoms is block diagonal by node. Only its blocks are
// kept, side by side: columns 5(k-1)+1 to 5k hold the 5 x 5 block of node k.
using StiffenerTransform = FixedMatrix<double, 5, 45>;
using SegmentMatrix = FixedMatrix<double, 10, 10>;

// Bending stiffness of nine points in a chain of unit beam segments with EI = 1, the rotations
// condensed out; rounded to single precision.
extern const FixedMatrix<double, 9, 9> C9;

// Section values of a stiffener row: modulus [ksi], width away from the web, thickness.
struct StiffenerSection {
  double E;   // ksi
  double A;   // in^2, area
  double Is;  // in^4, strong axis: deflection along the web normal
  double Iw;  // in^4, weak axis: deflection along the girder
  double J;   // in^4, torsion constant of a thin plate
};
StiffenerSection stiffener_section(const FixedVector<double, 3>& prop);

// Length of a segment, the distance between the first two nodes.
double segment_length(const FixedVector<double, 27>& c27);

// tm: rows a1, a2, a3 act on the translations; the nodal rotation alpha turns the stiffener about
// its axis, and strong-axis bending is minus beta. Alpha of the two end nodes has no part in it: the
// ends do not twist and give no torque to their nodes, whose triads are those of the flange.
void stiffener_transform(StiffenerTransform& tm, const FixedVector<double, 3>& a1,
                         const FixedVector<double, 3>& a2, const FixedVector<double, 3>& a3);

// Adds the matrix of segment m (1 to 8) to that of the chain; neighbours share a node.
void add_segment(const SegmentMatrix& s, int m, StiffenerMatrix& chain);

// ke = tm' kl tm, node block by node block.
void to_element_freedoms(const StiffenerMatrix& kl, const StiffenerTransform& tm,
                         StiffenerMatrix& ke);

// Element matrix and transformation, both overwritten.
//   ke    out  kip/in and kip in, freedoms of the nodes
//   c27   in   inches, coordinates of the nine nodes, of which the first two are read
//   a1    in   unit vector along the web (vt1 of the middle node)
//   a2    in   web normal (vn of the middle node)
//   a3    in   along the girder (vt2 of the middle node)
//   prop  in   E [ksi], width, thickness [in]
void stiffener_stiffness(StiffenerMatrix& ke, const FixedVector<double, 27>& c27,
                         const FixedVector<double, 3>& a1, const FixedVector<double, 3>& a2,
                         const FixedVector<double, 3>& a3, const FixedVector<double, 3>& prop,
                         StiffenerTransform& tm);

// Middle node of element e, whose triad is the frame of the whole element.
inline int frame_node(const Elements& elements, int e) { return elements.wsconn(5, e); }

// Adds every stiffener to K.
void assemble_stiffeners(const Nodes& nodes, const Elements& elements, const Properties& properties,
                         const MatrixPattern& pattern, Vector<double>& K);

}  // namespace zelvo
