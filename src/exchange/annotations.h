// Names and settings that the batch format cannot hold: lines `!@ WORD VALUES`, which the batch
// program skips as comments.
//
//   !@ title TEXT                 of the report; the job's name without it
//   !@ stage K NAME               what stage K is called
//   !@ load_factor K FACTOR       of the increment of stage K; 1 without it
//   !@ bearing_spacing INCHES     between the two bearings of a girder
//   !@ limit NAME VALUE           what a governing value is compared with; names: LIMIT_NAMES
#pragma once
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "control/input_notes.h"

namespace zelvo {

// Magnitudes, but for reaction (least total) and factor (lowest positive one by history).
inline constexpr std::array<std::string_view, 8> LIMIT_NAMES = {
    "deflection",    // inches, of a girder
    "differential",  // inches, between the girders
    "twist",         // radians
    "top_flange",    // ksi, |f_bu| + |f_l| is not formed: f_bu alone
    "bottom_flange", "web_shear",
    "reaction",  // kips, not below
    "factor"};   // not below

struct Limit {
  int line;
  std::string name;  // of LIMIT_NAMES
  double value;
};

struct Annotations {
  std::string title;
  std::vector<std::string> stage_name;  // (nanal) empty where none is given
  std::vector<double> load_factor;      // (nanal)
  double bearing_spacing = 0;           // inches, 0 without
  std::vector<Limit> limits;
};

// Reads the annotations of content, the whole input file, for a model of nanal stages. What is not
// understood, doubled or out of range becomes a fault with its line.
Annotations read_annotations(std::string_view content, int nanal, InputNotes& notes);

}  // namespace zelvo
