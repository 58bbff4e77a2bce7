#include "base/record_reader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace zelvo {

namespace {

enum class TokenKind { VALUE, EMPTY_PLACE, SLASH, LINE_END, FILE_END };

struct Token {
  TokenKind kind;
  std::string text;  // without quotes
  bool quoted = false;
  int repeat = 1;
  int line = 0;
  bool first_on_line = false;
  std::size_t line_start = 0;
};

// Where a read stands.
struct Cursor {
  RecordReader& reader;
  std::size_t pos;
  int line;
  std::size_t line_start;
  bool line_begins = true;   // nothing but blanks so far
  bool comma_before = true;  // a comma here means an empty place; so it does ahead of all values
  bool one_line = false;     // the line end closes the read
};

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }
bool is_separator(char c) { return is_blank(c) || c == ',' || c == '/' || c == '\n'; }
bool is_digit(char c) { return '0' <= c && c <= '9'; }

// n of "n*", with pos behind the asterisk; 1, with pos unmoved, if no repeat count stands here.
int repeat_count(const std::string& text, std::size_t& pos) {
  std::size_t p = pos;
  std::int64_t n = 0;
  for (; p < text.size() && is_digit(text[p]); ++p)
    n = std::min<std::int64_t>(10 * n + (text[p] - '0'), std::numeric_limits<int>::max());
  if (n == 0 || p == text.size() || text[p] != '*') return 1;
  pos = p + 1;
  return static_cast<int>(n);
}

// A quoted text, the cursor on its opening quote. It may go on over line ends, which are dropped.
Token quoted_text(Cursor& c, Token token) {
  const std::string& text = c.reader.text;
  const char quote = text[c.pos++];
  token.quoted = true;
  for (; c.pos < text.size(); ++c.pos) {
    const char ch = text[c.pos];
    if (ch == quote) {
      if (c.pos + 1 == text.size() || text[c.pos + 1] != quote) break;
      ++c.pos;
    }
    if (ch == '\n') {
      if (c.line == token.line) c.reader.long_quotes.push_back(token.line);
      if (!token.text.empty() && token.text.back() == '\r') token.text.pop_back();
      ++c.line;
      c.line_start = c.pos + 1;
    } else {
      token.text.push_back(ch);
    }
  }
  if (c.pos == text.size()) {
    c.reader.open_quote = token.line;
    return {TokenKind::FILE_END, {}};
  }
  ++c.pos;
  return token;
}

Token value_token(Cursor& c, bool text_wanted) {
  const std::string& text = c.reader.text;
  Token token{TokenKind::VALUE, {}, false, 1, c.line, c.line_begins, c.line_start};
  c.line_begins = c.comma_before = false;
  const std::size_t start = c.pos;
  token.repeat = repeat_count(text, c.pos);
  if (c.pos > start && (c.pos == text.size() || is_separator(text[c.pos]))) {
    token.kind = TokenKind::EMPTY_PLACE;
    return token;
  }
  if (text_wanted && (text[c.pos] == '\'' || text[c.pos] == '"')) return quoted_text(c, token);
  const std::size_t first = c.pos;
  while (c.pos < text.size() && !is_separator(text[c.pos])) ++c.pos;
  token.text = text.substr(first, c.pos - first);
  return token;
}

Token next_token(Cursor& c, bool text_wanted) {
  const std::string& text = c.reader.text;
  for (; c.pos < text.size(); ++c.pos) {
    const char ch = text[c.pos];
    if (ch == '\n') {
      if (c.one_line) return {TokenKind::LINE_END, {}};
      ++c.line;
      c.line_start = c.pos + 1;
      c.line_begins = true;
    } else if (ch == ',') {
      const bool empty = c.comma_before;
      c.comma_before = true;
      if (empty) {
        ++c.pos;
        return {TokenKind::EMPTY_PLACE, {}, false, 1, c.line, c.line_begins};
      }
    } else if (ch == '/') {
      return {TokenKind::SLASH, {}, false, 1, c.line, c.line_begins};
    } else if (!is_blank(ch)) {
      return value_token(c, text_wanted);
    }
  }
  return {c.one_line ? TokenKind::LINE_END : TokenKind::FILE_END, {}};
}

void throw_rest_away(Cursor& c) {
  RecordReader& r = c.reader;
  const std::size_t end = r.text.find('\n', c.pos);
  r.rest = c.pos;
  r.next = end == std::string::npos ? r.text.size() : end + 1;
  r.line = c.line + 1;
}

const char* expected_type(const Target& target) {
  constexpr const char* names[] = {"a text", "an integer", "a real", "a logical value (T or F)"};
  return names[target.index()];
}

bool store(const Token& token, const Target& target, ValueProblem& problem) {
  problem = ValueProblem::NOT_CONVERTIBLE;
  if (std::string* const* s = std::get_if<std::string*>(&target)) {
    **s = token.text;
    return true;
  }
  if (token.quoted) return false;
  if (int* const* i = std::get_if<int*>(&target)) return to_integer(token.text, **i, problem);
  if (double* const* d = std::get_if<double*>(&target)) return to_real(token.text, **d, problem);
  return to_logical(token.text, *std::get<bool*>(target));
}

bool equal_words(std::string_view text, std::string_view lower_case) {
  return std::equal(text.begin(), text.end(), lower_case.begin(), lower_case.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; });
}

}  // namespace

