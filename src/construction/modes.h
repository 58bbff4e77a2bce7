// What buckles in a mode: the kind of its shape, read from the steel sections of all stations.
#pragma once
#include <string>

#include "model/structure.h"

namespace zelvo {

// PLATE: plates bend between their edges. FLANGE: the section changes its shape, so that the top
// flanges move against the bottom flange. FRAME: bars of frames or laterals push it. GIRDER:
// sections move as they are.
enum class ModeKind { PLATE, FLANGE, FRAME, GIRDER };

// Parts of a shape. The motion of a section in its plane is split in three; the squares of each
// part, integrated over the steel plates, are given as shares of the three together.
struct ModeShares {
  double girder = 0;   // rigid motion of the section
  double section = 0;  // motion of its corners beyond that: distortion, flanges sideways
  double plates = 0;   // deviation of plates from the straight line between their edges
  // Of the work x'(-KG)x, that of frames and laterals. Negative where they hold the shape.
  double bracing = 0;
};

// What buckles in a mode, and where.
struct ModeNature {
  ModeKind kind = ModeKind::GIRDER;
  ModeShares shares;
  double share = 0;          // of the kind that the mode is called by, 0 to 1
  double local = 0;          // part of the kind's measure in the girder, plate and side named here;
                             // FRAME: of the bracing's work at the place named here
  int girder = 0;            // 1 or 2, where it is largest
  Plate plate = Plate::WEB;  // for PLATE: which one; TOP_FLANGE for FLANGE
  int side = 0;              // of webs and top flanges: 1 left, 2 right; else 0
  double position = 0;       // inches along the reference line, where it is largest
  std::string remark;        // what the reader has to know of such a mode
};

// The nature of a shape x (n) by its amplitudes: PLATE, FLANGE or GIRDER, whichever part is largest.
// The rigid motion of a section is that of its bottom flange or that of the line between its web
// tops, the same choice for all stations: the one that moves less over the whole bridge. So a
// section that keeps its shape is rigid by either, and neither top flanges that sway over a bottom
// flange at rest nor a bottom flange that sways under tops held by a deck count as rigid.
ModeNature mode_nature(const Structure& structure, const double* x);

// Enters the work of frames and laterals, and makes the mode a FRAME one if they do most of it.
//   share  of all work x'(-KG)x
//   work   (nnode)  x'(-KG)x of frames and laterals, node by node: says where
void weigh_bracing(const Structure& structure, double share, const Vector<double>& work,
                   ModeNature& nature);

}  // namespace zelvo
