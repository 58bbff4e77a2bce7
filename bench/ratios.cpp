// Measures everything that is published in README.md side by side, in one run and one thread:
//   ratios [rounds [longest lgbr]]     default 5 rounds up to lgbr 14400
//   ratios peak girders lgbr solver    peak memory of one solver, for the former
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef __unix__
#include <unistd.h>
#endif

#include "base/platform.h"
#include "peers.h"

int main(int argc, char** argv) {
#ifdef __unix__
  // Peers start threads of their own unless this stands there when the run-time library loads.
  if (std::getenv("OMP_THREAD_LIMIT") == nullptr) {
    setenv("OMP_THREAD_LIMIT", "1", 1);
    execv("/proc/self/exe", argv);
  }
#endif

  using namespace zelvo;

  if (argc == 5 && std::strcmp(argv[1], "peak") == 0) {
    print_peak_memory(std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]));
    return 0;
  }
  keep_freed_memory();
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
  const int longest = argc > 2 ? std::atoi(argv[2]) : 14400;
  if (rounds < 1) {
    std::fputs("ratios [rounds [longest lgbr]]\n", stderr);
    return 2;
  }
  print_solver_ratios(rounds, longest);
  print_element_ratios(rounds);
  print_check_ratios(rounds);
}
