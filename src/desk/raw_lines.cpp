#include "desk/raw_lines.h"

#include <algorithm>
#include <cstdlib>

#include "base/record_reader.h"

namespace zelvo {

namespace {

constexpr std::string_view BLANKS = " \t\r", SEPARATORS = " \t\r,", COMMENT_SIGNS = "!#;%*/$-";

using Lines = std::vector<std::string_view>;

bool is_number(std::string_view word) {
  double value;
  ValueProblem problem;
  return to_real(std::string(word), value, problem);
}

// Takes the next word off a line; a quoted text is one word.
std::string_view take_word(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(SEPARATORS), line.size()));
  if (line.empty()) return {};
  const char quote = line.front();
  std::size_t end = line.find_first_of(SEPARATORS);
  if (quote == '\'' || quote == '"') {
    const std::size_t close = line.find(quote, 1);
    end = close == line.npos ? line.npos : close + 1;
  }
  const std::string_view word = line.substr(0, end);
  line.remove_prefix(word.size());
  return word;
}

// "9/16": the reader takes the 9, and nothing behind the slash.
bool is_fraction(std::string_view word) {
  const std::size_t slash = word.find('/');
  return slash != word.npos && slash > 0 && is_number(word.substr(0, slash)) &&
         is_number(word.substr(slash + 1));
}

// How many values of a record stand on a line, at most wanted; the line is left with the rest.
// Repeats count as often as they stand for, and a slash closes the record.
int take_values(std::string_view& line, int wanted) {
  int found = 0;
  while (found < wanted) {
    const std::string_view word = take_word(line);
    if (word.empty()) return found;
    if (word.find('/') != word.npos && word.front() != '\'') return wanted;
    const std::size_t star = word.find('*');
    found += star != word.npos && star > 0 && is_number(word.substr(0, star))
                 ? std::max(1, std::atoi(std::string(word).c_str()))
                 : 1;
  }
  return wanted;
}

// How many numbers a text holds if it holds nothing else before a comment sign, or else 0.
int numbers_alone(std::string_view text) {
  for (int n = 0;; ++n) {
    const std::string_view word = take_word(text);
    if (word.empty()) return n;
    if (is_number(word) || is_fraction(word)) continue;
    return COMMENT_SIGNS.find(word.front()) != COMMENT_SIGNS.npos ? n : 0;
  }
}

bool is_logical(std::string_view word) {
  word.remove_prefix(!word.empty() && word.front() == '.' ? 1 : 0);
  return !word.empty() && (word.front() == 'T' || word.front() == 'F');
}

// Whether a line holds nothing but values.
bool values_alone(std::string_view line) {
  for (std::string_view word = take_word(line); !word.empty(); word = take_word(line))
    if (!is_number(word) && !is_logical(word)) return false;
  return true;
}

// The first of the values on a line, without the rest, that is a fraction.
std::string_view fraction_in(std::string_view line, std::string_view rest) {
  line.remove_suffix(rest.size());
  for (std::string_view word = take_word(line); !word.empty(); word = take_word(line))
    if (is_fraction(word)) return word;
  return {};
}

// A comma directly between two digits, the second left over: 4,5 is two values.
bool decimal_comma(std::string_view line, std::string_view rest) {
  const auto digit = [](char ch) { return '0' <= ch && ch <= '9'; };
  return rest.size() > 1 && rest.size() < line.size() && rest.front() == ',' && digit(rest[1]) &&
         digit(line[line.size() - rest.size() - 1]);
}

int wanted_of_row(Keyword k, const Model& m, int row) {
  switch (k) {
    case SUPPORT:
      return 1;
    case TOP_LATERAL:
      return 4;
    case POUR_SEQ:
      return row <= m.npour ? 1 : 3;
    case WEBTHICK:
    case BOTFTHICK:
    case TFTHICK:
      return 2;
    default:
      return 3;
  }
}

// Tables, which begin with the number of their rows.
bool holds_rows(Keyword k) {
  return k != PRNAME && k != SECDIM && k != BUCKLE && k != SOLVER && k != NGIRD && k != RCURV &&
         k != LGBR && k != OFFSET && k != POUR_SEQ;
}

int wanted_of_head(Keyword k, std::size_t head) {
  if (k == SECDIM) return 6;
  return (k == BUCKLE || k == SOLVER) && head == 0 ? 2 : 1;
}

