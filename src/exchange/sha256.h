// SHA-256 (FIPS 180-4): names an input by its content.
#pragma once
#include <string>
#include <string_view>

namespace zelvo {

// 64 hexadecimal digits.
std::string sha256(std::string_view content);

}  // namespace zelvo
