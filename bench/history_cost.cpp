// What a pass over the construction costs beside the batch program on the same input, each in a
// process of its own, in turns:
//   history_cost program folder-of-the-example [rounds]
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "base/platform.h"
#include "construction/history.h"
#include "control/input.h"
#include "statistics.h"

using namespace zelvo;

namespace {

struct Cost {
  std::vector<double> seconds, megabytes;
};

// CPU time and peak memory of a child that does the work.
void measure(const std::function<void()>& work, Cost& cost) {
  const pid_t pid = fork();
  if (pid == 0) {
    work();
    _exit(0);
  }
  int status = 0;
  rusage usage{};
  wait4(pid, &status, 0, &usage);
  if (status != 0) {
    std::fprintf(stderr, "history_cost: a run ended with status %d\n", WEXITSTATUS(status));
    std::exit(1);
  }
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
  };
  cost.seconds.push_back(seconds(usage.ru_utime) + seconds(usage.ru_stime));
  cost.megabytes.push_back(static_cast<double>(usage.ru_maxrss) / 1024.0);
}

void run_batch(const std::string& program, const std::filesystem::path& folder) {
  dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
  std::filesystem::current_path(folder);
  execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
  _exit(127);
}

void run_pass(const std::filesystem::path& folder, const CheckChoice& checks) {
  keep_freed_memory();
  std::ifstream file(folder / "zvinp.txt", std::ios::binary);
  Input input;
  if (read_input({std::istreambuf_iterator<char>(file), {}}, input) != ReadOutcome::COMPLETE)
    _exit(65);
  HistoryOptions options;
  options.checks = checks;
  construct(input.model, options, no_progress);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("history_cost program folder-of-the-example [rounds]\n", stderr);
    return 2;
  }
  const std::string program = std::filesystem::absolute(argv[1]).string();
  const int rounds = argc > 3 ? std::max(1, std::atoi(argv[3])) : 3;
  const auto folder =
      std::filesystem::temp_directory_path() / ("zelvo_history_cost_" + std::to_string(getpid()));
  std::filesystem::create_directory(folder);
  std::filesystem::copy(std::filesystem::path(argv[2]) / "zvinp.txt", folder);
  const struct {
    const char* name;
    CheckChoice checks;
  } passes[] = {{"pass, no checks", {}},
                {"pass, buckling by history", {true, false, false}},
                {"pass, buckling three ways", {true, true, true}}};
  Cost batch, cost[std::size(passes)];
  for (int round = 0; round < rounds; ++round) {
    measure([&] { run_batch(program, folder); }, batch);
    for (std::size_t i = 0; i < std::size(passes); ++i)
      measure([&] { run_pass(folder, passes[i].checks); }, cost[i]);
  }
  std::filesystem::remove_all(folder);
  std::printf("\n# Construction: %s, median of %d\n\n",
              std::filesystem::path(argv[2]).filename().c_str(), rounds);
  std::printf("| | seconds of CPU | over the batch program | peak MB |\n|---|---|---|---|\n");
  const double base = median(batch.seconds);
  std::printf("| batch program | %.2f | 1 | %.0f |\n", base, median(batch.megabytes));
  for (std::size_t i = 0; i < std::size(passes); ++i)
    std::printf("| %s | %.2f | %.2f | %.0f |\n", passes[i].name, median(cost[i].seconds),
                median(cost[i].seconds) / base, median(cost[i].megabytes));
  return 0;
}
