// results.json: all that a construction has yielded, for other programs. docs/results-json.md tells
// every key.
#pragma once
#include <string>

#include "construction/history.h"
#include "exchange/job.h"
#include "exchange/json.h"

namespace zelvo {

// How the pass is made that the annotations of a file ask for; checks beside.
HistoryOptions history_options(const Job& job, const CheckChoice& checks);

// The results of a sound job, constructed with history_options. date: "2026-11-23T10:00:00Z".
Json results_json(const Job& job, const History& history, const std::string& date);

// The text that goes to the disk; bytes that are no UTF-8 are replaced.
std::string json_text(const Json& json);

}  // namespace zelvo
