#include "base/record_reader.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

// What reads of one kind of record find in a text.
struct Row {
  int i = -1;
  double x = -1;
  bool operator==(const Row&) const = default;
};

struct Reading {
  RecordReader reader;
  std::vector<ValueFault> faults;
  ReadStatus status = ReadStatus::DONE;
  explicit Reading(const std::string& text) : reader(make_reader(text)) {}
  Row row() {
    Row r;
    status = read_record(reader, {&r.i, &r.x}, faults);
    return r;
  }
  std::string word() {
    std::string s = "(unchanged)";
    status = read_record(reader, {&s}, faults);
    return s;
  }
};

double real(const std::string& text) {
  double x = -1;
  ValueProblem problem;
  return to_real(text, x, problem) ? x : -1;
}

}  // namespace

TEST(RecordReader, GoesOnOverLinesAndThrowsTheRestOfTheLastLineAway) {
  Reading in("\n  7 \n\n\t0.5 and a comment\n8,2.5\r\n9 , 3.5 / rest\r\n");
  EXPECT_EQ(in.row(), (Row{7, 0.5}));
  EXPECT_EQ(in.reader.record_line, 2);
  EXPECT_EQ(in.row(), (Row{8, 2.5}));
  EXPECT_EQ(in.row(), (Row{9, 3.5}));
  EXPECT_EQ(in.reader.record_line, 6);
  in.row();
  EXPECT_EQ(in.status, ReadStatus::END_OF_FILE);
}

TEST(RecordReader, LeavesTargetsOfEmptyPlacesAndBehindASlashUnchanged) {
  Reading in(",0.5\n7,,\n8/ 9\n/\n1* 4\n2*\n");
  EXPECT_EQ(in.row(), (Row{-1, 0.5}));
  EXPECT_EQ(in.row(), (Row{7, -1}));
  EXPECT_EQ(in.row(), (Row{8, -1}));
  EXPECT_EQ(in.row(), (Row{-1, -1}));
  EXPECT_EQ(in.row(), (Row{-1, 4}));
  EXPECT_EQ(in.row(), (Row{-1, -1}));
  EXPECT_TRUE(in.faults.empty());
}

TEST(RecordReader, RepeatsValuesWithinOneRecordOnly) {
  Reading in("2*12\n99999999999*3 4\n1*5, 6\n");
  EXPECT_EQ(in.row(), (Row{12, 12}));
  EXPECT_EQ(in.row(), (Row{3, 3}));
  EXPECT_EQ(in.row(), (Row{5, 6}));
}

TEST(RecordReader, TakesQuotedTextWithBlanksAndDoubledQuotes) {
  Reading in("'it''s one' x\n\"a, b / c\"\nplain/text\n2*'ab'\n'over\r\nlines'\nlast");
  EXPECT_EQ(in.word(), "it's one");
  EXPECT_EQ(in.word(), "a, b / c");
  EXPECT_EQ(in.word(), "plain");
  EXPECT_EQ(in.word(), "ab");
  EXPECT_EQ(in.word(), "overlines");
  EXPECT_EQ(in.reader.long_quotes, std::vector<int>{5});
  EXPECT_EQ(in.word(), "last");
  EXPECT_EQ(in.reader.open_quote, 0);
}

TEST(RecordReader, MeetsTheEndOfTheFileInsideAnOpenQuote) {
  Reading in("\n'never closed\nngird\n1\n");
  in.word();
  EXPECT_EQ(in.status, ReadStatus::END_OF_FILE);
  EXPECT_EQ(in.reader.open_quote, 2);
}

TEST(RecordReader, SkipsAByteOrderMarkAtTheStartOnly) {
  EXPECT_EQ(Reading("\xEF\xBB\xBFngird\n").word(), "ngird");
  Reading lone("\xEF\xBB\xBF");
  lone.word();
  EXPECT_EQ(lone.status, ReadStatus::END_OF_FILE);
  Reading inside(
      "a\n\xEF\xBB\xBF"
      "b\n");
  inside.word();
  EXPECT_EQ(inside.word(),
            "\xEF\xBB\xBF"
            "b");
}

