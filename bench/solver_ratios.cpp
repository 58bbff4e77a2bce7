// The solver beside its peers on the same assembled matrix, in interleaved rounds.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#ifdef __linux__
#include <unistd.h>
#endif

#include "peers.h"
#include "sparse/analysis.h"
#include "statistics.h"

namespace zelvo {

namespace {

struct Times {
  double analysis, factor, solve, refactor;
  double all() const { return analysis + factor + solve; }
};

struct Record {
  Peer peer;
  std::vector<Times> times;
  double memory = 0;      // MB, peak over what the assembled model needs
  double difference = 0;  // of its solution from ours, of the largest displacement
};

std::vector<Record> solvers() {
  std::vector<Record> v{{own_solver(), {}}};
#ifdef HAVE_CHOLMOD
  v.push_back({cholmod(false), {}});
  v.push_back({cholmod(true), {}});
#endif
#ifdef HAVE_MUMPS
  v.push_back({mumps(), {}});
#endif
  return v;
}

Times run(const Peer& p, const Bridge& b, const int* order, Vector<double>& x) {
  Times t{};
  p.prepare(p.state, b, p.takes_order ? order : nullptr);
  t.analysis = cpu_seconds([&] { p.analyse(p.state, b); });
  t.factor = cpu_seconds([&] { p.factor(p.state, b); });
  t.solve = cpu_seconds([&] { p.solve(p.state, b, x.data()); });
  t.refactor = cpu_seconds([&] { p.factor(p.state, b); });
  p.release(p.state);
  return t;
}

// A field of /proc/self/status, MB.
double memory_field(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string key; status >> key;)
    if (key == name + ":") {
      double kb = 0;
      status >> kb;
      return kb / 1024.0;
    }
  return 0;
}

// Peak memory of a solver, found by a fresh process of this program; 0 where that cannot be.
double peak_memory(int ngird, int lgbr, std::size_t solver) {
  double peak = 0;
#ifdef __linux__
  char self[4096] = {};
  if (readlink("/proc/self/exe", self, sizeof self - 1) < 0) return 0;
  char command[4200];
  std::snprintf(command, sizeof command, "'%s' peak %d %d %zu", self, ngird, lgbr, solver);
  std::FILE* answer = popen(command, "r");
  if (answer == nullptr) return 0;
  char line[256];
  while (std::fgets(line, sizeof line, answer) != nullptr) std::sscanf(line, "peak %lf", &peak);
  pclose(answer);
#else
  (void)ngird, (void)lgbr, (void)solver;
#endif

  return peak;
}

double factor_flops(const Bridge& b, double& nnz) {
  FactorStructure s;
  analyse(b.pattern().n, b.pattern().nnz, b.pattern().ia.data(), b.pattern().ja.data(), nullptr, s);
  double flops = 0;
  nnz = 0;
  for (const double c : s.colcnt) flops += c * c, nnz += c;
  return flops;
}

template <class Part>
double ratio(const Record& own, const Record& other, Part part) {
  std::vector<double> r;
  for (std::size_t i = 0; i < own.times.size(); ++i)
    r.push_back(part(own.times[i]) / part(other.times[i]));
  return median(r);
}

template <class Part>
double seconds(const Record& record, Part part) {
  std::vector<double> v;
  for (const Times& t : record.times) v.push_back(part(t));
  return median(v);
}

void print_table(const std::vector<Record>& records) {
  const auto analysis = [](const Times& t) { return t.analysis; };
  const auto factor = [](const Times& t) { return t.factor; };
  const auto solve = [](const Times& t) { return t.solve; };
  const auto all = [](const Times& t) { return t.all(); };
  const auto again = [](const Times& t) { return t.refactor; };
  std::printf("\n| seconds of CPU | analysis | factor | solve | all | factor again | peak MB |\n");
  std::printf("|---|---|---|---|---|---|---|\n");
  for (const Record& r : records)
    std::printf("| %s | %.3f | %.3f | %.4f | %.3f | %.3f | %.0f |\n", r.peer.name,
                seconds(r, analysis), seconds(r, factor), seconds(r, solve), seconds(r, all),
                seconds(r, again), r.memory);
  if (records.size() < 2) return;
  std::printf(
      "\n| ours as a share of | analysis | factor | solve | all | factor again | memory |"
      " solutions differ |\n|---|---|---|---|---|---|---|---|\n");
  const Record& own = records.front();
  for (std::size_t i = 1; i < records.size(); ++i) {
    const Record& r = records[i];
    std::printf("| %s | %.2f | %.2f | %.2f | %.2f | %.2f | %.2f | %.1e |\n", r.peer.name,
                ratio(own, r, analysis), ratio(own, r, factor), ratio(own, r, solve),
                ratio(own, r, all), ratio(own, r, again), own.memory / r.memory, r.difference);
  }
}

// Seconds and peak MB of the own solver.
struct Cost {
  double seconds, memory;
};

Cost compare_on(int ngird, int lgbr, int rounds) {
  const Bridge b = make_bridge(ngird, lgbr);
  const Vector<int> order = compressed_order(b);
  std::vector<Record> records = solvers();
  for (std::size_t i = 0; i < records.size(); ++i) records[i].memory = peak_memory(ngird, lgbr, i);

  double nnz;
  const double flops = factor_flops(b, nnz);
  Vector<double> own_x(b.pattern().n), x(b.pattern().n);
  std::vector<double> share, rate;
  for (int round = 0; round < rounds; ++round) {
    const double ordering = cpu_seconds([&] { compressed_order(b); });
    for (Record& r : records) {
      const bool own = &r == &records.front();
      const double before = own ? dgemm_rate(400) : 0;
      Times t = run(r.peer, b, order.data(), own ? own_x : x);
      if (r.peer.takes_order) t.analysis += ordering;
      r.times.push_back(t);
      if (own) {
        rate.push_back(0.5 * (before + dgemm_rate(400)));
        share.push_back(flops / t.refactor * 1e-9 / rate.back());
      } else {
        double most = 0, off = 0;
        for (int i = 1; i <= b.pattern().n; ++i) {
          most = std::max(most, std::abs(own_x(i)));
          off = std::max(off, std::abs(own_x(i) - x(i)));
        }
        r.difference = off / most;
      }
    }
  }
  std::printf("\n## %d girder%s, lgbr %d\n\n", ngird, ngird == 1 ? "" : "s", lgbr);
  std::printf(
      "%d equations, %d stored values; factor %.1f million entries, %.2f GFlop; %d rounds\n",
      b.pattern().n, b.pattern().nnz, nnz * 1e-6, flops * 1e-9, rounds);
  print_table(records);
  std::printf("\nfactor again: %.2f of DGEMM n=400 (%.1f GFlop/s)\n", median(share), median(rate));
  std::fflush(stdout);
  const auto all = [](const Times& t) { return t.all(); };
  return {seconds(records.front(), all), records.front().memory};
}

}  // namespace

