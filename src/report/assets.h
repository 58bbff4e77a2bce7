// Files that are built into the program: cmake/Embed.cmake writes their definitions.
#pragma once
#include <string_view>

namespace zelvo::report {

struct Asset {
  std::string_view text;
  std::string_view sha256;  // of the text, 64 hexadecimal digits
};

extern const Asset REPORT_CSS, BUCKLED_CSS, REPORT_JS, VIEWER_JS, THREE_JS;

}  // namespace zelvo::report
