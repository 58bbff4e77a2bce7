// Any bytes as an input file: reading, checks, doubts, the lines of all notes.
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "control/input_check.h"
#include "control/input_doubts.h"

using namespace zelvo;

// What the later parts rely on where nothing is found wrong.
static void require(bool held) {
  if (!held) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in;
  const ReadOutcome outcome = read_input({reinterpret_cast<const char*>(data), size}, in);
  if (outcome == ReadOutcome::INPUT_ERROR) require(!in.notes.faults.empty());
  if (outcome == ReadOutcome::COMPLETE) {
    check_input(in);
    if (in.notes.faults.empty()) {
      const Model& m = in.model;
      require(m.ngird == 1 || m.ngird == 2);
      require(m.lgbr >= 0 && m.lgbr % BAY_LENGTH == 0 && m.npour >= 1);
      for (int i = 1; i <= m.nsupp; ++i) require(0 <= m.supp_pos(i) && m.supp_pos(i) <= m.lgbr);
      require(m.pour_e.rows() == m.nanal && (m.nanal == 0 || m.pour_e.cols() == m.npour));
      doubt_input(in);
    }
  }
  const std::string lines = note_lines(in.notes);
  require(lines.empty() == (in.notes.faults.empty() && in.notes.warnings.empty()));
  return 0;
}
