// The words of the input language.
#pragma once
#include <string_view>

namespace zelvo {

// In the order in which a word of the file is compared with them.
enum Keyword {
  PRNAME,
  NGIRD,
  RCURV,
  LGBR,
  OFFSET,
  SECDIM,
  WEBTHICK,
  BOTFTHICK,
  TFTHICK,
  INTERNAL_BRACE,
  EXTERNAL_BRACE,
  TOP_LATERAL,
  WEB_STIFFENER,
  SUPPORT,
  STUDS,
  POUR_SEQ,
  BUCKLE,
  SOLVER,
  NO_KEYWORD
};
constexpr int KEYWORDS = NO_KEYWORD;
constexpr std::size_t KEYWORD_LENGTH = 20;  // characters of a word that count

inline constexpr std::string_view KEYWORD_NAMES[KEYWORDS] = {
    "prname",        "ngird",     "rcurv",   "lgbr",           "offset",         "secdim",
    "webthick",      "botfthick", "tfthick", "internal_brace", "external_brace", "top_lateral",
    "web_stiffener", "support",   "studs",   "pour_seq",       "buckle",         "solver"};
inline constexpr std::string_view END_KEYWORD = "end";

// The keyword that word is, or NO_KEYWORD (which `end` is too).
Keyword find_keyword(std::string_view word);

// The keyword, `end` included, that word misses by its capitals or by one or two letters wrong,
// missing, in excess or exchanged; empty if there is none. A short keyword allows one such error
// only.
std::string_view near_keyword(std::string_view word);

}  // namespace zelvo
