#include "bars/laterals.h"

#include "bars/gather.h"
#include "bars/kernel.h"

namespace zelvo {

void assemble_laterals(const Nodes& nodes, const Elements& elements, const Properties& properties,
                       const MatrixPattern& pattern, Vector<double>& K) {
  for (int e = 1; e <= elements.nlatel; ++e) {
    BarMatrix ke{};
    bar_stiffness(ke, gather_points<2>(nodes, elements.latconn, e),
                  column_of(properties.latprop, e));
    add_node_blocks(ke.data(), ke.rows(), elements.latconn.column(e), 2, 3, pattern, K);
  }
}

}  // namespace zelvo
