// Per-element properties, looked up with the element and the analysis number.
#pragma once
#include "base/arrays.h"
#include "model/description.h"
#include "model/elements.h"

namespace zelvo {

constexpr double STEEL_E = 29600.0;  // ksi

struct ShellProperty {
  double modulus = 0;    // ksi
  double poisson = 0;    // Poisson's ratio
  double thickness = 0;  // inches
  double kind = 0;       // STEEL_PLATE or CONCRETE_DECK
};
constexpr double STEEL_PLATE = 1.0, CONCRETE_DECK = 2.0;

struct BarProperty {
  double modulus = 0;  // ksi
  double area = 0;     // in^2
  double type = 0;     // type code of the input, not used again
};

struct StiffenerProperty {
  double modulus = 0;    // ksi
  double width = 0;      // inches, away from the web
  double thickness = 0;  // inches
};

struct Properties {
  Matrix<ShellProperty> shprop;                 // (nanal,properties)
  Vector<int> shmat;                            // (nshell) property number of each shell
  Matrix<double> studk;                         // (nanal,nstud) stiffness per stud, kip/in
  Vector<double> studnum;                       // (nstud) studs that each link stands for
  Vector<BarProperty> ibprop, ebprop, latprop;  // one per element
  Vector<StiffenerProperty> wsprop;
};

// Builds all property tables. The segment lists must cover the girder exactly.
//
// A link without studs keeps a stiffness close to nothing, so that no deck node ever floats.
Properties generate_properties(const Model& model, const Elements& elements);

}  // namespace zelvo