TEST(RecordReader, TakesTheRestOfABrokenRecordFromItsLineAlone) {
  Reading in("ab\n7 0.5\n8 x\n9 1.5\n12.0 2.5");
  EXPECT_EQ(in.row(), (Row{-1, -1}));
  EXPECT_EQ(in.row(), (Row{7, 0.5}));
  EXPECT_EQ(in.row(), (Row{8, -1}));
  EXPECT_EQ(in.row(), (Row{9, 1.5}));
  EXPECT_EQ(in.row(), (Row{-1, 2.5}));  // no integer, but the real behind it is read
  EXPECT_EQ(in.status, ReadStatus::FAULT);
  ASSERT_EQ(in.faults.size(), 3u);
  EXPECT_EQ(in.faults[1].line, 3);
  EXPECT_EQ(in.faults[1].item, 2);
  EXPECT_EQ(in.faults[1].text, "x");
  EXPECT_STREQ(in.faults[1].expected, "a real");
  EXPECT_FALSE(in.faults[1].first_on_line);
  go_back_to(in.reader, in.faults[1]);
  EXPECT_EQ(in.word(), "8");
  EXPECT_EQ(in.reader.record_line, 3);
}

TEST(RecordReader, ConvertsRealsWithEveryFormOfExponent) {
  EXPECT_EQ(real("1.5"), 1.5);
  EXPECT_EQ(real("+12"), 12.0);
  EXPECT_EQ(real("-.5e1"), -5.0);
  EXPECT_EQ(real("5."), 5.0);
  EXPECT_EQ(real("1.5D+3"), 1500.0);
  EXPECT_EQ(real("1.5d3"), 1500.0);
  EXPECT_EQ(real("1.5+3"), 1500.0);
  EXPECT_EQ(real("15-1"), 1.5);
  EXPECT_EQ(real("1q2"), 100.0);
  EXPECT_EQ(real("1e-9999"), 0.0);
  for (const char* text : {"", ".", "-", "e5", "1e", "1e+", "1.2.3", "1,5", "0x10", "1.5e2.0",
                           "--5", "+-5", "1..", "12in", "1d3d", "1e 5"})
    EXPECT_EQ(real(text), -1) << text;
}

TEST(RecordReader, TellsValuesOutOfRangeFromThoseThatAreNoNumbers) {
  const auto problem_of = [](const std::string& text, bool integer) {
    ValueProblem problem{};
    int i = 0;
    double x = 0;
    EXPECT_FALSE(integer ? to_integer(text, i, problem) : to_real(text, x, problem)) << text;
    return problem;
  };
  EXPECT_EQ(problem_of("1e999", false), ValueProblem::OUT_OF_RANGE);
  EXPECT_EQ(problem_of("-1+99999999999", false), ValueProblem::OUT_OF_RANGE);
  EXPECT_EQ(problem_of("2147483648", true), ValueProblem::OUT_OF_RANGE);
  for (const char* text : {"NaN", "-nan", "Inf", "+INFINITY", "nan(0x1)"})
    EXPECT_EQ(problem_of(text, false), ValueProblem::NOT_FINITE) << text;
  for (const char* text : {"1.0", "+-1", "-", "", "1e3", "0x1", "'1'", "T"})
    EXPECT_EQ(problem_of(text, true), ValueProblem::NOT_CONVERTIBLE) << text;
  int i = 0;
  ValueProblem problem;
  EXPECT_TRUE(to_integer("-2147483648", i, problem));
  EXPECT_EQ(i, std::numeric_limits<int>::min());
}

TEST(RecordReader, KnowsLogicalValuesByTheirFirstLetter) {
  bool value = false;
  for (const char* text : {"T", "t", ".TRUE.", ".true", "Tanything"}) {
    value = false;
    EXPECT_TRUE(to_logical(text, value) && value) << text;
  }
  for (const char* text : {"F", "f", ".FALSE.", "false"}) {
    value = true;
    EXPECT_TRUE(to_logical(text, value) && !value) << text;
  }
  for (const char* text : {"", ".", "1", "yes", "..T"})
    EXPECT_FALSE(to_logical(text, value)) << text;
}

TEST(RecordReader, SurvivesGarbageAndVeryLongLines) {
  Reading nuls(std::string("\0\0\xff\xfe\n\0", 6) + std::string(3, '\0'));
  EXPECT_EQ(nuls.word().size(), 4u);
  EXPECT_EQ(nuls.word().size(), 4u);
  Reading digits(std::string(20'000'000, '9') + " " + std::string(20'000'000, '0') + "\n5 6\n");
  EXPECT_EQ(digits.row(), (Row{-1, 0}));
  EXPECT_EQ(digits.faults.at(0).text.size(), FAULT_TEXT);
  EXPECT_EQ(digits.faults.at(0).problem, ValueProblem::OUT_OF_RANGE);
  EXPECT_EQ(digits.row(), (Row{5, 6}));
  Reading commas(std::string(20'000'000, ','));
  EXPECT_EQ(commas.row(), (Row{-1, -1}));
}
