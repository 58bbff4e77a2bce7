#include "desk/pours.h"

#include <cmath>

namespace zelvo {

std::string segment_letter(int j) {
  return j <= 26 ? std::string(1, static_cast<char>('A' + j - 1)) : std::to_string(j);
}

bool loads_act(const Model& m) {
  return m.ngird == 2 || m.load_pattern == 1 || m.load_pattern == 2;
}

double deck_weight_per_area(const Model& m) {
  return CONCRETE_DENSITY * m.secdim.deck_thickness / 12;
}
double deck_weight(const Model& m) { return deck_weight_per_area(m) * m.secdim.deck_width / 12; }

double stage_load(const Model& m, int k) {
  double kips = 0;
  for (int j = 1; j <= m.npour; ++j) kips += m.pour_load(k, j) * m.pour_len(j) / 12;
  return loads_act(m) ? kips : 0;
}

double load_per_area(const Model& m, int k) {
  double load = 0;
  for (int j = 1; j <= m.npour; ++j)
    if (std::abs(m.pour_load(k, j)) > std::abs(load)) load = m.pour_load(k, j);
  return loads_act(m) ? load / (m.secdim.deck_width / 12) : 0;
}

}  // namespace zelvo
