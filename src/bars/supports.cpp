#include "bars/supports.h"

#include "bars/gather.h"
#include "bars/kernel.h"

namespace zelvo {

namespace {

// Corners that each bar joins: top and bottom strut, left and right side, the two diagonals.
constexpr int BARS = 6;
constexpr int BAR_ENDS[BARS][2] = {{1, 2}, {3, 4}, {3, 1}, {4, 2}, {4, 1}, {3, 2}};

}  // namespace

void support_stiffness(FixedMatrix<double, 12, 12>& k12, const FixedVector<double, 12>& c12,
                       const BarProperty& prop) {
  k12.clear();
  for (const auto& [a, b] : BAR_ENDS) {
    BarMatrix ke{};
    bar_stiffness(ke, ends(c12, a, b), prop);
    add_bar(ke, a, b, k12);
  }
}

void assemble_supports(const Structure& structure, SymmetricMatrix& K) {
  const Elements& el = structure.elements;
  const BarProperty prop{STEEL_E, SUPPORT_AREA, 1.0};
  FixedMatrix<double, 12, 12> k12;
  for (int e = 1; e <= el.nsupel; ++e) {
    support_stiffness(k12, gather_points<4>(structure.nodes, el.supconn, e), prop);
    add_node_blocks(k12, el.supconn.column(e), 4, K);
  }
}

}  // namespace zelvo
