// An input file as the commands take it: read, checked, with its annotations.
#pragma once
#include <string>

#include "control/input.h"
#include "exchange/annotations.h"

namespace zelvo {

struct Job {
  std::string path;     // as given
  std::string content;  // the whole file
  ReadOutcome outcome = ReadOutcome::EMPTY;
  Input input;  // with the faults and warnings of reader, checks and doubts
  Annotations annotations;
  bool sound() const { return outcome == ReadOutcome::COMPLETE && input.notes.faults.empty(); }
};

// The job that a text is; path is what it is called.
Job job_of(std::string path, std::string content);

// Reads a file. What cannot be opened or read throws FileFailure.
Job read_job(const std::string& path);

}  // namespace zelvo
