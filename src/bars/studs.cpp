#include "bars/studs.h"

#include "bars/kernel.h"

namespace zelvo {

void assemble_studs(const Structure& structure, int k, SymmetricMatrix& K) {
  const auto& [section, nodes, elements, properties] = structure;
  for (int e = 1; e <= elements.nstud; ++e) {
    const double ks = properties.studk(k, e) * properties.studnum(e);
    const double axis_k[3] = {ks, STUD_UPLIFT_K, ks};
    BarMatrix ke{};
    for (int i = 1; i <= 3; ++i) {
      ke(i, i) = ke(i + 3, i + 3) = axis_k[i - 1];
      ke(i, i + 3) = ke(i + 3, i) = -axis_k[i - 1];
    }
    add_node_blocks(ke, elements.studconn.column(e), 2, K);
  }
}

}  // namespace zelvo
