#include "desk/findings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <utility>

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

bool has(const std::string& text, std::string_view part) { return text.find(part) != text.npos; }

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

// The keyword whose records end last before a line.
Keyword block_before(const Input& in, int line) {
  Keyword last = NO_KEYWORD;
  for (int k = 0; k < KEYWORDS; ++k)
    if (in.block[k].line > 0 && in.block[k].line < line &&
        (last == NO_KEYWORD || in.block[k].line > in.block[last].line))
      last = static_cast<Keyword>(k);
  return last;
}

// Single records, of which everything that is found is one mistake.
bool single_record(Keyword k) { return k <= SECDIM || k == BUCKLE || k == SOLVER; }

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

// What a finding says, as far as others may follow from it: told by its words.
enum class Kind {
  OTHER,
  MISSPELT,    // a word that stands for a keyword
  BEHIND_END,  // a keyword that is not read
  NO_TITLE,    // a keyword was taken for it
  ROWS_LEFT,   // behind a table: its count is too small
  MISREAD,     // values taken from the wrong places
  UNREAD,      // values that are none
  POSITIONS,   // in the place of lengths
  OTHER_SUM,   // the lists agree on another length than lgbr
  MOVED,       // cut to the grid
  MISSING,     // the keyword, or what it would hold
  NOT_GIVEN,   // a record that another keyword wants
  NO_SUM,      // segments do not fill the girder
  OUTSIDE,     // positions beyond the girder
  OVERHANG,    // of the deck
  DECK_LOAD,   // compared with the weight of the deck
  DEPTH,       // compared with the depth
  AT_SUPPORT,  // of frames, stiffeners, curvature between supports
  AT_FRAME,    // of laterals and external frames between internal ones
  AS_HARD,     // concrete that no load has placed, or placed later
  NO_LOAD,     // in a stage
  DOUBLED      // supports at one place
};
constexpr std::pair<const char*, Kind> KIND_WORDS[] = {
    {"perhaps the keyword", Kind::MISSPELT},
    {"stands behind end", Kind::BEHIND_END},
    {"a title may be missing", Kind::NO_TITLE},
    {"a count above may be too small", Kind::ROWS_LEFT},
    {"of its values", Kind::MISREAD},
    {"more numbers than", Kind::MISREAD},
    {"on the line of the keyword", Kind::MISREAD},
    {"up to its slash", Kind::MISREAD},
    {"cannot be converted", Kind::UNREAD},
    {"a keyword stands in the place", Kind::UNREAD},
    {"positions in the place of lengths", Kind::POSITIONS},
    {"other lists", Kind::OTHER_SUM},
    {" is cut to ", Kind::MOVED},
    {"the keyword is missing", Kind::MISSING},
    {"without the keyword end", Kind::MISSING},
    {"none is given", Kind::MISSING},
    {"loads are not applied", Kind::NOT_GIVEN},
    {"has no solver record", Kind::NOT_GIVEN},
    {"their distance, is not given", Kind::NOT_GIVEN},
    {"do not add up", Kind::NO_SUM},
    {"outside the girder", Kind::OUTSIDE},
    {"the deck is not wider", Kind::OVERHANG},
    {"overhang of the deck", Kind::OVERHANG},
    {"times the deck's weight", Kind::DECK_LOAD},
    {"times the depth", Kind::DEPTH},
    {"missing at support", Kind::AT_SUPPORT},
    {"where others stand", Kind::AT_SUPPORT},
    {"from its neighbours", Kind::AT_SUPPORT},
    {"the longest span turns", Kind::AT_SUPPORT},
    {"passes a frame", Kind::AT_FRAME},
    {"where no frame stands", Kind::AT_FRAME},
    {"no internal frame stands", Kind::AT_FRAME},
    {"the laterals meet at", Kind::AT_FRAME},
    {"panels beside", Kind::AT_FRAME},
    {"hard when first loaded", Kind::AS_HARD},
    {"but softer than it", Kind::AS_HARD},
    {"has no load", Kind::NO_LOAD},
    {"another support stands", Kind::DOUBLED},
};

