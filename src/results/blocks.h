// The blocks of the result files, one for each stage, appended to the text of a file.
//
// Unless said otherwise a block is the line " run", the analysis number k, the count of what follows,
// and a line for each station, section, bay or element.
#pragma once
#include <string>

#include "results/stage_results.h"

namespace zelvo {

// Vertical displacement of the first girder every 24 inches, and rotation of its section.
void write_deflections(const StationDisplacements& stations, int k, std::string& out);
void write_deflections_two(const StationDisplacements& stations, int k, std::string& out);
void write_rotations(const StationDisplacements& stations, int k, std::string& out);
void write_rotations_two(const StationDisplacements& stations, int k, std::string& out);

// Under the line " run k": kind and station of every support, and its reaction for each girder.
void write_reactions(const Reactions& reactions, int k, std::string& out);

// Shear [kip], moment and torque [kip-ft] at the ends of all bays to sec, stresses [ksi] of all
// strips of each bay to str.
void section_forces_one(const SectionResults& sections, int k, std::string& sec, std::string& str);
void section_forces_two(const SectionResults& sections, int k, std::string& sec, std::string& str);

// Element number and forces [kip]: four of an internal brace, five of an external one, one of a
// lateral.
void write_ibrace_forces(const BarForces& bars, int k, std::string& out);
void write_ebrace_forces(const BarForces& bars, int k, std::string& out);
void write_lateral_forces(const BarForces& bars, int k, std::string& out);

// Under the line " run k": for each mode its factor and, every 24 inches, the buckled section.
void write_shape(const BucklingResults& buckling, int k, std::string& out);
void write_shape_two(const BucklingResults& buckling, int k, std::string& out);

}  // namespace zelvo
