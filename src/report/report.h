// The report: one HTML page that needs nothing else, for screen and paper.
#pragma once
#include <string>

#include "exchange/json.h"

namespace zelvo {

// The page of the results of a run (docs/results-json.md). Every figure in it is a number of the
// results, in other units at most. Keys that are missing throw nlohmann::json::exception.
std::string report_html(const Json& results);

// The lowest mode by history as a drawing of its own; empty where no mode has a shape.
std::string buckled_svg(const Json& results);

}  // namespace zelvo
