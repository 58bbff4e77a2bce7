#include "bridges.h"

#include <vector>

#include "bars/braces.h"
#include "bars/laterals.h"
#include "bars/stiffeners.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "shell/assembly.h"
#include "solution/loads.h"
#include "solution/supports.h"

namespace zelvo {

namespace {

template <class T>
Vector<T> vector_of(const std::vector<T>& values) {
  Vector<T> v(static_cast<std::int64_t>(values.size()));
  std::int64_t i = 0;
  for (const T& x : values) v(++i) = x;
  return v;
}

constexpr int BRACE_STEP = 240;  // inches between cross frames

void add_bracing(Model& m) {
  std::vector<int> at, from, to, type, external;
  for (int z = BRACE_STEP; z < m.lgbr; z += BRACE_STEP) at.push_back(z);
  for (int z = 0; z < m.lgbr; z += BRACE_STEP) {
    from.push_back(z);
    to.push_back(z + BRACE_STEP);
    type.push_back(1 + z / BRACE_STEP % 2);
  }
  m.nibrace = m.nstiff = static_cast<int>(at.size());
  m.ib_pos = m.ws_pos = vector_of(at);
  m.ib_type = vector_of(std::vector<int>(at.size(), 1));
  m.ib_area = m.ws_b = vector_of(std::vector<double>(at.size(), 5.0));
  m.ws_t = vector_of(std::vector<double>(at.size(), 0.5));
  m.nlat = static_cast<int>(from.size());
  m.lat_type = vector_of(type);
  m.lat_from = vector_of(from);
  m.lat_to = vector_of(to);
  m.lat_area = vector_of(std::vector<double>(from.size(), 6.0));
  if (m.ngird == 2) {
    for (int z = 2 * BRACE_STEP; z < m.lgbr; z += 2 * BRACE_STEP) external.push_back(z);
    m.nebrace = static_cast<int>(external.size());
    m.eb_pos = vector_of(external);
    m.eb_type = vector_of(std::vector<int>(external.size(), 1));
    m.eb_area = vector_of(std::vector<double>(external.size(), 5.0));
  }
}

Model describe(int ngird, int lgbr) {
  Model m;
  m.ngird = ngird;
  m.lgbr = lgbr;
  m.offset = 108;
  m.secdim = {78, 60, 99, 18, ngird == 2 ? 420.0 : 204.0, 9};
  m.nweb = m.nbotf = m.ntopf = 1;
  m.web_len = m.botf_len = m.topf_len = vector_of<int>({lgbr});
  m.web_t = vector_of<double>({0.5});
  m.botf_t = vector_of<double>({1.0});
  m.topf_t = vector_of<double>({1.5});
  add_bracing(m);
  const int third = lgbr / 3 / BRACE_STEP * BRACE_STEP;
  m.nsupp = 4;
  m.supp_pos = vector_of<int>({0, third, lgbr - third, lgbr});
  m.nstudrow = 1;
  m.stud_len = vector_of<int>({lgbr});
  m.stud_spacing = vector_of<double>({12.0});
  m.stud_count = vector_of<int>({3});
  m.nanal = m.npour = 1;
  m.pour_len = vector_of<int>({lgbr});
  m.pour_e = m.pour_k = m.pour_load = Matrix<double>(1, 1);
  m.pour_e(1, 1) = 1000.0;
  m.pour_k(1, 1) = 100.0;
  m.pour_load(1, 1) = 3.0;
  m.selfwt = true;
  m.load_pattern = 1;
  return m;
}

}  // namespace

void assemble(Bridge& b) {
  LastInverse last;
  b.K.values.clear();
  assemble_shells(b.structure, 1, last, b.K);
  assemble_ibraces(b.structure, b.K);
  assemble_ebraces(b.structure, b.K);
  assemble_laterals(b.structure, b.K);
  assemble_stiffeners(b.structure, b.K);
  assemble_supports(b.structure, b.K);
  assemble_studs(b.structure, 1, b.K);
}

Bridge make_bridge(int ngird, int lgbr) {
  Bridge b;
  b.model = describe(ngird, lgbr);
  b.structure = generate_structure(b.model);
  b.K = zero_matrix(std::make_shared<const MatrixPattern>(build_pattern(
                        b.structure.nodes.nnode, element_nodes(b.structure.elements))),
                    "K");
  b.F = Vector<double>(b.K.n(), "F");
  assemble(b);
  apply_supports(b.model, b.structure, b.K);
  (ngird == 2 ? load_two_girders : load_one_girder)(b.model, 1, SteelWeight::INCLUDED,
                                                    web_width(b.structure), b.F);
  return b;
}

}  // namespace zelvo
