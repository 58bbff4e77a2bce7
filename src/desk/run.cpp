#include "desk/run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdarg>
#include <ctime>
#include <fstream>
#include <nlohmann/json.hpp>

#include "base/failures.h"
#include "construction/governing.h"
#include "control/driver.h"
#include "desk/scratch.h"
#include "exchange/describe.h"
#include "exchange/results_json.h"
#include "exchange/sha256.h"
#include "results/result_files.h"

namespace zelvo {

namespace {

constexpr const char* RESULTS = "results.json";
constexpr double LOST_LOAD = 1e-3;          // of the load, that reactions may miss
constexpr double SPAN_SHARE = 1.0 / 50;     // of the span, that no girder deflects by
constexpr double UNCONVERGED_LIMIT = 1e-6;  // residual of a solution

struct Interrupted {
  int signal;
};

void stop_if_interrupted() {
  if (Interrupts::signal() != 0) throw Interrupted{Interrupts::signal()};
}

std::string text_of(const char* format, ...) {
  char line[400];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  return line;
}

// What a run says while it goes on.
struct Monitor {
  const Job& job;
  std::FILE* out;
  bool terminal;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now(), stage = start;
  std::vector<std::string> failures{};
  int now = 1;
};

double seconds_since(std::chrono::steady_clock::time_point t) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - t).count();
}

void show_step(Monitor& m, Step step) {
  if (!m.terminal) return;
  const char* name = step == Step::SHELLS               ? "assembly"
                     : step == Step::LOADS              ? "solution"
                     : step == Step::SUPPORT_CONDITIONS ? "factorization"
                     : step == Step::SOLVER_SOLUTION    ? "results"
                                                        : nullptr;
  if (name == nullptr) return;
  std::fprintf(m.out, "\rstage %d/%d  %s  %.0f s\033[K", m.now, m.job.input.model.nanal, name,
               seconds_since(m.start));
  std::fflush(m.out);
}

// What the batch program would pass over in silence.
void judge_stage(const StageRecord& s, Monitor& m) {
  const StageChecks& c = s.checks;
  const auto fail = [&](const std::string& text) {
    m.failures.push_back("stage " + std::to_string(s.results.k) + ": " + text);
  };
  if (s.results.solver_code != 0)
    return fail(
        text_of("the structure cannot be solved (solver code %d): a single support, a "
                "modulus of 0 or a folded section leave it free to move",
                s.results.solver_code));
  if (!s.results.finite)
    return fail("displacements are no numbers: look for dimensions or moduli beyond all bounds");
  if (!(c.imbalance <= LOST_LOAD))
    fail(
        text_of("reactions of %.6g kip do not carry the load of %.6g kip: the structure is nearly "
                "free to move",
                c.reactions, c.load));
  if (!(c.residual <= UNCONVERGED_LIMIT))
    fail(text_of("the solution misses its equations by %.1e: the structure is nearly free to move",
                 c.residual));
  const LargestDeflection total = largest_deflection(m.job.input.model, s.total.motion.deflection);
  if (total.span > 0 && std::abs(total.value) > SPAN_SHARE * total.span)
    fail(
        text_of("a deflection of %.4g in at %.0f in is more than a fiftieth of the span: check "
                "units of loads, areas and moduli",
                total.value, total.position));
}

double least_reaction(const StageRecord& s) {
  double least = INFINITY;
  const Matrix<double>& r = s.total.vertical;
  for (int i = 1; i <= r.rows(); ++i)
    for (int j = 1; j <= r.cols(); ++j) least = std::min(least, r(i, j));
  return least;
}

// stage 4/7  pour C    8.1 s   sum R = load 566.5 ok   max defl -6.42 in (span/393) ...
void show_stage(const StageRecord& s, Monitor& m) {
  const int n = m.job.input.model.nanal, k = s.results.k;
  const StageChecks& c = s.checks;
  const LargestDeflection total = largest_deflection(m.job.input.model, s.total.motion.deflection);
  std::string line = text_of(
      "stage %d/%d  %-12s %6.1f s   sum R = load %.1f %s   max defl %.2f in", k, n,
      printable(stage_name(m.job.annotations, k)).substr(0, 100).c_str(), seconds_since(m.stage),
      c.load, c.imbalance <= LOST_LOAD ? "ok" : "NOT IN BALANCE", total.value);
  if (total.span > 0 && total.value != 0)
    line += text_of(" (span/%.0f)", total.span / std::abs(total.value));
  line += text_of("   least R %+.0f kip", least_reaction(s));
  if (s.history.quality.size() > 0) line += text_of("   factor %.3f", s.history.modes.eigval(1));
  if (k < n) line += text_of("   ~%.0f s left", seconds_since(m.start) / k * (n - k));
  std::fprintf(m.out, "%s%s%s\n", m.terminal ? "\r" : "", line.c_str(), m.terminal ? "\033[K" : "");
  std::fflush(m.out);
  m.stage = std::chrono::steady_clock::now();
  m.now = k + 1;
}

