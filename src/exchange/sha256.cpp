#include "exchange/sha256.h"

#include <array>
#include <bit>
#include <cstdint>

namespace zelvo {

namespace {

constexpr std::uint32_t ROUND[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

using State = std::array<std::uint32_t, 8>;

std::uint32_t sigma(std::uint32_t x, int a, int b, int c) {
  return std::rotr(x, a) ^ std::rotr(x, b) ^ std::rotr(x, c);
}

void take_block(const unsigned char* block, State& h) {
  std::uint32_t w[64];
  for (int t = 0; t < 16; ++t)
    w[t] = std::uint32_t{block[4 * t]} << 24 | std::uint32_t{block[4 * t + 1]} << 16 |
           std::uint32_t{block[4 * t + 2]} << 8 | std::uint32_t{block[4 * t + 3]};
  for (int t = 16; t < 64; ++t) {
    const std::uint32_t s0 = std::rotr(w[t - 15], 7) ^ std::rotr(w[t - 15], 18) ^ w[t - 15] >> 3;
    const std::uint32_t s1 = std::rotr(w[t - 2], 17) ^ std::rotr(w[t - 2], 19) ^ w[t - 2] >> 10;
    w[t] = w[t - 16] + s0 + w[t - 7] + s1;
  }
  State s = h;
  auto& [a, b, c, d, e, f, g, last] = s;
  for (int t = 0; t < 64; ++t) {
    const std::uint32_t t1 = last + sigma(e, 6, 11, 25) + ((e & f) ^ (~e & g)) + ROUND[t] + w[t];
    const std::uint32_t t2 = sigma(a, 2, 13, 22) + ((a & b) ^ (a & c) ^ (b & c));
    last = g, g = f, f = e, e = d + t1;
    d = c, c = b, b = a, a = t1 + t2;
  }
  for (std::size_t i = 0; i < 8; ++i) h[i] += s[i];
}

}  // namespace

std::string sha256(std::string_view content) {
  State h = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
             0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  std::string padded(content);
  padded += '\x80';
  padded.append((120 - padded.size() % 64) % 64, '\0');
  const std::uint64_t bits = std::uint64_t{content.size()} * 8;
  for (int shift = 56; shift >= 0; shift -= 8) padded += static_cast<char>(bits >> shift & 0xff);
  for (std::size_t at = 0; at < padded.size(); at += 64)
    take_block(reinterpret_cast<const unsigned char*>(padded.data()) + at, h);
  std::string digits;
  for (const std::uint32_t word : h)
    for (int shift = 28; shift >= 0; shift -= 4) digits += "0123456789abcdef"[word >> shift & 15];
  return digits;
}

}  // namespace zelvo
