#include "base/record_reader.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace zelvo;

// All rows of an integer and a real in a text, "-" for a value left as it was: "7 0.5|8 -|". A
// fault adds "!line.item" and its text.
static std::string rows(const std::string& text) {
  std::ostringstream out;
  RecordReader reader = make_reader(text);
  while (true) {
    int i = -77;
    double x = -77;
    std::vector<ValueFault> faults;
    if (read_record(reader, {&i, &x}, faults) == ReadStatus::END_OF_FILE) return out.str();
    i == -77 ? out << "-" : out << i;
    x == -77 ? out << " -" : out << " " << x;
    for (const ValueFault& f : faults) out << "!" << f.line << "." << f.item << f.text;
    out << "|";
  }
}

static std::string words(const std::string& text) {
  std::string all, word;
  std::vector<ValueFault> none;
  RecordReader reader = make_reader(text);
  while (read_record(reader, {&word}, none) == ReadStatus::DONE) all += word + "|";
  for (const int line : reader.long_quotes) all += " long " + std::to_string(line);
  return reader.open_quote > 0 ? all + " open " + std::to_string(reader.open_quote) : all;
}

TEST(RecordReader, FollowsTheRulesOfFreeFormat) {
  const std::pair<const char*, const char*> cases[] = {
      {"\n  7 \n\n\t0.5 and a comment\n8,2.5\r\n9 , 3.5 / rest\r\n1", "7 0.5|8 2.5|9 3.5|"},
      {",0.5\n7,,\n8/ 9\n/\n1* 4\n2*\n,\n,6", "- 0.5|7 -|8 -|- -|- 4|- -|- -|"},
      {"2*12\n4294967297*3 4\n1*5, 6\n0*5 6\n", "12 12|3 3|5 6|- 6!4.10*5|"},
      {"ab\n7 .5\n8 x\n9 1.5\n12.0 2.5", "- -!1.1ab|7 0.5|8 -!3.2x|9 1.5|- 2.5!5.112.0|"},
      {"1 -.5e1\n2 5.\n3 1.5D+3\n4 1.5d3\n5 1.5+3\n6 15-1\n7 1q2\n8 1e-9999\n+9 +9",
       "1 -5|2 5|3 1500|4 1500|5 1500|6 1.5|7 100|8 0|9 9|"}};
  for (const auto& [text, records] : cases) EXPECT_EQ(rows(text), records);
}

TEST(RecordReader, TakesQuotedTextAndSkipsAByteOrderMarkAtTheStartOnly) {
  EXPECT_EQ(words("'it''s one' x\n\"a, b / c\"\nplain/text\n2*'ab'\n'over\r\nlines'\nlast"),
            "it's one|a, b / c|plain|ab|overlines|last| long 5");
  EXPECT_EQ(words("\n'never closed\nngird\n1\n"), " long 2 open 2");
  EXPECT_EQ(words("\xEF\xBB\xBFz\n\xEF\xBB\xBFz\n"), "z|\xEF\xBB\xBFz|");
}

// What a text converts to, or why it does not.
template <class T>
static std::string conversion(bool (*to)(std::string_view, T&, ValueProblem&), const char* text) {
  T value{};
  ValueProblem problem{};
  const char* const why[] = {"text", "range", "finite"};
  return to(text, value, problem) ? std::to_string(value) : why[static_cast<int>(problem)];
}

TEST(RecordReader, TellsValuesOutOfRangeFromThoseThatAreNoNumbers) {
  const auto real = [](const char* text) { return conversion(to_real, text); };
  const auto integer = [](const char* text) { return conversion(to_integer, text); };
  for (const char* text : {"", ".", "-", "e5", "1e", "1e+", "1.2.3", "0x10", "1e2.0", "--5", "+-5"})
    EXPECT_EQ(real(text), "text") << text;
  for (const char* text : {"NaN", "-nan", "Inf", "+INFINITY", "nan(0x1)"})
    EXPECT_EQ(real(text), "finite") << text;
  for (const char* text : {"1.0", "+-1", "-", "", "1e3", "'1'", "T"})
    EXPECT_EQ(integer(text), "text") << text;
  EXPECT_EQ(real("-1+99999999999"), "range");
  EXPECT_EQ(integer("2147483648"), "range");
  EXPECT_EQ(integer("-2147483648"), "-2147483648");
}

TEST(RecordReader, KnowsLogicalValuesByTheirFirstLetter) {
  const auto logical = [](const char* text, bool v = false) -> std::string {
    return to_logical(text, v) ? v ? "true" : "false" : "neither";
  };
  for (const char* text : {"T", "t", ".TRUE.", "Tanything"}) EXPECT_EQ(logical(text), "true");
  for (const char* text : {"F", "f", ".FALSE.", "false"}) EXPECT_EQ(logical(text), "false");
  for (const char* text : {"", ".", "1", "yes", "..T"}) EXPECT_EQ(logical(text), "neither");
}

TEST(RecordReader, SurvivesGarbageAndVeryLongLines) {
  EXPECT_EQ(words(std::string("\0\xff\n\0", 4)), std::string("\0\xff|\0|", 5));
  const std::string nines(20'000'000, '9');
  EXPECT_EQ(rows(nines + " 1\n5 6\n"), "- 1!1.1" + nines.substr(0, FAULT_TEXT) + "|5 6|");
  EXPECT_EQ(rows(std::string(20'000'000, ',')), "- -|");
}
