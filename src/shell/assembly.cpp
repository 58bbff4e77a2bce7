#include "shell/assembly.h"

namespace zelvo {

void assemble_shells(const Structure& structure, int k, LastInverse& last, SymmetricMatrix& K) {
  const Elements& el = structure.elements;
  ShellWork w;
  ShellMatrix ke;
  for (int e = 1; e <= el.nshell; ++e) {
    gather_shell(structure, k, e, w);
    shell_stiffness(w, last, ke);
    add_node_blocks(ke, el.shconn.column(e), SHELL_NODES, K);
  }
}

}  // namespace zelvo
