#include "desk/findings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <utility>

#include "base/text.h"
#include "desk/causes.h"

namespace zelvo {

namespace {

constexpr std::size_t SHOWN_VALUES = 6, SHOWN_CONSEQUENCES = 4;

void add(Checked& c, bool error, Keyword keyword, int row, std::string head, std::string value,
         std::string tail) {
  Finding f{place_of(c.job.input, keyword, row),
            error,
            keyword,
            {},
            std::move(head),
            {},
            std::move(tail),
            {}};
  if (row > 0) f.rows.push_back(row);
  if (!value.empty()) f.values.push_back(std::move(value));
  c.findings.push_back(std::move(f));
}

// "keyword row 3: what (value), must be" into its parts.
Finding from_note(const Note& note, bool error) {
  Finding f{note.line, error, NO_KEYWORD, {}, note.text, {}, {}, {}};
  const std::size_t colon = note.text.find(": ");
  const Keyword keyword = find_keyword(note.text.substr(0, note.text.find_first_of(" :")));
  if (colon == note.text.npos || keyword == NO_KEYWORD) return f;
  f.keyword = keyword;
  const std::size_t row = note.text.find(" row ");
  if (row < colon) f.rows.push_back(std::atoi(note.text.c_str() + row + 5));
  f.head = note.text.substr(colon + 2);
  const std::size_t open = f.head.find(" ("), close = f.head.find(')', open);
  if (f.rows.empty() || open == f.head.npos || close == f.head.npos) return f;
  f.values.push_back(f.head.substr(open + 2, close - open - 2));
  f.tail = f.head.substr(close);
  f.head.resize(open + 2);
  return f;
}

// The keyword that a word which is none may stand for; NO_KEYWORD if nothing comes to mind.
Keyword guess(const Input& in, std::string word) {
  for (char& ch : word)
    if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch + 32);
  static constexpr std::pair<const char*, Keyword> PARTS[] = {{"lateral", TOP_LATERAL},
                                                              {"bracing", TOP_LATERAL},
                                                              {"extern", EXTERNAL_BRACE},
                                                              {"brace", INTERNAL_BRACE},
                                                              {"frame", INTERNAL_BRACE},
                                                              {"diaph", INTERNAL_BRACE},
                                                              {"stiff", WEB_STIFFENER},
                                                              {"supp", SUPPORT},
                                                              {"bearing", SUPPORT},
                                                              {"pier", SUPPORT},
                                                              {"stud", STUDS},
                                                              {"shear", STUDS},
                                                              {"pour", POUR_SEQ},
                                                              {"stage", POUR_SEQ},
                                                              {"buck", BUCKLE},
                                                              {"web", WEBTHICK},
                                                              {"bot", BOTFTHICK},
                                                              {"top", TFTHICK},
                                                              {"rad", RCURV},
                                                              {"curv", RCURV},
                                                              {"len", LGBR},
                                                              {"gird", NGIRD},
                                                              {"sec", SECDIM},
                                                              {"offs", OFFSET},
                                                              {"spac", OFFSET},
                                                              {"solv", SOLVER}};
  for (const auto& [part, keyword] : PARTS)
    if (has(word, part) && in.block[keyword].line == 0) return keyword;
  return NO_KEYWORD;
}

// The count that may be too small if numbers are left over behind its table.
std::string count_above(const Input& in, int line) {
  const Keyword k = block_before(in, line);
  if (k == SOLVER) return ": solver takes a shift with kind 2 only";
  if (k == NO_KEYWORD || single_record(k) || in.block[k].heads.empty()) return "";
  const std::string name(KEYWORD_NAMES[k]);
  if (k == POUR_SEQ)
    return ": " + name + " takes " + std::to_string(in.model.nanal) + " stages of " +
           std::to_string(in.model.npour) + " segments";
  return ": that of " + name + " is " + std::to_string(in.block[k].rows.size()) + " (line " +
         std::to_string(in.block[k].heads[0].line) + ")";
}

// What the batch program's notes leave to be guessed.
void add_hint(const Input& in, Finding& f) {
  if (has(f.head, "unknown word") && !has(f.head, "perhaps")) {
    const std::size_t open = f.head.rfind('(');
    f.keyword = guess(in, f.head.substr(open));
    if (f.keyword != NO_KEYWORD)
      f.tail += ", perhaps the keyword " + std::string(KEYWORD_NAMES[f.keyword]) + " is meant";
    f.keyword = NO_KEYWORD;
  }
  if (has(f.head, "a count above may be too small")) f.tail += count_above(in, f.line);
  const std::string value = f.values.empty() ? std::string() : f.values.front();
  const std::size_t open = f.head.find("cannot be converted (");
  const std::string bad = open != f.head.npos ? f.head.substr(open + 21, 1) : value.substr(0, 1);
  const bool comment =
      has(f.head, "cannot be converted") && bad.find_first_of("!#;*%/") != bad.npos;
  if (comment)
    f.tail += "; a value is missing, or a comment stands between the records of a keyword";
  if ((comment || has(f.head, "a keyword stands in the place")) && !f.rows.empty() &&
      f.keyword != POUR_SEQ)
    f.tail += "; the count of rows stands in line " + std::to_string(place_of(in, f.keyword, 0));
  if (f.keyword == POUR_SEQ && f.head.starts_with("length cannot be converted"))
    f.tail += "; too many segments, or stages and segments swapped?";
  if (f.keyword == POUR_SEQ && has(f.head, "self-weight switch"))
    f.tail +=
        "; a row too many, or too small a number of stages: stages x segments rows are read (" +
        std::to_string(in.model.npour) + " segments)";
}

std::string joined(const std::vector<std::string>& values, bool all) {
  const std::set<std::string> different(values.begin(), values.end());
  if (different.size() == 1) return values.front();
  std::string text;
  const std::size_t shown = all ? values.size() : std::min(values.size(), SHOWN_VALUES);
  for (std::size_t i = 0; i < shown; ++i) text.append(i > 0 ? ", " : "").append(values[i]);
  return shown < values.size() ? text + ", ..." : text;
}

// "row 3", "rows 1 to 4, 7".
std::string row_list(const std::vector<int>& rows) {
  std::string text = rows.size() == 1 ? "row " : "rows ";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::size_t last = i;
    while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1) ++last;
    text.append(i > 0 ? ", " : "").append(std::to_string(rows[i]));
    if (last > i) text.append(last == i + 1 ? ", " : " to ").append(std::to_string(rows[last]));
    i = last;
  }
  return text;
}

