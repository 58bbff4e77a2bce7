// Plausibility: what can be analysed but is hardly meant. Each rule states its bound in its message
// and passes over whatever a fault has left unread. docs/desk.md lists the bounds.
#pragma once
#include "desk/findings.h"

namespace zelvo {

// Section, plates, curvature, supports, studs.
void section_rules(Checked& c);

// Frames, laterals, stiffeners.
void bracing_rules(Checked& c);

// Stages: moduli, stud stiffness, loads, the order in which segments are poured and harden; the
// buckling check.
//   bracing  kip/ft, weight of the bracing along the bridge
void pour_rules(Checked& c, double bracing);

}  // namespace zelvo
