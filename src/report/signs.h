// Small pictures of what is positive.
#pragma once
#include "report/chart.h"

namespace zelvo::report {

Html sign_picture(Sign sign);

}  // namespace zelvo::report
