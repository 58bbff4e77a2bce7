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
#include "base/vec3.h"
#include "model/structure.h"

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

// Section values of a stiffener.
struct StiffenerSection {
  double E;   // ksi
  double A;   // in^2, area
  double Is;  // in^4, strong axis: deflection along the web normal
  double Iw;  // in^4, weak axis: deflection along the girder
  double J;   // in^4, torsion constant of a thin plate
};
StiffenerSection stiffener_section(const StiffenerProperty& prop);

// Length of a segment, the distance between the first two nodes.
double segment_length(const FixedVector<double, 27>& c27);

// Unit vectors of a stiffener.
struct StiffenerFrame {
  Vec3 web;     // along the web
  Vec3 normal;  // of the web
  Vec3 along;   // along the girder
};

// Frame of element e, the triad of its middle node: vt1, vn, vt2.
StiffenerFrame stiffener_frame(const Structure& structure, int e);

// tm: the rows of the frame act on the translations; the nodal rotation alpha turns the stiffener about
// its axis, and strong-axis bending is minus beta. Alpha of the two end nodes has no part in it: the
// ends do not twist and give no torque to their nodes, whose triads are those of the flange.
void stiffener_transform(StiffenerTransform& tm, const StiffenerFrame& frame);

// Adds the matrix of segment m (1 to 8) to that of the chain; neighbours share a node.
void add_segment(const SegmentMatrix& s, int m, StiffenerMatrix& chain);

// ke = tm' kl tm, node block by node block.
void to_element_freedoms(const StiffenerMatrix& kl, const StiffenerTransform& tm,
                         StiffenerMatrix& ke);

// Element matrix and transformation, both overwritten.
//   ke    out  kip/in and kip in, freedoms of the nodes
//   c27   in   inches, coordinates of the nine nodes, of which the first two are read
void stiffener_stiffness(StiffenerMatrix& ke, const FixedVector<double, 27>& c27,
                         const StiffenerFrame& frame, const StiffenerProperty& prop,
                         StiffenerTransform& tm);

// Adds every stiffener to K.
void assemble_stiffeners(const Structure& structure, SymmetricMatrix& K);

}  // namespace zelvo
