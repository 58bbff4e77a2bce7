// Checks of each stage, and the weight that the analysis does not contain.
#pragma once
#include "matrix/product.h"
#include "model/structure.h"

namespace zelvo {

// A deflection of largest magnitude.
struct LargestDeflection {
  double value = 0;     // inches
  double position = 0;  // inches
  double span = 0;      // inches, of the span that holds it; 0 outside all spans
};
//   deflection  (nstn,girders)
LargestDeflection largest_deflection(const Model& model, const Matrix<double>& deflection);

// Of a stage's own solution, unfactored.
struct StageChecks {
  double load = 0;       // kips, downward
  double reactions = 0;  // kips, upward, of all supports
  double grounded = 0;   // kips, upward: what the mid nodes of the frames pass to the ground
  double imbalance = 0;  // |load - reactions - grounded| over the load, or over 1 kip without load
  double residual = 0;   // |F - K U| / |F| over the equations that no rigid support holds
  LargestDeflection largest;
};

// Checks of K U = F.
StageChecks check_stage(const Model& model, const Structure& structure, const RowBundles& rows,
                        const SymmetricMatrix& K, const Vector<double>& F, const Vector<double>& U);

// Weights of the bars and stiffeners, kips. The loads of the analysis contain the plates alone.
struct BracingWeight {
  double internal = 0, external = 0, laterals = 0, stiffeners = 0;
  double total() const { return internal + external + laterals + stiffeners; }
};
BracingWeight bracing_weight(const Structure& structure);

// Weight of the plates that the load of the steel contains, kips.
double plate_weight(const Model& model, const Structure& structure);

}  // namespace zelvo
