#include "desk/judge.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"

namespace zelvo {

namespace {

constexpr double SPAN_SHARE = 1.0 / 50;     // of the span, that no girder deflects by
constexpr double UNCONVERGED_LIMIT = 1e-6;  // residual of a solution

}  // namespace

std::vector<std::string> stage_failures(const Model& model, const StageRecord& stage) {
  const StageChecks& c = stage.checks;
  std::vector<std::string> failures;
  const auto fail = [&](const std::string& text) {
    failures.push_back("stage " + std::to_string(stage.results.k) + ": " + text);
  };
  if (stage.results.solver_code != 0) {
    fail(
        formatted("the structure cannot be solved (solver code %d): a single support, a "
                  "modulus of 0 or a folded section leave it free to move",
                  stage.results.solver_code));
    return failures;
  }
  if (!stage.results.finite) {
    fail("displacements are no numbers: look for dimensions or moduli beyond all bounds");
    return failures;
  }
  if (!(c.imbalance <= LOST_LOAD))
    fail(formatted(
        "reactions of %.6g kip do not carry the load of %.6g kip: the structure is nearly "
        "free to move",
        c.reactions, c.load));
  if (!(c.residual <= UNCONVERGED_LIMIT))
    fail(
        formatted("the solution misses its equations by %.1e: the structure is nearly free to move",
                  c.residual));
  const LargestDeflection total = largest_deflection(model, stage.total.motion.deflection);
  if (total.span > 0 && std::abs(total.value) > SPAN_SHARE * total.span)
    fail(
        formatted("a deflection of %.4g in at %.0f in is more than a fiftieth of the span: check "
                  "units of loads, areas and moduli",
                  total.value, total.position));
  return failures;
}

std::vector<std::string> text_failures(const std::string& name, const std::string& text) {
  for (const char* bad : {"*", "NaN", "Infinity", "determinant error"}) {
    const std::size_t at = text.find(bad);
    if (at == text.npos) continue;
    const auto line =
        std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    return {name + ", line " + std::to_string(line + 1) + ": '" + bad +
            (bad[0] == 'd' ? "': elements of the section fold over one another"
                           : "': a value does not fit its field")};
  }
  return {};
}

}  // namespace zelvo
