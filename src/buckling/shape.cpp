#include "buckling/shape.h"

#include <cmath>

namespace zelvo {

namespace {

// Moves the plan origin of a straight girder so far away that its sections, too, stand on circles
// about the origin: one formula serves straight and curved girders.
constexpr double STRAIGHT_OFFSET = 1.0e10;  // inches

constexpr double SCALE_ONE = 50.0, SCALE_TWO = 250.0;  // of the shape, one and two girders

// Plan distance of a node from the origin.
double radius(const Nodes& nodes, int node, double x_offset) {
  const double x = nodes.xyz(1, node) - x_offset, z = nodes.xyz(3, node);
  return std::sqrt(x * x + z * z);
}

// Displacement of a node away from the origin.
//   d  (3)  in  u, v, w along x, y, z
double radial(const Nodes& nodes, int node, double x_offset, const double* d) {
  const double x = nodes.xyz(1, node) - x_offset, z = nodes.xyz(3, node);
  if (x == 0) return -d[0];
  const double t = std::atan(z / x);
  return -d[0] * std::cos(t) - d[2] * std::sin(t);
}

}  // namespace

BuckledSections buckled_sections(const Model& model, const Structure& structure,
                                 const Matrix<double>& eigvec) {
  const auto& [section, nodes, elements, properties] = structure;
  assert(eigvec.rows() == NDOF * nodes.nnode);
  const double x_offset = model.curved() ? 0.0 : STRAIGHT_OFFSET;
  const double factor = section->girders == 1 ? SCALE_ONE : SCALE_TWO;
  const int count = section->girders * GirderPattern::NODES, sections = model.nbay() + 1;
  BuckledSections b{Array3<double>(count, sections, eigvec.cols(), "the buckled sections"),
                    Array3<double>(count, sections, eigvec.cols(), "the buckled sections")};
  for (int mode = 1; mode <= eigvec.cols(); ++mode)
    for (int p = 1; p <= sections; ++p) {
      const int before = 2 * (p - 1) * section->nodes;  // section p stands at station 2(p-1)
      const double r0 = radius(nodes, before + section->shape_reference, x_offset);
      int at = 0;
      for (int g = 0; g < section->girders; ++g)
        for (int m = 0; m < GirderPattern::NODES; ++m) {
          const int node = before + section->girder[g].first + m;
          const double* d = eigvec.column(mode) + equation(node, 1) - 1;
          const double rho = radial(nodes, node, x_offset, d);
          b.across(++at, p, mode) = r0 - radius(nodes, node, x_offset) - factor * rho;
          b.height(at, p, mode) = nodes.xyz(2, node) + factor * d[1];
        }
    }
  return b;
}

}  // namespace zelvo
