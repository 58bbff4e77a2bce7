#include "cli/program.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

namespace {

std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

// In the child: streams, directory, program.
[[noreturn]] void become_program(const std::string& dir, StandardInput input, int terminal,
                                 const std::string& out, const std::string& err) {
  close(0);
  if (input == StandardInput::END_OF_FILE && open("/dev/null", O_RDONLY) != 0) _exit(126);
  if (input == StandardInput::TERMINAL) {
    setsid();
    if (dup2(terminal, 0) != 0) _exit(126);
  }
  dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
  dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
  for (int fd = 3; fd < 64; ++fd) close(fd);
  if (chdir(dir.c_str()) != 0) _exit(126);
  execl(ZELVO_PROGRAM, ZELVO_PROGRAM, static_cast<char*>(nullptr));
  _exit(127);
}

}  // namespace

WorkDirectory::WorkDirectory() {
  std::string pattern = (fs::temp_directory_path() / "zelvo-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
  path_ = pattern;
  fs::create_directory(path("run"));
}

WorkDirectory::~WorkDirectory() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void WorkDirectory::write(const std::string& name, const std::string& content) const {
  std::ofstream(path("run/" + name), std::ios::binary) << content;
}

std::string WorkDirectory::read(const std::string& name) const {
  return content_of(path("run/" + name));
}
bool WorkDirectory::has(const std::string& name) const { return fs::exists(path("run/" + name)); }

ProgramRun run_program_in(const WorkDirectory& dir, StandardInput input, const char* stdout_path) {
  int master = -1, slave = -1;
  if (input == StandardInput::TERMINAL && openpty(&master, &slave, nullptr, nullptr, nullptr) != 0)
    throw std::runtime_error("no pseudo-terminal");
  const std::string out = stdout_path != nullptr ? stdout_path : dir.path("stdout");
  const std::string err = dir.path("stderr");
  const pid_t child = fork();
  if (child == 0) become_program(dir.path("run"), input, slave, out, err);
  ProgramRun run;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (master >= 0 && !run.waited_for_key &&
        content_of(out).find("Press any key") != std::string::npos) {
      run.waited_for_key = waitpid(child, &status, WNOHANG) == 0;
      if (!run.waited_for_key) break;
      (void)!::write(master, "x", 1);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  if (master >= 0) close(master), close(slave);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  if (stdout_path == nullptr) run.out = content_of(out);
  run.err = content_of(err);
  return run;
}
