#include "solution/nodal.h"

#include "solution/supports.h"

namespace zelvo {

StationDisplacements station_displacements(const Model& model, const Structure& structure,
                                           const Vector<double>& U) {
  const SectionPattern& section = *structure.section;
  assert(U.size() == NDOF * structure.nodes.nnode);
  StationDisplacements d{Matrix<double>(model.nstn(), section.girders),
                         Matrix<double>(model.nstn(), section.girders)};
  for (int girder = 1; girder <= section.girders; ++girder) {
    const GirderPattern& g = section.girder[girder - 1];
    for (int s = 0; s < model.nstn(); ++s) {
      const double left = U(equation(s * section.nodes + g.left_foot(), 2));
      const double right = U(equation(s * section.nodes + g.right_foot(), 2));
      d.deflection(s + 1, girder) = (left + right) / 2;
      d.rotation(s + 1, girder) = (left - right) / model.secdim.bottom_width;
    }
  }
  return d;
}

Reactions support_reactions(const Structure& structure, const Vector<double>& U) {
  const SectionPattern& section = *structure.section;
  const Elements& el = structure.elements;
  const int nsupp = el.nfix / (GirderPattern::BOTTOM_NODES * section.girders);
  Reactions r{Vector<int>(nsupp), Matrix<double>(nsupp, section.girders)};
  int next = 1;  // in fixnode: supports in turn, girder by girder
  for (int i = 1; i <= nsupp; ++i) {
    r.station(i) = (el.fixnode(next) - 1) / section.nodes;
    for (int girder = 1; girder <= section.girders; ++girder)
      for (int m = 1; m <= GirderPattern::BOTTOM_NODES; ++m)
        r.vertical(i, girder) += -U(equation(el.fixnode(next++), 2)) * BIG;
  }
  return r;
}

}  // namespace zelvo
