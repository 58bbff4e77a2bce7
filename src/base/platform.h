// What differs between operating systems: process time, a key press, signals, the memory allocator.
#pragma once
#include <cstddef>
#ifndef _WIN32
#include <csignal>
#endif

namespace zelvo {

// CPU time of the process, user plus system, in seconds.
double process_cpu_seconds();

// Reads one key. A terminal is read without waiting for Enter; a pipe, a file or a closed standard
// input never blocks, nor does a terminal that belongs to another job.
void wait_for_key();

// Gives a closed standard stream the null device, so that no file opened later takes its place and
// receives the lines of the console.
void keep_standard_streams();

// A file that grows beyond the limit of the process is an error of the write then, not the end.
void take_file_limit_as_error();

// Keeps freed memory in the process: a page given back to the system costs its first touch again.
void keep_freed_memory();

// Whether the process can still map so many bytes for itself, which nothing is done with.
bool address_space_left(std::size_t bytes);

// Bytes that a process here can have at most: memory and swap of the machine, or less where the
// limit of its address space is lower.
double memory_limit();

// Holds back the signal that asks the process to end (SIGTERM); it arrives when this goes.
class HeldTermination {
 public:
  HeldTermination();
  ~HeldTermination();
  HeldTermination(const HeldTermination&) = delete;
  HeldTermination& operator=(const HeldTermination&) = delete;

 private:
#ifndef _WIN32
  sigset_t before;
#endif
};

}  // namespace zelvo
