#include "construction/history.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "construction/girders.h"
#include "construction/motion.h"
#include "solution/loads.h"
#include "solution/stiffness.h"
#include "sparse/solver.h"

namespace zelvo {

namespace {

// A stiffness and its factors, which live until another takes its place.
struct Factored {
  SymmetricMatrix K;
  double penalty = 0;  // of the rollers, kip/in
  OwnedSolver solver;
  int code = -1;  // 0 once factored

  // The pattern never changes, so it is ordered and analysed once.
  int define() {
    const MatrixPattern& p = *K.pattern;
    code = solver_create(solver.handle, 0);
    if (code == 0)
      code = solver_define_structure(solver.handle, SOLVER_SYMMETRIC, p.ia.data(), p.n, p.n,
                                     p.ja.data(), p.nnz);
    if (code == 0) code = solver_reorder(solver.handle, 0, nullptr);
    return code;
  }
  void form(const Model& model, const Structure& structure, int k, LastInverse& last,
            const Progress& done) {
    penalty = assemble_stiffness(model, structure, k, last, done, K);
    if (solver.handle == nullptr && define() != 0) return;
    code = solver_factor_real(solver.handle, SOLVER_POSITIVE_DEFINITE, K.values.data());
    if (code == 0) done(Step::SOLVER_FACTORIZATION);
  }
  // U = K^-1 F; zero where K has no factors.
  int solve(const Vector<double>& F, Vector<double>& U) {
    if (code == 0) return solver_solve_real(solver.handle, 0, F.data(), 1, U.data());
    U.clear();
    return code;
  }
};

// What a pass works in.
struct Pass {
  const Model& model;
  const HistoryOptions& options;
  const Progress& done;
  Factored stiff, soft;
  RowBundles rows;
  Vector<double> F, U;       // of the stage
  Vector<double> total;      // factored displacements of all stages so far
  Vector<double> batch_F;    // factored loads of all stages so far, as the batch program sums them
  SymmetricMatrix KG;        // work of the checks
  ShiftedStiffness shifted;  // the same
  LastInverse last;

