// What of the findings follows from what: one mistake makes many things look wrong.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "desk/findings.h"

namespace zelvo {

// Puts what follows from another finding below it, and first what may be the reason for others; each
// cause keeps its line. A cause is an error if one of its consequences is.
void sink_consequences(std::vector<Finding>& findings, const Input& in);

// The keyword whose records end last before a line; NO_KEYWORD if none.
Keyword block_before(const Input& in, int line);

// Single records, of which everything that is found is one mistake.
bool single_record(Keyword k);

inline bool has(const std::string& text, std::string_view part) {
  return text.find(part) != text.npos;
}

}  // namespace zelvo
