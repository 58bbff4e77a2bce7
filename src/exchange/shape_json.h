// Buckling checks and their shapes as parts of results.json.
#pragma once
#include "construction/history.h"
#include "exchange/json.h"

namespace zelvo {

Json buckling_json(const History& history);

}  // namespace zelvo
