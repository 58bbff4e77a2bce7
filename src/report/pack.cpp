#include "report/pack.h"

namespace zelvo::report {

namespace {

constexpr char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr int SMALL = 23, LONGEST_RUN = 17, ESCAPE = 63;

void put_zeros(int count, std::string& out) {
  for (; count >= 2; count -= LONGEST_RUN)
    out += DIGITS[2 * SMALL + 1 + (count < LONGEST_RUN ? count : LONGEST_RUN) - 2];
  if (count == 1) out += DIGITS[SMALL];
}

void put_difference(int d, std::string& out) {
  if (-SMALL <= d && d <= SMALL) {
    out += DIGITS[d + SMALL];
    return;
  }
  out += DIGITS[ESCAPE];
  for (int shift = 18; shift >= 0; shift -= 6) out += DIGITS[((d + (1 << 23)) >> shift) & 63];
}

}  // namespace

void pack(const std::vector<int>& values, std::string& out) {
  int before = 0, last = 0, zeros = 0;  // the two values before
  for (const int v : values) {
    const int d = v - 2 * last + before;
    before = last;
    last = v;
    if (d == 0) {
      ++zeros;
      continue;
    }
    put_zeros(zeros, out);
    zeros = 0;
    put_difference(d, out);
  }
  put_zeros(zeros, out);
}

}  // namespace zelvo::report
