// Any order of the solver's calls on any pattern, with any option words: a code, never a crash. What
// it has factored has to solve its equations.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "sparse/solver.h"

using namespace zelvo;

namespace {

// The bytes of the fuzzer, one by one; 0 behind their end.
struct Bytes {
  const std::uint8_t* next;
  const std::uint8_t* end;
  int take() { return next == end ? 0 : *next++; }
};

struct Matrix {
  int n = 0;
  std::vector<int> ia, ja;
  std::vector<double> values;
  bool sound = true;  // ascending rows of the upper triangle, each with its diagonal
};

// Mostly sound, with a fault in the pattern where the bytes say so.
Matrix make_matrix(Bytes& b) {
  Matrix m;
  m.n = b.take() % 24;
  m.ia.push_back(1);
  for (int i = 1; i <= m.n; ++i) {
    for (int j = i; j <= m.n; ++j) {
      if (j > i && b.take() % 3 != 0) continue;
      m.ja.push_back(j);
      m.values.push_back(j == i ? 1 + b.take() : (b.take() - 128) / 8.0);
    }
    m.ia.push_back(static_cast<int>(m.ja.size()) + 1);
  }
  for (int faults = b.take() % 16 - 13; faults > 0; --faults) {
    std::vector<int>& list = b.take() % 2 == 0 ? m.ia : m.ja;
    if (!list.empty()) list[static_cast<std::size_t>(b.take()) % list.size()] = b.take() - 100;
    m.sound = false;
  }
  return m;
}

void require_solution(const Matrix& m, const std::vector<double>& x, const std::vector<double>& b) {
  std::vector<double> r(b.begin(), b.begin() + m.n);  // of the first right-hand side
  double largest = 1;
  for (int i = 1, t = 0; i <= m.n; ++i)
    for (; t + 1 < m.ia[static_cast<std::size_t>(i)]; ++t) {
      const auto row = static_cast<std::size_t>(i - 1),
                 column = static_cast<std::size_t>(m.ja[static_cast<std::size_t>(t)] - 1);
      const double a = m.values[static_cast<std::size_t>(t)];
      r[row] -= a * x[column];
      if (row != column) r[column] -= a * x[row];
      largest = std::max({largest, std::abs(a * x[column]), std::abs(a * x[row])});
    }
  for (const double v : r)
    if (!(std::abs(v) <= 1e-6 * largest)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes{data, data + size};
  const Matrix m = make_matrix(bytes);
  const auto n = static_cast<std::size_t>(m.n);
  std::vector<double> b(2 * n), x(2 * n);
  std::vector<int> order(n);
  for (double& v : b) v = bytes.take() - 100;
  for (std::size_t i = 0; i < n; ++i) order[i] = (static_cast<int>(i) + bytes.take() % 2) % m.n + 1;
  OwnedSolver solver;
  // No message ends the process; those of an error are not written.
  const std::uint32_t quiet = solver_message_level(5) | solver_termination_level(5);
  bool definite = false, factored = false;
  for (int calls = 0; calls < 24 && bytes.next != bytes.end; ++calls) {
    const int what = bytes.take();
    // A call without a handle has the levels of its own word alone.
    const std::uint32_t stray =
        quiet | (what >= 250 ? static_cast<std::uint32_t>(bytes.take()) << 20 : 0);
    int code = -1;
    switch (what % 8) {
      case 0:
        if (solver.handle == nullptr) solver_create(solver.handle, quiet);
        break;
      case 1:
        factored = false;
        solver_define_structure(solver.handle, SOLVER_SYMMETRIC | stray, m.ia.data(), m.n, m.n,
                                m.ja.data(), static_cast<int>(m.ja.size()));
        break;
      case 2:
        factored = false;
        solver_reorder(solver.handle, stray, nullptr);
        break;
      case 3:
        factored = false;
        solver_reorder(solver.handle, SOLVER_USER_ORDER | quiet, order.data());
        break;
      case 4:
      case 5:
        definite = what % 8 == 4;
        factored =
            solver_factor_real(solver.handle,
                               (definite ? SOLVER_POSITIVE_DEFINITE : SOLVER_INDEFINITE) | stray,
                               m.values.data()) == 0;
        break;
      case 6:
        code = solver_solve_real(solver.handle, stray, b.data(), 1 + what / 8 % 2, x.data());
        // L D L' without pivoting promises no accuracy.
        if (code == 0 && factored && definite && m.sound) require_solution(m, x, b);
        break;
      default:
        factored = false;
        solver_delete(solver.handle, stray);
    }
  }
  return 0;
}