void print_peak_memory(int ngird, int lgbr, int solver) {
  const Bridge b = make_bridge(ngird, lgbr);
  const Peer p = solvers().at(static_cast<std::size_t>(solver)).peer;
  const Vector<int> order = compressed_order(b);
  Vector<double> x(b.pattern().n);
  std::fill(x.begin(), x.end(), 1.0);
  p.prepare(p.state, b, p.takes_order ? order.data() : nullptr);
  std::ofstream("/proc/self/clear_refs") << "5";  // the high-water mark begins anew
  const double before = memory_field("VmRSS");
  p.analyse(p.state, b);
  p.factor(p.state, b);
  p.solve(p.state, b, x.data());
  std::printf("peak %f\n", memory_field("VmHWM") - before);
}

void print_solver_ratios(int rounds, int longest) {
  std::printf("\n# Direct solvers\n");
  compare_on(1, 2400, rounds);
  const Cost shortest = compare_on(2, 2400, rounds);
  for (const int lgbr : {7200, 14400}) {
    if (lgbr > longest) break;
    const Cost cost = compare_on(2, lgbr, rounds);
    std::printf("growth from lgbr 2400, of linear: time %.2f, memory %.2f\n",
                cost.seconds / shortest.seconds * 2400.0 / lgbr,
                cost.memory / shortest.memory * 2400.0 / lgbr);
  }
}

}  // namespace zelvo
