#include "construction/buckling.h"

#include <algorithm>

#include "bars/geometric.h"
#include "base/text.h"
#include "buckling/geometric.h"
#include "matrix/product.h"

namespace zelvo {

namespace {

// KG = geometric stiffness of frames and laterals alone.
void assemble_bracing(const Structure& structure, const Vector<double>& U, SymmetricMatrix& KG) {
  KG.values.clear();
  assemble_ibraces_geo(structure, U, KG);
  if (structure.section->girders == 2) assemble_ebraces_geo(structure, U, KG);
  assemble_laterals_geo(structure, U, KG);
}

// What frames and laterals do in every mode. KG is that of the bracing alone. The shapes have
// x'K x = 1, so that all work x'(-KG)x is one over their Rayleigh quotient.
void weigh_bracing_of_modes(const Structure& structure, const SymmetricMatrix& KG,
                            HistoryCheck& check) {
  const RowBundles rows = find_bundles(KG.pattern);
  Vector<double> y(KG.n()), work(structure.nodes.nnode);
  for (int m = 1; m <= check.modes.eigval.size(); ++m) {
    const double* x = check.modes.eigvec.column(m);
    sym_matvec(rows, KG, x, y.data());
    double bracing = 0;
    for (int node = 1; node <= work.size(); ++node) {
      work(node) = 0;
      for (int d = 1; d <= NDOF; ++d) {
        const int i = equation(node, d);
        work(node) -= x[i - 1] * y(i);
      }
      bracing += work(node);
    }
    weigh_bracing(structure, bracing * check.quality(m).rayleigh, work,
                  check.nature[static_cast<std::size_t>(m - 1)]);
  }
}

std::string number(double value) { return formatted("%.4g", value); }

std::string failure_remark(const EigenOutcome& o) {
  if (o.solver_code != 0)
    return "no factors: the solver returned code " + std::to_string(o.solver_code);
  if (!o.iterated) return "no factors: no steel is stressed";
  return "no factors: the eigenvalue iteration returned code " + std::to_string(o.dsaupd_info);
}

// Kind 1 lists positive factors first, so a first one below 0 tells that there are no others.
void remark_first(double factor, std::vector<std::string>& remarks) {
  if (factor < 0)
    remarks.push_back("the lowest factor is " + number(factor) +
                      ", negative: the loads so far do not buckle the bridge, loads of opposite "
                      "sign would");
  else if (factor < 1)
    remarks.push_back("the lowest factor is " + number(factor) +
                      ", below 1: the bridge buckles before all loads so far are on it");
}

}  // namespace

HistoryCheck check_state(const Structure& structure, const FactoredStiffness& stiffness,
                         const Vector<double>& U, int k, const EigenOptions& options,
                         CheckWork& work) {
  const auto& [K, factors] = stiffness;
  SymmetricMatrix& KG = work.KG;
  HistoryCheck check;
  check.modes = {Vector<double>(options.nev, "the buckling factors"),
                 Matrix<double>(K.n(), options.nev, "the buckling modes")};
  assemble_geometric(structure, k, U, work.last, no_progress, KG);
  if (std::all_of(KG.values.begin(), KG.values.end(), [](double v) { return v == 0; }))
    return check;
  check.outcome = lowest_factors(K, factors, KG, options, work.shifted, check.modes);
  if (!check.outcome.found) return check;
  check.quality = measure_pairs(K, KG, check.modes);
  for (int m = 1; m <= options.nev; ++m)
    check.nature.push_back(mode_nature(structure, check.modes.eigvec.column(m)));
  assemble_bracing(structure, U, KG);
  weigh_bracing_of_modes(structure, KG, check);
  return check;
}

std::vector<std::string> check_remarks(const HistoryCheck& check) {
  const EigenOutcome& o = check.outcome;
  if (!o.found) return {failure_remark(o)};
  const Vector<double>& factor = check.modes.eigval;
  const int wanted = static_cast<int>(factor.size());
  std::vector<std::string> remarks;
  remark_first(factor(1), remarks);
  for (int m = 2; m <= wanted; ++m)
    if (factor(m) < 0)
      remarks.push_back("mode " + std::to_string(m) + ": factor " + number(factor(m)) +
                        " is negative and belongs to loads of opposite sign");
  if (o.nconv < wanted)
    remarks.push_back("only " + std::to_string(o.nconv) + " of " + std::to_string(wanted) +
                      " modes have converged");
  for (int m = 1; m <= std::min(o.nconv, wanted); ++m)
    if (!is_sharp(check.quality(m), factor(m)))
      remarks.push_back("mode " + std::to_string(m) + " is loose: residual " +
                        number(check.quality(m).residual) + ", factor of its shape " +
                        number(check.quality(m).rayleigh));
  return remarks;
}

Model softest_model(const Model& model) {
  Model soft = model;
  for (Matrix<double>* table : {&soft.pour_e, &soft.pour_k})
    for (int j = 1; j <= model.npour; ++j) {
      double* stage = table->column(j);
      std::fill_n(stage, model.nanal, *std::min_element(stage, stage + model.nanal));
    }
  return soft;
}

}  // namespace zelvo
