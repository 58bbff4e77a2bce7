// What the report needs of results.json, as plain structs with the names of its keys. A value that
// does not exist (null) is NaN; an object that does not exist is empty.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "exchange/json.h"

namespace zelvo::report {

// Of a table: a series of values along its places for each of its series.
using Values = std::vector<std::vector<double>>;
using Governors = std::vector<std::vector<int>>;  // stages, the same way

struct TableText {
  std::string title, unit, along, positive;
  std::vector<std::string> series;
};
struct EnvelopeTable {
  Values high, low;
  Governors high_stage, low_stage;
};
// Stage, series and place from 1; stage 0: the table is empty.
struct GoverningValue {
  double value = 0;
  int stage = 0, series = 0, place = 0;
};
struct GoverningPair {
  GoverningValue high, low;
};

struct MemberPlaces {
  std::vector<int> girder, number;  // girder 0: between girders
  std::vector<double> begin, end, area;
};

struct Stretch {
  double begin, end;
  double thickness;  // of plates
};
struct LateralBar {
  int direction;  // 1: from right to left, 2: from left to right
  double begin, end;
};
struct SupportLine {
  double position;
  std::string kind;
};
struct Bridge {
  int girders;
  double radius;  // NaN if straight
  double length, half_distance;
  double depth, bottom_width, top_spacing, flange_width, deck_width, deck_thickness;
  std::vector<SupportLine> supports;
  std::vector<Stretch> spans, webs, bottom_flanges, top_flanges, segments;
  std::vector<double> internal_frames, external_frames;  // positions
  std::vector<LateralBar> laterals;
  double bearing_spacing;  // NaN without
  double steel_plates, bracing;
};

struct SegmentState {
  double modulus, stud, load;
  bool hard;
};
struct StageText {
  int number;
  std::string name;
  double load_factor;
  std::vector<SegmentState> segments;
  double load, reactions, grounded, imbalance, residual;
  bool finite;
  int solver_code;
  double largest_deflection, position, span;
};

struct TenthPlace {
  int span, tenth;
  double position;
};
struct CamberTables {
  std::vector<TenthPlace> points;
  std::vector<std::string> series;
  Values camber;
  std::vector<Values> increments, to_come, totals;  // for each stage; increments may be missing
};

struct UpliftText {
  int support, girder, bearing, stage;
  double value;
};
struct LimitText {
  std::string name, unit;
  double limit, value, place;
  int stage;  // 0: not compared
  bool met;
};
struct Warning {
  int line;
  std::string text;
};

struct ModeText {
  double factor, residual, position, share;
  bool sharp;
  std::string kind, plate, remark;
  int girder, side;
  std::vector<int> shape;  // 3 for each node of the geometry; empty without
};
struct CheckText {
  bool made = false;
  std::vector<std::string> remarks;
  std::vector<ModeText> modes;
};
struct LowestText {
  int stage = 0, mode = 0;  // 0: no positive factor
  double factor = 0;
};
struct Run {
  std::string plate;
  int girder;
  std::vector<int> nodes;  // of a section, from 1
};
struct Geometry {
  std::vector<double> section, xyz;  // positions; 3 for each node
  int nodes_per_section = 0;
  std::vector<Run> runs;
};

struct Results {
  std::string program, date, title, file, sha256, input;
  std::vector<Warning> warnings;
  Bridge bridge;
  std::vector<StageText> stages;
  std::map<std::string, std::vector<double>> position;  // of station, section, bay, support
  std::map<std::string, MemberPlaces> members;  // of internal_frame, external_frame, lateral
  std::map<std::string, TableText> tables;
  std::vector<std::map<std::string, Values>> increments, totals;
  std::map<std::string, EnvelopeTable> envelope;  // of the totals
  std::map<std::string, GoverningPair> governing;
  std::map<std::string, EnvelopeTable> member_stress;  // high and low alone
  CamberTables camber;
  std::vector<UpliftText> uplift;
  std::vector<LimitText> limits;
  std::vector<CheckText> history, batch_rule, softest;
  LowestText lowest_history, lowest_batch_rule, lowest_softest;
  Geometry geometry;
  double worst_imbalance, worst_residual;
};

// Keys that are missing throw nlohmann::json::exception.
Results read_results(const Json& json);

// The lowest mode of the checks by history; null if there is none.
const ModeText* lowest_mode(const Results& r);

}  // namespace zelvo::report
