#include "report/html.h"

#include <charconv>
#include <cmath>

namespace zelvo::report {

std::string escaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&#39;";
        break;
      case '\r':
        out += "&#13;";
        break;
      default:
        out += c;
    }
  return out;
}

std::string script_safe(std::string_view json) {
  std::string out;
  out.reserve(json.size());
  for (const char c : json)
    if (c == '<')
      out += "\\u003c";
    else
      out += c;
  return out;
}

std::string coordinate(double value) {
  const double tenths = std::round(10 * value);
  char buffer[32];
  // Whole tenths are exact enough that the shortest text has at most one decimal.
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, tenths == 0 ? 0.0 : tenths / 10,
                                 std::chars_format::fixed);
  return {buffer, end.ptr};
}

}  // namespace zelvo::report
