// Largest and smallest values over the stages of a construction, with the stage that governs.
#pragma once
#include <vector>

#include "construction/quantities.h"

namespace zelvo {

struct Envelope {
  Quantities high, low;
  // In the order of each_table, of the shape of each table: the stage (from 1) of each value.
  std::vector<Matrix<int>> high_stage, low_stage;
};

// Envelope of the quantities of stages 1, 2, ...; the unloaded state before stage 1 is no stage.
// Of stages that tie within ENVELOPE_TIE of the largest magnitude of a table the first governs. No
// stages give an empty envelope.
constexpr double ENVELOPE_TIE = 1.0e-9;
Envelope envelope_of(const std::vector<const Quantities*>& stages);

// All tables of the quantities, in the order of each_table.
std::vector<const Matrix<double>*> tables_of(const Quantities& q);

}  // namespace zelvo
