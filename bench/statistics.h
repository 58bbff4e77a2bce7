// Medians, and CPU time of a call.
#pragma once
#include <algorithm>
#include <vector>

#include "base/platform.h"

namespace zelvo {

inline double median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  const auto n = v.size();
  return n % 2 == 1 ? v[n / 2] : 0.5 * (v[n / 2 - 1] + v[n / 2]);
}

template <class Call>
double cpu_seconds(Call&& call) {
  const double start = process_cpu_seconds();
  call();
  return process_cpu_seconds() - start;
}

// Seconds of one call, repeated for at least a tenth of a second.
template <class Call>
double cpu_seconds_each(Call&& call) {
  const double start = process_cpu_seconds();
  double spent;
  int calls = 0;
  do {
    call();
    ++calls;
    spent = process_cpu_seconds() - start;
  } while (spent < 0.1);
  return spent / calls;
}

}  // namespace zelvo
