// The bridge, its stages and the places of its values as parts of results.json.
#pragma once
#include "construction/history.h"
#include "exchange/job.h"
#include "exchange/json.h"

namespace zelvo {

Json bridge_json(const Job& job, const History& history);
Json stage_json(const Job& job, const StageRecord& stage);
Json places_json(const Model& model);

// "stage 3", or the name that the file gives it.
std::string stage_name(const Annotations& annotations, int k);

// A segment is hard from this modulus on, ksi: wet concrete is given next to none.
constexpr double HARD_FROM = 10;

}  // namespace zelvo
