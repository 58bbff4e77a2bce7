// Beam theory beside the shell model.
//
// The outer element of a web ends on a node whose director is that of the flange, so its thickness
// fades toward the edge: with c = ((s3 - s2)/2) / l, l the slant length of the web, the quadratic
// shape function (1 - 3s + 2s^2) of the edge node, integrated over the outer eighths, takes from
// each of the four web ends the area t l (1-c)/24, the same times its height ye from the axis as
// first moment, and t l (1-c)/4 (ye^2/6 - h^2/960) as second moment; of the web's shear area it
// takes the share (1-c)/12. The corrected section has all that taken off.
#pragma once
#include <cmath>

#include "model/description.h"
#include "model/properties.h"

namespace zelvo {

constexpr double DECK_LOAD = 3.0 / 12;  // kip/in, of the deck on a girder

enum class Webs { WHOLE, CORRECTED };

struct BeamSection {
  double A, y, I;  // area, axis above the bottom flange, second moment about it
  double Av;       // shear area: webs times the square of their sine
  double shear_modulus() const { return STEEL_E / 2.6; }
  double EI() const { return STEEL_E * I; }
  double GA() const { return shear_modulus() * Av; }
};

// Bare steel section of one girder, of the first segment of each plate.
inline BeamSection tub_section(const Model& m, Webs webs = Webs::CORRECTED) {
  const double h = m.secdim.depth, t = m.web_t(1), tb = m.botf_t(1), tt = m.topf_t(1);
  const double run = (m.secdim.top_spacing - m.secdim.bottom_width) / 2, l = std::hypot(run, h);
  const double lack = webs == Webs::CORRECTED ? 1 - run / l : 0;  // 1 - c
  const double Ab = m.secdim.bottom_width * tb, At = 2 * m.secdim.flange_width * tt, Aw = 2 * t * l;
  const double end = t * l * lack / 24;  // lost at each web end, two at the top, two at the bottom
  BeamSection s{};
  s.A = Ab + At + Aw - 4 * end;
  s.y = (At * h + Aw * h / 2 - 2 * end * h) / s.A;
  const double top = h - s.y, bottom = -s.y, middle = h / 2 - s.y;
  const auto lost = [&](double ye) { return t * l * lack / 4 * (ye * ye / 6 - h * h / 960); };
  s.I = Ab * (bottom * bottom + tb * tb / 12) + At * (top * top + tt * tt / 12) +
        Aw * (middle * middle + h * h / 12) - 2 * lost(top) - 2 * lost(bottom);
  s.Av = Aw * (1 - lack / 12) * (h / l) * (h / l);
  return s;
}

// Midspan deflection of a simple span under w kip/in, downward (Timoshenko 1955).
inline double simple_span_deflection(const BeamSection& s, double w, double L) {
  return 5 * w * std::pow(L, 4) / (384 * s.EI()) + w * L * L / (8 * s.GA());
}

}  // namespace zelvo
