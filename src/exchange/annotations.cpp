#include "exchange/annotations.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zelvo {

namespace {

constexpr std::string_view BLANKS = " \t\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(BLANKS);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

// Takes the first word off text.
std::string_view next_word(std::string_view& text) {
  text = trimmed(text);
  const std::string_view word = text.substr(0, text.find_first_of(BLANKS));
  text = trimmed(text.substr(word.size()));
  return word;
}

template <class T>
bool convert(std::string_view word, T& value) {
  const auto r = std::from_chars(word.data(), word.data() + word.size(), value);
  return !word.empty() && r.ec == std::errc() && r.ptr == word.data() + word.size();
}

struct Line {
  int number;
  std::string_view rest;
  int nanal;
  InputNotes& notes;
  void fault(const std::string& text) const { add_fault(notes, number, "!@ " + text); }
};

// A stage number, or 0 with a fault.
int take_stage(Line& line, const char* what) {
  const std::string_view word = next_word(line.rest);
  int k = 0;
  if (convert(word, k) && k >= 1 && k <= line.nanal) return k;
  line.fault(std::string(what) + ": stage '" + printable(word) + "' must be 1 to " +
             std::to_string(line.nanal));
  return 0;
}

// The last value of a line within bounds; false with a fault.
bool take_number(const Line& line, const std::string& what, double low, double high,
                 double& value) {
  if (convert(line.rest, value) && value >= low && value <= high) return true;
  line.fault(what + ": '" + printable(line.rest) + "' must be a number from " + number(low) +
             " to " + number(high));
  return false;
}

void take_name(Line& line, Annotations& a) {
  const int k = take_stage(line, "stage");
  if (k == 0) return;
  std::string& name = a.stage_name[static_cast<std::size_t>(k - 1)];
  if (line.rest.empty()) return line.fault("stage: the name is missing");
  if (!name.empty()) return line.fault("stage: stage " + std::to_string(k) + " has a name already");
  name = line.rest;
}

void take_factor(Line& line, std::vector<bool>& given, Annotations& a) {
  const int k = take_stage(line, "load_factor");
  if (k == 0) return;
  const auto i = static_cast<std::size_t>(k - 1);
  if (given[i]) return line.fault("load_factor: stage " + std::to_string(k) + " has one already");
  given[i] = take_number(line, "load_factor", -100, 100, a.load_factor[i]);
}

void take_limit(Line& line, Annotations& a) {
  const std::string name(next_word(line.rest));
  if (std::find(LIMIT_NAMES.begin(), LIMIT_NAMES.end(), name) == LIMIT_NAMES.end()) {
    std::string names;
    for (const std::string_view n : LIMIT_NAMES) names.append(names.empty() ? "" : ", ").append(n);
    return line.fault("limit: '" + printable(name) + "' must be one of " + names);
  }
  const auto same = [&](const Limit& l) { return l.name == name; };
  if (std::any_of(a.limits.begin(), a.limits.end(), same))
    return line.fault("limit: " + name + " has one already");
  Limit limit{line.number, name, 0};
  const double low = name == "reaction" ? -1e6 : 0;
  if (take_number(line, "limit " + name, low, 1e6, limit.value)) a.limits.push_back(limit);
}

void take_once(Line& line, bool& given, const char* word) {
  if (given) line.fault(std::string(word) + " is given twice");
  given = true;
}

}  // namespace

Annotations read_annotations(std::string_view content, int nanal, InputNotes& notes) {
  Annotations a;
  nanal = std::max(nanal, 0);
  const auto stages = static_cast<std::size_t>(nanal);
  a.stage_name.resize(stages);
  a.load_factor.assign(stages, 1.0);
  std::vector<bool> factor_given(stages);
  bool title = false, bearing = false;
  for (int number = 1; !content.empty(); ++number) {
    const std::string_view whole = content.substr(0, content.find('\n'));
    content.remove_prefix(std::min(whole.size() + 1, content.size()));
    const std::string_view text = trimmed(whole);
    if (text.substr(0, 2) != "!@") continue;
    Line line{number, text.substr(2), nanal, notes};
    const std::string_view word = next_word(line.rest);
    if (word == "title") {
      take_once(line, title, "title");
      a.title = line.rest;
    } else if (word == "stage") {
      take_name(line, a);
    } else if (word == "load_factor") {
      take_factor(line, factor_given, a);
    } else if (word == "bearing_spacing") {
      take_once(line, bearing, "bearing_spacing");
      take_number(line, "bearing_spacing", 1, 1000, a.bearing_spacing);
    } else if (word == "limit") {
      take_limit(line, a);
    } else {
      line.fault(std::string("'").append(printable(word)) +
                 "' must be title, stage, load_factor, bearing_spacing or limit");
    }
  }
  return a;
}

}  // namespace zelvo
