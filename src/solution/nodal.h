// Result files read straight from the displacements: deflections, rotations, reactions. Each call
// appends the block of analysis k to out.
#pragma once
#include <string>

#include "base/arrays.h"
#include "model/elements.h"

namespace zelvo {

// Vertical displacement of the first girder every 24 inches, the mean of its two web feet, inches.
//
//   U  (equations)  in  displacements, inches and radians
void write_deflections(const Vector<double>& U, int lgbr, int k, std::string& out);
void write_deflections_two(const Vector<double>& U, int lgbr, int k, std::string& out);

// Rotation of its section there: the difference of the feet over the width of the bottom flange,
// radians.
void write_rotations(const Vector<double>& U, int lgbr, int k, double flange_width,
                     std::string& out);
void write_rotations_two(const Vector<double>& U, int lgbr, int k, double flange_width,
                         std::string& out);

// Vertical reaction of every support and girder, kips, upward positive: the force of the penalties
// of the nine nodes of its bottom flange.
void write_reactions(const Elements& elements, const Vector<double>& U, int ngird, int k,
                     std::string& out);

}  // namespace zelvo
