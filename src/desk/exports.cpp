#include "desk/exports.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "base/failures.h"
#include "desk/judge.h"
#include "desk/scratch.h"
#include "exchange/csv.h"
#include "exchange/inp.h"
#include "exchange/results_json.h"
#include "exchange/vtu.h"
#include "exchange/xlsx.h"
#include "report/report.h"

namespace zelvo {

namespace {

using std::filesystem::path;

bool good(int status) { return status == EXIT_CLEAN || status == EXIT_WARNINGS; }

// The output as given, or a name in the folder of the results.
path beside_results(const ExportOptions& o, const std::string& name) {
  return (o.output.empty() ? folder_of(o.run) / name : path(o.output)).lexically_normal();
}

// Writes the results by write(results, file) in a scratch folder and moves the file into place; what
// is no plain file, such as /dev/stdout, is written to.
template <class Write>
int export_results(const ExportOptions& o, const char* name, Write write) {
  path output = beside_results(o, name);
  spare_input(o.run.path, output);
  int status = EXIT_CLEAN;
  const Json results = results_of(o.run, status);
  if (!good(status)) return status;
  if (exists(output)) output = canonical(output);
  if (exists(output) && !is_regular_file(output)) {
    write(results, output);
    return status;
  }
  const Scratch scratch(absolute(output).parent_path());
  const path draft = scratch.path / name;
  write(results, draft);
  move_file(draft, output);
  std::printf("%s\n", output.c_str());
  return status;
}

std::string stem_of(const std::string& file) { return path(file).stem().string(); }

// The files of a pass, in the order in which they come.
struct Fields {
  path folder;
  std::string stem;
  std::vector<std::pair<double, std::string>> stages, modes;
  std::vector<std::string> failures;

  void put(std::vector<std::pair<double, std::string>>& list, double time, const std::string& name,
           const std::string& content) {
    write_file(folder / name, content);
    list.emplace_back(time, name);
  }
};

void put_stage(const Model& model, const Structure& structure, const StageRecord& s,
               const Vector<double>& U, const Vector<double>& total, double factor, Fields& f) {
  const int k = s.results.k;
  const std::vector<std::string> bad = stage_failures(model, s);
  f.failures.insert(f.failures.end(), bad.begin(), bad.end());
  const std::string name = f.stem + "_stage_" + std::to_string(k);
  f.put(f.stages, k, name + ".vtu", stage_vtu(model, structure, s, U, total, factor));
  for (int m = 1; m <= s.history.quality.size(); ++m)
    f.put(f.modes, static_cast<double>(f.modes.size() + 1),
          name + "_mode_" + std::to_string(m) + ".vtu",
          mode_vtu(model, structure, k, &s.history.modes.eigvec(1, m), s.history.modes.eigval(m)));
  std::fprintf(stderr, "stage %d/%d\n", k, model.nanal);
}

void pass_for_fields(const Job& job, const CheckChoice& checks, Fields& fields) {
  const Model& model = job.input.model;
  HistoryOptions options = history_options(job, checks);
  options.stage_done = [&](const Structure& structure, const StageRecord& s,
                           const Vector<double>& U, const Vector<double>& total) {
    const auto i = static_cast<std::size_t>(s.results.k - 1);
    put_stage(model, structure, s, U, total, job.annotations.load_factor[i], fields);
    stop_if_interrupted();
  };
  construct(model, options, [](Step) { stop_if_interrupted(); });
  write_file(fields.folder / (fields.stem + ".pvd"), pvd(fields.stages));
  if (!fields.modes.empty())
    write_file(fields.folder / (fields.stem + "_modes.pvd"), pvd(fields.modes));
}

int write_fields(const Job& job, const ExportOptions& o) {
  const path folder = std::filesystem::absolute(beside_results(o, ""));
  std::filesystem::create_directories(folder);
  const Scratch scratch(folder);
  Fields fields{scratch.path, stem_of(o.run.path), {}, {}, {}};
  CheckChoice checks = check_choice(o.run, job.input.model);
  checks.batch_rule = checks.softest = false;
  {
    const Capture console;
    pass_for_fields(job, checks, fields);
  }
  for (const std::string& f : fields.failures) std::fprintf(stderr, "error: %s\n", f.c_str());
  if (!fields.failures.empty()) return EXIT_ERRORS;
  for (const auto& entry : std::filesystem::directory_iterator(scratch.path)) {
    spare_input(o.run.path, folder / entry.path().filename());
    move_file(entry.path(), folder / entry.path().filename());
  }
  std::printf("%s\n", (folder / (fields.stem + ".pvd")).c_str());
  return status_of(job);
}

}  // namespace

int report_command(const ExportOptions& o) {
  return export_results(o, "report.html", [&](const Json& results, const path& file) {
    write_file(file, report_html(results));
    if (o.picture.empty()) return;
    spare_input(o.run.path, o.picture);
    const std::string picture = buckled_svg(results);
    if (picture.empty()) throw FileFailure{o.picture, "no buckled shape has been found to draw"};
    write_file(o.picture, picture);
  });
}

int csv_command(const ExportOptions& o) {
  return export_results(o, "results.csv", [&](const Json& results, const path& file) {
    write_file(file, csv_table(view_results(results), o.strips));
  });
}

int xlsx_command(const ExportOptions& o) {
  return export_results(o, "results.xlsx", [](const Json& results, const path& file) {
    write_xlsx(view_results(results), file.string());
  });
}

int vtu_command(const ExportOptions& o) {
  const Job job = read_job(o.run.path);
  if (const int status = opening_status(job, o.run); !good(status)) return status;
  const Interrupts interrupts;
  try {
    return write_fields(job, o);
  } catch (const Interrupted& i) {
    std::fputs("\ninterrupted: no file has been written\n", stderr);
    return 128 + i.signal;
  }
}

int inp_command(const ExportOptions& o) {
  const Job job = read_job(o.run.path);
  if (const int status = opening_status(job, o.run); !good(status)) return status;
  const Model& model = job.input.model;
  if (!stage_exists(o.stage, model)) return EXIT_ERRORS;
  const path output =
      beside_results(o, stem_of(o.run.path) + "_stage_" + std::to_string(o.stage) + ".inp");
  spare_input(o.run.path, output);
  write_file(output, calculix_deck(model, generate_structure(model), o.stage));
  std::printf("%s\n", output.c_str());
  return status_of(job);
}

}  // namespace zelvo