CheckChoice check_choice(const RunOptions& o, const Model& model) {
  switch (o.buckling) {
    case Buckling::NONE:
      return {};
    case Buckling::HISTORY:
      return {true, false, false};
    case Buckling::ALL:
      return {true, true, true};
    case Buckling::AS_INPUT:
      break;
  }
  return {model.buckle, model.buckle, model.buckle};
}

// With the check on, the batch program's files stand at the first buckling load of each stage: it
// writes them itself, in a process beside this one.
struct BatchProcess {
  pid_t pid = -1;
  ~BatchProcess() {
    if (pid > 0) kill(pid, SIGKILL), waitpid(pid, nullptr, 0);
  }
};

void start_batch(const Job& job, const std::filesystem::path& folder, BatchProcess& batch) {
  write_file(folder / INPUT_FILE, job.content);
  batch.pid = fork();
  if (batch.pid != 0) return;
  const int null = open("/dev/null", O_RDWR);
  dup2(null, STDIN_FILENO);
  dup2(null, STDERR_FILENO);
  const int console = open((folder / "console.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
  dup2(console, STDOUT_FILENO);
  if (chdir(folder.c_str()) != 0) _exit(EXIT_FILE);
  for (const int s : {SIGINT, SIGTERM, SIGHUP}) std::signal(s, SIG_DFL);
  const int status = run_program();
  std::fflush(stdout);
  _exit(status);
}

int finish_batch(BatchProcess& batch) {
  int status = 0;
  while (waitpid(batch.pid, &status, 0) < 0) stop_if_interrupted();
  batch.pid = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string content_of(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Fields of asterisks and values that are no numbers, in a text that is about to be handed out.
void judge_text(const std::string& name, const std::string& text, Monitor& m) {
  for (const char* bad : {"*", "NaN", "Infinity", "determinant error"}) {
    const std::size_t at = text.find(bad);
    if (at == text.npos) continue;
    const auto line =
        std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    m.failures.push_back(name + ", line " + std::to_string(line + 1) + ": '" + bad +
                         (bad[0] == 'd' ? "': elements of the section fold over one another"
                                        : "': a value does not fit its field"));
    return;
  }
}

std::string utc_now() {
  const std::time_t now = std::time(nullptr);
  char text[40];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&now));
  return text;
}

std::filesystem::path folder_of(const RunOptions& o) {
  if (!o.folder.empty()) return o.folder;
  const std::filesystem::path parent = std::filesystem::path(o.path).parent_path();
  return parent.empty() ? "." : parent;
}

// The pass over the stages, with the files of the stages in `files`.
History construct_job(const Job& job, const RunOptions& o, Monitor& monitor, ResultFiles& files) {
  const Model& model = job.input.model;
  HistoryOptions options = history_options(job, check_choice(o, model));
  options.stage_done = [&](const Structure& structure, const StageRecord& s, const Vector<double>&,
                           const Vector<double>&) {
    judge_stage(s, monitor);
    show_stage(s, monitor);
    if (!model.buckle) write_stage(structure, s.results, files);
    stop_if_interrupted();
  };
  return construct(model, options, [&](Step step) {
    stop_if_interrupted();
    show_step(monitor, step);
  });
}

// All files of the results under their names in the scratch folder; their names are returned.
std::vector<std::string> write_results(const Job& job, const History& history,
                                       const std::filesystem::path& scratch, ResultFiles& files,
                                       Monitor& monitor, Json& results) {
  std::vector<std::string> names;
  for (ResultFile* f : all_files(files)) {
    if (job.input.model.buckle)
      judge_text(f->name, content_of(scratch / f->name), monitor);
    else {
      judge_text(f->name, f->text, monitor);
      write_file(scratch / f->name, f->text);
    }
    names.push_back(f->name);
  }
  results = results_json(job, history, utc_now());
  write_file(scratch / RESULTS, json_text(results));
  names.emplace_back(RESULTS);
  return names;
}

void print_failures(const std::vector<std::string>& failures) {
  for (const std::string& f : failures) std::fprintf(stderr, "error: %s\n", f.c_str());
}

// The run itself, for a sound job.
int run_job(const Job& job, const RunOptions& o, std::FILE* shown, Capture& capture,
            Json& results) {
  Monitor monitor{job, shown, isatty(fileno(shown)) == 1};
  const std::filesystem::path folder = std::filesystem::absolute(folder_of(o));
  const Scratch scratch(folder);
  BatchProcess batch;
  if (job.input.model.buckle) start_batch(job, scratch.path, batch);
  ResultFiles files;
  const History history = construct_job(job, o, monitor, files);
  judge_text("console", capture.text(), monitor);
  if (batch.pid > 0)
    if (const int status = finish_batch(batch); status != 0)
      monitor.failures.push_back("the batch run beside ended with status " +
                                 std::to_string(status));
  const auto names = write_results(job, history, scratch.path, files, monitor, results);
  if (!monitor.failures.empty()) {
    print_failures(monitor.failures);
    std::fprintf(stderr, "The results of the run before, if any, are as they were.\n");
    return EXIT_ERRORS;
  }
  for (const std::string& name : names) move_file(scratch.path / name, folder / name);
  std::fprintf(shown, "%zu files in %s, %.1f s\n", names.size(), folder.c_str(),
               seconds_since(monitor.start));
  return job.input.notes.warnings.empty() ? EXIT_CLEAN : EXIT_WARNINGS;
}

int run_and_keep(const RunOptions& o, const Job& job, Json& results) {
  print_notes(job);
  if (!job.sound()) return EXIT_BAD_INPUT;
  if (o.strict && !job.input.notes.warnings.empty()) return EXIT_ERRORS;
  const Interrupts interrupts;
  Capture capture;
  // Where results alone are wanted, or JSON, progress does not belong on standard output.
  std::FILE* shown = o.json ? stderr : capture.shown;
  try {
    return run_job(job, o, shown, capture, results);
  } catch (const Interrupted& i) {
    std::fprintf(stderr,
                 "\ninterrupted: the results of the run before, if any, are as they were\n");
    return 128 + i.signal;
  }
}

}  // namespace

void print_notes(const Job& job) {
  const InputNotes& n = job.input.notes;
  if (job.outcome != ReadOutcome::COMPLETE)
    std::fprintf(stderr, "%s: error: %s\n", job.path.c_str(),
                 job.outcome == ReadOutcome::EMPTY ? "the file is empty"
                                                   : "the file ends before the keyword 'end'");
  for (const Note& f : n.faults)
    std::fprintf(stderr, "%s:%d: error: %s\n", job.path.c_str(), f.line, f.text.c_str());
  for (const Note& w : n.warnings)
    std::fprintf(stderr, "%s:%d: warning: %s\n", job.path.c_str(), w.line, w.text.c_str());
  if (n.faults_left_out > 0)
    std::fprintf(stderr, "%s: and %lld more\n", job.path.c_str(),
                 static_cast<long long>(n.faults_left_out));
}

int run_command(const RunOptions& o) {
  Json results;
  const int status = run_and_keep(o, read_job(o.path), results);
  if (o.json && (status == EXIT_CLEAN || status == EXIT_WARNINGS)) {
    const Json summary = {{"results", (folder_of(o) / RESULTS).string()},
                          {"governing", results["governing"]},
                          {"equilibrium", results["equilibrium"]},
                          {"lowest_factors", results["buckling"]["lowest"]},
                          {"limits", results["limits"]},
                          {"warnings", results["warnings"]}};
    std::fputs(json_text(summary).c_str(), stdout);
  }
  return status;
}

Json results_of(const RunOptions& o, int& status) {
  const Job job = read_job(o.path);
  const std::filesystem::path kept = folder_of(o) / RESULTS;
  status = EXIT_CLEAN;
  if (std::filesystem::exists(kept)) {
    Json results = Json::parse(content_of(kept), nullptr, false);
    if (!results.is_discarded() && results.value("format", "") == "zelvo-results" &&
        results["input"].value("sha256", "") == sha256(job.content))
      return results;
  }
  Json results;
  RunOptions quiet = o;
  quiet.json = true;
  status = run_and_keep(quiet, job, results);
  return results;
}

}  // namespace zelvo
