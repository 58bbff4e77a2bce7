// The bridge drawn from its description: section, plan, and the calendar of pours below it.
#pragma once
#include <functional>
#include <string>

#include "report/results.h"
#include "report/units.h"

namespace zelvo::report {

// The cross-section of all girders with its dimensions.
Html section_drawing(const Bridge& bridge);

// The colour of a member: a table of members ("internal", "external", "laterals") and its place, from
// 0.
using MemberColor = std::function<std::string(const char* table, std::size_t place)>;

// Seen from above, to scale along the bridge; widths drawn larger where they would be narrow.
// Frames and laterals in the order of the results' places.
Html plan_drawing(const Results& r, const MemberColor& color);

// Segments by stages on the plan's length: wet, hard, with the loads.
Html calendar_drawing(const Results& r);

// Thickness of webs and flanges along the bridge.
Html plate_drawing(const Bridge& bridge);

}  // namespace zelvo::report
