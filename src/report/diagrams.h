// Diagrams of the tables of the results.
#pragma once
#include "report/chart.h"

namespace zelvo::report {

// A series of a table, from 1.
struct DiagramOf {
  const char* table;
  int series;
  Sign sign;
  bool downward;
};

// The increments of all stages, and the total after the last with its peaks.
Html stages_figure(const Results& r, const DiagramOf& of);
// The totals of all stages between their envelopes, with the stages that govern.
Html envelope_figure(const Results& r, const DiagramOf& of);
// Totals of two sides of a girder, left and right, between their envelopes.
Html sides_figure(const Results& r, const char* table, int girder, Sign sign,
                  const std::string& limit);
// The bottom flange of a girder: its mean, its extremes, and their envelope.
Html bottom_figure(const Results& r, int girder);

}  // namespace zelvo::report
