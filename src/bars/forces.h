// Bar forces of the braces and laterals, one block per analysis and file.
//
// A block is the line " run", the analysis number k, the element count, and one line per element:
// its number in 5 columns, then each force [kip], positive in tension, behind 2 blanks.
#pragma once
#include <string>

#include "bars/braces.h"

namespace zelvo {

// Four forces per internal brace, those of the bars at P1 to P4, fields of 8 columns, 2 decimals.
void write_ibrace_forces(const Nodes& nodes, const Elements& elements, const Properties& properties,
                         const Vector<double>& U, int k, std::string& out);

// Five forces per external brace, its bars in order, fields of 8 columns, 2 decimals.
void write_ebrace_forces(const Nodes& nodes, const Elements& elements, const Properties& properties,
                         const Vector<double>& U, int k, std::string& out);

// One force per top lateral, in a field of 10 columns, 2 decimals.
void write_lateral_forces(const Nodes& nodes, const Elements& elements,
                          const Properties& properties, const Vector<double>& U, int k,
                          std::string& out);

// Forces of the bars at the corners of an internal brace from its nodal forces f12 = k12 u12 [kip]:
// each corner has one bar, so its force is that of the corner along the line from M.
FixedVector<double, 4> ibrace_forces(const BraceCorners& c12, const BraceCorners& f12);

// Forces of the bars of an external brace in the order of their list.
//   u15  in  inches, displacements of M and the corners
FixedVector<double, 5> ebrace_forces(const BraceCorners& c12, const PatchVector& u15,
                                     const FixedVector<double, 3>& prop);

}  // namespace zelvo
