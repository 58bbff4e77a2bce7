// What a reader has to know of each table of quantities: title, unit, places, series, sign.
#pragma once
#include <string>
#include <vector>

#include "construction/quantities.h"
#include "model/structure.h"

namespace zelvo {

// Where the values of a table stand.
enum class Along { STATION, SECTION, BAY, SUPPORT, INTERNAL_FRAMES, EXTERNAL_FRAMES, LATERAL };
inline constexpr const char* ALONG_NAMES[] = {
    "station", "section", "bay", "support", "internal_frame", "external_frame", "lateral"};

// How the series of a table are called.
enum class SeriesKind {
  GIRDERS,
  SIDES,  // left and right of each girder
  DECK_EDGES,
  ONE,
  SECTION,  // shear, moment, torque
  STRIPS,
  CORNERS,  // bars of an internal frame
  BARS      // bars of an external frame
};

struct TableInfo {
  const char *name, *title, *unit;
  Along along;
  SeriesKind series;
  const char* positive;
  bool linear;

  // Places stand in the columns of the matrix, not in its rows.
  bool places_in_columns() const {
    return series == SeriesKind::STRIPS || series == SeriesKind::CORNERS ||
           series == SeriesKind::BARS || along == Along::LATERAL;
  }
};

// In the order of each_table.
const std::vector<TableInfo>& table_infos();

// Names of the series of a table of so many.
std::vector<std::string> series_names(const TableInfo& info, const SectionPattern& pattern,
                                      int count);

}  // namespace zelvo
