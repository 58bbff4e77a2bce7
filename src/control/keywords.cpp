#include "control/keywords.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace zelvo {

namespace {

constexpr std::size_t LONGEST = KEYWORD_LENGTH;

// Letters to change, insert, delete or exchange with their neighbour to turn a into b (Damerau
// 1964), both at most LONGEST long.
int edit_distance(std::string_view a, std::string_view b) {
  std::array<std::array<int, LONGEST + 1>, LONGEST + 1> d{};
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        d[i][j] = static_cast<int>(i + j);
        continue;
      }
      const int change = a[i - 1] == b[j - 1] ? 0 : 1;
      d[i][j] = std::min(std::min(d[i - 1][j], d[i][j - 1]) + 1, d[i - 1][j - 1] + change);
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
    }
  }
  return d[a.size()][b.size()];
}

// A bit for each letter that stands in the word (others share the bits of letters). Every change takes
// at most one of them away.
std::uint32_t letters(std::string_view word) {
  std::uint32_t set = 0;
  for (const char c : word) set |= std::uint32_t{1} << (static_cast<unsigned char>(c) & 31U);
  return set;
}

}  // namespace

Keyword find_keyword(std::string_view word) {
  const auto found = std::find(std::begin(KEYWORD_NAMES), std::end(KEYWORD_NAMES), word);
  return static_cast<Keyword>(found - std::begin(KEYWORD_NAMES));
}

std::string_view near_keyword(std::string_view word) {
  if (word.empty() || word.size() > LONGEST) return {};
  std::string lower(word);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  const std::uint32_t given = letters(lower);
  std::string_view nearest;
  int least = 3;
  const auto compare = [&](std::string_view keyword) {
    const int allowed = std::min(keyword.size() < 5 ? 1 : 2, least - 1);
    const auto excess = static_cast<int>(lower.size()) - static_cast<int>(keyword.size());
    const std::uint32_t wanted = letters(keyword);
    // The distance is each of these at least.
    if (std::abs(excess) > allowed || std::popcount(given & ~wanted) > allowed ||
        std::popcount(wanted & ~given) > allowed)
      return;
    const int distance = edit_distance(lower, keyword);
    if (distance > allowed) return;
    least = distance;
    nearest = keyword;
  };
  for (const std::string_view keyword : KEYWORD_NAMES) compare(keyword);
  compare(END_KEYWORD);
  return nearest;
}

}  // namespace zelvo
