// Runs the program as a user does: in a directory of its own, with a standard input of some kind.
#pragma once
#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zelvo {

enum class StandardInput { END_OF_FILE, CLOSED, TERMINAL };

constexpr int MOST_POLLS = 30000;  // of 2 ms: a program that waits for ever is ended

inline std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// One run; the directory lives as long as it.
struct ProgramRun {
  std::string dir = (std::filesystem::temp_directory_path() / "zelvo-test-XXXXXX").string();
  int status = -1;  // exit status, or 128 + signal
  std::string out, err;
  bool waited_for_key = false;           // the program was still there when its message had come
  rlim_t address_space = RLIM_INFINITY;  // bytes that it may have

  ProgramRun() { dir = mkdtemp(dir.data()); }
  ProgramRun(const ProgramRun&) = delete;
  ~ProgramRun() { std::filesystem::remove_all(dir); }
  std::string path(const std::string& name) const { return dir + "/" + name; }
  void write_input(const std::string& text) const {
    std::ofstream(path("zvinp.txt"), std::ios::binary) << text;
  }
  // With a terminal, a key is pressed (without Enter) once the console asks for one.
  void start(StandardInput input, const char* stdout_path = nullptr);
};

inline void ProgramRun::start(StandardInput input, const char* stdout_path) {
  int master = -1, slave = -1;
  if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) return;
  const std::string out_path = stdout_path != nullptr ? stdout_path : path("stdout");
  const pid_t child = fork();
  if (child == 0) {
    setsid();
    dup2(slave, 0);
    if (input == StandardInput::END_OF_FILE) dup2(open("/dev/null", O_RDONLY), 0);
    dup2(open(out_path.c_str(), O_WRONLY | O_CREAT, 0600), 1);
    dup2(open(path("stderr").c_str(), O_WRONLY | O_CREAT, 0600), 2);
    for (int fd = input == StandardInput::CLOSED ? 0 : 3; fd < 64; fd = std::max(fd + 1, 3))
      close(fd);
    const rlimit limit{address_space, address_space};
    if (address_space != RLIM_INFINITY) setrlimit(RLIMIT_AS, &limit);
    if (chdir(dir.c_str()) == 0) execl(ZELVO_PROGRAM, ZELVO_PROGRAM, static_cast<char*>(nullptr));
    _exit(127);
  }
  int wait_status = 0;
  for (int polls = 0; waitpid(child, &wait_status, WNOHANG) == 0; ++polls) {
    if (polls == MOST_POLLS) kill(child, SIGKILL);
    if (input == StandardInput::TERMINAL && !waited_for_key &&
        content_of(out_path).find("Press any key") != std::string::npos) {
      waited_for_key = waitpid(child, &wait_status, WNOHANG) == 0;
      if (!waited_for_key || write(master, "x", 1) != 1) break;
    }
    usleep(2000);
  }
  close(master), close(slave);
  status = WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : 128 + WTERMSIG(wait_status);
  if (stdout_path == nullptr) out = content_of(out_path);
  err = content_of(path("stderr"));
}

}  // namespace zelvo
