#include "model/structure.h"

#include "base/failures.h"
#include "base/platform.h"

namespace zelvo {

namespace {

template <class Visit>
void each_element(const Elements& el, Visit visit) {
  for (const Matrix<int>* conn :
       {&el.shconn, &el.ibconn, &el.ebconn, &el.latconn, &el.wsconn, &el.studconn, &el.supconn})
    for (int e = 1; e <= conn->cols(); ++e) visit(conn->column(e), conn->rows());
}

// Bytes for each equation of the whole process, with one girder and with two, as measured.
constexpr double BYTES[MAX_GIRDERS] = {2450, 2800};
constexpr double SURE = 0.8;  // share of the estimate that is needed beyond doubt

}  // namespace

std::int64_t equation_count(const Model& model) {
  return std::int64_t{NDOF} * section_pattern(model.ngird).nodes * model.nstn();
}

double memory_estimate(const Model& model) {
  return BYTES[model.ngird - 1] * static_cast<double>(equation_count(model));
}

void require_memory(const Model& model) {
  const double bytes = memory_estimate(model);
  if (SURE * bytes > memory_limit())
    throw MemoryFailure{bytes, "the stiffness matrix and its factor"};
}

Structure generate_structure(const Model& model) {
  assert(model.ngird == 1 || model.ngird == 2);
  Structure s;
  s.section = &section_pattern(model.ngird);
  if (model.ngird == 2)
    generate_nodes_two(model, s.nodes);
  else
    generate_nodes_one(model, s.nodes);
  s.elements = generate_elements(model);
  s.properties = generate_properties(model, s.elements);
  return s;
}

NodeLists element_nodes(const Elements& elements) {
  int nel = 0;
  std::int64_t total = 0;
  each_element(elements, [&](const int*, int nen) {
    ++nel;
    total += nen;
  });
  NodeLists lists{Vector<std::int64_t>(std::int64_t{nel} + 1, "the element lists"),
                  Vector<int>(total, "the element lists", UNINITIALIZED)};
  int e = 0;
  std::int64_t next = 1;
  each_element(elements, [&](const int* node, int nen) {
    lists.start(++e) = next;
    for (int a = 0; a < nen; ++a) lists.item(next++) = node[a];
  });
  lists.start(nel + 1) = next;
  return lists;
}

}  // namespace zelvo
