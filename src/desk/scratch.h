// What a run needs of the system: a scratch folder, signals, the standard output of other code.
#pragma once
#include <cstdio>
#include <filesystem>
#include <string>

namespace zelvo {

// A new folder inside another; it goes with all it holds at the end of its life.
struct Scratch {
  explicit Scratch(const std::filesystem::path& inside);
  ~Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  std::filesystem::path path;
};

// Writes a file whole. What the disk does not take throws FileFailure.
void write_file(const std::filesystem::path& path, const std::string& content);
// Moves a file over another of the same file system in one step.
void move_file(const std::filesystem::path& from, const std::filesystem::path& to);

// Throws FileFailure where the output is the input itself.
void spare_input(const std::filesystem::path& input, const std::filesystem::path& output);

// Takes over standard output: what the analysis prints is kept, and `shown` is what it was.
struct Capture {
  Capture();
  ~Capture();
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;
  std::string text();  // what has been printed
  std::FILE* shown = nullptr;
  std::FILE* kept = nullptr;
  int saved = -1;
};

// A signal that asked the program to end; 0 while there was none. Between construction and
// destruction interrupt, termination and hangup only set it, unless the program that started this
// one had them ignored.
struct Interrupts {
  Interrupts();
  ~Interrupts();
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;
  static int signal();
};

// Those signals end the program again, but for ignored ones.
void default_signals();

// Thrown out of a pass when a signal has asked for it.
struct Interrupted {
  int signal;
};
void stop_if_interrupted();

}  // namespace zelvo
