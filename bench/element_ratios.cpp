// Element routines, products and assembly in measure of what the processor can do.
#include <cstdio>
#include <vector>

#include "blas.h"
#include "matrix/product.h"
#include "peers.h"
#include "shell/assembly.h"
#include "shell/geometric.h"
#include "shell/kernel.h"
#include "shell/sections.h"
#include "statistics.h"

namespace zelvo {

double dgemm_rate(int n) {
  Vector<double> A(std::int64_t{n} * n), C(std::int64_t{n} * n);
  std::fill(A.begin(), A.end(), 0.5);
  const double one = 1.0;
  const double each = cpu_seconds_each(
      [&] { dgemm_("N", "T", &n, &n, &n, &one, A.data(), &n, A.data(), &n, &one, C.data(), &n); });
  return 2e-9 * n * n * n / each;
}

namespace {

// GB/s of a(i) = b(i) + s c(i), 24 bytes a step, on arrays that no cache holds.
double triad_rate() {
  constexpr int n = 8000000;
  static Vector<double> a(n), b(n), c(n);
  double* pa = a.data();
  const double *pb = b.data(), *pc = c.data();
  const double each = cpu_seconds_each([&] {
    for (int i = 0; i < n; ++i) pa[i] = pb[i] + 3.0 * pc[i];
  });
  return 24e-9 * n / each;
}

}  // namespace

void print_element_ratios(int rounds) {
  Bridge b = make_bridge(2, 2400);
  const int nshell = b.structure.elements.nshell;
  Vector<double> y(b.pattern().n);
  LastInverse last;
  std::vector<double> stiffness, geometric, assembly, sections, product, all_bytes;
  for (int round = 0; round < rounds; ++round) {
    const double dgemm = dgemm_rate(200);
    ShellWork w;
    static ShellMatrix ke;
    ShellVector d{};
    for (int i = 1; i <= SHELL_DOFS; ++i) d(i) = 1e-3 * i;
    gather_shell(b.structure, 1, nshell / 2, w);
    stiffness.push_back(1.0 / cpu_seconds_each([&] { shell_stiffness(w, last, ke); }) / dgemm);
    geometric.push_back(1.0 / cpu_seconds_each([&] { shell_geometric(w, d, last, ke); }) / dgemm);
    const double shells = cpu_seconds_each([&] {
      b.K.values.clear();
      assemble_shells(b.structure, 1, last, b.K);
    });
    assembly.push_back(nshell / cpu_seconds_each([&] { assemble(b); }) / dgemm);
    sections.push_back(
        cpu_seconds_each([&] { section_results(b.model, b.structure, b.F, 1, last); }) / shells);
    const RowBundles rows = find_bundles(b.K.pattern);
    const double each = cpu_seconds_each([&] { sym_matvec(rows, b.K, b.F.data(), y.data()); });
    const double triad = triad_rate(), n = b.pattern().n, nnz = b.pattern().nnz;
    product.push_back(8e-9 * nnz / each / triad);
    // Values once, the columns of a bundle once, row starts, x in, y in and out.
    const double moved = 8 * nnz + 4.0 * static_cast<double>(rows.columns.size()) + (4 + 24) * n;
    all_bytes.push_back(1e-9 * moved / each / triad);
  }
  std::printf(
      "\n# Elements and products (two girders, lgbr 2400)\n\n| what | measured |\n|---|---|\n");
  std::printf("| DGEMM n=200, GFlop/s | %.1f |\n", dgemm_rate(200));
  std::printf("| shell_stiffness, elements/s per GFlop/s of it | %.0f |\n", median(stiffness));
  std::printf("| shell_geometric, elements/s per GFlop/s | %.0f |\n", median(geometric));
  std::printf("| assembly of K, shells/s per GFlop/s | %.0f |\n", median(assembly));
  std::printf("| section forces, shell assemblies | %.2f |\n", median(sections));
  std::printf("| sym_matvec, share of the bandwidth of a triad: all it moves | %.2f |\n",
              median(all_bytes));
  std::printf("| ... the values of K alone | %.2f |\n", median(product));
}

}  // namespace zelvo
