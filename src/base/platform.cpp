#include "base/platform.h"

#ifdef _WIN32

#include <conio.h>
#include <io.h>
#include <windows.h>

namespace zelvo {

double process_cpu_seconds() {
  FILETIME created, ended, kernel, user;
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  const auto seconds = [](const FILETIME& t) {
    const auto ticks = (static_cast<unsigned long long>(t.dwHighDateTime) << 32) | t.dwLowDateTime;
    return static_cast<double>(ticks) * 1.0e-7;  // ticks of 100 ns
  };
  return seconds(kernel) + seconds(user);
}

void wait_for_key() {
  if (_isatty(0)) (void)_getch();
}

void keep_standard_streams() {}

void take_file_limit_as_error() {}

void keep_freed_memory() {}

bool address_space_left(std::size_t bytes) {
  void* const block = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (block != nullptr) VirtualFree(block, 0, MEM_RELEASE);
  return block != nullptr;
}

double memory_limit() {
  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof memory;
  return GlobalMemoryStatusEx(&memory) ? static_cast<double>(memory.ullTotalPageFile) : 1.0e300;
}

HeldTermination::HeldTermination() = default;
HeldTermination::~HeldTermination() = default;

}  // namespace zelvo

#else

#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/sysinfo.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>

namespace zelvo {

double process_cpu_seconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + 1.0e-6 * static_cast<double>(t.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void wait_for_key() {
  termios kept{};
  if (!isatty(STDIN_FILENO) || tcgetattr(STDIN_FILENO, &kept) != 0) return;
  // Changing the settings of a terminal from the background would stop the process.
  const pid_t foreground = tcgetpgrp(STDIN_FILENO);
  if (foreground != -1 && foreground != getpgrp()) return;
  termios raw = kept;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  raw.c_cc[VMIN] = 1;
  raw.c_cc[VTIME] = 0;
  tcsetattr(STDIN_FILENO, TCSANOW, &raw);
  char key;
  [[maybe_unused]] const ssize_t got = read(STDIN_FILENO, &key, 1);
  tcsetattr(STDIN_FILENO, TCSANOW, &kept);
}

void keep_standard_streams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
    if (fcntl(stream, F_GETFD) == -1) (void)open("/dev/null", O_RDWR);  // takes the lowest free one
}

void take_file_limit_as_error() { signal(SIGXFSZ, SIG_IGN); }

void keep_freed_memory() {
#ifdef __GLIBC__
  mallopt(M_MMAP_MAX, 0);         // large blocks too come from the heap,
  mallopt(M_TRIM_THRESHOLD, -1);  // and its free end is never given back
#endif
}

bool address_space_left(std::size_t bytes) {
  void* const block =
      mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return block != MAP_FAILED && munmap(block, bytes) == 0;
}

double memory_limit() {
  struct sysinfo machine {};
  rlimit space{};
  double limit = 1.0e300;
  if (sysinfo(&machine) == 0)
    limit = (static_cast<double>(machine.totalram) + static_cast<double>(machine.totalswap)) *
            machine.mem_unit;
  if (getrlimit(RLIMIT_AS, &space) == 0 && space.rlim_cur != RLIM_INFINITY)
    limit = std::min(limit, static_cast<double>(space.rlim_cur));
  return limit;
}

HeldTermination::HeldTermination() {
  sigset_t termination;
  sigemptyset(&termination);
  sigaddset(&termination, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &termination, &before);
}

HeldTermination::~HeldTermination() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }

}  // namespace zelvo

#endif
