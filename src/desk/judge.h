// What a run must not pass over, though a stage or a file of the batch program may hold it.
#pragma once
#include <string>
#include <vector>

#include "construction/history.h"

namespace zelvo {

constexpr double LOST_LOAD = 1e-3;  // of the load, that reactions may miss

// Why the results of a stage cannot be used, with the likely cause: a stiffness without factors,
// displacements that are no numbers, reactions unlike the load, a poor solution, a deflection of
// more than a fiftieth of its span. None if they can.
std::vector<std::string> stage_failures(const Model& model, const StageRecord& stage);

// Why a text that is about to be handed out cannot be: fields of asterisks, values that are no
// numbers, vanished determinants. None if it can.
std::vector<std::string> text_failures(const std::string& name, const std::string& text);

}  // namespace zelvo
