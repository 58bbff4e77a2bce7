#include "shell/geometric.h"

#include "shell/points.h"

namespace zelvo {

// Displacement is a sum of N_k u_k and of zeta N_k times h(-alpha vt2 + beta vt1): node vectors that
// do not vary over the element. So all that the points give are the sums of a' M b over the
// gradients a, b of N_k and of zeta N_k (9 of each, with M the stress tensor), and an entry of kge
// is one of these sums times the inner product of two node vectors (initial stress form G' S G,
// Zienkiewicz and Taylor 2000).
void shell_geometric(const ShellWork& w, const ShellVector& d, LastInverse& last,
                     ShellMatrix& kge) {
  const ShellData s = shell_data(w);
  PointFrames f;
  PointStresses S;
  FixedMatrix<double, 18, 18> sums;
  last.failures += map_points(s, last.stress, f);
  point_stresses(s, f, d, S);
  last.failures += map_points(s, last.geometric, f);
  gradient_products(s, f, S, sums);

  FixedMatrix<double, 3, 18> tip;  // motion of the director of node a under its alpha, its beta
  for (int a = 1; a <= SHELL_NODES; ++a) {
    for (int c = 1; c <= 3; ++c) {
      tip(c, 2 * a - 1) = -s.h * w.evt2(c, a);
      tip(c, 2 * a) = s.h * w.evt1(c, a);
    }
  }
  // The upper triangle of sums holds gg and qq for a <= b, and gq for all a and b.
  for (int b = 1; b <= SHELL_NODES; ++b) {
    for (int a = 1; a <= b; ++a) {
      const double gg = sums(a, b), gq = sums(a, b + 9), qg = sums(b, a + 9),
                   qq = sums(a + 9, b + 9);
      const int i = NDOF * (a - 1), j = NDOF * (b - 1);
      for (int c = 1; c <= 3; ++c) {
        for (int r = 1; r <= 3; ++r) kge(i + r, j + c) = r == c ? gg : 0.0;
        for (int m = 1; m <= 2; ++m) {
          kge(i + c, j + 3 + m) = gq * tip(c, 2 * b - 2 + m);
          kge(i + 3 + m, j + c) = qg * tip(c, 2 * a - 2 + m);
        }
      }
      for (int m = 1; m <= 2; ++m) {
        for (int n = 1; n <= 2; ++n) {
          const int p = 2 * a - 2 + m, q = 2 * b - 2 + n;
          kge(i + 3 + m, j + 3 + n) =
              qq * (tip(1, p) * tip(1, q) + tip(2, p) * tip(2, q) + tip(3, p) * tip(3, q));
        }
      }
    }
  }
  for (int j = 1; j <= SHELL_DOFS; ++j)
    for (int i = 1; i < j; ++i) kge(j, i) = kge(i, j);
}

void assemble_shell_geometric(const Structure& structure, int k, const Vector<double>& U,
                              LastInverse& last, SymmetricMatrix& KG) {
  const SectionPattern& section = *structure.section;
  const Elements& el = structure.elements;
  ShellWork w;
  ShellVector d;
  ShellMatrix kge;
  for (int e = 1; e <= el.nshell; ++e) {
    const int strip = (e - 1) % section.strips + 1;
    if (section.strip[strip - 1].plate == Plate::DECK) continue;
    gather_shell(structure, k, e, w);
    gather_displacements(el, U, e, d);
    shell_geometric(w, d, last, kge);
    add_node_blocks(kge, el.shconn.column(e), SHELL_NODES, KG);
  }
}

}  // namespace zelvo