// What numbers behind the values of a record may be.
std::string extra_hint(const Model& m, Keyword k, int row, std::string_view line,
                       std::string_view rest, int extra) {
  if (decimal_comma(line, rest)) return ": a decimal comma?";
  const std::string text = ": '" + printable(rest) + "' is not read";
  if (row == 0 && holds_rows(k) && extra + 1 == wanted_of_row(k, m, 1))
    return text + ": the number of rows forgotten?";
  const bool fraction = is_fraction(take_word(rest));
  return text + (fraction ? ": a fraction?" : "");
}

void check_record(Checked& c, const Lines& lines, Keyword k, int row, const RecordPlace& record,
                  int wanted) {
  const auto at = static_cast<std::size_t>(record.line);
  if (at == 0 || at >= lines.size()) return;
  std::string_view rest = lines[at];
  const int found = take_values(rest, wanted);
  const std::size_t before = c.findings.size();
  if (found < wanted && (record.good || values_alone(lines[at])))
    warn(c, k, row, "the line holds ", std::to_string(found),
         " of its values (" + std::to_string(wanted) +
             " are wanted), the record goes on over the next line");
  const std::string fraction(fraction_in(lines[at], rest));
  if (!fraction.empty())
    warn(c, k, row, "a fraction is read up to its slash (", fraction, "): decimals are wanted");
  const int extra = found == wanted ? numbers_alone(rest) : 0;
  const bool comma = found == wanted && decimal_comma(lines[at], rest);
  if (record.good && fraction.empty() && (extra > 0 || comma))
    warn(c, k, row,
         "more numbers than the record takes (" + std::to_string(wanted) + ") stand on the line",
         {}, extra_hint(c.job.input.model, k, row, lines[at], rest, extra));
  for (std::size_t i = before; i < c.findings.size(); ++i) c.findings[i].line = record.line;
}

void check_title(Checked& c, const Lines& lines) {
  const BlockPlace& block = c.job.input.block[PRNAME];
  if (block.heads.empty()) return;
  std::string_view line = lines[static_cast<std::size_t>(block.heads[0].line)];
  const std::string_view word = take_word(line);
  line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
  if (word.empty() || word.front() == '\'' || word.front() == '"' || line.empty()) return;
  if (COMMENT_SIGNS.find(line.front()) == COMMENT_SIGNS.npos)
    warn(c, PRNAME, 0, "the title is only '" + printable(word) + "': quotes are missing");
}

void check_block(Checked& c, const Lines& lines, Keyword k) {
  const BlockPlace& block = c.job.input.block[k];
  if (block.line == 0) return;
  std::string_view line = lines[static_cast<std::size_t>(block.line)];
  take_word(line);
  if (numbers_alone(line) > 0) {
    warn(c, k, 0,
         "numbers stand on the line of the keyword and are not read ('" + printable(line) + "')");
    c.findings.back().line = block.line;
  }
  if (k == PRNAME) return check_title(c, lines);
  for (std::size_t i = 0; i < block.heads.size(); ++i)
    check_record(c, lines, k, 0, block.heads[i], wanted_of_head(k, i));
  for (int row = 1; row <= static_cast<int>(block.rows.size()); ++row)
    check_record(c, lines, k, row, block.rows[static_cast<std::size_t>(row - 1)],
                 wanted_of_row(k, c.job.input.model, row));
}

// Last line of the records of a block.
int last_line(const BlockPlace& block) {
  int last = block.line;
  for (const RecordPlace& p : block.heads) last = std::max(last, p.line);
  for (const RecordPlace& p : block.rows) last = std::max(last, p.line);
  return last;
}

bool begins_with_number(std::string_view line) { return is_number(take_word(line)); }

// The keyword that a comment ahead of skipped numbers names, as one does that is commented out.
std::string_view keyword_in(std::string_view line) {
  while (!line.empty()) {
    std::string_view word = take_word(line);
    word.remove_prefix(std::min(word.find_first_not_of("!#;%*/$-"), word.size()));
    if (find_keyword(word) != NO_KEYWORD) return word;
  }
  return {};
}

