// Four corners of a section, 60 deep, and a skew frame, as the tests of the bars use them.
#pragma once
#include "bars/braces.h"
#include "bars/gather.h"

inline const BraceCorners CORNERS{{-50, 60, 0, 50, 60, 0, -35, 0, 0, 35, 0, 0}};
inline const FixedVector<double, 3> AREA_5{{29600.0, 5.0, 1.0}};

// A rotation that leaves no axis where it was: columns of sevenths.
inline const FixedMatrix<double, 3, 3> SKEW{
    {2.0 / 7, 3.0 / 7, 6.0 / 7, 3.0 / 7, -6.0 / 7, 2.0 / 7, 6.0 / 7, 2.0 / 7, -3.0 / 7}};

// Every triple of v turned by SKEW.
inline BraceCorners turned(const BraceCorners& v) {
  BraceCorners out{};
  for (int k = 1; k <= 12; ++k)
    for (int j = 1; j <= 3; ++j) out(k) += SKEW((k - 1) % 3 + 1, j) * v((k - 1) / 3 * 3 + j);
  return out;
}
