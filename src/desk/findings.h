// What the check has found: one entry for each rule that a keyword's rows miss, the root cause first,
// with what follows from it below.
#pragma once
#include <array>
#include <initializer_list>
#include <string>
#include <vector>

#include "exchange/job.h"

namespace zelvo {

// The text is head, values separated by commas, tail; rows that miss the same rule share one entry.
struct Finding {
  int line = 0;  // of the file, 0: the file as a whole
  bool error = false;
  Keyword keyword = NO_KEYWORD;
  std::vector<int> rows;  // of the keyword's table; none: the keyword itself
  std::string head;
  std::vector<std::string> values;
  std::string tail;
  std::vector<std::string> consequences;
};

// Findings in the making, and the file that they are about.
struct Checked {
  const Job& job;
  std::vector<Finding> findings{};
};

// Line of a row, of the keyword's first record for row 0, or of the keyword.
int place_of(const Input& in, Keyword keyword, int row);

// Adds a warning, or an error.
void warn(Checked& c, Keyword keyword, int row, std::string head, std::string value = {},
          std::string tail = {});
void refuse(Checked& c, Keyword keyword, int row, std::string head, std::string value = {},
            std::string tail = {});

// What a value outside its usual range may have been typed in: times factor it is inside.
struct Slip {
  double factor;
  const char* hint;  // "in feet"
};
struct Usual {
  const char* name;  // "thickness"
  const char* unit;
  double low, high;
  std::array<Slip, 5> slips{};
};
inline constexpr Slip IN_FEET{12, "in feet"}, IN_MM{1 / 25.4, "in mm"},
    IN_METRES{39.37, "in metres"}, POINT_LEFT{0.1, "the decimal point"},
    POINT_RIGHT{10, "the decimal point"}, TWELVE_TIMES{1 / 12.0, "12 times too large"},
    THOUSAND_TIMES{1e-3, "1000 times too large"};

// ": in feet?", or nothing if no slip brings the value into its range.
std::string slip_hint(const Usual& usual, double value);
// Warns of a value outside its range; true if it is inside.
bool expect(Checked& c, Keyword keyword, int row, const Usual& usual, double value);

// For ranges whose miss is told in words of its own.
inline bool inside(double value, const double (&range)[2]) {
  return value >= range[0] && value <= range[1];
}

// True if the keywords that are given were read whole, without a fault; an absent one counts as
// read, unless it is required.
bool usable(const Checked& c, std::initializer_list<Keyword> keywords);

// Takes over faults and warnings of the reader and of the checks of the batch program, and every
// value that the grid has moved.
void take_notes(Checked& c);

// Joins rows that miss the same rule, puts what follows from another finding below it, and sorts by
// line.
void settle(Checked& c);

// "support row 1: 1910 is cut to 1896", and the line of the list.
std::string finding_text(const Finding& f);
std::string finding_lines(const std::string& path, const Finding& f);

// Ten significant digits, three.
std::string plain(double value);
std::string rounded(double value);

}  // namespace zelvo
