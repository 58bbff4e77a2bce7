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

// Nodes, elements and properties of a sound model.
Structure generate_structure(const Model& model);

// Nodes of every element of all kinds, in the order of the element tables: what the pattern of the
// matrix is built from.
NodeLists element_nodes(const Elements& elements);

}  // namespace zelvo
