// The bridges that everything is measured on: three spans, braced, stiffened, deck of five pours.
#pragma once
#include "base/arrays.h"
#include "model/description.h"
#include "model/elements.h"
#include "model/matrix.h"
#include "model/nodes.h"
#include "model/properties.h"

namespace zelvo {

struct Bridge {
  Model model;
  Nodes nodes;
  Elements elements;
  Properties properties;
  MatrixPattern pattern;
  Vector<double> K, F;  // first stage, supports and loads included
};

// Adds every element of the stage to K, penalties left out.
void assemble(Bridge& b);

// Bridge of ngird girders, lgbr inches long (a multiple of 240), assembled.
Bridge make_bridge(int ngird, int lgbr);

}  // namespace zelvo
