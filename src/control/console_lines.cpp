#include "control/console_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "base/platform.h"
#include "base/text.h"
#include "solution/loads.h"

namespace zelvo {

namespace {

// Times up to limit stand in width columns with decimals.
struct TimeFormat {
  float limit;
  int width, decimals;
};

constexpr float NO_LIMIT = 3.0e38f;
constexpr TimeFormat ASSEMBLY_FORMATS[] = {
    {10.0f, 3, 1}, {100.0f, 4, 1}, {1000.0f, 5, 1}, {NO_LIMIT, 6, 1}};
constexpr TimeFormat SOLUTION_FORMATS[] = {
    {1.0f, 5, 3}, {10.0f, 4, 2}, {100.0f, 4, 1}, {1000.0f, 5, 1}, {NO_LIMIT, 6, 1}};

}  // namespace

float StepClock::read() {
  const double now = process_cpu_seconds();
  const float step = static_cast<float>(now - last);
  last = now;
  return step;
}

std::string time_sentence(float seconds, TimeScale scale) {
  const TimeFormat* f = scale == TimeScale::ASSEMBLY ? ASSEMBLY_FORMATS : SOLUTION_FORMATS;
  while (seconds >= f->limit && f->limit < NO_LIMIT) ++f;
  std::string text = " in ";
  put_real(text, static_cast<double>(seconds), f->width, f->decimals);
  return text.append(" seconds");
}

void timed_line(std::string_view text, StepClock& clock, TimeScale scale) {
  console(std::string(" ").append(text));
  console(time_sentence(clock.read(), scale).append("\n"));
}

void numbered_line(std::string_view text, int k) {
  std::string line(" ");
  line.append(text);
  put_int(line, k, 1);
  console(line.append("\n"));
}

void blank_line() { console("\n"); }

void print_summary(const Model& model, int nnode, const Elements& elements) {
  console_line("Zelvo 2.0 FE Model has:");
  const std::string shape = model.curved() ? "  curved girder" : "  straight girder";
  console_line(model.ngird, model.ngird == 1 ? shape : shape + "s");
  console_line(nnode, "  nodes");
  console_line(elements.nshell, "  shell elements");
  console_line(elements.nibel, "  internal brace elements");
  console_line(elements.nebel, "  external brace elements");
  console_line(elements.nlatel, "  top lateral elements");
  console_line(elements.nwsel, "  web stiffener elements");
  console_line(elements.nstud, "  stud elements");
  console_line(elements.nsupel, "  support elements");
  console_line(elements.nel(), "  total elements");
}

namespace {

struct StepText {
  Step step;
  const char* text;
};
constexpr StepText STEP_TEXTS[] = {
    {Step::INTERNAL_BRACES, "Assembly of Internal Braces Completed"},
    {Step::EXTERNAL_BRACES, "Assembly of External Braces Completed"},
    {Step::TOP_LATERALS, "Assembly of Top Laterals Completed"},
    {Step::WEB_STIFFENERS, "Assembly of Web Stiffeners Completed"},
    {Step::SUPPORTS, "Assembly of Supports Completed"},
    {Step::STUDS, "Assembly of Stud Elements Completed"},
    {Step::SUPPORT_CONDITIONS, "Modification for Support Conditions Completed"},
    {Step::SOLVER_CREATION, "Solver Step 1 of 6 - Creation Completed"},
    {Step::SOLVER_DEFINITION, "Solver Step 2 of 6 - Definition Completed"},
    {Step::SOLVER_REORDERING, "Solver Step 3 of 6 - Reordering Completed"},
    {Step::SOLVER_FACTORIZATION, "Solver Step 4 of 6 - Factorization Completed"},
    {Step::SOLVER_SOLUTION, "Solver Step 5 of 6 - Solution Completed"},
    {Step::SOLVER_DELETION, "Solver Step 6 of 6 - Deletion Completed"},
};

void print_step(Step step, StepClock& clock) {
  switch (step) {
    case Step::SHELLS:
      return timed_line("Assembly of Shell Elements Completed", clock, TimeScale::ASSEMBLY);
    case Step::EIGEN_FACTORIZATION:
      return console(" ");  // the dots follow on this line
    case Step::EIGEN_SOLUTION:
      return console(".");
    default:
      for (const StepText& s : STEP_TEXTS)
        if (s.step == step) console_line(s.text);
  }
}

void print_arpack_error(const char* routine, int info, const char* end) {
  const std::string name(routine);
  blank_line();
  console_line(" Error with " + name + ", info = ", std::int64_t{info});
  console_line(" Check the documentation of " + name + end);
  blank_line();
}

// Tolerance that makes factors good to some 1e-7 and shapes to 1e-4.
constexpr double SHARP_TOL = 1.0e-6;

// The record of kind 1 that finds the lowest factors whatever they are.
std::string sure_record() { return formatted("solver \"1 %.1E\"", SHARP_TOL); }

// The record that would sharpen the factors: a sharp tolerance, with kind 2 about half the first
// factor where the input has chosen that kind and the factor is a load factor. None where the input
// is as sharp already.
std::string sharper_record(const EigenOptions& options, double first) {
  const bool load_factor = std::isfinite(first) && first > 0;
  if (options.solver_type == 2 && !load_factor) return ", sharper with " + sure_record();
  if (options.tol <= SHARP_TOL) return {};
  return options.solver_type == 2
             ? formatted(", sharper with solver \"2 %.1E\" and \"%.3g\"", SHARP_TOL, 0.5 * first)
             : ", sharper with " + sure_record();
}

void warn(int k, const std::string& text) {
  std::fprintf(stderr, "zelvo: analysis %d: %s\n", k, text.c_str());
}

// Why a check has ended without factors.
std::string failed_check(const EigenOptions& options, const EigenOutcome& o) {
  if (o.negative_terms > 0)
    return formatted(
               "the shift of %.6g makes %d diagonals of the matrix negative: give a lower one, "
               "or ",
               options.sigma, o.negative_terms) +
           sure_record();
  if (!o.iterated) return "the matrix has no factors: look for a mechanism";
  return formatted(
      "the iteration has failed (dsaupd %d): more modes than it has room for, or no "
      "stresses in the steel",
      o.dsaupd_info);
}

}  // namespace

Progress console_steps(StepClock& clock) {
  return [&clock](Step step) { print_step(step, clock); };
}

void print_loads(const Model& model, int k) {
  if (loads_end_couples(model))
    console_line("Force applied to top and bottom flange = ", end_couple_force(model, k));
  console_line("Formation of Load Vector Completed");
}

void print_solver_code(int code) {
  console_line("Solver Returned Error Code ", std::int64_t{code});
}

void print_outcome(const EigenOutcome& o) {
  if (o.negative_terms > 0) {
    console_line(std::int64_t{o.negative_terms}, " negative terms on diagonal");
    return console_line("Eigensolver did not find solution");
  }
  if (!o.iterated) return print_solver_code(o.solver_code);
  if (o.dsaupd_info < 0) return print_arpack_error("dsaupd", o.dsaupd_info, "");
  if (o.dseupd_info != 0) print_arpack_error("dseupd", o.dseupd_info, " ");
  if (o.dsaupd_info == ITERATION_LIMIT_REACHED) {
    blank_line();
    console_line(" Maximum number of iterations reached.");
    blank_line();
  }
  if (o.solver_code != 0) return print_solver_code(o.solver_code);
  blank_line();
}

void warn_of_solution(int k, const StageResults& results) {
  if (results.solver_code != 0)
    warn(k,
         "the structure cannot be solved and all its results are zero: a single support, a modulus "
         "of 0 or a folded section leave it free to move");
  if (!results.finite) warn_not_finite(k, "after the solution");
}

void warn_not_finite(int k, const char* when) {
  warn(k, std::string("the displacements are not finite ") + when);
}

void warn_of_files(int k, const std::string& files) {
  if (!files.empty()) warn(k, "values that are no numbers stand in " + files);
}

void warn_of_folded(int k, int points) {
  if (points > 0)
    warn(k, formatted("elements are folded over (determinant error at %d points) and the results "
                      "mean nothing: look at secdim and the thicknesses",
                      points));
}

void warn_of_check(int k, const EigenOptions& options, const EigenOutcome& o,
                   const Vector<double>& factors) {
  const double first = factors(1);
  if (!o.found)
    return warn(k, "no buckling factors, the results stand at " + formatted("%.6g", first) +
                       " times the load: " + failed_check(options, o));
  if (o.dseupd_info != 0)
    warn(k, formatted("the buckling factors could not be taken from the iteration (dseupd %d)",
                      o.dseupd_info));
  const auto between = [&](double f) { return f / options.sigma > 0 && f / options.sigma < 1; };
  const auto got = std::count_if(factors.begin(), factors.end(), between);
  if (got < o.below_shift)
    warn(k,
         formatted("%d buckling factors lie between 0 and the shift of %.6g, and %d of them were "
                   "found: the lowest with ",
                   o.below_shift, options.sigma, static_cast<int>(got)) +
             sure_record());
  if (first > 0) return;
  const bool any = std::any_of(factors.begin(), factors.end(), [](double f) { return f > 0; });
  if (options.solver_type == 2 || any)
    warn(k, formatted("the first buckling factor %.6g is none of these loads but of their reverse: "
                      "the lowest positive one with ",
                      first) +
                sure_record());
  else
    warn(k,
         formatted("the first buckling factor %.6g is negative: these loads buckle nothing, their "
                   "reverse does",
                   first));
}

void warn_of_loose_pairs(int k, const EigenOptions& options, const BucklingResults& results) {
  const EigenOutcome& o = results.outcome;
  if (o.found && o.nconv < options.nev)
    warn(k, formatted("only %d of %d buckling modes have converged", o.nconv, options.nev));
  const Vector<double>& factor = results.modes.eigval;
  const int measured = std::min<int>(o.nconv, static_cast<int>(results.quality.size()));
  for (int m = 1; m <= measured; ++m) {
    const PairQuality& q = results.quality(m);
    if (is_sharp(q, factor(m))) continue;
    std::fprintf(stderr,
                 "zelvo: analysis %d, mode %d: buckling factor %.6g is loose (relative residual "
                 "%.1e, factor of its shape %.6g)%s\n",
                 k, m, factor(m), q.residual, q.rayleigh,
                 sharper_record(options, factor(1)).c_str());
  }
}

}  // namespace zelvo
