// Runs a model through all its analyses in memory and keeps what every stage left.
#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "control/driver.h"
#include "model/pattern.h"
#include "solution/supports.h"

namespace zelvo {

struct Stage {
  Vector<double> U, eigval;
};

struct Bridge {
  Run run;                   // as the last stage left it; run.files holds the text of all stages
  std::vector<Stage> stage;  // stage[k - 1] is analysis k

  const SectionPattern& pattern() const { return section_pattern(run.model.ngird); }
  // Displacement of freedom d of pattern node m at an even or odd multiple x of 12 inches.
  double u(int k, int x, int m, int d) const {
    const int node = x / STATION_SPACING * pattern().nodes + m;
    return stage[static_cast<std::size_t>(k - 1)].U(equation(node, d));
  }
  // Downward deflection of a girder (0 or 1) at x, and its rotation: mean and difference of the
  // web feet.
  double deflection(int k, int x, int girder = 0) const {
    const GirderPattern& g = pattern().girder[girder];
    return -(u(k, x, g.left_foot(), 2) + u(k, x, g.right_foot(), 2)) / 2;
  }
  double rotation(int k, int x, int girder = 0) const {
    const GirderPattern& g = pattern().girder[girder];
    return (u(k, x, g.left_foot(), 2) - u(k, x, g.right_foot(), 2)) / run.model.secdim.bottom_width;
  }
  // Upward reactions, support by support, girder by girder.
  std::vector<double> reactions(int k) const {
    std::vector<double> r;
    for (int i = 1; i <= run.elements.nfix; ++i) {
      if (i % 9 == 1) r.push_back(0);
      r.back() -=
          stage[static_cast<std::size_t>(k - 1)].U(equation(run.elements.fixnode(i), 2)) * BIG;
    }
    return r;
  }
};

inline Bridge analyse(const Model& model) {
  Bridge b;
  b.run.model = model;
  testing::internal::CaptureStdout();
  generate_model(b.run);
  for (int k = 1; k <= model.nanal; ++k) {
    run_analysis(b.run, k);
    b.stage.push_back({b.run.U, b.run.eigval});
  }
  testing::internal::GetCapturedStdout();
  return b;
}

}  // namespace zelvo
