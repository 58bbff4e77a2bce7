#include "exchange/job.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <utility>

#include "base/failures.h"
#include "control/input_check.h"
#include "control/input_doubts.h"

namespace zelvo {

namespace {

std::string read_file(const std::string& path) {
  std::error_code unknown;
  if (std::filesystem::exists(path, unknown) && !std::filesystem::is_regular_file(path, unknown))
    throw FileFailure{path, "not a regular file"};
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                             std::fclose);
  if (file == nullptr) throw FileFailure{path, std::strerror(errno)};
  std::string content;
  char block[1 << 16];
  std::size_t got;
  while ((got = std::fread(block, 1, sizeof block, file.get())) > 0) content.append(block, got);
  if (std::ferror(file.get())) throw FileFailure{path, std::strerror(errno)};
  return content;
}

}  // namespace

Job job_of(std::string path, std::string content) {
  Job job;
  job.path = std::move(path);
  job.content = std::move(content);
  job.outcome = read_input(job.content, job.input);
  if (job.outcome != ReadOutcome::COMPLETE) return job;
  check_input(job.input);
  job.annotations = read_annotations(job.content, job.input.model.nanal, job.input.notes);
  if (job.input.notes.faults.empty()) doubt_input(job.input);
  return job;
}

Job read_job(const std::string& path) { return job_of(path, read_file(path)); }

}  // namespace zelvo