void join_rows(std::vector<Finding>& findings) {
  std::vector<Finding> joined;
  for (Finding& f : findings) {
    const auto same = std::find_if(joined.begin(), joined.end(), [&](const Finding& g) {
      return !f.rows.empty() && !g.rows.empty() && f.keyword == g.keyword && f.error == g.error &&
             f.head == g.head && f.tail == g.tail && f.values.size() <= 1;
    });
    if (same == joined.end()) {
      joined.push_back(std::move(f));
      continue;
    }
    if (std::find(same->rows.begin(), same->rows.end(), f.rows[0]) != same->rows.end()) continue;
    const auto at = std::upper_bound(same->rows.begin(), same->rows.end(), f.rows[0]);
    const auto i = at - same->rows.begin();
    same->rows.insert(at, f.rows[0]);
    same->values.insert(same->values.begin() + (f.values.empty() ? 0 : i), f.values.begin(),
                        f.values.end());
    same->line = std::min(same->line, f.line);
  }
  findings = std::move(joined);
}

}  // namespace

int place_of(const Input& in, Keyword keyword, int row) {
  if (keyword == NO_KEYWORD) return 0;
  const BlockPlace& block = in.block[keyword];
  if (row > 0) return block.rows[static_cast<std::size_t>(row - 1)].line;
  return block.heads.empty() ? block.line : block.heads.front().line;
}

void warn(Checked& c, Keyword keyword, int row, std::string head, std::string value,
          std::string tail) {
  add(c, false, keyword, row, std::move(head), std::move(value), std::move(tail));
}
void refuse(Checked& c, Keyword keyword, int row, std::string head, std::string value,
            std::string tail) {
  add(c, true, keyword, row, std::move(head), std::move(value), std::move(tail));
}

