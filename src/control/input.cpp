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

// One record. Its faults are noted under the names of its values.
Flow take(BlockReader& b, Names names, std::initializer_list<Target> targets) {
  std::vector<ValueFault> faults;
  const ReadStatus status = read_record(b.records, targets, faults);
  const std::string where = place(KEYWORD_NAMES[b.keyword], b.row);
  for (const ValueFault& f : faults) {
    const std::string name = *(names.begin() + f.item - 1);
    if (f.first_on_line &&
        (find_keyword(f.text) != NO_KEYWORD || std::string_view(f.text) == END_KEYWORD)) {
      add_fault(b.in.notes, f.line,
                where + "a keyword stands in the place of the " + name + " (" + f.text +
                    "), must be " + f.expected +
                    "; a count above may be too large, or a row short of a value");
      go_back_to(b.records, f);
      return Flow::LEAVE_BLOCK;
    }
    add_fault(b.in.notes, f.line, where + conversion_fault(f, name));
  }
  if (status == ReadStatus::END_OF_FILE) {
    add_fault(b.in.notes, b.records.line,
              where + "the file ends in the place of the " + std::string(*names.begin()));
    return Flow::END_OF_FILE;
  }
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
  count = std::max(count, 0);
  return flow;
}

void cut(Vector<int>& lengths, int grid) {
  for (int& length : lengths) length -= length % grid;
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
  cut(m.pour_len, BAY_LENGTH);
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
  m.lgbr -= m.lgbr % BAY_LENGTH;
  return flow;
}

// Bars of cross frames.
const Names BRACE_ROW = {"position", "type", "area"};
const Names PLATE_ROW = {"length", "thickness"};

Flow take_section(BlockReader& b) {
  SectionDimensions& s = b.in.model.secdim;
  return take(b,
              {"depth", "bottom flange width", "distance of the web tops", "top flange width",
               "deck width", "deck thickness"},
              {&s.depth, &s.bottom_width, &s.top_spacing, &s.flange_width, &s.deck_width,
               &s.deck_thickness});
}

// The records of one keyword, and the cut to the grid.
Flow take_block(BlockReader& b) {
  Model& m = b.in.model;
  Flow flow = Flow::GO_ON;
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
      flow = take_table(b, PLATE_ROW, m.nweb, m.web_len, m.web_t);
      cut(m.web_len, BAY_LENGTH);
      return flow;
    case BOTFTHICK:
      flow = take_table(b, PLATE_ROW, m.nbotf, m.botf_len, m.botf_t);
      cut(m.botf_len, BAY_LENGTH);
      return flow;
    case TFTHICK:
      flow = take_table(b, PLATE_ROW, m.ntopf, m.topf_len, m.topf_t);
      cut(m.topf_len, BAY_LENGTH);
      return flow;
    case INTERNAL_BRACE:
      flow = take_attachments(b, BRACE_ROW, m.nibrace, m.ib_pos, m.ib_type, m.ib_area);
      cut(m.ib_pos, STATION_SPACING);
      return flow;
    case EXTERNAL_BRACE:
      flow = take_attachments(b, BRACE_ROW, m.nebrace, m.eb_pos, m.eb_type, m.eb_area);
      cut(m.eb_pos, STATION_SPACING);
      return flow;
    case TOP_LATERAL:
      flow = take_attachments(b, {"type", "first position", "second position", "area"}, m.nlat,
                              m.lat_type, m.lat_from, m.lat_to, m.lat_area);
      cut(m.lat_from, STATION_SPACING);
      cut(m.lat_to, STATION_SPACING);
      return flow;
    case WEB_STIFFENER:
      flow = take_attachments(b, {"position", "width", "thickness"}, m.nstiff, m.ws_pos, m.ws_b,
                              m.ws_t);
      cut(m.ws_pos, STATION_SPACING);
      return flow;
    case SUPPORT:
      flow = take_table(b, {"position"}, m.nsupp, m.supp_pos);
      cut(m.supp_pos, BAY_LENGTH);
      return flow;
    case STUDS:
      flow = take_table(b, {"length", "spacing", "number of studs across"}, m.nstudrow, m.stud_len,
                        m.stud_spacing, m.stud_count);
      cut(m.stud_len, BAY_LENGTH);
      return flow;
    case POUR_SEQ:
      return take_pour_sequence(b);
    case BUCKLE:
      return take_buckle(b);
    case SOLVER:
      return take_solver(b);
    case NO_KEYWORD:
      break;
  }
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

// Notes on a line that is passed over; first_behind_block tells that a block has just ended.
void note_skipped_word(Input& in, const std::string& word, int line, bool first_behind_block) {
  const std::string shown = printable(word);
  const std::string_view near = near_keyword(word);
  if (!near.empty())
    add_warning(in.notes, line,
                "unknown word, the line is skipped (" + shown + "), perhaps the keyword " +
                    std::string(near) + " is meant");
  else if (first_behind_block && is_number(word))
    add_warning(in.notes, line,
                "number in the place of a keyword, the line is skipped (" + shown +
                    "), a count above may be too small");
}

void note_quotes(const RecordReader& records, Input& in) {
  for (const int line : records.long_quotes)
    if (line != records.open_quote)
      add_warning(in.notes, line, "the quoted text goes on over the end of its line");
  if (records.open_quote > 0)
    add_fault(in.notes, records.open_quote, "the quote that opens here is never closed");
}

ReadOutcome read_blocks(RecordReader& records, Input& in) {
  bool given[KEYWORDS] = {};
  bool block_ended = false;
  for (bool first = true;; first = false) {
    std::string word;  // blank if the line begins with an empty place or a slash
    std::vector<ValueFault> none;
    if (read_record(records, {&word}, none) == ReadStatus::END_OF_FILE) {
      if (first) return ReadOutcome::EMPTY;
      add_fault(in.notes, records.line, "the file ends without the keyword end");
      return ReadOutcome::INPUT_ERROR;
    }
    word.resize(std::min(word.size(), KEYWORD_LENGTH));
    word.erase(word.find_last_not_of(' ') + 1);  // blank padded: trailing blanks do not count
    in.last_line = records.record_line;
    if (word == END_KEYWORD) return ReadOutcome::COMPLETE;
    const Keyword keyword = find_keyword(word);
    if (keyword == NO_KEYWORD) {
      note_skipped_word(in, word, records.record_line, block_ended);
      block_ended = false;
    } else if (given[keyword]) {
      add_warning(in.notes, records.record_line,
                  word + ": given again, skipped with its records; line " +
                      std::to_string(in.block[keyword].line) + " counts");
      block_ended = false;
    } else {
      BlockPlace& block = in.block[keyword];
      block = {records.record_line, false, {}, {}};
      BlockReader b{records, in, keyword};
      const Flow flow = take_block(b);
      if (flow == Flow::END_OF_FILE) return ReadOutcome::INPUT_ERROR;
      block.complete = flow == Flow::GO_ON;
      given[keyword] = !block.complete || sets_its_flag(keyword, in.model);
      block_ended = block.complete;
    }
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
  if (outcome != ReadOutcome::COMPLETE) in.last_line = records.line;
  return outcome;
}

}  // namespace zelvo
