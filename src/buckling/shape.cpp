#include "buckling/shape.h"

#include <cmath>

#include "base/text.h"
#include "model/pattern.h"

namespace zelvo {

namespace {

// Moves the plan origin of a straight girder so far away that its sections, too, stand on circles
// about the origin: one formula serves straight and curved girders.
constexpr double STRAIGHT_OFFSET = 1.0e10;  // inches

constexpr double SCALE_ONE = 50.0, SCALE_TWO = 250.0;  // of the shape, one and two girders
constexpr int HEADING_WIDTH = 9;                       // of the station in feet, one girder

double scale(const SectionPattern& pattern) { return pattern.girders == 1 ? SCALE_ONE : SCALE_TWO; }

// One node: distance from the radius r0 of the reference node, and height.
//   mode  (5 nnode)  displacements u, v, w along x, y, z and two rotations per node
void write_node(const Nodes& nodes, const double* mode, int node, double x_offset, double r0,
                double factor, std::string& out) {
  const double x = nodes.xyz(1, node) - x_offset, z = nodes.xyz(3, node);
  const double r = std::sqrt(x * x + z * z);
  const double* d = mode + equation(node, 1) - 1;
  const double u = d[0], v = d[1], w = d[2];
  double rho = -u;  // radial displacement, positive away from the centre of curvature
  if (x != 0) {
    const double t = std::atan(z / x);
    rho = -u * std::cos(t) - w * std::sin(t);
  }
  put_blanks(out, 2);
  put_real(out, r0 - r - factor * rho, 12, 4);
  put_blanks(out, 2);
  put_real(out, nodes.xyz(2, node) + factor * v, 12, 4);
  out += '\n';
}

// The steel of output section p (from 1), which stands at station 2(p-1).
void write_section(const SectionPattern& pattern, const Nodes& nodes, const double* mode,
                   double x_offset, int p, std::string& out) {
  const int base = 2 * (p - 1) * pattern.nodes;  // the section's node numbers start behind it
  const int feet = 2 * p - 2;
  if (pattern.girders == 1) {
    put_int(out, feet, HEADING_WIDTH);
    out += '\n';
  } else {
    free_line(out, feet);
  }
  const int reference = base + pattern.shape_reference;
  const double x0 = nodes.xyz(1, reference) - x_offset, z0 = nodes.xyz(3, reference);
  const double r0 = std::sqrt(x0 * x0 + z0 * z0);
  for (int g = 0; g < pattern.girders; ++g)
    for (int m = 0; m < GirderPattern::NODES; ++m)
      write_node(nodes, mode, base + pattern.girder[g].first + m, x_offset, r0, scale(pattern),
                 out);
}

void shape_block(const SectionPattern& pattern, const Model& model, const Nodes& nodes,
                 const Vector<double>& eigval, const Matrix<double>& eigvec, int k,
                 std::string& out) {
  const double x_offset = model.curved() ? 0.0 : STRAIGHT_OFFSET;
  out += " run ";
  put_int(out, k, k < 10 ? 1 : 2);
  out += '\n';
  for (int mode = 1; mode <= eigval.size(); ++mode) {
    put_real(out, eigval(mode), 13, 3);
    out += '\n';
    for (int p = 1; p <= model.nbay() + 1; ++p)
      write_section(pattern, nodes, eigvec.column(mode), x_offset, p, out);
  }
}

}  // namespace

void write_shape(const Model& model, const Nodes& nodes, const Vector<double>& eigval,
                 const Matrix<double>& eigvec, int k, std::string& out) {
  shape_block(ONE_GIRDER, model, nodes, eigval, eigvec, k, out);
}

void write_shape_two(const Model& model, const Nodes& nodes, const Vector<double>& eigval,
                     const Matrix<double>& eigvec, int k, std::string& out) {
  shape_block(TWO_GIRDERS, model, nodes, eigval, eigvec, k, out);
}

}  // namespace zelvo
