// The generated structure: all that a stage's mechanics read besides the model description.
#pragma once
#include "matrix/symmetric.h"
#include "model/description.h"
#include "model/elements.h"
#include "model/nodes.h"
#include "model/pattern.h"
#include "model/properties.h"

namespace zelvo {

struct Structure {
  const SectionPattern* section = nullptr;  // of one girder or two
  Nodes nodes;
  Elements elements;
  Properties properties;
};

// Equations of a model, and the bytes that its analysis takes, about: most of them the factor, which
// grows with the length of the bridge alone. The buckling check takes more.
std::int64_t equation_count(const Model& model);
double memory_estimate(const Model& model);

// Throws MemoryFailure where the estimate leaves no doubt that this machine has not enough.
void require_memory(const Model& model);

// Nodes, elements and properties of a sound model.
Structure generate_structure(const Model& model);

// Nodes of every element of all kinds, in the order of the element tables: what the pattern of the
// matrix is built from.
NodeLists element_nodes(const Elements& elements);

}  // namespace zelvo
