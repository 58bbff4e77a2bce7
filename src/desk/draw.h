// The bridge as an engineer draws it: cross-section and plan, in one SVG.
#pragma once
#include <string>

#include "model/description.h"

namespace zelvo {

// Section with its dimensions, plan with supports, spans, frames, laterals, plates and pours. The
// model has to be sound.
std::string draw_bridge(const Model& model);

}  // namespace zelvo
