#include "base/failures.h"

#include "base/text.h"

namespace zelvo {

std::string shortage_text(const MemoryFailure& f) {
  return formatted("no memory for %s: %.3g MB asked for", f.what, f.bytes * 1.0e-6);
}

}  // namespace zelvo
