// Runs a model through all its analyses in memory and keeps what every stage left.
#pragma once
#include <gtest/gtest.h>

#include <vector>

#include "control/driver.h"

namespace zelvo {

struct Stage {
  StageResults results;
  Vector<double> U;
};

struct Bridge {
  Model model;
  Run run;                   // as the last stage left it
  std::vector<Stage> stage;  // stage[k - 1] is analysis k

  const SectionPattern& pattern() const { return *run.structure.section; }
  const StageResults& results(int k) const {
    return stage[static_cast<std::size_t>(k - 1)].results;
  }
  // Displacement of freedom d of pattern node m at a multiple x of 12 inches.
  double u(int k, int x, int m, int d) const {
    const int node = x / STATION_SPACING * pattern().nodes + m;
    return stage[static_cast<std::size_t>(k - 1)].U(equation(node, d));
  }
  // Downward deflection of a girder (0 or 1) at x, and its rotation.
  double deflection(int k, int x, int girder = 0) const {
    return -results(k).stations.deflection(x / STATION_SPACING + 1, girder + 1);
  }
  double rotation(int k, int x, int girder = 0) const {
    return results(k).stations.rotation(x / STATION_SPACING + 1, girder + 1);
  }
  // Upward reactions, support by support, girder by girder.
  std::vector<double> reactions(int k) const {
    const Matrix<double>& vertical = results(k).reactions.vertical;
    std::vector<double> r;
    for (int i = 1; i <= vertical.rows(); ++i)
      for (int g = 1; g <= vertical.cols(); ++g) r.push_back(vertical(i, g));
    return r;
  }
};

inline Bridge analyse(const Model& model) {
  Bridge b;
  b.model = model;
  testing::internal::CaptureStdout();
  b.run = generate_model(model);
  for (int k = 1; k <= model.nanal; ++k) {
    StageResults results = run_analysis(model, k, b.run);
    b.stage.push_back({std::move(results), b.run.U});
  }
  testing::internal::GetCapturedStdout();
  return b;
}

}  // namespace zelvo
