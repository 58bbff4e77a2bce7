// Words that several sections share: places, stages, modes.
#pragma once
#include <string>

#include "report/results.h"
#include "report/units.h"

namespace zelvo::report {

// "212.0 ft, span 2"; at a support its number.
Html place(double position, const Bridge& bridge);
// The place of a table's value: along the bridge, or of a member.
Html table_place(const Results& r, const TableText& table, int index);  // from 1

// The stage's number in its colour; with its name if that says more.
Html stage_chip(const Results& r, int k);
Html stage_label(const Results& r, int k);
// All stages in a row: the key to the diagrams.
Html stage_key(const Results& r);

// "web of girder 1, left, bulges at 212.0 ft, span 2"
Html mode_words(const ModeText& mode, const Bridge& bridge);

// "1 limit", "3 limits"
std::string counted(int n, const std::string& thing);

// A table with this class inside a box that scrolls where the page is too narrow.
Html table(const char* kind, const Html& head, const Html& body);

}  // namespace zelvo::report
