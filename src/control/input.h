// Reading of the input file: the keyword language, into the model description.
#pragma once
#include <string>
#include <string_view>
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

// A position or length that is no multiple of the grid. The model holds it cut, toward zero.
struct MovedValue {
  int line;
  Keyword keyword;
  int row;           // 0 for a single record
  const char* name;  // of the value in its row, "position"
  int typed, cut;    // inches
};

struct Input {
  Model model;
  BlockPlace block[KEYWORDS];
  std::vector<MovedValue> moved;  // all of them in the order of the file
  int last_line = 0;              // of the keyword end, or of the file
  bool ended = false;             // the keyword end was reached
  bool bad_value = false;         // a value did not convert
  InputNotes notes;               // values that do not convert, and warnings about words
};

// Line of a row of the keyword's table.
inline int row_line(const Input& in, Keyword k, int row) {
  return in.block[k].rows[static_cast<std::size_t>(row - 1)].line;
}

// Faults of the file as a whole have messages of their own.
enum class ReadOutcome { COMPLETE, EMPTY, INPUT_ERROR };

// Reads content, the whole input file, up to the keyword `end`.
//
// EMPTY: there is no word at all. INPUT_ERROR: the file ends before `end`. Values that do not
// convert become faults in in.notes, and reading goes on, to find them all; they come first: a file
// with such a value that ends before `end` is COMPLETE, with its faults. A model with faults is not
// complete, but its counts agree with its tables. A repeated keyword is skipped, and so is any line
// that begins with no keyword. Positions and lengths are cut to the grid, toward zero. Tables grow
// with the rows that are really there, whatever their count says.
ReadOutcome read_input(std::string content, Input& in);

// The value that the grid moved in that line, or nullptr if it stands on the grid as typed.
const MovedValue* moved_value(const Input& in, int line, std::string_view name);

}  // namespace zelvo
