// Blocks of the result files as tables of numbers.
#pragma once
#include <sstream>
#include <string>
#include <vector>

#include "support/models.h"

using Table = std::vector<std::vector<double>>;

// The data lines of the block of analysis k; each block begins with three head lines.
inline Table data_rows(const std::string& file, int k = 1) {
  Table rows;
  std::istringstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    if (line == " run") {
      std::getline(lines, line);
      if (std::stoi(line) > k) break;
      std::getline(lines, line);
      rows.clear();
      continue;
    }
    std::istringstream values(line);
    rows.emplace_back();
    for (double v; values >> v;) rows.back().push_back(v);
  }
  return rows;
}

// Columns of the section forces.
enum { POSITION, SHEAR, MOMENT, TORQUE };

// Both diagonals in every panel of the given length, rows 2p-1 (type 1) and 2p (type 2).
inline void add_crossed_laterals(Model& m, int panel, double area) {
  m.nlat = 2 * (m.lgbr / panel);
  m.lat_type = m.lat_from = m.lat_to = Vector<int>(m.nlat);
  m.lat_area = Vector<double>(m.nlat);
  for (int i = 1; i <= m.nlat; ++i) {
    m.lat_type(i) = (i - 1) % 2 + 1;
    m.lat_from(i) = (i - 1) / 2 * panel;
    m.lat_to(i) = m.lat_from(i) + panel;
    m.lat_area(i) = area;
  }
}
