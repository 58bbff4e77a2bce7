// Lists of integers as short text for the page's script.
//
// Of each list second differences are written, which are small along a smooth line, with the 64
// characters of URL-safe base64: 0 to 46 is a difference of -23 to 23, 47 to 62 a run of 2 to 17
// differences of zero, 63 an escape before four characters, most significant first, of the
// difference plus 2^23.
#pragma once
#include <string>
#include <vector>

namespace zelvo::report {

// Appends the list to out.
void pack(const std::vector<int>& values, std::string& out);

}  // namespace zelvo::report
