// Displacements of the stations and reactions of the supports, read from the displacements of all
// nodes.
#pragma once
#include "model/structure.h"

namespace zelvo {

// Motion of the girders' sections at every station.
struct StationDisplacements {
  Matrix<double> deflection;  // (nstn,girders) inches up: mean of the two web feet
  Matrix<double> rotation;  // (nstn,girders) radians: left foot less right foot over their distance
};

//   U  (equations)  in  inches and radians
StationDisplacements station_displacements(const Model& model, const Structure& structure,
                                           const Vector<double>& U);

// Vertical reactions, kips, upward positive: the forces of the penalties that hold the bottom
// flanges.
struct Reactions {
  Vector<int> station;      // (nsupp) of each support, counted from 0
  Matrix<double> vertical;  // (nsupp,girders)
};
Reactions support_reactions(const Structure& structure, const Vector<double>& U);

}  // namespace zelvo