std::string slip_hint(const Usual& usual, double value) {
  std::string hint;
  for (const Slip& slip : usual.slips) {
    if (slip.hint == nullptr || has(hint, slip.hint)) continue;
    const double meant = value * slip.factor;
    if (meant >= usual.low && meant <= usual.high)
      hint.append(hint.empty() ? ": " : ", ").append(slip.hint);
  }
  return hint.empty() ? hint : hint + "?";
}

bool expect(Checked& c, Keyword keyword, int row, const Usual& usual, double value) {
  if (value >= usual.low && value <= usual.high) return true;
  const std::string unit = usual.unit[0] == '\0' ? "" : std::string(" ") + usual.unit;
  warn(c, keyword, row, std::string(usual.name) + " ", plain(value),
       unit + " is outside the usual " + plain(usual.low) + " to " + plain(usual.high) +
           slip_hint(usual, value));
  return false;
}

bool usable(const Checked& c, std::initializer_list<Keyword> keywords) {
  const auto good = [](const RecordPlace& p) { return p.good; };
  for (const Keyword k : keywords) {
    const BlockPlace& block = c.job.input.block[k];
    if (block.line > 0 &&
        !(block.complete && std::all_of(block.heads.begin(), block.heads.end(), good) &&
          std::all_of(block.rows.begin(), block.rows.end(), good)))
      return false;
    const auto faulty = [&](const Finding& f) { return f.error && f.keyword == k; };
    if (std::any_of(c.findings.begin(), c.findings.end(), faulty)) return false;
  }
  return true;
}

void take_notes(Checked& c) {
  const Input& in = c.job.input;
  const bool stages = in.block[POUR_SEQ].complete;  // without them no stage has a number
  for (const Note& n : in.notes.faults)
    if (stages || !n.text.ends_with("must be 1 to 0")) c.findings.push_back(from_note(n, true));
  for (const Note& n : in.notes.warnings)
    if (!n.text.ends_with(" on the grid") && !has(n.text, "cut to the grid"))
      c.findings.push_back(from_note(n, false));
  for (Finding& f : c.findings) add_hint(in, f);
  for (const MovedValue& v : in.moved)
    add(c, false, v.keyword, v.row, std::string(v.name) + " ",
        std::to_string(v.typed) + " is cut to " + std::to_string(v.cut), "");
}

void settle(Checked& c) {
  join_rows(c.findings);
  sink_consequences(c.findings, c.job.input);
  std::stable_sort(c.findings.begin(), c.findings.end(),
                   [](const Finding& a, const Finding& b) { return a.line < b.line; });
}

std::string finding_text(const Finding& f) {
  std::string text;
  if (f.keyword != NO_KEYWORD) {
    text = KEYWORD_NAMES[f.keyword];
    if (!f.rows.empty()) text.append(" ").append(row_list(f.rows));
    text.append(": ");
  }
  text += f.head;
  const bool moved = !f.values.empty() && has(f.values.front(), "is cut to");
  if (!f.values.empty()) text += joined(f.values, moved);
  return text + f.tail;
}

std::string finding_lines(const std::string& path, const Finding& f) {
  std::string out = path + ":";
  if (f.line > 0) out += std::to_string(f.line) + ":";
  out += std::string(f.error ? " error: " : " warning: ") + finding_text(f) + "\n";
  for (std::size_t i = 0; i < std::min(f.consequences.size(), SHOWN_CONSEQUENCES); ++i)
    out += "    so " + f.consequences[i] + "\n";
  if (f.consequences.size() > SHOWN_CONSEQUENCES)
    out += "    and " + std::to_string(f.consequences.size() - SHOWN_CONSEQUENCES) + " more\n";
  return out;
}

std::string plain(double value) { return formatted("%.10g", value); }
std::string rounded(double value) {
  return std::abs(value) < 1000 ? formatted("%.3g", value) : formatted("%.0f", value);
}

}  // namespace zelvo
