// Where an eigenvalue check spends its time.
#include <cstdio>
#include <vector>

#include "buckling/geometric.h"
#include "buckling/quality.h"
#include "matrix/product.h"
#include "peers.h"
#include "solution/linear.h"
#include "sparse/solver.h"
#include "statistics.h"

namespace zelvo {

namespace {

SymmetricMatrix geometric_stiffness(const Bridge& b, const Vector<double>& U) {
  SymmetricMatrix KG = zero_matrix(b.K.pattern, "KG");
  LastInverse last;
  assemble_geometric(b.structure, 1, U, last, no_progress, KG);
  return KG;
}

// Seconds of the solver's steps, called as the check calls them.
struct Steps {
  double factor, solve, product;
};

Steps solver_steps(const Bridge& b) {
  const MatrixPattern& p = b.pattern();
  SolverHandle* h = nullptr;
  Steps t{};
  t.factor = cpu_seconds([&] {
    solver_create(h, 0);
    solver_define_structure(h, SOLVER_SYMMETRIC, p.ia.data(), p.n, p.n, p.ja.data(), p.nnz);
    solver_reorder(h, 0, nullptr);
    solver_factor_real(h, SOLVER_POSITIVE_DEFINITE, b.K.values.data());
  });
  Vector<double> x(p.n);
  t.solve = cpu_seconds_each([&] { solver_solve_real(h, 0, b.F.data(), 1, x.data()); });
  solver_delete(h, 0);
  const RowBundles rows = find_bundles(b.K.pattern);
  t.product = cpu_seconds_each([&] { sym_matvec(rows, b.K, b.F.data(), x.data()); });
  return t;
}

}  // namespace

void print_check_ratios(int rounds) {
  const Bridge b = make_bridge(2, 2400);
  Vector<double> U(b.pattern().n);
  solve_linear(b.K, b.F, no_progress, U);
  const SymmetricMatrix unchanged = geometric_stiffness(b, U);
  constexpr int NEV = 2;
  constexpr double PRODUCTS = 3;  // for each solve: ARPACK corrects nearly every orthogonalization
  BucklingModes modes{Vector<double>(NEV), Matrix<double>(b.pattern().n, NEV)};
  std::vector<double> total, solving, products;
  int solves = 0;
  const Progress count = [&](Step step) { solves += step == Step::EIGEN_SOLUTION; };
  for (int round = 0; round < rounds; ++round) {
    SymmetricMatrix KG(unchanged);
    solves = 0;
    const double seconds = cpu_seconds([&] {
      const EigenOutcome outcome = buckling_solve(b.K, KG, {NEV, 2, 1e-4, 6.5}, count, modes);
      if (outcome.found) measure_pairs(b.K, KG, modes);
    });
    const Steps t = solver_steps(b);
    total.push_back(seconds);
    solving.push_back((t.factor + solves * t.solve) / seconds);
    products.push_back(PRODUCTS * solves * t.product / seconds);
  }
  std::printf("\n# Eigenvalue check (two girders, lgbr 2400; %d factors, first %.4f)\n\n", NEV,
              modes.eigval(1));
  std::printf("| what | measured |\n|---|---|\n");
  std::printf("| seconds of CPU | %.2f |\n| solves | %d |\n", median(total), solves);
  std::printf("| share of factorization and solves | %.2f |\n", median(solving));
  std::printf("| share of the products with K, three for each solve | %.2f |\n", median(products));
}

}  // namespace zelvo
