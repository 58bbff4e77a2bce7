#include "buckling/geometric.h"

#include "bars/geometric.h"
#include "bars/stiffener_geometric.h"
#include "shell/geometric.h"

namespace zelvo {

void assemble_geometric(const Structure& structure, int k, const Vector<double>& U,
                        LastInverse& last, const Progress& done, SymmetricMatrix& KG) {
  const Elements& el = structure.elements;
  KG.values.clear();
  assemble_shell_geometric(structure, k, U, last, KG);
  done(Step::SHELLS);
  if (el.nibel > 0) {
    assemble_ibraces_geo(structure, U, KG);
    done(Step::INTERNAL_BRACES);
  }
  if (el.nebel > 0 && structure.section->girders == 2) {
    assemble_ebraces_geo(structure, U, KG);
    done(Step::EXTERNAL_BRACES);
  }
  if (el.nlatel > 0) {
    assemble_laterals_geo(structure, U, KG);
    done(Step::TOP_LATERALS);
  }
  if (el.nwsel > 0) {
    assemble_stiffeners_geo(structure, U, KG);
    done(Step::WEB_STIFFENERS);
  }
}

}  // namespace zelvo
