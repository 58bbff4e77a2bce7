#include "desk/check.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "base/failures.h"
#include "base/platform.h"
#include "base/text.h"
#include "desk/draw.h"
#include "desk/raw_lines.h"
#include "desk/rules.h"
#include "desk/run.h"
#include "desk/scratch.h"
#include "exchange/json.h"

namespace zelvo {

namespace {

std::string count(int n, const char* what) {
  std::string text = std::to_string(n);
  text.append(" ").append(what);
  if (n != 1) text.push_back('s');
  return text;
}

std::string check_text(const Job& job, const CheckResult& r) {
  const bool whole = job.outcome == ReadOutcome::COMPLETE;
  std::string text = whole ? understood_text(job, r.understood) : "";
  for (const Finding& f : r.findings) text += finding_lines(job.path, f);
  if (!whole) return text;
  for (const std::string& more : left_out(job.input.notes)) text += job.path + ": " + more + "\n";
  text += count(r.errors, "error") + ", " + count(r.warnings, "warning") + ".";
  if (r.understood.effort.equations > 0) text += " " + effort_text(r.understood.effort);
  return text + "\n";
}

Json value_or_null(bool known, double value) { return known ? Json(value) : Json(); }

Json bridge_json(const Understood& u) {
  Json spans = Json::array();
  for (const Span& s : u.spans) spans.push_back(s.end - s.begin);
  return {{"title", u.title},
          {"girders", value_or_null(u.girders > 0, u.girders)},
          {"length_in", value_or_null(u.length > 0, u.length)},
          {"radius_in", value_or_null(u.radius > 0, u.radius)},
          {"spans_in", spans},
          {"steel_plates_kip", value_or_null(u.weighed, u.plates)},
          {"bracing_kip", value_or_null(u.weighed, u.bracing.total())}};
}

Json stages_json(const Understood& u) {
  Json stages = Json::array();
  for (const StageSummary& s : u.stages)
    stages.push_back({{"number", stages.size() + 1},
                      {"name", s.name},
                      {"loaded", s.loaded},
                      {"kip", s.kips},
                      {"kip_per_ft2", s.per_area},
                      {"soft", s.soft},
                      {"hard", s.hard}});
  return stages;
}

Json findings_json(const std::vector<Finding>& findings) {
  Json list = Json::array();
  for (const Finding& f : findings)
    list.push_back({{"line", f.line},
                    {"severity", f.error ? "error" : "warning"},
                    {"keyword", f.keyword == NO_KEYWORD ? Json() : Json(KEYWORD_NAMES[f.keyword])},
                    {"rows", f.rows},
                    {"text", finding_text(f)},
                    {"consequences", f.consequences}});
  return list;
}

Json moved_json(const Input& in) {
  Json list = Json::array();
  for (const MovedValue& v : in.moved)
    list.push_back({{"line", v.line},
                    {"keyword", KEYWORD_NAMES[v.keyword]},
                    {"row", v.row},
                    {"name", v.name},
                    {"typed", v.typed},
                    {"cut", v.cut}});
  return list;
}

std::string check_json(const Job& job, const CheckResult& r) {
  const Effort& e = r.understood.effort;
  const bool sound = e.equations > 0;
  const Json all = {{"format", "zelvo-check"},
                    {"version", 1},
                    {"file", job.path},
                    {"bridge", bridge_json(r.understood)},
                    {"stages", stages_json(r.understood)},
                    {"findings", findings_json(r.findings)},
                    {"moved", moved_json(job.input)},
                    {"errors", r.errors},
                    {"warnings", r.warnings},
                    {"equations", sound ? Json(e.equations) : Json()},
                    {"memory_gb", value_or_null(sound, e.memory_gb)},
                    {"seconds_per_stage", value_or_null(sound, e.stage_seconds)}};
  // Bytes of the file that are no UTF-8 are replaced.
  return all.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

Understood apply_rules(Checked& c) {
  check_lines(c);
  Understood u = understand(c);
  if (u.effort.equations > 0 && !u.weighed)
    warn(c, LGBR, 0, formatted("the analysis needs about %.3g GB of memory", u.effort.memory_gb),
         "", formatted("this machine has %.3g", 1e-9 * memory_limit()));
  section_rules(c);
  bracing_rules(c);
  pour_rules(c, u.weighed && u.length > 0 ? 12 * u.bracing.total() / u.length : 0);
  return u;
}

void write_drawing(const CheckOptions& options, const Model& model) {
  spare_input(options.path, options.draw);
  write_file(options.draw, draw_bridge(model));
}

}  // namespace

CheckResult check_job(const Job& job) {
  Checked c{job};
  CheckResult r;
  take_notes(c);
  if (job.outcome == ReadOutcome::COMPLETE) r.understood = apply_rules(c);
  if (job.outcome == ReadOutcome::EMPTY)
    c.findings = {{0, true, NO_KEYWORD, {}, "the file is empty", {}, {}, {}}};
  settle(c);
  for (const Finding& f : c.findings) ++(f.error ? r.errors : r.warnings);
  r.findings = std::move(c.findings);
  return r;
}

int check_command(const CheckOptions& options) {
  const Job job = read_job(options.path);
  const CheckResult r = check_job(job);
  console(options.json ? check_json(job, r) : check_text(job, r));
  if (job.outcome != ReadOutcome::COMPLETE) return EXIT_BAD_INPUT;
  if (!options.draw.empty() && job.sound()) write_drawing(options, job.input.model);
  if (r.errors > 0 || (options.strict && r.warnings > 0)) return EXIT_ERRORS;
  return r.warnings > 0 ? EXIT_WARNINGS : EXIT_CLEAN;
}

}  // namespace zelvo
