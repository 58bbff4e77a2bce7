// Facts of the world that end a run: memory that cannot be had, a file that cannot be written.
// They are thrown where they are met and turned into one line and an exit status by the program.
#pragma once
#include <cstddef>
#include <string>

namespace zelvo {

constexpr int EXIT_BAD_INPUT = 65;  // EX_DATAERR of sysexits.h
constexpr int EXIT_NO_MEMORY = 71;  // EX_OSERR
constexpr int EXIT_FILE = 74;       // EX_IOERR

// The system did not give these bytes; what names their use ("stiffness matrix").
struct MemoryFailure {
  double bytes;
  const char* what;
};

// "no memory for the factor: 134 MB asked for"
std::string shortage_text(const MemoryFailure& f);

// A file could not be opened or written.
struct FileFailure {
  std::string name;
  std::string reason;
};

}  // namespace zelvo
