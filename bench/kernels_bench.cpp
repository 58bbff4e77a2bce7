// Dense kernels of the factorization by themselves.
#include <benchmark/benchmark.h>

#include <vector>

#include "blas.h"
#include "sparse/dense_kernels.h"

namespace zelvo {

namespace {

using benchmark::Counter;

void gflops(benchmark::State& state, double flops) {
  state.counters["GFlop/s"] = Counter(flops * 1e-9, Counter::kIsIterationInvariantRate);
}

std::vector<double> block(double rows, double cols) {
  return std::vector<double>(static_cast<std::size_t>(rows * cols) + MAX_LANES, 0.01);
}

// The trapezoid of an update: r x m, k terms.
double update_flops(double r, double m, double k) { return (2.0 * r * m - m * (m - 1)) * k; }

void update_sizes(benchmark::internal::Benchmark* b) {
  b->ArgNames({"r", "m", "k"});
  for (const auto& size : {std::vector<std::int64_t>{1500, 80, 80},
                           {500, 80, 80},
                           {200, 80, 80},
                           {300, 20, 80},
                           {100, 40, 40},
                           {60, 20, 20},
                           {60, 5, 5},
                           {20, 10, 15}})
    b->Args(size);
}

void Update(benchmark::State& state) {
  const int r = static_cast<int>(state.range(0)), m = static_cast<int>(state.range(1)),
            k = static_cast<int>(state.range(2));
  const auto kernel = dense_kernels().update;
  const auto a = block(r, k);
  auto c = block(r, m), packed = block(240, m + 100);
  std::vector<double*> column;
  for (int j = 0; j < m; ++j) column.push_back(c.data() + std::ptrdiff_t{r} * j);
  const UpdatePiece piece{a.data(), r, k, nullptr, 0};
  for (auto _ : state) kernel(column.data(), nullptr, 0, &piece, 1, r, m, packed.data());
  gflops(state, update_flops(r, m, k));
}
BENCHMARK(Update)->Apply(update_sizes);

void UpdateByDgemm(benchmark::State& state) {
  const int r = static_cast<int>(state.range(0)), m = static_cast<int>(state.range(1)),
            k = static_cast<int>(state.range(2));
  const auto a = block(r, k);
  auto c = block(r, m);
  const double one = 1, minus = -1;
  for (auto _ : state)
    dgemm_("N", "T", &r, &m, &k, &minus, a.data(), &r, a.data(), &r, &one, c.data(), &r);
  gflops(state, update_flops(r, m, k));
}
BENCHMARK(UpdateByDgemm)->Apply(update_sizes);

void panel_sizes(benchmark::internal::Benchmark* b) {
  b->ArgNames({"r", "c"});
  for (const auto& size : {std::vector<std::int64_t>{1500, 80},
                           {500, 80},
                           {80, 80},
                           {300, 40},
                           {100, 20},
                           {60, 10},
                           {305, 5},
                           {30, 5}})
    b->Args(size);
}

void Panel(benchmark::State& state) {
  const int r = static_cast<int>(state.range(0)), c = static_cast<int>(state.range(1));
  const auto kernel = dense_kernels().factor_panel;
  auto a = block(r, c), l = a, packed = block(c, c + 100);
  for (int j = 0; j < c; ++j) a[static_cast<std::size_t>(j) * static_cast<std::size_t>(r + 1)] = 9;
  for (auto _ : state) {
    l = a;  // its time is part of the result
    benchmark::DoNotOptimize(kernel(l.data(), r, r, c, false, packed.data()));
  }
  gflops(state, double(c) * c * c / 3 + double(r - c) * c * c);
}
BENCHMARK(Panel)->Apply(panel_sizes);

void PanelSolves(benchmark::State& state) {
  const int r = static_cast<int>(state.range(0)), c = static_cast<int>(state.range(1));
  const auto forward = dense_kernels().forward_panel;
  const auto backward = dense_kernels().backward_panel;
  auto l = block(r, c), z = block(r, 1);
  for (int j = 0; j < c; ++j) l[static_cast<std::size_t>(j) * static_cast<std::size_t>(r + 1)] = 9;
  for (auto _ : state) {
    forward(l.data(), r, r, c, false, z.data());
    backward(l.data(), r, r, c, false, z.data());
  }
  gflops(state, 4.0 * double(r) * c - 2.0 * double(c) * c);
}
BENCHMARK(PanelSolves)->Apply(panel_sizes);

}  // namespace

}  // namespace zelvo