  double factor(int k) const {
    const auto i = static_cast<std::size_t>(k - 1);
    return i < options.load_factor.size() ? options.load_factor[i] : 1.0;
  }
  bool any_check() const {
    const CheckChoice& c = options.checks;
    return c.history || c.batch_rule || c.softest;
  }
};

void allocate(const Structure& structure, Pass& p) {
  const auto pattern = std::make_shared<const MatrixPattern>(
      build_pattern(structure.nodes.nnode, element_nodes(structure.elements)));
  p.stiff.K = zero_matrix(pattern, "the stiffness matrix");
  p.rows = find_bundles(pattern);
  for (Vector<double>* v : {&p.F, &p.U, &p.total, &p.batch_F})
    *v = Vector<double>(pattern->n, "the vectors of a construction");
  if (p.any_check()) p.KG = zero_matrix(pattern, "the geometric stiffness matrix");
  if (p.options.checks.softest) p.soft.K = zero_matrix(pattern, "the softest stiffness matrix");
}

void load(const Model& model, const Structure& structure, int k, Vector<double>& F) {
  const SteelWeight weight = k == 1 && model.selfwt ? SteelWeight::INCLUDED : SteelWeight::LEFT_OUT;
  (model.ngird == 2 ? load_two_girders : load_one_girder)(model, k, weight, web_width(structure),
                                                          F);
}

// Adds the factored loads of stage k. End couples and end forces are stored by their load patterns
// and take the place of those before.
void add_batch_load(const Structure& structure, int k, Pass& p) {
  Vector<double> one(p.F.size(), "the loads of a stage");
  load(p.model, structure, k, one);
  const bool stored =
      p.model.ngird == 1 && (p.model.load_pattern == 3 || p.model.load_pattern == 5);
  for (std::int64_t i = 1; i <= one.size(); ++i) {
    const double f = p.factor(k) * one(i);
    const bool along = (i - 1) % NDOF == 2;
    p.batch_F(i) = stored && along ? f : p.batch_F(i) + f;
  }
}

StageResults recover_stage(const Structure& structure, int k, int code, Pass& p) {
  StageResults r;
  r.k = k;
  r.solver_code = code;
  r.finite = std::all_of(p.U.begin(), p.U.end(), [](double u) { return std::isfinite(u); });
  r.stations = station_displacements(p.model, structure, p.U);
  r.reactions = support_reactions(structure, p.U);
  r.sections = section_results(p.model, structure, p.U, k, p.last);
  r.bars = {internal_forces(structure, p.U), external_forces(structure, p.U),
            lateral_forces(structure, p.U)};
  return r;
}

// What the batch results hold of the quantities, and the laterals as a table.
void copy_results(const StageResults& r, Quantities& q) {
  q.vertical = r.reactions.vertical;
  const int sections = static_cast<int>(r.sections.shear.size());
  q.section = Matrix<double>(sections, 3);
  for (int j = 1; j <= sections; ++j) {
    q.section(j, 1) = r.sections.shear(j);
    q.section(j, 2) = r.sections.moment(j);
    q.section(j, 3) = r.sections.torque(j);
  }
  q.s22 = r.sections.s22;
  q.s12 = r.sections.s12;
  q.internal = r.bars.internal;
  q.external = r.bars.external;
  const int nlat = static_cast<int>(r.bars.laterals.size());
  q.laterals = Matrix<double>(1, nlat);
  for (int e = 1; e <= nlat; ++e) q.laterals(1, e) = r.bars.laterals(e);
}

Quantities recover_quantities(const Structure& structure, int k, const StageResults& r, Pass& p) {
  Quantities q;
  copy_results(r, q);
  q.motion = girder_motion(p.model, structure, p.U);
  recover_reactions(p.model, structure, p.U, p.stiff.penalty, p.options.bearing_spacing, q);
  recover_girders(p.model, structure, p.U, k, p.last, q);
  return q;
}

void scale(double factor, Quantities& q) {
  each_table(q, [&](const char*, Matrix<double>& table) {
    for (std::int64_t i = 0; i < std::int64_t{table.rows()} * table.cols(); ++i)
      table.data()[i] *= factor;
  });
}

// total = before + increment; the stresses that are not linear follow from the summed ones.
Quantities sum(const Structure& structure, const Quantities* before, const Quantities& increment) {
  Quantities total = increment;
  if (before == nullptr) return total;
  const auto tables = tables_of(*before);
  std::size_t t = 0;
  each_table(total, [&](const char*, Matrix<double>& table) {
    const double* add = tables[t++]->data();
    for (std::int64_t i = 0; i < std::int64_t{table.rows()} * table.cols(); ++i)
      table.data()[i] += add[i];
  });
  design_stresses(structure, total);
  return total;
}

// The stiffness with every segment at its softest is the same for all stages.
void form_softest(const Structure& structure, Pass& p) {
  const Model model = softest_model(p.model);
  Structure soft = structure;
  soft.properties = generate_properties(model, soft.elements);
  p.soft.form(model, soft, 1, p.last, no_progress);
}

void check_buckling(const Structure& structure, int k, Pass& p, StageRecord& record) {
  const CheckChoice& wanted = p.options.checks;
  if (wanted.batch_rule || wanted.softest) add_batch_load(structure, k, p);
  if (!wanted.include(k)) return;
  CheckWork work{p.last, p.KG, p.shifted};
  const auto check = [&](const Factored& f, const Vector<double>& U) {
    if (f.code != 0) return HistoryCheck{};
    return check_state(structure, {f.K, f.solver.handle}, U, k, p.options.eigen, work);
  };
  if (wanted.history) record.history = check(p.stiff, p.total);
  if (!wanted.batch_rule && !wanted.softest) return;
  Vector<double> V(p.U.size(), "the displacements of a check");
  if (wanted.batch_rule && p.stiff.solve(p.batch_F, V) == 0) record.batch_rule = check(p.stiff, V);
  if (!wanted.softest) return;
  if (p.soft.solver.handle == nullptr) form_softest(structure, p);
  if (p.soft.solve(p.batch_F, V) == 0) record.softest = check(p.soft, V);
}

StageRecord construct_stage(const Structure& structure, int k, const StageRecord* before, Pass& p) {
  StageRecord record;
  if (!stiffness_holds(p.model, k)) p.stiff.form(p.model, structure, k, p.last, p.done);
  p.F.clear();
  load(p.model, structure, k, p.F);
  p.done(Step::LOADS);
  const int code = p.stiff.solve(p.F, p.U);
  if (code == 0) p.done(Step::SOLVER_SOLUTION);
  record.results = recover_stage(structure, k, code, p);
  record.increment = recover_quantities(structure, k, record.results, p);
  scale(p.factor(k), record.increment);
  design_stresses(structure, record.increment);
  record.total = sum(structure, before == nullptr ? nullptr : &before->total, record.increment);
  record.checks = check_stage(p.model, structure, p.rows, p.stiff.K, p.F, p.U);
  for (std::int64_t i = 1; i <= p.U.size(); ++i) p.total(i) += p.factor(k) * p.U(i);
  if (p.any_check()) check_buckling(structure, k, p, record);
  return record;
}

}  // namespace

History construct(const Model& model, const HistoryOptions& options, const Progress& done) {
  assert(options.eigen.solver_type == 1);
  require_memory(model);
  History h;
  h.structure = generate_structure(model);
  Pass p{model, options, done, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}};
  allocate(h.structure, p);
  std::vector<const Quantities*> increments, totals;
  h.stage.reserve(static_cast<std::size_t>(std::max(model.nanal, 0)));
  for (int k = 1; k <= model.nanal; ++k) {
    h.stage.push_back(
        construct_stage(h.structure, k, h.stage.empty() ? nullptr : &h.stage.back(), p));
    if (options.stage_done) options.stage_done(h.structure, h.stage.back(), p.U, p.total);
  }
  for (const StageRecord& s : h.stage) {
    increments.push_back(&s.increment);
    totals.push_back(&s.total);
  }
  h.increments = envelope_of(increments);
  h.totals = envelope_of(totals);
  h.bracing = bracing_weight(h.structure);
  h.plates = plate_weight(model, h.structure);
  return h;
}

}  // namespace zelvo