RecordReader make_reader(std::string content) {
  RecordReader reader;
  reader.text = std::move(content);
  if (reader.text.starts_with("\xEF\xBB\xBF")) reader.next = 3;
  return reader;
}

ReadStatus read_record(RecordReader& reader, std::initializer_list<Target> targets,
                       std::vector<ValueFault>& faults) {
  Cursor c{reader, reader.next, reader.line, reader.next};
  Token token{TokenKind::VALUE, {}, false, 0};
  ReadStatus status = ReadStatus::DONE;
  int item = 0;
  for (const Target& target : targets) {
    ++item;
    if (token.repeat == 0) {
      token = next_token(c, std::holds_alternative<std::string*>(target));
      if (item == 1) reader.record_line = token.line;
    }
    if (token.kind == TokenKind::FILE_END) {
      reader.next = reader.text.size();
      reader.line = c.line_begins && c.line > 1 ? c.line - 1 : c.line;
      return ReadStatus::END_OF_FILE;
    }
    if (token.kind == TokenKind::SLASH || token.kind == TokenKind::LINE_END) break;
    --token.repeat;
    ValueProblem problem;
    if (token.kind == TokenKind::EMPTY_PLACE || store(token, target, problem)) continue;
    faults.push_back({item, token.line, token.text.substr(0, FAULT_TEXT), expected_type(target),
                      problem, token.first_on_line, token.line_start});
    status = ReadStatus::FAULT;
    c.one_line = true;
  }
  throw_rest_away(c);
  return status;
}

std::string_view decimal_comma(const RecordReader& reader) {
  const std::string_view text = reader.text;
  std::size_t begin = reader.rest, end = reader.rest + 1;
  if (end >= text.size() || text[end - 1] != ',' || !is_digit(text[end])) return {};
  while (begin > 0 && !is_separator(text[begin - 1])) --begin;
  if (begin == reader.rest) return {};
  while (end < text.size() && is_digit(text[end])) ++end;
  return text.substr(begin, end - begin);
}

std::string_view thrown_away_word(const RecordReader& reader) {
  std::string_view rest = std::string_view(reader.text).substr(reader.rest);
  rest = rest.substr(0, reader.next - reader.rest);
  while (!rest.empty() && is_separator(rest.front())) rest.remove_prefix(1);
  const auto end = std::find_if(rest.begin(), rest.end(), is_separator);
  return rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
}

void go_back_to(RecordReader& reader, const ValueFault& fault) {
  reader.next = fault.line_start;
  reader.line = fault.line;
}

bool to_integer(std::string_view text, int& value, ValueProblem& problem) {
  problem = ValueProblem::NOT_CONVERTIBLE;
  const bool plus = text.starts_with('+');
  if (plus) text.remove_prefix(1);
  if (text.empty() || (plus && text.front() == '-')) return false;
  int read = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, read);
  if (end != last) return false;
  if (error == std::errc::result_out_of_range) problem = ValueProblem::OUT_OF_RANGE;
  if (error != std::errc{}) return false;
  value = read;
  return true;
}

bool to_real(std::string_view text, double& value, ValueProblem& problem) {
  problem = ValueProblem::NOT_CONVERTIBLE;
  if (text.empty()) return false;
  const bool sign = text.front() == '+' || text.front() == '-';
  const std::string_view word = text.substr(sign ? 1 : 0);
  if (equal_words(word, "nan") || equal_words(word, "inf") || equal_words(word, "infinity") ||
      (word.size() > 4 && equal_words(word.substr(0, 4), "nan(") && word.ends_with(')'))) {
    problem = ValueProblem::NOT_FINITE;
    return false;
  }
  // The mantissa, then the exponent in the one form that the library knows.
  std::size_t m = sign ? 1 : 0;
  while (m < text.size() && (is_digit(text[m]) || text[m] == '.')) ++m;
  std::string plain(text.substr(0, m));
  if (plain.starts_with('+')) plain.erase(0, 1);
  std::string_view exponent = text.substr(m);
  if (!exponent.empty()) {
    const bool letter = std::string_view("eEdDqQ").find(exponent.front()) != std::string_view::npos;
    if (letter) exponent.remove_prefix(1);
    const bool bare = !exponent.empty() && (exponent.front() == '+' || exponent.front() == '-');
    if (!letter && !bare) return false;
    plain.append("e").append(exponent);
  }
  double read = 0;
  const char* const last = plain.data() + plain.size();
  const auto [end, error] = std::from_chars(plain.data(), last, read);
  if (end != last || (error != std::errc{} && error != std::errc::result_out_of_range))
    return false;
  if (error == std::errc::result_out_of_range) {
    // Too small a number is zero, too large a one is none.
    read = std::strtod(plain.c_str(), nullptr);
    problem = ValueProblem::OUT_OF_RANGE;
    if (std::isinf(read)) return false;
  }
  value = read;
  return true;
}

bool to_logical(std::string_view text, bool& value) {
  if (text.starts_with('.')) text.remove_prefix(1);
  if (text.empty()) return false;
  const char letter = text.front();
  if (letter != 'T' && letter != 't' && letter != 'F' && letter != 'f') return false;
  value = letter == 'T' || letter == 't';
  return true;
}

}  // namespace zelvo
