// What accumulates while a bridge is built: all quantities that are linear in the displacements of a
// stage, each found with the stiffness of its own stage, and what follows from them.
//
// Units: inches, kips, kip-inches, ksi, radians. Positions: station s = 1 to nstn every 12 in,
// section j = 1 to nbay+1 every 24 in (cut just before its nodes, the first just behind them), bay
// middles. Signs and reference points stand in docs/construction.md.
#pragma once
#include "base/arrays.h"

namespace zelvo {

// Motion of the sections at every station, one column per girder.
struct GirderMotion {
  Matrix<double> left_foot, right_foot;  // (nstn,girders) vertical, up, of the web feet
  Matrix<double> left_top, right_top;    // (nstn,girders) vertical of the web tops
  Matrix<double> deflection;             // (nstn,girders) mean of the feet
  Matrix<double> lateral;                // (nstn,girders) across, to the right, mean of the feet
  Matrix<double> top_lateral;            // (nstn,girders) the same of the web tops
  Matrix<double> twist;                  // (nstn,girders) radians, clockwise seen along the girder
  Matrix<double> deck_edges;             // (nstn,2) vertical of the left and the right deck edge
  Matrix<double> differential;           // (nstn,girders-1) deflection of girder 1 less girder 2
};

// Stress resultants of one part of a cross-section at every section, about one point of the section:
// the force and the moment that the part beyond the section exerts on the part before it.
struct Resultants {
  Matrix<double> N, V, H;  // (nbay+1,parts) axial (tension), shear up, lateral shear to the right
  Matrix<double> M, L, T;  // (nbay+1,parts) bending (sagging), lateral bending (tension on the
                           // right), torque (clockwise seen along the girder)
};

// All that is summed and enveloped.
struct Quantities {
  GirderMotion motion;
  Matrix<double> vertical, lateral, longitudinal;  // (nsupp,girders) reactions
  Matrix<double> couple;    // (nsupp,girders) of the vertical reactions about the flange centre
  Matrix<double> bearings;  // (nsupp,2 girders) left and right bearing; no rows without spacing
  Matrix<double> section;   // (nbay+1,3) shear, moment, torque as the batch program has them
  Resultants girders;       // of each girder about the section's common point
  Resultants own;           // of each girder about its own point, the middle between its web tops
  Resultants bracing;       // of the laterals of each girder that cross the section, common point
  Resultants whole;         // one column: girders and bracing together, common point
  Matrix<double> s22, s12;  // (strips,nbay) as the batch program has them: second thickness point
  Matrix<double> mid22, mid12;             // (strips,nbay) at mid-thickness
  Matrix<double> flange_mean;              // (nbay,2 girders) top flanges, left and right: f_bu
  Matrix<double> flange_bend;              // the same: f_l, positive with tension at the right tip
  Matrix<double> bottom_mean;              // (nbay,girders)
  Matrix<double> bottom_high, bottom_low;  // (nbay,girders) extremes over the strips: not linear
  Matrix<double> web_shear;                // (nbay,2 girders) largest magnitude over the strips of
                                           // a web, positive like V: not linear
  Matrix<double> internal;                 // (4,nibel)
  Matrix<double> external;                 // (5,nebel)
  Matrix<double> laterals;                 // (1,nlatel)
};

// Visits every table, always in the same order, with its name.
template <class Q, class Visit>
void each_table(Q& q, Visit visit) {
  visit("left_foot", q.motion.left_foot);
  visit("right_foot", q.motion.right_foot);
  visit("left_top", q.motion.left_top);
  visit("right_top", q.motion.right_top);
  visit("deflection", q.motion.deflection);
  visit("lateral", q.motion.lateral);
  visit("top_lateral", q.motion.top_lateral);
  visit("twist", q.motion.twist);
  visit("deck_edges", q.motion.deck_edges);
  visit("differential", q.motion.differential);
  visit("reaction", q.vertical);
  visit("reaction_lateral", q.lateral);
  visit("reaction_longitudinal", q.longitudinal);
  visit("reaction_couple", q.couple);
  visit("bearings", q.bearings);
  visit("section", q.section);
  const auto resultants = [&](const char* n, const char* v, const char* h, const char* m,
                              const char* l, const char* t, auto& r) {
    visit(n, r.N);
    visit(v, r.V);
    visit(h, r.H);
    visit(m, r.M);
    visit(l, r.L);
    visit(t, r.T);
  };
  resultants("girder_N", "girder_V", "girder_H", "girder_M", "girder_L", "girder_T", q.girders);
  resultants("own_N", "own_V", "own_H", "own_M", "own_L", "own_T", q.own);
  resultants("bracing_N", "bracing_V", "bracing_H", "bracing_M", "bracing_L", "bracing_T",
             q.bracing);
  resultants("whole_N", "whole_V", "whole_H", "whole_M", "whole_L", "whole_T", q.whole);
  visit("s22", q.s22);
  visit("s12", q.s12);
  visit("mid22", q.mid22);
  visit("mid12", q.mid12);
  visit("flange_mean", q.flange_mean);
  visit("flange_bend", q.flange_bend);
  visit("bottom_mean", q.bottom_mean);
  visit("bottom_high", q.bottom_high);
  visit("bottom_low", q.bottom_low);
  visit("web_shear", q.web_shear);
  visit("internal", q.internal);
  visit("external", q.external);
  visit("laterals", q.laterals);
}

}  // namespace zelvo
