// The sections of the report, in its order; each is the body below its heading.
#pragma once
#include "report/results.h"
#include "report/units.h"

namespace zelvo::report {

Html verdict(const Results& r);
Html bridge_and_pours(const Results& r);
Html deflection_and_screed(const Results& r);
Html differential_and_twist(const Results& r);
Html shear_moment_torque(const Results& r);
Html flange_stresses(const Results& r);
Html members(const Results& r);
Html reactions(const Results& r);
Html buckling(const Results& r);
Html checks_and_input(const Results& r);

}  // namespace zelvo::report
