#include <algorithm>
#include <cmath>
#include <cstdio>

#include "bars/braces.h"
#include "bars/forces.h"
#include "bars/geometric.h"
#include "bars/laterals.h"
#include "bars/stiffeners.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "buckling/check.h"
#include "buckling/shape.h"
#include "control/console_lines.h"
#include "control/driver.h"
#include "shell/assembly.h"
#include "shell/geometric.h"
#include "shell/sections.h"
#include "solution/linear.h"
#include "solution/loads.h"
#include "solution/nodal.h"
#include "solution/supports.h"

namespace zelvo {

namespace {

// The eigenvalue iteration when the input chooses none.
constexpr int DEFAULT_SOLVER = 2;        // buckling mode, shifted
constexpr double DEFAULT_TOL = 0.0001f;  // the single precision number on purpose
constexpr double DEFAULT_SIGMA = 0.02;

bool two_girders(const Run& run) { return run.model.ngird == 2; }

void assemble_stiffness(Run& run, int k, StepClock& clock) {
  const Nodes& nodes = run.nodes;
  const Elements& el = run.elements;
  const Properties& prop = run.properties;
  run.K.clear();
  clock.read();
  assemble_shells(nodes, el, prop, k, run.pattern, run.K);
  timed_line("Assembly of Shell Elements Completed", clock, TimeScale::ASSEMBLY);
  if (el.nibel > 0) {
    assemble_ibraces(nodes, el, prop, run.pattern, run.K);
    console_line("Assembly of Internal Braces Completed");
  }
  if (el.nebel > 0) {
    assemble_ebraces(nodes, el, prop, run.pattern, run.K);
    console_line("Assembly of External Braces Completed");
  }
  if (el.nlatel > 0) {
    assemble_laterals(nodes, el, prop, run.pattern, run.K);
    console_line("Assembly of Top Laterals Completed");
  }
  if (el.nwsel > 0) {
    assemble_stiffeners(nodes, el, prop, run.pattern, run.K);
    console_line("Assembly of Web Stiffeners Completed");
  }
  assemble_supports(nodes, el, run.pattern, run.K);
  console_line("Assembly of Supports Completed");
  assemble_studs(el, prop, k, run.pattern, run.K);
  console_line("Assembly of Stud Elements Completed");
  apply_supports(run.model, el, run.pattern, run.K);
  console_line("Modification for Support Conditions Completed");
}

void form_loads(Run& run, int k) {
  Model& m = run.model;
  const double dw = web_width(m, run.nodes);
  if (two_girders(run))
    load_two_girders(m, k, m.selfwt, dw, run.F);
  else
    load_one_girder(m, k, m.selfwt, dw, run.F);
  m.selfwt = false;  // the self-weight enters once
  console_line("Formation of Load Vector Completed");
}

// A solution that is no number is never silent: one line per stage.
bool report_not_finite(const Run& run, int k, const char* when) {
  const bool finite =
      std::all_of(run.U.begin(), run.U.end(), [](double u) { return std::isfinite(u); });
  if (!finite)
    std::fprintf(stderr, "zelvo: analysis %d: the displacements are not finite %s\n", k, when);
  return !finite;
}

void solve_stage(Run& run, StepClock& clock) {
  blank_line();
  clock.read();
  console_line("Start the Solution");
  solve_linear(run.pattern, run.K, run.F, run.U);
  timed_line("Solution Completed", clock, TimeScale::SOLUTION);
  blank_line();
}

void write_displacements(Run& run, int k) {
  const Model& m = run.model;
  if (two_girders(run))
    write_deflections_two(run.U, m.lgbr, k, run.files.def.text);
  else
    write_deflections(run.U, m.lgbr, k, run.files.def.text);
  console_line("Post-processing of Deflections Completed");
  if (two_girders(run))
    write_rotations_two(run.U, m.lgbr, k, m.secdim.bottom_width, run.files.rot.text);
  else
    write_rotations(run.U, m.lgbr, k, m.secdim.bottom_width, run.files.rot.text);
  console_line("Post-processing of Cross Sectional Rotations Completed");
}

void write_sections(Run& run, int k, StepClock& clock) {
  clock.read();
  ResultFiles& files = run.files;
  if (two_girders(run))
    section_forces_two(run.model, run.nodes, run.elements, run.properties, run.U, k, files.sec.text,
                       files.str.text);
  else
    section_forces_one(run.model, run.nodes, run.elements, run.properties, run.U, k, files.sec.text,
                       files.str.text);
  timed_line("Post-processing of Cross Sectional Forces Completed", clock, TimeScale::ASSEMBLY);
}

void write_forces(Run& run, int k) {
  const Nodes& nodes = run.nodes;
  const Elements& el = run.elements;
  const Properties& prop = run.properties;
  write_reactions(el, run.U, run.model.ngird, k, run.files.rxn.text);
  console_line("Post-processing of Support Reactions Completed");
  if (el.nibel > 0) {
    write_ibrace_forces(nodes, el, prop, run.U, k, run.files.ibr.text);
    console_line("Post-processing of Internal Brace Forces Completed");
  }
  if (el.nebel > 0) {
    write_ebrace_forces(nodes, el, prop, run.U, k, run.files.ebr.text);
    console_line("Post-processing of External Brace Forces Completed");
  }
  if (el.nlatel > 0) {
    write_lateral_forces(nodes, el, prop, run.U, k, run.files.axf.text);
    console_line("Post-processing of Top Lateral Forces Completed");
  }
}

void assemble_geometric(Run& run, int k, StepClock& clock) {
  const Nodes& nodes = run.nodes;
  const Elements& el = run.elements;
  const Properties& prop = run.properties;
  run.KG.clear();
  clock.read();
  assemble_shell_geometric(nodes, el, prop, k, run.U, run.model.ngird, run.pattern, run.KG);
  timed_line("Assembly of Shell Elements Completed", clock, TimeScale::ASSEMBLY);
  if (el.nibel > 0) {
    assemble_ibraces_geo(nodes, el, prop, run.U, run.pattern, run.KG);
    console_line("Assembly of Internal Braces Completed");
  }
  if (el.nebel > 0 && two_girders(run)) {
    assemble_ebraces_geo(nodes, el, prop, run.U, run.pattern, run.KG);
    console_line("Assembly of External Braces Completed");
  }
  if (el.nlatel > 0) {
    assemble_laterals_geo(nodes, el, prop, run.U, run.pattern, run.KG);
    console_line("Assembly of Top Laterals Completed");
  }
  if (el.nwsel > 0) {
    assemble_stiffeners_geo(nodes, el, prop, run.U, run.pattern, run.KG);
    console_line("Assembly of Web Stiffeners Completed");
  }
}

void check_buckling(Run& run, int k, StepClock& clock) {
  Model& m = run.model;
  numbered_line("Start of Buckling Check for Analysis ", k);
  assemble_geometric(run, k, clock);
  blank_line();
  clock.read();
  console_line("Start the Eigenproblem Solution");
  if (m.solver_type == 0) {
    m.solver_type = DEFAULT_SOLVER;
    m.tol = DEFAULT_TOL;
    m.sigma = DEFAULT_SIGMA;
  }
  buckling_solve(run.pattern, run.K, run.KG, {m.nev, m.solver_type, m.tol, m.sigma, k}, run.ncv,
                 run.eigval, run.eigvec);
  timed_line("Eigenproblem Solution Completed", clock, TimeScale::SOLUTION);
  blank_line();
  if (two_girders(run))
    write_shape_two(m, run.nodes, run.eigval, run.eigvec, k, run.files.csc.text);
  else
    write_shape(m, run.nodes, run.eigval, run.eigvec, k, run.files.csc.text);
  console_line("Post-processing of Buckled Shape Completed");
  // From here on the results are those at the first buckling load.
  for (double& u : run.U) u *= run.eigval(1);
}

void flush_results(ResultFiles& f) {
  for (ResultFile* file : {&f.rxn, &f.axf, &f.def, &f.sec, &f.str, &f.ibr, &f.ebr, &f.rot, &f.csc})
    if (file->file != nullptr) flush_file(*file);
}

}  // namespace

bool stiffness_holds(const Model& model, int k) {
  if (k <= 1) return false;
  for (int j = 1; j <= model.npour; ++j)
    if (model.pour_e(k, j) != model.pour_e(k - 1, j) ||
        model.pour_k(k, j) != model.pour_k(k - 1, j))
      return false;
  return true;
}

void run_analysis(Run& run, int k) {
  StepClock clock;
  blank_line();
  numbered_line("Start of Analysis Number ", k);
  // With the buckling check the loads of the stages add up.
  if (!run.model.buckle) run.F.clear();
  run.U.clear();
  if (stiffness_holds(run.model, k))
    numbered_line("Assembly Completed in Analysis ", k - 1);
  else
    assemble_stiffness(run, k, clock);
  form_loads(run, k);
  solve_stage(run, clock);
  const bool reported = report_not_finite(run, k, "after the solution");
  if (run.model.buckle) {
    check_buckling(run, k, clock);
    if (!reported) report_not_finite(run, k, "at the first buckling load");
    write_displacements(run, k);
    write_forces(run, k);
    write_sections(run, k, clock);
  } else {
    write_displacements(run, k);
    write_sections(run, k, clock);
    write_forces(run, k);
  }
  flush_results(run.files);
}

}  // namespace zelvo
