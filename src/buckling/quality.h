// How well a computed pair (lambda, x) satisfies K x = lambda B x, B = -KG.
#pragma once
#include "buckling/check.h"

namespace zelvo {

struct PairQuality {
  double residual;  // |K x - lambda B x| / |K x| over the unrestrained equations
  double rayleigh;  // x'K x / x'B x: the factor that belongs to the shape
};

// Measures every pair. Two things are kept out, since they say nothing about the shape:
//   - the rounding of x at a rigid support, which its 1e20 penalty would blow up, is taken as zero;
//   - the three translations of a node on a support, whose rows hold reactions, are left out of the
//     norms. Such a node is known by the penalty on its vertical.
//   K, B  in  values over one pattern of whole nodes, K with its penalties
Vector<PairQuality> measure_pairs(const SymmetricMatrix& K, const SymmetricMatrix& B,
                                  const BucklingModes& modes);

// True for a pair that can be trusted to three digits; false for one that is no number.
bool is_sharp(const PairQuality& quality, double lambda);

}  // namespace zelvo
