#include "desk/causes.h"

#include <algorithm>
#include <utility>

namespace zelvo {

namespace {

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

}  // namespace

Keyword block_before(const Input& in, int line) {
  Keyword last = NO_KEYWORD;
  for (int k = 0; k < KEYWORDS; ++k)
    if (in.block[k].line > 0 && in.block[k].line < line &&
        (last == NO_KEYWORD || in.block[k].line > in.block[last].line))
      last = static_cast<Keyword>(k);
  return last;
}

bool single_record(Keyword k) { return k <= SECDIM || k == BUCKLE || k == SOLVER; }

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

}  // namespace zelvo
