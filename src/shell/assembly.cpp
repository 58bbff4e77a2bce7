#include "shell/assembly.h"

#include "model/pattern.h"

namespace zelvo {

void assemble_shells(const Nodes& nodes, const Elements& elements, const Properties& properties,
                     int k, const MatrixPattern& pattern, Vector<double>& K) {
  ShellWork w;
  ShellMatrix ke;
  for (int e = 1; e <= elements.nshell; ++e) {
    gather_shell(nodes, elements, properties, k, e, w);
    shell_stiffness(w, ke);
    add_node_blocks(ke.data(), SHELL_DOFS, elements.shconn.column(e), SHELL_NODES, NDOF, pattern,
                    K);
  }
}

}  // namespace zelvo
