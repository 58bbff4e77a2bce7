// What a program makes of an input file: bridge, weights, stages and what the run will need.
#pragma once
#include <string>
#include <vector>

#include "construction/camber.h"
#include "construction/checks.h"
#include "desk/findings.h"

namespace zelvo {

// Letters of segments: "BCDE".
struct StageSummary {
  std::string name;     // "steel", "pour A", or that of `!@ stage`
  double kips = 0;      // with the steel
  double per_area = 0;  // kip/ft2, largest of its segments
  std::string loaded, soft, hard;
  bool pour = false;  // wet concrete is placed
};

// The sparse factor grows in proportion to the length of the bridge, as a bridge is a long strip: so
// do memory and time. Constants measured, see docs/desk.md.
struct Effort {
  std::int64_t equations = 0;
  double memory_gb = 0, stage_seconds = 0;
};

struct Understood {
  std::string title;
  int girders = 0;                // 0: not known, as below
  double length = 0, radius = 0;  // inches; radius 0 is straight
  std::vector<Span> spans;
  bool weighed = false;
  double plates = 0;  // kips
  BracingWeight bracing;
  std::vector<StageSummary> stages;
  Effort effort;
};

// Takes what was read without a fault.
Understood understand(const Checked& c);

// The first lines of the check's output.
std::string understood_text(const Job& job, const Understood& u);
// "284,085 equations, needs 0.8 GB, about 13 s a stage."
std::string effort_text(const Effort& effort);

}  // namespace zelvo
