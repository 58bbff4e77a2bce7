#include "control/input.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <utility>

#include "base/record_reader.h"

namespace zelvo {

namespace {

constexpr std::size_t TITLE_LENGTH = 36;

// How reading goes on after a record.
enum class Flow {
  GO_ON,
  LEAVE_BLOCK,  // a keyword stands in the place of a value: it is read next
  END_OF_FILE
};

// The block in work.
struct BlockReader {
  RecordReader& records;
  Input& in;
  Keyword keyword;
  int row = 0;  // row of the table in work, 0 for a single record
};

using Names = std::initializer_list<const char*>;

std::string conversion_fault(const ValueFault& fault, const std::string& name) {
  const std::string value = " (" + printable(fault.text) + "), must be ";
  switch (fault.problem) {
    case ValueProblem::OUT_OF_RANGE:
      return name + " is out of range" + value + fault.expected +
             (fault.expected == std::string("an integer") ? " of at most 2147483647 in size"
                                                          : " of at most 1.79e308 in size");
    case ValueProblem::NOT_FINITE:
      return name + " is no finite number" + value + fault.expected;
    case ValueProblem::NOT_CONVERTIBLE:
      break;
  }
  return name + " cannot be converted" + value + fault.expected;
}

// What a keyword in the place of a value means.
std::string keyword_fault(const ValueFault& fault, const std::string& name) {
  return "a keyword stands in the place of the " + name + " (" + fault.text + "), must be " +
         fault.expected + "; a count above may be too large, or a row short of a value";
}

// One record. Its faults are noted under the names of its values.
Flow take(BlockReader& b, Names names, std::initializer_list<Target> targets) {
  std::vector<ValueFault> faults;
  const ReadStatus status = read_record(b.records, targets, faults);
  const auto where = [&] { return place(KEYWORD_NAMES[b.keyword], b.row); };  // for notes alone
  for (const ValueFault& f : faults) {
    const std::string name = *(names.begin() + f.item - 1);
    b.in.bad_value = true;
    if (f.first_on_line &&
        (find_keyword(f.text) != NO_KEYWORD || std::string_view(f.text) == END_KEYWORD)) {
      add_fault(b.in.notes, f.line, where() + keyword_fault(f, name));
      go_back_to(b.records, f);
      return Flow::LEAVE_BLOCK;
    }
    add_fault(b.in.notes, f.line, where() + conversion_fault(f, name));
  }
  if (status == ReadStatus::END_OF_FILE) {
    add_fault(b.in.notes, b.records.line,
              where() + "the file ends in the place of the " + std::string(*names.begin()));
    return Flow::END_OF_FILE;
  }
  if (const std::string_view comma = decimal_comma(b.records);
      status == ReadStatus::DONE && !comma.empty())
    add_warning(b.in.notes, b.records.record_line,
                where() + *(names.end() - 1) + " stops at a comma (" + printable(comma) +
                    "), the digits behind it are not read: a decimal sign is a point");
  BlockPlace& block = b.in.block[b.keyword];
  (b.row > 0 ? block.rows : block.heads)
      .push_back({b.records.record_line, status == ReadStatus::DONE});
  return Flow::GO_ON;
}

// A count that governs what follows: if it does not convert, nothing more of the block is read, and
// its rows are passed over like any line that begins with no keyword.
Flow take_count(BlockReader& b, const char* name, int& count) {
  b.row = 0;
  const Flow flow = take(b, {name}, {&count});
  if (flow != Flow::GO_ON) return flow;
  return b.in.block[b.keyword].heads.back().good ? Flow::GO_ON : Flow::LEAVE_BLOCK;
}

template <class T>
void copy_column(Vector<T>& to, const std::vector<T>& from) {
  to = Vector<T>(static_cast<std::int64_t>(from.size()), "an input table");
  std::copy(from.begin(), from.end(), to.begin());
}

// Rows of a table, column by column; count becomes what was found if the block breaks off.
template <class... T>
Flow take_rows(BlockReader& b, Names names, int& count, Vector<T>&... columns) {
  std::tuple<std::vector<T>...> read;
  Flow flow = Flow::GO_ON;
  const int first = static_cast<int>(b.in.block[b.keyword].rows.size());
  int found = 0;
  const auto all_columns = std::index_sequence_for<T...>{};
  for (; found < count && flow == Flow::GO_ON; ++found) {
    b.row = first + found + 1;
    std::tuple<T...> row{};
    [&]<std::size_t... c>(std::index_sequence<c...>) {
      flow = take(b, names, {&std::get<c>(row)...});
      if (flow == Flow::GO_ON) (std::get<c>(read).push_back(std::get<c>(row)), ...);
    }
    (all_columns);
  }
  if (flow != Flow::GO_ON) count = static_cast<int>(std::get<0>(read).size());
  [&]<std::size_t... c>(std::index_sequence<c...>, std::tuple<Vector<T>&...> to) {
    (copy_column(std::get<c>(to), std::get<c>(read)), ...);
  }
  (all_columns, std::tie(columns...));
  return flow;
}

// A count and its rows.
template <class... T>
Flow take_table(BlockReader& b, Names names, int& count, Vector<T>&... columns) {
  const Flow flow = take_count(b, "number of rows", count);
  return flow == Flow::GO_ON ? take_rows(b, names, count, columns...) : flow;
}

// A table of attachments: a count of zero or less is none.
template <class... T>
Flow take_attachments(BlockReader& b, Names names, int& count, Vector<T>&... columns) {
  const Flow flow = take_table(b, names, count, columns...);
  if (count < 0)
    add_warning(b.in.notes, b.in.block[b.keyword].heads.back().line,
                place(KEYWORD_NAMES[b.keyword], 0) + "the number of rows is negative (" +
                    std::to_string(count) + "): none is read");
  count = std::max(count, 0);
  return flow;
}

// The columns of tables that are cut to the grid.
struct GridColumn {
  Keyword keyword;
  const char* name;
  int grid;  // inches
  Vector<int> Model::*values;
};
constexpr GridColumn GRID_COLUMNS[] = {
    {WEBTHICK, "length", BAY_LENGTH, &Model::web_len},
    {BOTFTHICK, "length", BAY_LENGTH, &Model::botf_len},
    {TFTHICK, "length", BAY_LENGTH, &Model::topf_len},
    {INTERNAL_BRACE, "position", STATION_SPACING, &Model::ib_pos},
    {EXTERNAL_BRACE, "position", STATION_SPACING, &Model::eb_pos},
    {TOP_LATERAL, "first position", STATION_SPACING, &Model::lat_from},
    {TOP_LATERAL, "second position", STATION_SPACING, &Model::lat_to},
    {WEB_STIFFENER, "position", STATION_SPACING, &Model::ws_pos},
    {SUPPORT, "position", BAY_LENGTH, &Model::supp_pos},
    {STUDS, "length", BAY_LENGTH, &Model::stud_len},
    {POUR_SEQ, "length", BAY_LENGTH, &Model::pour_len}};

// Cuts value toward zero, and keeps what was typed if that moves it.
void cut(Input& in, MovedValue where, int grid, int& value) {
  where.typed = value;
  where.cut = value -= value % grid;
  if (where.cut != where.typed) in.moved.push_back(where);
}

// Row by row, so that in.moved stays in the order of the file.
void cut_columns(Input& in, Keyword keyword) {
  const auto& rows = in.block[keyword].rows;
  for (int row = 1; row <= static_cast<int>(rows.size()); ++row)
    for (const GridColumn& column : GRID_COLUMNS)
      if (column.keyword == keyword && row <= (in.model.*column.values).size())
        cut(in, {rows[static_cast<std::size_t>(row - 1)].line, keyword, row, column.name, 0, 0},
            column.grid, (in.model.*column.values)(row));
}

// The rows of all analyses, segment by segment inside each.
Flow take_analyses(BlockReader& b) {
  Model& m = b.in.model;
  std::vector<double> e, k, load;
  const std::int64_t rows = std::int64_t{std::max(m.nanal, 0)} * std::max(m.npour, 0);
  for (std::int64_t r = 0; r < rows; ++r) {
    b.row = static_cast<int>(b.in.block[POUR_SEQ].rows.size()) + 1;
    double row[3] = {0, 0, 0};
    const Flow flow = take(b, {"deck modulus", "stud stiffness", "load"}, {row, row + 1, row + 2});
    if (flow != Flow::GO_ON) return flow;
    e.push_back(row[0]), k.push_back(row[1]), load.push_back(row[2]);
  }
  if (rows == 0) return Flow::GO_ON;
  m.pour_e = m.pour_k = m.pour_load = Matrix<double>(m.nanal, m.npour, "an input table");
  std::size_t r = 0;
  for (int a = 1; a <= m.nanal; ++a) {
    for (int j = 1; j <= m.npour; ++j, ++r) {
      m.pour_e(a, j) = e[r];
      m.pour_k(a, j) = k[r];
      m.pour_load(a, j) = load[r];
    }
  }
  return Flow::GO_ON;
}

Flow take_pour_sequence(BlockReader& b) {
  Model& m = b.in.model;
  Flow flow = take_count(b, "number of analyses", m.nanal);
  if (flow == Flow::GO_ON) flow = take_count(b, "number of segments", m.npour);
  if (flow == Flow::GO_ON) flow = take_rows(b, {"length"}, m.npour, m.pour_len);
  if (flow == Flow::GO_ON) flow = take_analyses(b);
  m.nanal = flow == Flow::GO_ON ? std::max(m.nanal, 0) : 0;  // fewer than none is none
  if (flow != Flow::GO_ON) return flow;
  int weight = 2;  // anything but 0 and 1 leaves selfwt as it is
  b.row = 0;
  flow = take(b, {"self-weight switch"}, {&weight});
  if (weight == 0 || weight == 1) m.selfwt = weight == 1;
  if (flow == Flow::GO_ON && b.in.block[POUR_SEQ].heads.back().good && weight != 0 && weight != 1)
    add_warning(b.in.notes, b.in.block[POUR_SEQ].heads.back().line,
                "pour_seq: the self-weight switch has no effect (" + std::to_string(weight) +
                    "), 1 asks for the self-weight and 0 for none");
  return flow;
}

Flow take_buckle(BlockReader& b) {
  Model& m = b.in.model;
  const Flow flow = take(b, {"buckling switch", "load pattern"}, {&m.buckle, &m.load_pattern});
  return flow == Flow::GO_ON ? take(b, {"number of modes"}, {&m.nev}) : flow;
}

Flow take_solver(BlockReader& b) {
  Model& m = b.in.model;
  const Flow flow = take(b, {"solver type", "tolerance"}, {&m.solver_type, &m.tol});
  return flow == Flow::GO_ON && m.solver_type == 2 ? take(b, {"shift"}, {&m.sigma}) : flow;
}

Flow take_title(BlockReader& b) {
  Model& m = b.in.model;
  const Flow flow = take(b, {"title"}, {&m.prname});
  m.prname.resize(std::min(m.prname.size(), TITLE_LENGTH));
  if (flow == Flow::GO_ON && find_keyword(m.prname) != NO_KEYWORD)
    add_warning(b.in.notes, b.records.record_line,
                "prname: the title is a keyword (" + m.prname + "), a title may be missing above");
  return flow;
}

Flow take_length(BlockReader& b) {
  Model& m = b.in.model;
  const Flow flow = take(b, {"length"}, {&m.lgbr});
  cut(b.in, {b.records.record_line, LGBR, 0, "length", 0, 0}, BAY_LENGTH, m.lgbr);
  return flow;
}

Flow take_section(BlockReader& b) {
  SectionDimensions& s = b.in.model.secdim;
  return take(b,
              {"depth", "bottom flange width", "distance of the web tops", "top flange width",
               "deck width", "deck thickness"},
              {&s.depth, &s.bottom_width, &s.top_spacing, &s.flange_width, &s.deck_width,
               &s.deck_thickness});
}

const Names PLATE_ROW = {"length", "thickness"};
const Names BRACE_ROW = {"position", "type", "area"};

// The records of one keyword, as they stand in the file.
Flow take_records(BlockReader& b) {
  Model& m = b.in.model;
  switch (b.keyword) {
    case PRNAME:
      return take_title(b);
    case NGIRD:
      return take(b, {"number of girders"}, {&m.ngird});
    case RCURV:
      return take(b, {"radius"}, {&m.rcurv});
    case LGBR:
      return take_length(b);
    case OFFSET:
      return take(b, {"offset"}, {&m.offset});
    case SECDIM:
      return take_section(b);
    case WEBTHICK:
      return take_table(b, PLATE_ROW, m.nweb, m.web_len, m.web_t);
    case BOTFTHICK:
      return take_table(b, PLATE_ROW, m.nbotf, m.botf_len, m.botf_t);
    case TFTHICK:
      return take_table(b, PLATE_ROW, m.ntopf, m.topf_len, m.topf_t);
    case INTERNAL_BRACE:
      return take_attachments(b, BRACE_ROW, m.nibrace, m.ib_pos, m.ib_type, m.ib_area);
    case EXTERNAL_BRACE:
      return take_attachments(b, BRACE_ROW, m.nebrace, m.eb_pos, m.eb_type, m.eb_area);
    case TOP_LATERAL:
      return take_attachments(b, {"type", "first position", "second position", "area"}, m.nlat,
                              m.lat_type, m.lat_from, m.lat_to, m.lat_area);
    case WEB_STIFFENER:
      return take_attachments(b, {"position", "width", "thickness"}, m.nstiff, m.ws_pos, m.ws_b,
                              m.ws_t);
    case SUPPORT:
      return take_table(b, {"position"}, m.nsupp, m.supp_pos);
    case STUDS:
      return take_table(b, {"length", "spacing", "number of studs across"}, m.nstudrow, m.stud_len,
                        m.stud_spacing, m.stud_count);
    case POUR_SEQ:
      return take_pour_sequence(b);
    case BUCKLE:
      return take_buckle(b);
    case SOLVER:
      return take_solver(b);
    case NO_KEYWORD:
      break;
  }
  return Flow::GO_ON;
}

// The records of one keyword, and the cut to the grid.
Flow take_block(BlockReader& b) {
  const Flow flow = take_records(b);
  cut_columns(b.in, b.keyword);
  return flow;
}

// A table of attachments with no rows does not count as given.
bool sets_its_flag(Keyword keyword, const Model& m) {
  switch (keyword) {
    case INTERNAL_BRACE:
      return m.nibrace > 0;
    case EXTERNAL_BRACE:
      return m.nebrace > 0;
    case TOP_LATERAL:
      return m.nlat > 0;
    case WEB_STIFFENER:
      return m.nstiff > 0;
    default:
      return true;
  }
}

bool is_number(const std::string& word) {
  double value;
  ValueProblem problem;
  return to_real(word, value, problem);
}

bool begins_with_a_letter(std::string_view word) {
  if (word.empty()) return false;
  const char lower = static_cast<char>(word.front() | 0x20);
  return 'a' <= lower && lower <= 'z';
}

// What stands before a line that is passed over.
enum class Before { OTHER, WHOLE_BLOCK, BLOCK_IN_PART };

// A line that is passed over, with the lines of numbers that follow it.
struct SkippedLines {
  Before before = Before::OTHER;
  int line = 0;                   // of the file, 0: there is none
  std::string word, second_word;  // of the first line
  int numbers = 0;                // lines behind it that begin with a number
};

// Notes on what has been passed over, which ends here: a word close to a keyword, or one with a
// table behind it. A line that begins with another sign than a letter is a comment.
void note_skipped(SkippedLines& skipped, Input& in) {
  const SkippedLines s = std::exchange(skipped, {});
  if (s.line == 0) return;
  std::string lines = "the line is skipped", shown = s.word;
  if (s.numbers > 0)
    lines += " with " + std::to_string(s.numbers) + (s.numbers == 1 ? " line" : " lines") +
             " of numbers behind it";
  if (is_number(s.word))
    return add_warning(in.notes, s.line,
                       "number in the place of a keyword, " + lines + " (" + printable(shown) +
                           "), a count above may be too small");
  std::string_view near = near_keyword(s.word);
  if (near.empty() && s.numbers > 0) {
    near = near_keyword(s.word + "_" + s.second_word);
    if (!near.empty()) shown += " " + s.second_word;
  }
  if (!near.empty())
    add_warning(in.notes, s.line,
                "unknown word, " + lines + " (" + printable(shown) + "), perhaps the keyword " +
                    std::string(near) + " is meant");
  else if (s.numbers > 0 && begins_with_a_letter(s.word))
    add_warning(in.notes, s.line, "unknown word, " + lines + " (" + printable(shown) + ")");
}

// A line without a keyword. Behind a block that is not read in full it is one of its records.
void pass_over(SkippedLines& skipped, Input& in, const std::string& word,
               const RecordReader& records) {
  const bool numbers = is_number(word);
  if (numbers && skipped.line > 0) {
    ++skipped.numbers;
    return;
  }
  const Before before = skipped.before;
  note_skipped(skipped, in);
  const bool ignored = numbers ? before != Before::WHOLE_BLOCK
                               : before == Before::BLOCK_IN_PART && near_keyword(word).empty();
  if (!ignored)
    skipped = {Before::OTHER, records.record_line, word, std::string(thrown_away_word(records)), 0};
}

void note_quotes(const RecordReader& records, Input& in) {
  for (const int line : records.long_quotes)
    if (line != records.open_quote)
      add_warning(in.notes, line, "the quoted text goes on over the end of its line");
  if (records.open_quote > 0)
    add_fault(in.notes, records.open_quote, "the quote that opens here is never closed");
}

// Reads the block of a keyword that is not given yet. False at the end of the file.
bool read_block(RecordReader& records, Input& in, Keyword keyword) {
  BlockPlace& block = in.block[keyword];
  block = {records.record_line, false, {}, {}};
  BlockReader b{records, in, keyword};
  const Flow flow = take_block(b);
  block.complete = flow == Flow::GO_ON;
  return flow != Flow::END_OF_FILE;
}

ReadOutcome read_blocks(RecordReader& records, Input& in) {
  bool given[KEYWORDS] = {};
  SkippedLines skipped;
  for (bool first = true;; first = false) {
    std::string word;  // blank if the line begins with an empty place or a slash
    std::vector<ValueFault> none;
    if (read_record(records, {&word}, none) == ReadStatus::END_OF_FILE) {
      note_skipped(skipped, in);
      if (first) return ReadOutcome::EMPTY;
      add_fault(in.notes, records.line, "the file ends without the keyword end");
      return ReadOutcome::INPUT_ERROR;
    }
    word.resize(std::min(word.size(), KEYWORD_LENGTH));
    word.erase(word.find_last_not_of(' ') + 1);  // blank padded: trailing blanks do not count
    in.last_line = records.record_line;
    in.ended = word == END_KEYWORD;
    const Keyword keyword = find_keyword(word);
    if (!in.ended && keyword == NO_KEYWORD) {
      pass_over(skipped, in, word, records);
      continue;
    }
    note_skipped(skipped, in);
    if (in.ended) return ReadOutcome::COMPLETE;
    if (given[keyword]) {
      add_warning(in.notes, records.record_line,
                  word + ": given again, skipped with its records; line " +
                      std::to_string(in.block[keyword].line) + " counts");
      skipped.before = Before::BLOCK_IN_PART;
      continue;
    }
    if (!read_block(records, in, keyword)) return ReadOutcome::INPUT_ERROR;
    const bool complete = in.block[keyword].complete;
    given[keyword] = !complete || sets_its_flag(keyword, in.model);
    skipped.before = complete ? Before::WHOLE_BLOCK : Before::BLOCK_IN_PART;
  }
}

}  // namespace

ReadOutcome read_input(std::string content, Input& in) {
  RecordReader records = make_reader(std::move(content));
  if (records.text.find('\0') != std::string::npos)
    add_warning(in.notes, 1, "the file holds zero bytes: it should be plain text");
  if (records.text.find('\r') != std::string::npos && records.text.find('\n') == std::string::npos)
    add_warning(in.notes, 1, "carriage returns alone end no line: the file is read as one line");
  const ReadOutcome outcome = read_blocks(records, in);
  note_quotes(records, in);
  if (outcome == ReadOutcome::COMPLETE) return outcome;
  in.last_line = records.line;
  return in.bad_value ? ReadOutcome::COMPLETE : outcome;
}

const MovedValue* moved_value(const Input& in, int line, std::string_view name) {
  const auto before = [](const MovedValue& m, int l) { return m.line < l; };
  auto m = std::lower_bound(in.moved.begin(), in.moved.end(), line, before);
  for (; m != in.moved.end() && m->line == line; ++m)
    if (m->name == name) return &*m;
  return nullptr;
}

}  // namespace zelvo
