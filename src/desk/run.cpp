#include "desk/run.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <ctime>
#include <fstream>
#include <nlohmann/json.hpp>

#include "base/failures.h"
#include "base/text.h"
#include "construction/governing.h"
#include "control/driver.h"
#include "desk/judge.h"
#include "desk/scratch.h"
#include "exchange/describe.h"
#include "exchange/results_json.h"
#include "exchange/sha256.h"
#include "results/result_files.h"

namespace zelvo {

namespace {

constexpr const char* RESULTS = "results.json";

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

void note_failures(const std::vector<std::string>& failures, Monitor& m) {
  m.failures.insert(m.failures.end(), failures.begin(), failures.end());
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
  std::string line = formatted(
      "stage %d/%d  %-12s %6.1f s   sum R = load %.1f %s   max defl %.2f in", k, n,
      printable(stage_name(m.job.annotations, k)).substr(0, 100).c_str(), seconds_since(m.stage),
      c.load, c.imbalance <= LOST_LOAD ? "ok" : "NOT IN BALANCE", total.value);
  if (total.span > 0 && total.value != 0)
    line += formatted(" (span/%.0f)", total.span / std::abs(total.value));
  line += formatted("   least R %+.0f kip", least_reaction(s));
  if (s.history.quality.size() > 0) line += formatted("   factor %.3f", s.history.modes.eigval(1));
  if (k < n) line += formatted("   ~%.0f s left", seconds_since(m.start) / k * (n - k));
  std::fprintf(m.out, "%s%s%s\n", m.terminal ? "\r" : "", line.c_str(), m.terminal ? "\033[K" : "");
  std::fflush(m.out);
  m.stage = std::chrono::steady_clock::now();
  m.now = k + 1;
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
  default_signals();
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

std::string utc_now() {
  const std::time_t now = std::time(nullptr);
  char text[40];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&now));
  return text;
}

// The pass over the stages, with the files of the stages in `files`.
History construct_job(const Job& job, const RunOptions& o, Monitor& monitor, ResultFiles& files) {
  const Model& model = job.input.model;
  HistoryOptions options = history_options(job, check_choice(o, model));
  options.stage_done = [&](const Structure& structure, const StageRecord& s, const Vector<double>&,
                           const Vector<double>&) {
    note_failures(stage_failures(model, s), monitor);
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
      note_failures(text_failures(f->name, content_of(scratch / f->name)), monitor);
    else {
      note_failures(text_failures(f->name, f->text), monitor);
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
  const std::filesystem::path folder = std::filesystem::absolute(folder_of(o)).lexically_normal();
  ResultFiles files;
  std::filesystem::create_directories(folder);
  spare_input(o.path, folder / RESULTS);
  for (const ResultFile* f : all_files(files)) spare_input(o.path, folder / f->name);
  const Scratch scratch(folder);
  BatchProcess batch;
  if (job.input.model.buckle) start_batch(job, scratch.path, batch);
  const History history = construct_job(job, o, monitor, files);
  note_failures(text_failures("console", capture.text()), monitor);
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
  return status_of(job);
}

// The run of a job that can be analysed.
int run_and_keep(const RunOptions& o, const Job& job, Json& results) {
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

// What lies in the file, if it is the results of this very input by this program; else null.
Json kept_results(const Job& job, const std::filesystem::path& path) {
  if (!std::filesystem::exists(path)) return nullptr;
  Json results = Json::parse(content_of(path), nullptr, false);
  if (!results.is_object() || !results.contains("input") || !results["input"].is_object())
    return nullptr;
  const bool ours = results.value("format", Json()) == "zelvo-results" &&
                    results.value("program", Json()) == "zelvo-desk " ZELVO_VERSION &&
                    results["input"].value("sha256", Json()) == sha256(job.content);
  return ours ? results : Json();
}

}  // namespace

CheckChoice check_choice(const RunOptions& o, const Model& model) {
  const bool as_input = o.buckling == Buckling::AS_INPUT && model.buckle;
  const bool all = o.buckling == Buckling::ALL || as_input;
  return {all || o.buckling == Buckling::HISTORY, all, all, o.checked};
}

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
  for (const std::string& text : left_out(n))
    std::fprintf(stderr, "%s: %s\n", job.path.c_str(), text.c_str());
}

int status_of(const Job& job) {
  return job.input.notes.warnings.empty() ? EXIT_CLEAN : EXIT_WARNINGS;
}

bool stage_exists(int stage, const Model& model) {
  const bool exists = stage >= 1 && stage <= model.nanal;
  if (!exists)
    std::fprintf(stderr, "zelvo-desk: there is no stage %d: the input has %d\n", stage,
                 model.nanal);
  return exists;
}

int opening_status(const Job& job, const RunOptions& o) {
  print_notes(job);
  if (!job.sound()) return EXIT_BAD_INPUT;
  if (job.input.model.nanal < 1) {
    std::fprintf(stderr, "%s: error: there are no stages, so there are no results\n",
                 job.path.c_str());
    return EXIT_ERRORS;
  }
  for (const int k : o.checked)
    if (!stage_exists(k, job.input.model)) return EXIT_ERRORS;
  const int status = status_of(job);
  return o.strict && status == EXIT_WARNINGS ? EXIT_ERRORS : status;
}

int run_command(const RunOptions& o) {
  Json results;
  const Job job = read_job(o.path);
  int status = opening_status(job, o);
  if (status <= EXIT_WARNINGS) status = run_and_keep(o, job, results);
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

std::filesystem::path folder_of(const RunOptions& o) {
  if (!o.folder.empty()) return o.folder;
  const std::filesystem::path parent = std::filesystem::path(o.path).parent_path();
  return parent.empty() ? std::filesystem::path(".") : parent;
}

Json results_of(const RunOptions& o, int& status) {
  const Job job = read_job(o.path);
  status = opening_status(job, o);
  if (status > EXIT_WARNINGS) return nullptr;
  Json results = kept_results(job, folder_of(o) / RESULTS);
  if (!results.is_null()) return results;
  RunOptions quiet = o;
  quiet.json = true;
  status = run_and_keep(quiet, job, results);
  return results;
}

}  // namespace zelvo
