// Element kernels, assembly and section forces of the shell beside the DGEMM rate of this machine.
//
// elements/s is the rate of shells; DGEMM counts flops as FLOP/s. One girder matrix is big enough to
// leave the caches, as it does in a run.
#include <benchmark/benchmark.h>

#include "blas.h"
#include "shell/assembly.h"
#include "shell/geometric.h"
#include "shell/sections.h"
#include "support/models.h"

using namespace zelvo;

static benchmark::Counter rate(double n) {
  return benchmark::Counter(n, benchmark::Counter::kIsIterationInvariantRate);
}

static void dgemm(benchmark::State& state) {
  const int n = 200;
  const double one = 1, zero = 0;
  Matrix<double> A(n, n), B(n, n), C(n, n);
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= n; ++i) A(i, j) = B(i, j) = i - 0.5 * j;
  for (auto _ : state) {
    dgemm_("N", "N", &n, &n, &n, &one, A.data(), &n, B.data(), &n, &zero, C.data(), &n);
    benchmark::ClobberMemory();
  }
  state.counters["FLOP/s"] = rate(2.0 * n * n * n);
}
BENCHMARK(dgemm);

// A curved two-girder bridge and a displacement of every freedom, nothing special about either.
struct Loaded {
  Model model;
  Structure s;
  SymmetricMatrix K;
  Vector<double> U;
  LastInverse last;
};
static Loaded bridge(int lgbr) {
  Loaded b{two_girders(lgbr, 9600), {}, {}, {}, {}};
  b.s = generate_structure(b.model);
  b.K = matrix_of(b.s);
  b.U = Vector<double>(b.K.n());
  for (int i = 1; i <= b.K.n(); ++i) b.U(i) = 1e-3 * (i % 13 - 6);
  return b;
}

static void stiffness(benchmark::State& state) {
  Loaded b = bridge(240);
  ShellWork w;
  ShellMatrix ke;
  for (auto _ : state) {
    for (int e = 1; e <= b.s.elements.nshell; ++e) {
      gather_shell(b.s, 1, e, w);
      shell_stiffness(w, b.last, ke);
      benchmark::DoNotOptimize(ke);
    }
  }
  state.counters["elements/s"] = rate(b.s.elements.nshell);
}
BENCHMARK(stiffness)->Name("shell_stiffness");

static void geometric(benchmark::State& state) {
  Loaded b = bridge(240);
  ShellWork w;
  ShellVector d;
  ShellMatrix kge;
  for (auto _ : state) {
    for (int e = 1; e <= b.s.elements.nshell; ++e) {
      gather_shell(b.s, 1, e, w);
      gather_displacements(b.s.elements, b.U, e, d);
      shell_geometric(w, d, b.last, kge);
      benchmark::DoNotOptimize(kge);
    }
  }
  state.counters["elements/s"] = rate(b.s.elements.nshell);
}
BENCHMARK(geometric)->Name("shell_geometric");

static void assembly(benchmark::State& state) {
  Loaded b = bridge(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    assemble_shells(b.s, 1, b.last, b.K);
    benchmark::ClobberMemory();
  }
  state.counters["elements/s"] = rate(b.s.elements.nshell);
}
BENCHMARK(assembly)->Name("assemble_shells")->Arg(2400)->Arg(7200)->Unit(benchmark::kMillisecond);

static void geometric_assembly(benchmark::State& state) {
  Loaded b = bridge(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    assemble_shell_geometric(b.s, 1, b.U, b.last, b.K);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(geometric_assembly)
    ->Name("assemble_shell_geometric")
    ->Arg(2400)
    ->Arg(7200)
    ->Unit(benchmark::kMillisecond);

static void sections(benchmark::State& state) {
  Loaded b = bridge(static_cast<int>(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(section_results(b.model, b.s, b.U, 1, b.last).shear.data());
}
BENCHMARK(sections)->Name("section_forces")->Arg(2400)->Arg(7200)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
