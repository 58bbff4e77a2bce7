// The job as the input file describes it: scalars and tables under the names of the keywords.
// Lengths in inches, forces in kips, moduli in ksi, loads per length in kips per foot of girder.
// Positions and lengths have been cut to the mesh grid by the reader.
#pragma once
#include <string>

#include "base/arrays.h"

namespace zelvo {

constexpr int STATION_SPACING = 12;  // inches between stations
constexpr int BAY_LENGTH = 24;       // inches, two stations: one shell element

// Dimensions of a girder's section and of the deck, inches, mid-plane to mid-plane.
struct SectionDimensions {
  double depth = 0;           // plumb, bottom flange to top flanges
  double bottom_width = 0;    // of the bottom flange
  double top_spacing = 0;     // between the web tops
  double flange_width = 0;    // of a top flange
  double deck_width = 0;      // of the whole deck
  double deck_thickness = 0;  // upward from the top flanges
};

struct Model {
  std::string prname;  // title of the job, not used again
  int ngird = 0;       // number of girders, 1 or 2
  double rcurv = 0;    // radius of the reference line, 0 for a straight girder
  int lgbr = 0;        // length along the reference line
  double offset = 0;   // half the distance between the girder centrelines
  SectionDimensions secdim;

  // Plate segments follow one another from the first end of the girder: length, thickness.
  int nweb = 0, nbotf = 0, ntopf = 0;
  Vector<int> web_len, botf_len, topf_len;
  Vector<double> web_t, botf_t, topf_t;

  int nibrace = 0;  // internal braces: position, type code, member area
  Vector<int> ib_pos, ib_type;
  Vector<double> ib_area;
  int nebrace = 0;  // external braces, between the two girders
  Vector<int> eb_pos, eb_type;
  Vector<double> eb_area;
  int nlat = 0;  // top laterals: direction 1 or 2, positions of the two ends, area
  Vector<int> lat_type, lat_from, lat_to;
  Vector<double> lat_area;
  int nstiff = 0;  // web stiffeners: position, width, thickness
  Vector<int> ws_pos;
  Vector<double> ws_b, ws_t;

  int nsupp = 0;  // supports; the first row is pinned, the others are rollers
  Vector<int> supp_pos;
  int nstudrow = 0;  // stud segments: length, spacing of the groups, studs across a flange
  Vector<int> stud_len;
  Vector<double> stud_spacing;
  Vector<int> stud_count;

  int nanal = 0, npour = 0;  // analyses, deck segments
  Vector<int> pour_len;
  Matrix<double> pour_e, pour_k, pour_load;  // (nanal,npour) deck modulus, stiffness per stud, load
  bool selfwt = false;                       // steel weight among the loads of the first analysis

  bool buckle = false;   // every stage ends with a buckling check
  int load_pattern = 0;  // load pattern code, one girder
  int nev = 2;           // buckling modes
  int solver_type = 0;   // eigenvalue iteration: 1, 2, or 0 while none is chosen
  double tol = 0;        // its tolerance
  double sigma = 0;      // its shift

  bool curved() const { return rcurv != 0; }
  int nstn() const { return lgbr / STATION_SPACING + 1; }  // stations
  int nbay() const { return lgbr / BAY_LENGTH; }
};

// A list of consecutive plate segments: one of the three thickness tables.
struct PlateSegments {
  int n;
  const Vector<int>& len;   // inches
  const Vector<double>& t;  // inches
};
inline PlateSegments web_segments(const Model& m) { return {m.nweb, m.web_len, m.web_t}; }
inline PlateSegments bottom_segments(const Model& m) { return {m.nbotf, m.botf_len, m.botf_t}; }
inline PlateSegments top_segments(const Model& m) { return {m.ntopf, m.topf_len, m.topf_t}; }

}  // namespace zelvo