Kind kind_of(const Finding& f) {
  const std::string text = finding_text(f);
  for (const auto& [words, kind] : KIND_WORDS)
    if (has(text, words)) return kind;
  return Kind::OTHER;
}

std::string name_of(Keyword k) {
  return std::string(k == NO_KEYWORD ? END_KEYWORD : KEYWORD_NAMES[k]);
}

// The keyword that a finding says is meant, or not read: "perhaps the keyword studs is meant".
std::string meant_by(const Finding& f) {
  const std::string text = finding_text(f);
  const std::size_t at = text.rfind("the keyword ") + 12;
  return text.substr(at, text.find(' ', at) - at);
}

// Whether a wrong table of a keyword makes what is found of another.
bool spoils(Keyword k, Keyword other, Kind effect) {
  const bool at_frame = effect == Kind::AT_FRAME && (k == INTERNAL_BRACE || k == SUPPORT);
  return k != NO_KEYWORD &&
         (k == other || at_frame || (effect == Kind::AT_SUPPORT && k == SUPPORT));
}

// Whether g follows from the mistake f because of what f is.
bool follows_kind(const Finding& f, Kind cause, const Finding& g, Kind effect, const Input& in) {
  const bool same = f.keyword == g.keyword && g.keyword != NO_KEYWORD;
  switch (cause) {
    case Kind::MISSPELT:
    case Kind::BEHIND_END:
      if (effect == Kind::OTHER && g.line == f.line + 1) return has(g.head, "unknown word");
      if (g.keyword != NO_KEYWORD && in.block[g.keyword].line == 0 &&
          (cause == Kind::BEHIND_END || meant_by(f) == name_of(g.keyword)))
        return true;
      if (effect == Kind::OVERHANG) return meant_by(f) == name_of(OFFSET);
      return effect == Kind::NOT_GIVEN && has(finding_text(g), meant_by(f));
    case Kind::NO_TITLE:
      return (effect == Kind::MISSING && has(finding_text(f), "(" + name_of(g.keyword) + ")")) ||
             (effect == Kind::ROWS_LEFT && g.line == f.line + 1);
    case Kind::ROWS_LEFT:
      return effect != Kind::MOVED && spoils(block_before(in, f.line), g.keyword, effect);
    case Kind::MISREAD:
      return same && effect != Kind::MISREAD && g.line >= in.block[g.keyword].line;
    case Kind::UNREAD:
      return (effect == Kind::ROWS_LEFT && block_before(in, g.line) == f.keyword) ||
             (same && effect == Kind::UNREAD && (g.rows.empty() || f.keyword == POUR_SEQ));
    case Kind::POSITIONS:
      return same && effect == Kind::NO_SUM;
    case Kind::OTHER_SUM:
      return effect == Kind::NO_SUM || effect == Kind::OUTSIDE || same;
    case Kind::MOVED:
      return same && effect == Kind::NO_SUM;
    default:
      return false;
  }
}

// Whether a finding about a load tells why a pour does not stand where it should.
bool misplaces_load(const std::string& text) {
  for (const char* words : {"is negative", "has no load", "on wet concrete", "swapped", "twice"})
    if (has(text, words)) return true;
  return false;
}

std::string all_text(const Finding& f) {
  std::string text = finding_text(f);
  for (const std::string& c : f.consequences) text.append("\n").append(c);
  return text;
}

// Whether g follows from a dimension of the section that text has found wrong.
bool from_section(const std::string& text, const Finding& g, Kind effect) {
  if (effect == Kind::DECK_LOAD || effect == Kind::AS_HARD) return has(text, "deck");
  if (effect == Kind::DEPTH || g.keyword == WEBTHICK) return has(text, "depth");
  if (g.keyword == BOTFTHICK) return has(text, "bottom flange width");
  return g.keyword == TFTHICK && has(text, "top flange width");
}

