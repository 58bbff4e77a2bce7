// What the program has to say about an input file: faults, which forbid the analysis, and warnings,
// which do not. All of them are collected and then written, one line each.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zelvo {

constexpr const char* INPUT_FILE = "zvinp.txt";

struct Note {
  int line;  // of the input file, 0 if it concerns none
  std::string text;
};

struct InputNotes {
  std::vector<Note> faults, warnings;
  std::int64_t faults_left_out = 0, warnings_left_out = 0;  // beyond MAX_NOTES
};
constexpr std::size_t MAX_NOTES = 1000;

void add_fault(InputNotes& notes, int line, std::string text);
void add_warning(InputNotes& notes, int line, std::string text);

// "keyword row 3: " or, with row 0, "keyword: ".
std::string place(std::string_view keyword, int row);
// A number with as many digits as tell it apart.
std::string number(double value);
// text with everything but printable characters written as \xNN.
std::string printable(std::string_view text);

// "and 7 more faults", "and 3 more warnings": a line for each kind of which some are left out.
std::vector<std::string> left_out(const InputNotes& notes);

// All notes by line number, "zvinp.txt:LINE: text" for faults, "zvinp.txt:LINE: warning: text" for
// warnings, and what is left out.
std::string note_lines(const InputNotes& notes);

}  // namespace zelvo
