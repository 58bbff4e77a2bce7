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
#include "control/input_doubts.h"
#include "results/result_files.h"

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

// Whether there is an input. Throws FileFailure for what is none, and would be waited for.
bool input_exists() {
  std::error_code unknown;
  const std::filesystem::file_status input = std::filesystem::status(INPUT_FILE, unknown);
  switch (input.type()) {
    case std::filesystem::file_type::not_found:
      return false;
    case std::filesystem::file_type::none:
      throw FileFailure{INPUT_FILE, unknown.message()};
    case std::filesystem::file_type::regular:
    case std::filesystem::file_type::directory:  // opening it tells
      return true;
    default:
      throw FileFailure{INPUT_FILE, "is no regular file"};
  }
}

int run_in_working_directory() {
  if (!input_exists()) {
    input_failure("Input file not found. Press any key to exit.");
    return 0;
  }
  require_distinct_files(INPUT_FILE);
  std::FILE* input = std::fopen(INPUT_FILE, "rb");
  if (input == nullptr) throw FileFailure{INPUT_FILE, std::strerror(errno)};
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closes_input(input, std::fclose);
  ResultFiles files = open_result_files();
  int status = 0;
  Model input_model;
  if (!take_input(read_all(input), input_model, status)) return status;
  const Model model = std::move(input_model);
  Run run = generate_model(model);
  for (int k = 1; k <= model.nanal; ++k)
    warn_of_files(k, write_stage(run.structure, run_analysis(model, k, run), files));
  close_result_files(files);
  return 0;
}

}  // namespace

Run generate_model(const Model& model) {
  require_memory(model);
  Run run;
  run.structure = generate_structure(model);
  print_summary(model, run.structure.nodes.nnode, run.structure.elements);
  MatrixPattern pattern =
      build_pattern(run.structure.nodes.nnode, element_nodes(run.structure.elements));
  console_line("Connectivity Process Completed");
  allocate_arrays(model, std::move(pattern), run);
  return run;
}

int run_program() {
  keep_freed_memory();
  keep_standard_streams();
  take_file_limit_as_error();
  try {
    return run_in_working_directory();
  } catch (const FileFailure& f) {
    std::fprintf(stderr, "zelvo: %s: %s\n", f.name.c_str(), f.reason.c_str());
    return EXIT_FILE;
  } catch (const MemoryFailure& f) {
    std::fprintf(stderr, "zelvo: %s\n", shortage_text(f).c_str());
    return EXIT_NO_MEMORY;
  } catch (const std::bad_alloc&) {
    std::fputs("zelvo: no memory for reading the input or for a work list\n", stderr);
    return EXIT_NO_MEMORY;
  }
}

}  // namespace zelvo
