#include "control/driver.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <utility>

#include "base/failures.h"
#include "base/platform.h"
#include "control/console_lines.h"
#include "control/input_check.h"

namespace zelvo {

namespace {

// Whole content of an open file.
std::string read_all(std::FILE* file) {
  std::string content;
  char block[1 << 16];
  std::size_t got;
  while ((got = std::fread(block, 1, sizeof block, file)) > 0) content.append(block, got);
  if (std::ferror(file)) throw FileFailure{INPUT_FILE, std::strerror(errno)};
  return content;
}

ResultFiles open_result_files() {
  ResultFiles f;
  f.rxn = open_file("rxn0987.txt");
  f.axf = open_file("axf0987.txt");
  f.def = open_file("def0987.txt");
  f.sec = open_file("sec0987.txt");
  f.str = open_file("str0987.txt");
  f.ibr = open_file("ibr0987.txt");
  f.ebr = open_file("ebr0987.txt");
  f.rot = open_file("rot0987.txt");
  f.csc = open_file("csc0987.txt");
  return f;
}

void close_result_files(ResultFiles& f) {
  for (ResultFile* file : {&f.rxn, &f.axf, &f.def, &f.sec, &f.str, &f.ibr, &f.ebr, &f.rot, &f.csc})
    close_file(*file);
}

void input_failure(const char* message) {
  console_line(message);
  wait_for_key();
}

// Reads and checks the model. False if the run ends here, with the exit status in status.
bool take_input(std::string content, Model& model, int& status) {
  const auto in = std::make_unique<Input>();
  const ReadOutcome outcome = read_input(std::move(content), *in);
  if (outcome == ReadOutcome::COMPLETE) {
    check_input(*in);
    if (in->notes.faults.empty()) doubt_input(*in);
  }
  std::fputs(note_lines(in->notes).c_str(), stderr);
  status = 0;
  switch (outcome) {
    case ReadOutcome::EMPTY:
      input_failure("Input file empty. Press any key to exit.");
      return false;
    case ReadOutcome::INPUT_ERROR:
      input_failure("Input file error. Press any key to exit.");
      return false;
    case ReadOutcome::COMPLETE:
      break;
  }
  if (!in->notes.faults.empty()) status = EXIT_BAD_INPUT;
  model = std::move(in->model);
  return status == 0;
}

int run_in_working_directory() {
  std::error_code unknown;
  if (!std::filesystem::exists(INPUT_FILE, unknown)) {
    input_failure("Input file not found. Press any key to exit.");
    return 0;
  }
  std::FILE* input = std::fopen(INPUT_FILE, "rb");
  if (input == nullptr) throw FileFailure{INPUT_FILE, std::strerror(errno)};
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closes_input(input, std::fclose);
  Run run;
  run.files = open_result_files();
  int status = 0;
  if (!take_input(read_all(input), run.model, status)) return status;
  generate_model(run);
  for (int k = 1; k <= run.model.nanal; ++k) run_analysis(run, k);
  close_result_files(run.files);
  return 0;
}

}  // namespace

void generate_model(Run& run) {
  const Model& m = run.model;
  if (m.ngird == 2)
    generate_nodes_two(m, run.nodes);
  else
    generate_nodes_one(m, run.nodes);
  run.elements = generate_elements(m);
  run.properties = generate_properties(m, run.elements);
  print_summary(m, run.nodes.nnode, run.elements);
  run.pattern = build_pattern(run.nodes.nnode, run.elements);
  run.K = Vector<double>(run.pattern.nnz, "the stiffness matrix");
  run.F = Vector<double>(run.pattern.n, "the load vector");
  run.U = Vector<double>(run.pattern.n, "the displacements");
  if (!m.buckle) return;
  run.KG = Vector<double>(run.pattern.nnz, "the geometric stiffness matrix");
  run.eigvec = Matrix<double>(run.pattern.n, m.nev, "the buckling modes");
  run.eigval = Vector<double>(m.nev, "the buckling factors");
}

int run_program() {
  keep_freed_memory();
  keep_standard_streams();
  try {
    return run_in_working_directory();
  } catch (const FileFailure& f) {
    std::fprintf(stderr, "zelvo: %s: %s\n", f.name.c_str(), f.reason.c_str());
    return EXIT_FILE;
  } catch (const MemoryFailure& f) {
    std::fprintf(stderr, "zelvo: no memory for %s: %.3g MB asked for\n", f.what, f.bytes * 1.0e-6);
    return EXIT_NO_MEMORY;
  } catch (const std::bad_alloc&) {
    std::fputs("zelvo: no memory for reading the input or for a work list\n", stderr);
    return EXIT_NO_MEMORY;
  }
}

}  // namespace zelvo
