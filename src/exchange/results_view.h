// results.json as plain tables, as the writers of CSV and workbooks and the comparison read it:
// names, places and values stay those of the file, nothing is computed.
#pragma once
#include <string>
#include <vector>

#include "exchange/json.h"

namespace zelvo {

// values[series][place]; nan where the file has none.
using Values = std::vector<std::vector<double>>;

struct EnvelopeView {
  Values high, low;
  Values high_stage, low_stage;  // from 1
};

struct SeriesView {
  int girder = 0;          // 0: not that of a girder
  std::string name, rest;  // rest: of the name behind the girder; empty if it is the table's title
  std::string unit;
};

struct PlaceView {
  int girder = 0;       // of a member; 0: see the series
  double position = 0;  // inches; nan where the place has none
  std::string member;   // "internal frame 3", "support 2"; empty at stations, sections and bays
};

struct TableView {
  std::string name, title, unit, positive;
  std::string along;  // what the places are: "station", "support", ..., "tenth point", "mode"
  std::vector<SeriesView> series;
  std::vector<PlaceView> places;
  std::vector<Values> increment, total;       // of each stage; empty where the table has none
  Values single;                              // of no stage
  EnvelopeView increment_envelope, envelope;  // empty the same
};

struct ResultsView {
  std::string title;
  std::vector<std::string> stage_name;
  // Those of `tables`, then stresses of members, camber, what is still to come, buckling factors.
  // Tables without values are left out.
  std::vector<TableView> tables;
};

// A json that is no results.json throws std::runtime_error.
ResultsView view_results(const Json& results);
// Reads a file. One that cannot be opened throws FileFailure, one that is no results.json
// std::runtime_error.
ResultsView read_results(const std::string& path);

}  // namespace zelvo
