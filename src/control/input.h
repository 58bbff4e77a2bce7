// Reading of the input file: the keyword language, into the model description.
#pragma once
#include <string>
#include <vector>

#include "control/input_notes.h"
#include "control/keywords.h"
#include "model/description.h"

namespace zelvo {

// Where a record stands and whether all its values could be converted.
struct RecordPlace {
  int line = 0;
  bool good = false;
};

// Where the records of a keyword stand.
struct BlockPlace {
  int line = 0;                    // of the keyword, 0 if the file does not give it
  bool complete = false;           // all its records were read; without it no count can be trusted
  std::vector<RecordPlace> heads;  // single records: counts, scalars, switches, in the order read
  std::vector<RecordPlace> rows;   // rows of the table
};

struct Input {
  Model model;
  BlockPlace block[KEYWORDS];
  int last_line = 0;  // of the keyword end, or of the file
  InputNotes notes;   // values that do not convert, and warnings about words
};

// Faults of the file as a whole have messages of their own.
enum class ReadOutcome { COMPLETE, EMPTY, INPUT_ERROR };

// Reads content, the whole input file, up to the keyword `end`.
//
// EMPTY: there is no word at all. INPUT_ERROR: the file ends before `end`. Values that do not
// convert become faults in in.notes, and reading goes on; a model with faults is not complete, but
// its counts agree with its tables. A repeated keyword is skipped, and so is any line that begins
// with no keyword. Positions and lengths are cut to the grid, toward zero. Tables grow with the rows
// that are really there, whatever their count says.
ReadOutcome read_input(std::string content, Input& in);

}  // namespace zelvo
