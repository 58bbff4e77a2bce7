// The results as a workbook: a first sheet that lists the others, then one for each quantity with its
// chart and its values. Every text is a text to the spreadsheet, whatever it begins with; there are
// no formulas.
#pragma once
#include <string>

#include "exchange/results_view.h"

namespace zelvo {

// Rows of a sheet are the places of the table: station in ft, girder and member. Columns are the
// series of each stage's total, of the envelope of the totals with the governing stages, then of each
// stage's increment. Rows go to the disk as they are written. A file that cannot be written throws
// FileFailure.
void write_xlsx(const ResultsView& results, const std::string& path);

}  // namespace zelvo
