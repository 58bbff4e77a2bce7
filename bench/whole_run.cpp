// Runs the program on an example and prints where its CPU time goes, by the lines of its console:
//   whole_run program folder-of-the-example [rounds]
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

// The time up to a line goes to the first kind whose text the line contains.
const struct {
  const char *name, *text;
} KINDS[] = {
    {"reading, mesh, matrix pattern", "Connectivity"},
    {"assembly of the stiffness", "Assembly"},
    {"supports and loads", "Formation"},
    {"supports and loads", "Modification"},
    {"ordering and analysis", "Step 3"},
    {"factorization", "Step 4"},
    {"solve", "Step 5"},
    {"section forces, stresses", "Cross Sectional Forces"},
    {"displacements, reactions, brace forces", "Post-processing"},
    {"the rest", ""},
};
constexpr std::size_t COUNT = std::size(KINDS);

struct Profile {
  std::vector<double> seconds = std::vector<double>(COUNT);
  double total = 0, memory = 0;  // CPU seconds; MB
};

// CPU time of a running process, s. Linux counts it in nanoseconds.
double cpu_of(pid_t pid) {
  double ns = 0;
  std::ifstream("/proc/" + std::to_string(pid) + "/schedstat") >> ns;
  return ns * 1e-9;
}

void attribute(const std::string& line, double seconds, Profile& p) {
  std::size_t kind = 0;
  while (line.find(KINDS[kind].text) == line.npos) ++kind;
  p.seconds[kind] += seconds;
}

Profile run(const char* program, const std::filesystem::path& folder) {
  int ends[2];
  if (pipe(ends) != 0) std::exit(1);
  const pid_t pid = fork();
  if (pid == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    std::filesystem::current_path(folder);
    execl(program, program, static_cast<char*>(nullptr));
    _exit(127);
  }
  close(ends[1]);
  Profile p;
  double last = 0;
  std::string line;
  for (char c; read(ends[0], &c, 1) == 1;) {
    line.push_back(c);
    if (c != '\n') continue;
    const double now = cpu_of(pid);
    attribute(line, now - last, p);
    last = now;
    line.clear();
  }
  close(ends[0]);
  int status = 0;
  rusage usage{};
  wait4(pid, &status, 0, &usage);
  if (status != 0) {
    std::fprintf(stderr, "whole_run: %s ended with status %d\n", program, WEXITSTATUS(status));
    std::exit(1);
  }
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
  };
  p.total = seconds(usage.ru_utime) + seconds(usage.ru_stime);
  p.memory = static_cast<double>(usage.ru_maxrss) / 1024.0;
  attribute("", p.total - last, p);
  return p;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("whole_run program folder-of-the-example [rounds]\n", stderr);
    return 2;
  }
  const auto program = std::filesystem::absolute(argv[1]);
  const int rounds = argc > 3 ? std::max(1, std::atoi(argv[3])) : 5;
  const auto folder =
      std::filesystem::temp_directory_path() / ("zelvo_whole_run_" + std::to_string(getpid()));
  std::filesystem::create_directory(folder);
  std::filesystem::copy(std::filesystem::path(argv[2]) / "zvinp.txt", folder);
  std::vector<Profile> profiles;
  for (int i = 0; i < rounds; ++i) profiles.push_back(run(program.c_str(), folder));
  std::filesystem::remove_all(folder);
  // The round of the median total, so that the parts add up.
  std::sort(profiles.begin(), profiles.end(),
            [](const Profile& a, const Profile& b) { return a.total < b.total; });
  const Profile& p = profiles[profiles.size() / 2];
  std::printf(
      "\n# Whole run: %s, median of %d\n\n| step | seconds of CPU | share |\n|---|---|---|\n",
      std::filesystem::absolute(argv[2]).filename().c_str(), rounds);
  for (std::size_t i = 0; i < COUNT; ++i) {
    if (i > 0 && std::string(KINDS[i].name) == KINDS[i - 1].name) continue;
    double seconds = p.seconds[i];
    if (i + 1 < COUNT && std::string(KINDS[i].name) == KINDS[i + 1].name)
      seconds += p.seconds[i + 1];
    std::printf("| %s | %.3f | %.1f %% |\n", KINDS[i].name, seconds, 100.0 * seconds / p.total);
  }
  std::printf("| all | %.2f | peak %.0f MB |\n", p.total, p.memory);
  return 0;
}
