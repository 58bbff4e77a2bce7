#include "control/stage.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "buckling/geometric.h"
#include "control/console_lines.h"
#include "solution/linear.h"
#include "solution/stiffness.h"

namespace zelvo {

namespace {

// The eigenvalue iteration when the input chooses none.
constexpr int DEFAULT_SOLVER = 2;        // buckling mode, shifted
constexpr double DEFAULT_TOL = 0.0001f;  // a single precision number
constexpr double DEFAULT_SIGMA = 0.02;

void form_stiffness(const Model& model, int k, StepClock& clock, Run& run) {
  if (stiffness_holds(model, k)) return numbered_line("Assembly Completed in Analysis ", k - 1);
  clock.read();
  assemble_stiffness(model, run.structure, k, run.inverses, console_steps(clock), run.K);
}

void form_loads(const Model& model, int k, Run& run) {
  // With the buckling check the loads of the stages add up.
  if (!model.buckle) run.F.clear();
  const double dw = web_width(run.structure);
  if (model.ngird == 2)
    load_two_girders(model, k, run.state.weight, dw, run.F);
  else
    load_one_girder(model, k, run.state.weight, dw, run.F);
  run.state.weight = SteelWeight::LEFT_OUT;
  print_loads(model, k);
}

int solve_stage(StepClock& clock, Run& run) {
  blank_line();
  clock.read();
  console_line("Start the Solution");
  run.U.clear();
  const int code = solve_linear(run.K, run.F, console_steps(clock), run.U);
  if (code != 0) print_solver_code(code);
  timed_line("Solution Completed", clock, TimeScale::SOLUTION);
  blank_line();
  return code;
}

bool all_finite(const Vector<double>& U) {
  return std::all_of(U.begin(), U.end(), [](double u) { return std::isfinite(u); });
}

EigenOptions eigen_options(const Model& model, StageState& state) {
  if (state.solver_type == 0) {
    state.solver_type = DEFAULT_SOLVER;
    state.tol = DEFAULT_TOL;
    state.sigma = DEFAULT_SIGMA;
  }
  return {model.nev, state.solver_type, state.tol, state.sigma, state.ncv};
}

BucklingResults check_buckling(const Model& model, int k, StepClock& clock, Run& run) {
  numbered_line("Start of Buckling Check for Analysis ", k);
  clock.read();
  assemble_geometric(run.structure, k, run.U, run.inverses, console_steps(clock), run.KG);
  blank_line();
  clock.read();
  console_line("Start the Eigenproblem Solution");
  const EigenOptions options = eigen_options(model, run.state);
  BucklingResults r;
  r.outcome = buckling_solve(run.K, run.KG, options, console_steps(clock), run.modes);
  print_outcome(r.outcome);
  r.modes = run.modes;
  if (r.outcome.found) r.quality = measure_pairs(run.K, run.KG, r.modes);
  warn_of_check(k, options, r.outcome, r.modes.eigval);
  warn_of_loose_pairs(k, options, r);
  timed_line("Eigenproblem Solution Completed", clock, TimeScale::SOLUTION);
  blank_line();
  r.sections = buckled_sections(model, run.structure, r.modes.eigvec);
  console_line("Post-processing of Buckled Shape Completed");
  return r;
}

void recover_displacements(const Model& model, const Run& run, StageResults& r) {
  r.stations = station_displacements(model, run.structure, run.U);
  console_line("Post-processing of Deflections Completed");
  console_line("Post-processing of Cross Sectional Rotations Completed");
}

void recover_sections(const Model& model, StepClock& clock, Run& run, StageResults& r) {
  clock.read();
  r.sections = section_results(model, run.structure, run.U, r.k, run.inverses);
  timed_line("Post-processing of Cross Sectional Forces Completed", clock, TimeScale::ASSEMBLY);
}

void recover_forces(const Run& run, StageResults& r) {
  const Elements& el = run.structure.elements;
  r.reactions = support_reactions(run.structure, run.U);
  console_line("Post-processing of Support Reactions Completed");
  r.bars = {internal_forces(run.structure, run.U), external_forces(run.structure, run.U),
            lateral_forces(run.structure, run.U)};
  if (el.nibel > 0) console_line("Post-processing of Internal Brace Forces Completed");
  if (el.nebel > 0) console_line("Post-processing of External Brace Forces Completed");
  if (el.nlatel > 0) console_line("Post-processing of Top Lateral Forces Completed");
}

}  // namespace

StageState first_state(const Model& model) {
  return {model.selfwt ? SteelWeight::INCLUDED : SteelWeight::LEFT_OUT, model.solver_type,
          model.tol, model.sigma};
}

void allocate_arrays(const Model& model, MatrixPattern pattern, Run& run) {
  const auto shared = std::make_shared<const MatrixPattern>(std::move(pattern));
  const int n = shared->n;
  run.K = zero_matrix(shared, "the stiffness matrix");
  run.F = Vector<double>(n, "the load vector");
  run.U = Vector<double>(n, "the displacements");
  run.state = first_state(model);
  if (!model.buckle) return;
  run.KG = zero_matrix(shared, "the geometric stiffness matrix");
  run.modes.eigvec = Matrix<double>(n, model.nev, "the buckling modes");
  run.modes.eigval = Vector<double>(model.nev, "the buckling factors");
}

StageResults run_analysis(const Model& model, int k, Run& run) {
  assert(1 <= k && k <= model.nanal);
  const int folded = run.inverses.failures;
  StepClock clock;
  StageResults r;
  r.k = k;
  blank_line();
  numbered_line("Start of Analysis Number ", k);
  form_stiffness(model, k, clock, run);
  form_loads(model, k, run);
  r.solver_code = solve_stage(clock, run);
  r.finite = all_finite(run.U);
  warn_of_solution(k, r);
  if (model.buckle) {
    r.buckling = check_buckling(model, k, clock, run);
    // From here on the results are those at the first buckling load.
    for (double& u : run.U) u *= r.buckling.modes.eigval(1);
    if (r.finite && !all_finite(run.U)) warn_not_finite(k, "at the first buckling load");
    recover_displacements(model, run, r);
    recover_forces(run, r);
    recover_sections(model, clock, run, r);
  } else {
    recover_displacements(model, run, r);
    recover_sections(model, clock, run, r);
    recover_forces(run, r);
  }
  warn_of_folded(k, run.inverses.failures - folded);
  return r;
}

}  // namespace zelvo
