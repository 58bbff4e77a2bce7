// The results as one long table, a value a row (RFC 4180: comma, CRLF, quotes doubled):
//
//   stage, stage_name, kind, girder, station_ft, member, quantity, unit, value, governing_stage
//
// kind is increment, total or envelope (that of the totals). The rows of an envelope have no stage;
// their quantity ends in " high" or " low", and governing_stage is where it comes from. Numbers are
// those of results.json in full precision; only a station is its position over 12. A text that a
// spreadsheet would take for a formula (= + - @ in front) gets an apostrophe in front.
#pragma once
#include <string>

#include "exchange/results_view.h"

namespace zelvo {

// strips: with the stresses of every strip of the plates (tables s22, s12, mid22, mid12), most of
// the values of a large model.
std::string csv_table(const ResultsView& results, bool strips = false);

// A text as a cell of a CSV file.
std::string csv_cell(const std::string& text);

}  // namespace zelvo
