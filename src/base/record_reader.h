// Free-format records: reads that take their values from the next unread line on.
//
// If a line ends before the read is satisfied, the read goes on to the following lines; when it is
// satisfied, whatever is left of the line is thrown away. Values are separated by blanks, tabs or
// commas. n*v stands for n copies of v, n* for n values left as they are, and so does each empty
// place between commas; a slash leaves all the remaining values as they are. Text may stand in
// single or double quotes, in which a doubled quote is a quote. Line ends may be LF or CR LF, and a
// byte-order mark at the start is skipped.
#pragma once
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelvo {

// Where a value goes; the type says what is expected.
using Target = std::variant<std::string*, int*, double*, bool*>;

enum class ValueProblem { NOT_CONVERTIBLE, OUT_OF_RANGE, NOT_FINITE };

// A value that could not be converted. Its target keeps what it had.
struct ValueFault {
  int item;  // which value of the record, from 1
  int line;
  std::string text;      // as it stands in the file, at most FAULT_TEXT characters of it
  const char* expected;  // "an integer"
  ValueProblem problem;
  bool first_on_line;
  std::size_t line_start;  // place of its line
};
constexpr std::size_t FAULT_TEXT = 60;

// The whole file and the place of the next unread line.
struct RecordReader {
  std::string text;
  std::size_t next = 0;          // first character of the next unread line
  int line = 1;                  // its number, from 1; at the end of the file that of the last line
  int record_line = 0;           // line of the first value of the last read
  std::size_t rest = 0;          // first character of what the last read threw away
  int open_quote = 0;            // line of a quote that the end of the file leaves open, or 0
  std::vector<int> long_quotes;  // lines of quoted values that go on over the end of their line
};

// Takes the content of a file.
RecordReader make_reader(std::string content);

enum class ReadStatus { DONE, FAULT, END_OF_FILE };

// One read. Values that do not convert are appended to faults; the rest of the record is then taken
// from the line of the fault alone, so that a broken row never uses up the rows behind it.
ReadStatus read_record(RecordReader& reader, std::initializer_list<Target> targets,
                       std::vector<ValueFault>& faults);

// A last value of the last read that a comma and a digit directly follow, with all of these digits
// ("1,5"); empty if there is none.
std::string_view decimal_comma(const RecordReader& reader);

// The next word of what the last read threw away, up to a separator; empty if there is none.
std::string_view thrown_away_word(const RecordReader& reader);

// Makes the line of a faulty value the next one to be read.
void go_back_to(RecordReader& reader, const ValueFault& fault);

// Conversions of one value, the whole of text. Integers are plain decimal; a real may have a point
// and an exponent, which E, D, Q or a bare sign begins (1.5D3, 1.5+3). False, with the target
// unchanged, if text is no such value.
bool to_integer(std::string_view text, int& value, ValueProblem& problem);
bool to_real(std::string_view text, double& value, ValueProblem& problem);
bool to_logical(std::string_view text, bool& value);

}  // namespace zelvo
