#include "bars/laterals.h"

#include "bars/gather.h"
#include "bars/kernel.h"

namespace zelvo {

void assemble_laterals(const Structure& structure, SymmetricMatrix& K) {
  const Elements& el = structure.elements;
  for (int e = 1; e <= el.nlatel; ++e) {
    BarMatrix ke{};
    bar_stiffness(ke, gather_points<2>(structure.nodes, el.latconn, e),
                  structure.properties.latprop(e));
    add_node_blocks(ke, el.latconn.column(e), 2, K);
  }
}

}  // namespace zelvo
