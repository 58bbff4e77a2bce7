// Where an eigenvalue check spends its time.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#ifdef __unix__
#include <unistd.h>
#endif

#include "bars/geometric.h"
#include "buckling/check.h"
#include "peers.h"
#include "shell/geometric.h"
#include "solution/linear.h"
#include "sparse/solver.h"
#include "statistics.h"

namespace {

// What call() prints to standard output.
template <class Call>
std::string printed(Call&& call) {
  std::string text;
#ifdef __unix__
  std::fflush(stdout);
  std::FILE* file = std::tmpfile();
  const int console = dup(STDOUT_FILENO);
  dup2(fileno(file), STDOUT_FILENO);
  call();
  std::fflush(stdout);
  dup2(console, STDOUT_FILENO);
  close(console);
  std::rewind(file);
  for (int c; (c = std::fgetc(file)) != EOF;) text.push_back(static_cast<char>(c));
  std::fclose(file);
#else
  call();
#endif

  using namespace zelvo;

  return text;
}

Vector<double> geometric_stiffness(const Bridge& b, const Vector<double>& U) {
  Vector<double> KG(b.pattern.nnz, "KG");
  assemble_shell_geometric(b.nodes, b.elements, b.properties, 1, U, b.model.ngird, b.pattern, KG);
  assemble_ibraces_geo(b.nodes, b.elements, b.properties, U, b.pattern, KG);
  assemble_ebraces_geo(b.nodes, b.elements, b.properties, U, b.pattern, KG);
  assemble_laterals_geo(b.nodes, b.elements, b.properties, U, b.pattern, KG);
  assemble_stiffeners_geo(b.nodes, b.elements, b.properties, U, b.pattern, KG);
  return KG;
}

// Seconds of the solver's steps, called as the check calls them.
struct Steps {
  double factor, solve, product;
};

Steps solver_steps(const Bridge& b) {
  const MatrixPattern& p = b.pattern;
  SolverHandle* h = nullptr;
  Steps t{};
  t.factor = cpu_seconds([&] {
    solver_create(h, 0);
    solver_define_structure(h, SOLVER_SYMMETRIC, p.ia.data(), p.n, p.n, p.ja.data(), p.nnz);
    solver_reorder(h, 0, nullptr);
    solver_factor_real(h, SOLVER_POSITIVE_DEFINITE, b.K.data());
  });
  Vector<double> x(p.n);
  t.solve = cpu_seconds_each([&] { solver_solve_real(h, 0, b.F.data(), 1, x.data()); });
  solver_delete(h, 0);
  const RowBundles rows = find_bundles(p.n, p.ia.data(), p.ja.data());
  t.product = cpu_seconds_each([&] { sym_matvec(rows, b.K.data(), b.F.data(), x.data()); });
  return t;
}

}  // namespace

void print_check_ratios(int rounds) {
  const Bridge b = make_bridge(2, 2400);
  Vector<double> U(b.pattern.n);
  printed([&] { solve_linear(b.pattern, b.K, b.F, U); });
  const Vector<double> unchanged = geometric_stiffness(b, U);
  constexpr int NEV = 2;
  constexpr double PRODUCTS = 3;  // for each solve: ARPACK corrects nearly every orthogonalization
  Vector<double> eigval(NEV);
  Matrix<double> eigvec(b.pattern.n, NEV);
  std::vector<double> total, solving, products;
  std::ptrdiff_t solves = 0;
  for (int round = 0; round < rounds; ++round) {
    Vector<double> KG(unchanged);
    double seconds = 0;
    const std::string console = printed([&] {
      seconds = cpu_seconds([&] {
        buckling_solve(b.pattern, b.K, KG, {NEV, 2, 1e-4, 6.5}, LANCZOS_VECTORS, eigval, eigvec);
      });
    });
    solves = std::count(console.begin(), console.end(), '.');
    const Steps t = solver_steps(b);
    total.push_back(seconds);
    solving.push_back((t.factor + static_cast<double>(solves) * t.solve) / seconds);
    products.push_back(PRODUCTS * static_cast<double>(solves) * t.product / seconds);
  }
  std::printf("\n# Eigenvalue check (two girders, lgbr 2400; %d factors, first %.4f)\n\n", NEV,
              eigval(1));
  std::printf("| what | measured |\n|---|---|\n");
  std::printf("| seconds of CPU | %.2f |\n| solves | %td |\n", median(total), solves);
  std::printf("| share of factorization and solves | %.2f |\n", median(solving));
  std::printf("| share of the products with K, three for each solve | %.2f |\n", median(products));
}
