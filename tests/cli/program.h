// Runs the program as a user does: in a directory of its own, with a standard input of some kind.
#pragma once
#include <string>

enum class StandardInput { END_OF_FILE, CLOSED, TERMINAL };

struct ProgramRun {
  int status = -1;  // exit status, or 128 + signal
  std::string out, err;
  bool waited_for_key = false;  // terminal only: the program was still there after its message
};

// A directory that is removed with all it holds.
class WorkDirectory {
 public:
  WorkDirectory();
  ~WorkDirectory();
  WorkDirectory(const WorkDirectory&) = delete;
  WorkDirectory& operator=(const WorkDirectory&) = delete;
  std::string path(const std::string& name) const { return path_ + "/" + name; }
  void write(const std::string& name, const std::string& content) const;
  std::string read(const std::string& name) const;
  bool has(const std::string& name) const;

 private:
  std::string path_;
};

// Runs the program in dir. With a terminal, a key is pressed (without Enter) once the console asks
// for one. stdout_path names where standard output goes, if not into the result.
ProgramRun run_program_in(const WorkDirectory& dir, StandardInput input,
                          const char* stdout_path = nullptr);
