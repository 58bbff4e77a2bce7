// Assembly, analysis, factorization and solve on whole bridges.
#include <benchmark/benchmark.h>

#include "base/platform.h"
#include "bridges.h"
#include "sparse/analysis.h"
#include "sparse/numeric.h"

namespace zelvo {

namespace {

using benchmark::Counter;

void bridges(benchmark::internal::Benchmark* b) {
  b->ArgNames({"girders", "lgbr"})->Unit(benchmark::kMillisecond);
  b->Args({1, 2400})->Args({2, 2400})->Args({2, 7200});
}

Bridge bridge_of(const benchmark::State& state) {
  keep_freed_memory();
  return make_bridge(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
}

void Assembly(benchmark::State& state) {
  Bridge b = bridge_of(state);
  for (auto _ : state) assemble(b);
  state.counters["shells/s"] =
      Counter(b.structure.elements.nshell, Counter::kIsIterationInvariantRate);
}
BENCHMARK(Assembly)->Apply(bridges);

void analyse_bridge(const Bridge& b, FactorStructure& s) {
  analyse(b.pattern().n, b.pattern().nnz, b.pattern().ia.data(), b.pattern().ja.data(), nullptr, s);
}

void Analysis(benchmark::State& state) {
  const Bridge b = bridge_of(state);
  FactorStructure s;
  for (auto _ : state) analyse_bridge(b, s);
  double nnz = 0;
  for (const int c : s.colcnt) nnz += c;
  state.counters["nnz(L)"] = nnz;
}
BENCHMARK(Analysis)->Apply(bridges);

// First on storage of its own each time, then again and again in the same.
void factorization(benchmark::State& state, bool again, bool ldl) {
  const Bridge b = bridge_of(state);
  FactorStructure s;
  analyse_bridge(b, s);
  NumericWork w;
  for (auto _ : state) {
    if (!again) w = NumericWork{};
    reserve_numeric(s, w);
    benchmark::DoNotOptimize((ldl ? factor_ldl : factor_cholesky)(s, b.K.values.data(), w));
  }
  double flops = 0;
  for (const double c : s.colcnt) flops += c * c;
  state.counters["GFlop/s"] = Counter(flops * 1e-9, Counter::kIsIterationInvariantRate);
}
void Factorization(benchmark::State& state) { factorization(state, false, false); }
void FactorizationAgain(benchmark::State& state) { factorization(state, true, false); }
void FactorizationLdl(benchmark::State& state) { factorization(state, true, true); }
BENCHMARK(Factorization)->Apply(bridges);
BENCHMARK(FactorizationAgain)->Apply(bridges);
BENCHMARK(FactorizationLdl)->Apply(bridges);

void Solve(benchmark::State& state) {
  const Bridge b = bridge_of(state);
  FactorStructure s;
  analyse_bridge(b, s);
  NumericWork w;
  reserve_numeric(s, w);
  Vector<double> x(b.pattern().n);
  if (factor_cholesky(s, b.K.values.data(), w) != FACTOR_DONE) state.SkipWithError("not factored");
  for (auto _ : state) solve_cholesky(s, w, b.F.data(), 1, x.data());
  double nnz = 0;
  for (const int c : s.colcnt) nnz += c;
  state.counters["nnz(L)"] = nnz;
  state.counters["GB/s"] = Counter(16e-9 * nnz, Counter::kIsIterationInvariantRate);
}
BENCHMARK(Solve)->Apply(bridges);

}  // namespace

}  // namespace zelvo
