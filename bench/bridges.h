// The bridges that everything is measured on: three spans, braced, stiffened, deck of five pours.
#pragma once
#include "model/structure.h"

namespace zelvo {

struct Bridge {
  Model model;
  Structure structure;
  SymmetricMatrix K;  // first stage, supports included
  Vector<double> F;   // its loads, the steel among them

  const MatrixPattern& pattern() const { return *K.pattern; }
};

// Adds every element of the stage to K, penalties left out.
void assemble(Bridge& b);

// Bridge of ngird girders, lgbr inches long (a multiple of 240), assembled.
Bridge make_bridge(int ngird, int lgbr);

}  // namespace zelvo
