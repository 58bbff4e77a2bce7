// Load vectors: weight of the steel plates and the construction loads of a stage, lumped on the
// rows of nodes 12 inches apart.
#pragma once
#include "base/arrays.h"
#include "model/structure.h"

namespace zelvo {

constexpr double STEEL_DENSITY = 0.49 / 1728;  // kip/in^3: 490 lb/ft^3

// Slant length of the left web at the first station, inches.
double web_width(const Structure& structure);

// Whether the weight of the steel plates is among the loads of an analysis.
enum class SteelWeight { LEFT_OUT, INCLUDED };

// Adds the loads of analysis k to F (kips, downward negative), and the steel weight if INCLUDED.
// Segment lists must add up to the girder.
//
//   dw  web_width
//   F   (equations)  in/out
//
// One girder follows the load pattern code: 1 top flanges, 2 bottom flange, 3 end couples (stored,
// not added) of the midspan moment w L^2/8, 5 an axial load of 20 kips on five nodes (stored);
// anything else is no load. Two girders are always loaded on the top flanges.
void load_one_girder(const Model& model, int k, SteelWeight weight, double dw, Vector<double>& F);
void load_two_girders(const Model& model, int k, SteelWeight weight, double dw, Vector<double>& F);

// True if analysis loads one girder by end couples (load pattern 3), and the force of one flange in
// them, kips: the moment w L^2/8 over the depth.
bool loads_end_couples(const Model& model);
double end_couple_force(const Model& model, int k);

}  // namespace zelvo