// Whether g follows from the mistake f.
bool follows(const Finding& f, const Finding& g, const Input& in) {
  const Kind cause = kind_of(f), effect = kind_of(g);
  if (follows_kind(f, cause, g, effect, in)) return true;
  if (g.keyword == NO_KEYWORD || f.keyword == NO_KEYWORD || effect == Kind::MOVED) return false;
  const bool overhang = effect == Kind::OVERHANG;
  if (f.keyword == NGIRD && (g.keyword == EXTERNAL_BRACE || g.keyword == OFFSET || overhang))
    return true;
  if (f.keyword == OFFSET && overhang) return true;
  const std::string text = all_text(f), told = finding_text(g);
  if (f.keyword == SECDIM && !f.error && g.keyword != SECDIM) return from_section(text, g, effect);
  if (f.keyword == WEBTHICK && g.keyword == SECDIM) return has(told, "webs fold");
  if (f.keyword == SUPPORT && g.keyword == SUPPORT && (f.rows.empty() || cause == Kind::DOUBLED))
    return true;
  if (f.keyword == SUPPORT && cause != Kind::MOVED && spoils(SUPPORT, NO_KEYWORD, effect))
    return true;
  if (f.keyword == INTERNAL_BRACE && spoils(INTERNAL_BRACE, NO_KEYWORD, effect)) return true;
  const bool table = !f.rows.empty() && g.rows.empty() && f.keyword == g.keyword;
  if (table && (effect == Kind::AT_SUPPORT || effect == Kind::AT_FRAME))
    return f.keyword == INTERNAL_BRACE || f.keyword == TOP_LATERAL;
  if (f.keyword == POUR_SEQ && effect == Kind::AS_HARD && misplaces_load(text)) return true;
  if (f.keyword == POUR_SEQ && effect == Kind::NO_LOAD) return has(text, "weight of the steel");
  if (f.keyword != g.keyword) return false;
  if (f.rows.empty()) return g.rows.empty() && single_record(f.keyword);
  return !g.rows.empty() &&
         std::includes(f.rows.begin(), f.rows.end(), g.rows.begin(), g.rows.end());
}

// What may be the reason for others comes first, and what has a guess at it.
int rank(const Finding& f) {
  const Kind kind = kind_of(f);
  if (kind != Kind::OTHER && kind < Kind::MOVED) return 0;
  const bool guessed = has(finding_text(f), "?");
  if (f.keyword == NGIRD || f.keyword == OFFSET) return guessed ? 1 : 2;
  if (f.keyword == SUPPORT && kind == Kind::DOUBLED) return 2;
  if (f.keyword == SUPPORT && guessed && kind != Kind::DEPTH) return 3;
  if (kind == Kind::MOVED) return 4;
  if (f.error) return 5;
  const bool effect = kind == Kind::AT_FRAME || kind == Kind::AS_HARD ||
                      (kind == Kind::AT_SUPPORT && f.rows.empty() && f.keyword != RCURV);
  if (effect) return f.keyword == INTERNAL_BRACE ? 9 : 10;
  if (kind == Kind::NO_LOAD) return 9;
  const bool dimension = f.keyword == SECDIM && has(finding_text(f), "is outside the usual");
  return dimension || has(finding_text(f), "swapped") ? 6 : guessed ? 7 : 8;
}

void sink_consequences(std::vector<Finding>& findings, const Input& in) {
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    return std::pair(rank(a), a.line) < std::pair(rank(b), b.line);
  });
  for (std::size_t i = 0; i < findings.size(); ++i) {
    for (std::size_t j = i + 1; j < findings.size();) {
      if (!follows(findings[i], findings[j], in)) {
        ++j;
        continue;
      }
      findings[i].error = findings[i].error || findings[j].error;
      findings[i].consequences.push_back(finding_text(findings[j]));
      findings.erase(findings.begin() + static_cast<std::ptrdiff_t>(j));
    }
  }
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

std::string plain(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.10g", value);
  return text;
}
std::string rounded(double value) {
  char text[32];
  std::snprintf(text, sizeof text, std::abs(value) < 1000 ? "%.3g" : "%.0f", value);
  return text;
}

}  // namespace zelvo
