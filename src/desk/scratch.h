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
// destruction interrupt, termination and hangup only set it.
struct Interrupts {
  Interrupts();
  ~Interrupts();
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;
  static int signal();
};

}  // namespace zelvo
