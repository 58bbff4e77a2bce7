// Blocks of the result files as tables of numbers.
#pragma once
#include <sstream>
#include <string>
#include <vector>

namespace zelvo {

using Table = std::vector<std::vector<double>>;

// The data lines of the block of the only analysis; three head lines precede them.
inline Table data_rows(const std::string& file) {
  Table rows;
  std::istringstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream values(line);
    rows.emplace_back();
    for (double v; values >> v;) rows.back().push_back(v);
  }
  rows.erase(rows.begin(), rows.begin() + 3);
  return rows;
}

// Columns of the section forces.
enum { POSITION, SHEAR, MOMENT, TORQUE };

}  // namespace zelvo
