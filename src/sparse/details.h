// Details of the solver's failures: where a call of the driver failed, beside its error.
#pragma once

namespace zelvo {

enum Detail : int {
  NO_DETAIL = 0,

  // Driver error -1, a call that does not fit. 1 to 13 are checks in the order in which they are
  // made; the first that fails ends them.
  IDO_OUT_OF_RANGE = 1,
  MORE_FACTORS_THAN_KEPT = 2,  // max_fac_store above that of the first call
  MATRIX_NUMBER_ABOVE_STORE = 3,
  MATRIX_NUMBER_BELOW_ONE = 4,
  MATRIX_TYPE_OUT_OF_RANGE = 5,
  MATRIX_TYPE_CHANGED = 6,
  NEQNS_CHANGED = 7,
  NEQNS_BELOW_ONE = 8,
  FEW_STORED_VALUES = 9,  // fewer than equations
  NO_RIGHT_HAND_SIDES = 10,
  BAD_SOLUTION_PLACE = 11,
  BAD_ORDERING = 12,
  IDO_WITHOUT_STAGES = 13,
  BAD_MATRIX_NUMBER = 100,
  NOTHING_TO_RELEASE = 1000,
  UNSUPPORTED_TYPE = 2000,
  IDO_BELOW_RELEASE = 10000,
  NOT_ANALYSED = 100000,

  // Driver error -2, memory that cannot be had.
  NO_STATE_MEMORY = -100,
  NO_FACTOR_TABLE = -200,
  NO_ORDERING_MEMORY = -400,
  NO_SYMBOLIC_MEMORY = -700,
  NO_NUMERIC_MEMORY = -1100,

  // Driver error -3, an analysis that cannot be made.
  BAD_ROW = -160,          // rows do not begin at 1, or one ends before it begins
  BAD_COLUMN = -170,       // a column number outside the upper triangle
  BAD_STRUCTURE = -180,    // a row list disagrees with its column length
  BAD_PERMUTATION = -190,  // the caller's order is no permutation
  NO_ORDER = -195,         // the dissection failed

  // Driver error -4, a factorization that cannot be finished.
  BAD_PIVOT = -2,
  NO_VALUES = -1400,
};

}  // namespace zelvo
