// What governs: the largest and the smallest values of an envelope, stresses of members, uplift.
#pragma once
#include <vector>

#include "construction/history.h"

namespace zelvo {

// A value with its stage and the row and column of its table, all from 1; stage 0: the table is
// empty.
struct Governor {
  double value = 0;
  int stage = 0, row = 0, column = 0;
};

// Of one table: the largest of the high values and the smallest of the low ones. Of equal ones the
// first, by columns.
struct Governing {
  Governor high, low;
};
// Of every table, in the order of each_table.
std::vector<Governing> governing_values(const Envelope& envelope);

// Of several governing values the one of largest magnitude.
Governor largest_magnitude(const std::vector<Governing>& values);

// The bars' extreme stresses, ksi: forces of the envelope over the area of their frame or lateral.
struct MemberStress {
  Matrix<double> internal, external;  // (4,nibel), (5,nebel)
  Matrix<double> laterals;            // (1,nlatel)
};
MemberStress member_stress(const Structure& structure, const Quantities& forces);

// A total reaction below zero.
struct Uplift {
  int support, girder;  // from 1
  int bearing;          // 0: of the whole line, 1 left, 2 right
  int stage;            // from 1
  double value;         // kips
};
// Stage by stage, within it by supports and girders.
std::vector<Uplift> uplifts(const std::vector<const Quantities*>& totals);

// The lowest positive factor that one of the three checks has found in any stage; stage 0: none.
struct LowestFactor {
  int stage = 0, mode = 0;  // from 1
  double factor = 0;
};
LowestFactor lowest_factor(const History& history, HistoryCheck StageRecord::*check);

}  // namespace zelvo
