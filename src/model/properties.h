// Per-element properties, looked up with the element and the analysis number.
#pragma once
#include "base/arrays.h"
#include "model/description.h"
#include "model/elements.h"

constexpr double STEEL_E = 29600.0;  // ksi

// Columns of shprop.
enum ShellProperty { MODULUS = 1, POISSON = 2, THICKNESS = 3, KIND = 4 };
constexpr double STEEL_PLATE = 1.0, CONCRETE_DECK = 2.0;  // values of KIND

struct Properties {
  Array3<double> shprop;   // (nanal,4,properties) modulus, Poisson's ratio, thickness, kind
  Vector<int> shmat;       // (nshell) property number of each shell
  Matrix<double> studk;    // (nanal,nstud) stiffness per stud, kip/in
  Vector<double> studnum;  // (nstud) studs that each link stands for
  // Bar rows (3,elements): modulus, area, type code; stiffeners: modulus, width, thickness.
  Matrix<double> ibprop, ebprop, latprop, wsprop;
};

// The nine-point Gauss rule and the nine biquadratic Lagrange functions at its points.
struct ShapeTables {
  FixedVector<double, 9> gwt;       // weights
  FixedMatrix<double, 2, 9> gpt;    // points: first and second element coordinate
  FixedMatrix<double, 9, 9> shp;    // shp(i,g): function of node i at point g
  FixedMatrix<double, 2, 81> dshp;  // columns 9(g-1)+i: derivatives of function i at point g
  double d(int c, int i, int g) const { return dshp(c, 9 * (g - 1) + i); }
};
