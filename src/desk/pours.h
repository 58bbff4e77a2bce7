// Stages and deck segments as an engineer speaks of them: letters, soft and hard, kips.
#pragma once
#include <string>

#include "exchange/describe.h"
#include "model/description.h"

namespace zelvo {

constexpr double CONCRETE_DENSITY = 0.15;  // kip/ft3, with the reinforcement
// Of the deck's weight, from which a load on wet concrete is a pour: less is bracing and forms.
constexpr double POURED = 0.3;

inline bool hard(const Model& m, int k, int j) { return m.pour_e(k, j) >= HARD_FROM; }

// "A", ..., "Z", then "27"; of segment j.
std::string segment_letter(int j);

// Whether the loads of the stages act as loads per length: not for one girder under load patterns
// other than 1 and 2.
bool loads_act(const Model& m);

// Weight of the wet deck, kip/ft of the bridge and kip/ft2.
double deck_weight(const Model& m);
double deck_weight_per_area(const Model& m);

// Kips of stage k without the steel.
double stage_load(const Model& m, int k);

// Largest load of a segment in stage k, kip/ft2 of deck; 0 without load.
double load_per_area(const Model& m, int k);

}  // namespace zelvo
