#include "solution/stiffness.h"

#include "bars/braces.h"
#include "bars/laterals.h"
#include "bars/stiffeners.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "shell/assembly.h"
#include "solution/supports.h"

namespace zelvo {

double assemble_stiffness(const Model& model, const Structure& structure, int k, LastInverse& last,
                          const Progress& done, SymmetricMatrix& K) {
  assert(1 <= k && k <= model.nanal);
  const Elements& el = structure.elements;
  K.values.clear();
  assemble_shells(structure, k, last, K);
  done(Step::SHELLS);
  if (el.nibel > 0) {
    assemble_ibraces(structure, K);
    done(Step::INTERNAL_BRACES);
  }
  if (el.nebel > 0) {
    assemble_ebraces(structure, K);
    done(Step::EXTERNAL_BRACES);
  }
  if (el.nlatel > 0) {
    assemble_laterals(structure, K);
    done(Step::TOP_LATERALS);
  }
  if (el.nwsel > 0) {
    assemble_stiffeners(structure, K);
    done(Step::WEB_STIFFENERS);
  }
  assemble_supports(structure, K);
  done(Step::SUPPORTS);
  assemble_studs(structure, k, K);
  done(Step::STUDS);
  const double penalty = apply_supports(model, structure, K);
  done(Step::SUPPORT_CONDITIONS);
  return penalty;
}

bool stiffness_holds(const Model& model, int k) {
  if (k <= 1) return false;
  for (int j = 1; j <= model.npour; ++j)
    if (model.pour_e(k, j) != model.pour_e(k - 1, j) ||
        model.pour_k(k, j) != model.pour_k(k - 1, j))
      return false;
  return true;
}

}  // namespace zelvo
