#include "control/input_notes.h"

#include <algorithm>
#include <charconv>

namespace zelvo {

void add_fault(InputNotes& notes, int line, std::string text) {
  if (notes.faults.size() == MAX_NOTES) {
    ++notes.faults_left_out;
    return;
  }
  notes.faults.push_back({line, std::move(text)});
}

void add_warning(InputNotes& notes, int line, std::string text) {
  if (notes.warnings.size() == MAX_NOTES) {
    ++notes.warnings_left_out;
    return;
  }
  notes.warnings.push_back({line, std::move(text)});
}

std::string place(std::string_view keyword, int row) {
  std::string text(keyword);
  if (row > 0) text.append(" row ").append(std::to_string(row));
  return text.append(": ");
}

std::string number(double value) {
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return {digits, end};
}

std::string printable(std::string_view text) {
  constexpr char HEX[] = "0123456789abcdef";
  std::string out;
  for (const char ch : text) {
    const auto byte = static_cast<unsigned char>(ch);
    if (byte >= 0x20 && byte < 0x7f)
      out.push_back(ch);
    else
      out.append("\\x").append({HEX[byte / 16], HEX[byte % 16]});
  }
  return out;
}

std::vector<std::string> left_out(const InputNotes& notes) {
  std::vector<std::string> lines;
  const auto add = [&](std::int64_t n, const char* kind) {
    if (n > 0) lines.push_back("and " + std::to_string(n) + " more " + kind);
  };
  add(notes.faults_left_out, "faults");
  add(notes.warnings_left_out, "warnings");
  return lines;
}

std::string note_lines(const InputNotes& notes) {
  std::vector<Note> all = notes.faults;
  for (const Note& w : notes.warnings) all.push_back({w.line, "warning: " + w.text});
  std::stable_sort(all.begin(), all.end(),
                   [](const Note& a, const Note& b) { return a.line < b.line; });
  std::string out;
  for (const Note& n : all) {
    out.append(INPUT_FILE).append(":");
    if (n.line > 0) out.append(std::to_string(n.line)).append(":");
    out.append(" ").append(n.text).append("\n");
  }
  for (const std::string& text : left_out(notes))
    out.append(INPUT_FILE).append(": ").append(text).append("\n");
  return out;
}

}  // namespace zelvo
