#include "base/text.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstring>
#include <utility>

#include "base/failures.h"

namespace zelvo {

namespace {

// text right-aligned in width columns, or width asterisks when it is longer.
void put_field(std::string& out, std::string_view text, int width) {
  const int length = static_cast<int>(text.size());
  if (length > width) {
    out.append(static_cast<std::size_t>(width), '*');
    return;
  }
  put_blanks(out, width - length);
  out.append(text);
}

// The word for a value without digits, as long as width allows; empty for a finite value.
std::string_view word_of(double value, int width) {
  if (std::isnan(value)) return "NaN";
  if (!std::isinf(value)) return {};
  const std::string_view full = value > 0 ? "Infinity" : "-Infinity";
  return static_cast<int>(full.size()) <= width ? full : value > 0 ? "Inf" : "-Inf";
}

[[noreturn]] void fail(const std::string& name) { throw FileFailure{name, std::strerror(errno)}; }

}  // namespace

bool has_no_number(std::string_view text) {
  return text.find("NaN") != text.npos || text.find("Inf") != text.npos;
}

void put_blanks(std::string& out, int n) { out.append(static_cast<std::size_t>(n), ' '); }

void put_int(std::string& out, std::int64_t value, int width) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  put_field(out, {digits, static_cast<std::size_t>(end - digits)}, width);
}

void put_real(std::string& out, double value, int width, int decimals) {
  const std::string_view word = word_of(value, width);
  if (!word.empty()) return put_field(out, word, width);
  char digits[64];
  const auto [end, error] =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
  // A number too long for the buffer is longer than any field.
  if (error != std::errc{}) return out.append(static_cast<std::size_t>(width), '*'), void();
  put_field(out, {digits, static_cast<std::size_t>(end - digits)}, width);
}

void free_line(std::string& out, std::string_view text) {
  out.append(" ").append(text).append("\n");
}

void free_line(std::string& out, std::int64_t value) { free_line(out, value, ""); }

void free_line(std::string& out, std::int64_t value, std::string_view text) {
  put_int(out, value, 12);
  out.append(text).append("\n");
}

void free_line(std::string& out, std::string_view text, std::int64_t value) {
  out.append(" ").append(text);
  put_int(out, value, 12);
  out.append("\n");
}

void free_line(std::string& out, std::string_view text, double value) {
  constexpr int width = 26;
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  const std::string_view word = word_of(value, width);
  out.append(" ").append(text);
  put_field(out, word.empty() ? std::string_view(digits, end) : word, width);
  out.append("\n");
}

std::string formatted(const char* format, ...) {
  va_list arguments, again;
  va_start(arguments, format);
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(static_cast<std::size_t>(std::max(length, 0)), ' ');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  va_end(arguments);
  return text;
}

void console(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) fail("standard output");
  if (std::fflush(stdout) != 0) fail("standard output");
}

ResultFile open_file(const char* name) {
  ResultFile f{name, {}, std::fopen(name, "w")};
  if (f.file == nullptr) fail(f.name);
  return f;
}

void flush_file(ResultFile& f) {
  if (std::fwrite(f.text.data(), 1, f.text.size(), f.file) != f.text.size()) fail(f.name);
  if (std::fflush(f.file) != 0) fail(f.name);
  f.text.clear();
}

void close_file(ResultFile& f) {
  if (f.file == nullptr) return;
  flush_file(f);
  std::FILE* file = std::exchange(f.file, nullptr);
  if (std::fclose(file) != 0) fail(f.name);
}

}  // namespace zelvo