// Words that are no keyword, behind a comment that holds one: it is commented out.
void name_commented_out(Checked& c, const Lines& lines) {
  for (Finding& f : c.findings) {
    const auto at = static_cast<std::size_t>(f.line);
    if (f.head.find("unknown word") == f.head.npos || at < 2 || at >= lines.size()) continue;
    const std::string_view keyword = keyword_in(lines[at - 1]);
    if (keyword.empty() || finding_text(f).find("perhaps") != std::string::npos) continue;
    f.tail += ", perhaps the keyword " + std::string(keyword) + " is meant";
  }
}

// Lines of numbers between the blocks that nobody takes, as far as the reader has not told of them.
void check_skipped(Checked& c, const Lines& lines) {
  const Input& in = c.job.input;
  std::vector<bool> taken(lines.size());
  for (const BlockPlace& block : in.block)
    for (int l = block.line; block.line > 0 && l <= last_line(block); ++l)
      taken[static_cast<std::size_t>(l)] = true;
  std::vector<bool> told(lines.size());
  for (const Finding& f : c.findings)
    if (f.line > 0 && f.line < static_cast<int>(lines.size()))
      told[static_cast<std::size_t>(f.line)] = true;
  const auto end = std::min(lines.size(), static_cast<std::size_t>(in.last_line));
  for (std::size_t l = 1; l < end; ++l) {
    if (taken[l] || numbers_alone(lines[l]) == 0) continue;
    const std::size_t first = l;
    while (l < end && !taken[l] && begins_with_number(lines[l])) ++l;
    if (told[first] || told[first - 1] || (taken[first - 1] && first > 1)) continue;
    const std::string_view keyword = keyword_in(lines[first - 1]);
    Finding f{static_cast<int>(first), false, NO_KEYWORD, {}, {}, {}, {}, {}};
    f.head = "numbers that belong to no keyword: " + std::to_string(l - first) +
             (l - first == 1 ? " line is skipped" : " lines are skipped");
    if (!keyword.empty()) f.tail = ", perhaps the keyword " + std::string(keyword) + " is meant";
    c.findings.push_back(f);
  }
}

// Keywords behind `end`, of which nothing is read.
void check_tail(Checked& c, const Lines& lines) {
  const Input& in = c.job.input;
  for (std::size_t l = static_cast<std::size_t>(in.last_line) + 1; in.ended && l < lines.size();
       ++l) {
    std::string_view line = lines[l];
    const std::string word(take_word(line));
    if (find_keyword(word) == NO_KEYWORD) continue;
    c.findings.push_back({static_cast<int>(l),
                          false,
                          NO_KEYWORD,
                          {},
                          "the keyword " + word + " stands behind end: nothing there is read",
                          {},
                          {},
                          {}});
    return;
  }
}

// Takes a sign off a line, with the blanks before it; false if another stands there.
bool take_sign(std::string_view& line, char sign) {
  line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
  if (line.empty() || line.front() != sign) return false;
  line.remove_prefix(1);
  return true;
}

// Annotations that are none: "! @ stage 1 steel".
void check_annotations(Checked& c, const Lines& lines) {
  static constexpr std::string_view NAMES[] = {"title", "stage", "load_factor", "bearing_spacing",
                                               "limit"};
  for (std::size_t l = 1; l < lines.size(); ++l) {
    std::string_view line = lines[l];
    if (!take_sign(line, '!') || line.starts_with('@') || !take_sign(line, '@')) continue;
    if (std::find(std::begin(NAMES), std::end(NAMES), take_word(line)) == std::end(NAMES)) continue;
    const std::string text = "'" + printable(lines[l]) + "' is not read: '!@' is wanted";
    c.findings.push_back({static_cast<int>(l), true, NO_KEYWORD, {}, text, {}, {}, {}});
  }
}

}  // namespace

std::vector<std::string_view> lines_of(std::string_view content) {
  Lines lines{{}};
  if (content.starts_with("\xEF\xBB\xBF")) content.remove_prefix(3);
  while (!content.empty()) {
    const std::string_view line = content.substr(0, content.find('\n'));
    content.remove_prefix(std::min(line.size() + 1, content.size()));
    lines.push_back(line);
  }
  return lines;
}

void check_lines(Checked& c) {
  const Lines lines = lines_of(c.job.content);
  for (int k = 0; k < KEYWORDS; ++k) check_block(c, lines, static_cast<Keyword>(k));
  name_commented_out(c, lines);
  check_skipped(c, lines);
  check_tail(c, lines);
  check_annotations(c, lines);
}

}  // namespace zelvo
