#include "construction/checks.h"

#include <algorithm>
#include <cmath>

#include "bars/braces.h"
#include "bars/gather.h"
#include "construction/camber.h"
#include "solution/loads.h"
#include "solution/nodal.h"

namespace zelvo {

namespace {

// A diagonal of this size carries the penalty of a rigid support.
constexpr double RIGID = 1.0e19;

double downward_load(const Vector<double>& F) {
  double sum = 0;
  for (std::int64_t i = 2; i <= F.size(); i += NDOF) sum -= F(i);
  return sum;
}

double residual(const RowBundles& rows, const SymmetricMatrix& K, const Vector<double>& F,
                const Vector<double>& U) {
  Vector<double> KU(F.size(), "the residual", UNINITIALIZED);
  sym_matvec(rows, K, U.data(), KU.data());
  double rr = 0, ff = 0;
  for (int i = 1; i <= K.n(); ++i) {
    if (K.diagonal(i) >= RIGID) continue;
    rr += (F(i) - KU(i)) * (F(i) - KU(i));
    ff += F(i) * F(i);
  }
  return ff > 0 ? std::sqrt(rr / ff) : std::sqrt(rr);
}

double frame_volume(const BracePattern& brace, const Nodes& nodes, const Matrix<int>& conn,
                    const Vector<BarProperty>& prop) {
  double volume = 0;
  for (int e = 1; e <= conn.cols(); ++e) {
    const PatchVector points = patch_points(brace, gather_points<4>(nodes, conn, e));
    for (int m = 0; m < brace.bars; ++m) {
      const FixedVector<double, 6> c = ends(points, brace.bar[m].a, brace.bar[m].b);
      volume += prop(e).area * length(Vec3{{c(4) - c(1), c(5) - c(2), c(6) - c(3)}});
    }
  }
  return volume;
}

double distance(const Nodes& nodes, int a, int b) {
  return length(column3(nodes.xyz, b) - column3(nodes.xyz, a));
}

double plate_volume(const PlateSegments& plates, double width) {
  double volume = 0;
  for (int i = 1; i <= plates.n; ++i) volume += plates.len(i) * plates.t(i) * width;
  return volume;
}

}  // namespace

LargestDeflection largest_deflection(const Model& model, const Matrix<double>& deflection) {
  LargestDeflection largest;
  for (int g = 1; g <= deflection.cols(); ++g)
    for (int s = 1; s <= deflection.rows(); ++s)
      if (std::abs(deflection(s, g)) > std::abs(largest.value)) {
        largest.value = deflection(s, g);
        largest.position = STATION_SPACING * (s - 1);
      }
  for (const Span& span : spans_of(model))
    if (span.begin <= largest.position && largest.position <= span.end)
      largest.span = span.end - span.begin;
  return largest;
}

StageChecks check_stage(const Model& model, const Structure& structure, const RowBundles& rows,
                        const SymmetricMatrix& K, const Vector<double>& F,
                        const Vector<double>& U) {
  StageChecks c;
  c.load = downward_load(F);
  const Reactions r = support_reactions(structure, U);
  for (int i = 1; i <= r.vertical.rows(); ++i)
    for (int g = 1; g <= r.vertical.cols(); ++g) c.reactions += r.vertical(i, g);
  c.grounded = grounded_force(structure, U);
  const double off = std::abs(c.load - c.reactions - c.grounded);
  c.imbalance = c.load != 0 ? off / std::abs(c.load) : off;
  c.residual = residual(rows, K, F, U);
  c.largest = largest_deflection(model, station_displacements(model, structure, U).deflection);
  return c;
}

BracingWeight bracing_weight(const Structure& structure) {
  const auto& [section, nodes, el, prop] = structure;
  BracingWeight w;
  w.internal = STEEL_DENSITY * frame_volume(INTERNAL_FRAME, nodes, el.ibconn, prop.ibprop);
  w.external = STEEL_DENSITY * frame_volume(EXTERNAL_FRAME, nodes, el.ebconn, prop.ebprop);
  for (int e = 1; e <= el.nlatel; ++e)
    w.laterals +=
        STEEL_DENSITY * prop.latprop(e).area * distance(nodes, el.latconn(1, e), el.latconn(2, e));
  for (int e = 1; e <= el.nwsel; ++e)
    w.stiffeners += STEEL_DENSITY * prop.wsprop(e).width * prop.wsprop(e).thickness *
                    distance(nodes, el.wsconn(1, e), el.wsconn(9, e));
  return w;
}

double plate_weight(const Model& model, const Structure& structure) {
  const SectionDimensions& s = model.secdim;
  return STEEL_DENSITY * structure.section->girders *
         (plate_volume(web_segments(model), 2 * web_width(structure)) +
          plate_volume(bottom_segments(model), s.bottom_width) +
          plate_volume(top_segments(model), 2 * s.flange_width));
}

}  // namespace zelvo
