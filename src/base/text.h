// Lines of result files and of the console: fixed fields and free-format items, appended to a text.
//
// A fixed field is right-aligned in its width; a value that does not fit fills it with asterisks.
// A free-format line begins with one blank and its items are separated by blanks.
#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace zelvo {

void put_int(std::string& out, std::int64_t value, int width);
// width columns, decimals behind the point; rounding is exact on the binary value.
void put_real(std::string& out, double value, int width, int decimals);
void put_blanks(std::string& out, int n);

// Whether a text of fixed fields holds the word of a value that is no finite number.
bool has_no_number(std::string_view text);

// What printf would print.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

// " text", line end.
void free_line(std::string& out, std::string_view text);
// The integer right-aligned in 12 columns, line end.
void free_line(std::string& out, std::int64_t value);
// The integer in 12 columns, the text directly behind it, line end.
void free_line(std::string& out, std::int64_t value, std::string_view text);
// " text" and the integer in 12 columns, line end.
void free_line(std::string& out, std::string_view text, std::int64_t value);
// " text" and the real with all its digits in 26 columns, line end.
void free_line(std::string& out, std::string_view text, double value);

// The console is standard output. Each call writes at once, so progress shows when it happens; what
// cannot be written throws FileFailure.
void console(std::string_view text);
template <class... Items>
void console_line(Items... items) {
  std::string line;
  free_line(line, items...);
  console(line);
}

// A result file of fixed name. Writers append to text; flush_file brings it to the disk at the end
// of each stage, so that a killed run keeps whole stages. Failures throw FileFailure.
struct ResultFile {
  std::string name;
  std::string text{};
  std::FILE* file = nullptr;
};
// Opens (and empties) name in the working directory.
ResultFile open_file(const char* name);
// Writes what text holds, empties it, and checks that the file took it.
void flush_file(ResultFile& f);
// Flushes and closes.
void close_file(ResultFile& f);

}  // namespace zelvo
