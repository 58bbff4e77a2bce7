// What a verification test has measured, for the tables and plots of docs/verification.md: one JSON
// object a line in the file that ZELVO_MEASURED names, if it does.
#pragma once
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace zelvo {

inline void measured(const std::string& key, const std::vector<double>& values) {
  const char* const path = std::getenv("ZELVO_MEASURED");
  if (path == nullptr) return;
  std::ofstream file(path, std::ios::app);
  file.precision(std::numeric_limits<double>::max_digits10);
  file << "{\"" << key << "\": [";
  for (std::size_t i = 0; i < values.size(); ++i) file << (i > 0 ? ", " : "") << values[i];
  file << "]}\n";
}

}  // namespace zelvo
