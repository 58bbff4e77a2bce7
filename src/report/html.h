// Markup that cannot be broken by what stands in an input: string literals are markup, everything
// else that is put into it is text and is escaped.
#pragma once
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

namespace zelvo::report {

struct Html {
  std::string text;
};

// Text with & < > " ' as entities, and carriage returns, which a parser would drop.
std::string escaped(std::string_view text);
// The same for JSON in a script element: no < stands in it.
std::string script_safe(std::string_view json);

// Coordinates of drawings: one decimal, without trailing zeros.
std::string coordinate(double value);

template <std::size_t N>
void append(Html& out, const char (&markup)[N]) {
  out.text.append(markup, N - 1);
}
inline void append(Html& out, std::string_view text) { out.text += escaped(text); }
inline void append(Html& out, const std::string& text) { out.text += escaped(text); }
template <std::same_as<const char*> Pointer>
void append(Html& out, const Pointer& text) {
  out.text += escaped(text);
}
inline void append(Html& out, const Html& markup) { out.text += markup.text; }
inline void append(Html& out, int number) { out.text += std::to_string(number); }
inline void append(Html& out, double number) { out.text += coordinate(number); }

// put(out, "<td>", name, "</td>")
template <class... Items>
void put(Html& out, const Items&... items) {
  (append(out, items), ...);
}
template <class... Items>
Html html(const Items&... items) {
  Html out;
  put(out, items...);
  return out;
}

}  // namespace zelvo::report
