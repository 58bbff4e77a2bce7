// How far a long computation has come, for a caller that shows it; the mechanics print nothing.
#pragma once
#include <functional>

namespace zelvo {

// Steps of a stage, each reported when it is done.
enum class Step {
  SHELLS,  // assembled, as the next six
  INTERNAL_BRACES,
  EXTERNAL_BRACES,
  TOP_LATERALS,
  WEB_STIFFENERS,
  SUPPORTS,
  STUDS,
  SUPPORT_CONDITIONS,
  LOADS,
  SOLVER_CREATION,  // the six calls of the sparse solver
  SOLVER_DEFINITION,
  SOLVER_REORDERING,
  SOLVER_FACTORIZATION,
  SOLVER_SOLUTION,
  SOLVER_DELETION,
  EIGEN_FACTORIZATION,  // the iteration of the buckling check begins
  EIGEN_SOLUTION,       // one of its solves is about to be done
};
using Progress = std::function<void(Step)>;

// For callers that show nothing.
inline void no_progress(Step) {}

}  // namespace zelvo
