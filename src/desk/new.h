// zelvo-desk new: a commented input file from the few figures that a bridge begins with.
#pragma once
#include <string>
#include <vector>

namespace zelvo {

// What a bridge is given by. 0 and empty: found by the rules of docs/desk.md. A length may carry its
// unit, "160ft" or "1920in"; without one it is feet here and inches in a section.
struct BridgeSketch {
  std::string title;
  int girders = 1;
  std::vector<std::string> spans;          // ft
  std::string radius;                      // ft, of the reference line; empty: straight
  std::string spacing;                     // ft, between girder centres
  std::string depth, bottom_width;         // in
  std::string top_spacing, flange_width;   // in
  std::string deck_width, deck_thickness;  // ft, in
  std::string frame_spacing;               // ft
  std::vector<double> web, bottom, top;    // in: in the spans, over the inner supports
  double barrier = 0.9;                    // kip/ft, in the last stage
  std::string order;                       // of the segments: "1+5,3,2,4"; empty: spans first
  bool buckle = false;
};

// The text of an input file. What cannot be built throws std::invalid_argument with the reason.
std::string bridge_text(const BridgeSketch& sketch);

struct NewOptions {
  BridgeSketch sketch;
  std::string
      json;  // file that gives the sketch, keys as the options, which it takes precedence over
  std::string output;  // file to write, which must not exist; standard output if empty
  bool force = false;  // it may exist
};
// Writes the input file. Returns the exit status; what cannot be written throws FileFailure.
int new_command(const NewOptions& options);

}  // namespace zelvo
