// Lists of consecutive segments along the girder: plates, studs and pours are given by them.
#pragma once
#include "base/arrays.h"

namespace zelvo {

// Visits segments 1 to n in turn with the places of their two ends, counted from 0 in steps of
// spacing: the end of one is the beginning of the next.
//   len  (n)  inches, multiples of spacing
template <class Visit>
void each_segment(int n, const Vector<int>& len, int spacing, Visit visit) {
  assert(len.size() >= n);
  int begin = 0;
  for (int j = 1; j <= n; ++j) {
    const int end = begin + len(j) / spacing;
    visit(j, begin, end);
    begin = end;
  }
}

}  // namespace zelvo
