#include "sparse/solver.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <new>
#include <string>

#include "base/text.h"
#include "sparse/driver.h"

namespace zelvo {

enum State { CREATED, DEFINED, REORDERED, FACTORED, SOLVED, DELETED };

struct SolverHandle {
  int msg_level = 4, term_level = 4;
  State state = CREATED;
  int n_rows = 0;
  const int *ia = nullptr, *ja = nullptr;
  int structure = 0;    // 0 symmetric, 1 structurally symmetric, 2 nonsymmetric
  int matrix_type = 2;  // of the driver
  PointerBlock pt;
  DriverParameters iparam{{1, 2, 1, 0, 0, 0}};
};

namespace {

// --- messages ---

struct Message {
  int severity;
  const char* text;
};

constexpr int ERROR = 4, FATAL = 5;
constexpr const char* SEVERITY[] = {"Success", "Debug", "Info", "Warning", "Error", "Fatal"};
constexpr Message MESSAGE[] = {
    // code -1, -2, ...
    {ERROR, "Zero Pivot detected"},
    {ERROR, "Out of memory"},
    {ERROR, "An unclassifiable error occurred"},
    {ERROR, "Number of rows less than one"},
    {ERROR, "Number of columns less than one"},
    {ERROR, "Number of non-zeros less than nRows"},
    {ERROR, "Number of non-zeros greater than nRows * nCols"},
    {ERROR, "Not a square matrix"},
    {ERROR, "Invalid call sequence"},
    {ERROR, "Invalid option"},
    {ERROR, "Requested options conflict"},
    {ERROR, "Invalid message level"},
    {ERROR, "Invalid termination level"},
    {ERROR, "Invalid structure option"},
    {ERROR, "Invalid reorder option"},
    {FATAL, "Invalid factor option"},
};
constexpr int ZERO_PIVOT = -1, NO_MEMORY = -2, UNCLASSIFIABLE = -3, FEW_ROWS = -4, FEW_COLUMNS = -5,
              FEW_VALUES = -6, MANY_VALUES = -7, NOT_SQUARE = -8, BAD_SEQUENCE = -9,
              BAD_OPTION = -10, CONFLICT = -11, BAD_MESSAGE_LEVEL = -12,
              BAD_TERMINATION_LEVEL = -13, BAD_STRUCTURE_OPTION = -14, BAD_REORDER_OPTION = -15,
              BAD_FACTOR_OPTION = -16;

// One check of an entry.
struct Check {
  bool failed;
  int code;
};

// Writes the messages of the failed checks in their order. Returns the first code of the highest
// severity among them, 0 if none failed; a message at the termination level does not return.
template <int n>
int report(int msg_level, int term_level, const Check (&checks)[n]) {
  int worst = 0, result = 0;
  for (const Check& check : checks) {
    if (!check.failed) continue;
    const Message& m = MESSAGE[-check.code - 1];
    if (m.severity >= msg_level) {
      console(std::string("SPARSE-DSS-") + SEVERITY[m.severity] + ", " + m.text + "\n");
    }
    if (m.severity >= term_level) std::exit(check.code);
    if (m.severity > worst) {
      worst = m.severity;
      result = check.code;
    }
  }
  return result;
}

// --- option words ---

// A field of an option word: values first, first + step, ... of which there are count. It is
// present if one of the bits that no other field shares is set: the low bits of the structure, the
// order and the factor option are the same.
struct Field {
  std::uint32_t mask, own, first, step, count;
};
constexpr Field MESSAGE_LEVEL{0x80000007, 0x80000007, 0x80000001, 0x1, 6};
constexpr Field TERMINATION_LEVEL{0x40000038, 0x40000038, 0x40000008, 0x8, 6};
constexpr Field STRUCTURE{0x200000C0, 0x20000000, 0x20000040, 0x40, 3};
constexpr Field REORDER{0x100000C0, 0x10000000, 0x10000040, 0x40, 3};
constexpr Field FACTOR{0x080001C0, 0x08000100, 0x08000040, 0x40, 4};
constexpr Field NO_FIELD{0, 0, 0, 1, 0};

// Takes the field out of rest. Returns its value from 0, the default if it is absent or bad.
int decode_field(std::uint32_t& rest, const Field& f, int missing, bool& bad) {
  bad = false;
  if ((rest & f.own) == 0) return missing;
  const std::uint32_t value = rest & f.mask;
  rest &= ~f.mask;
  const std::uint32_t k = (value - f.first) / f.step;
  bad = value < f.first || k >= f.count;
  return bad ? missing : static_cast<int>(k);
}

struct Options {
  int msg_level, term_level;
  int value = 0;  // of the entry's own field; 0 is its default
  bool bad_message = false, bad_termination = false, bad_value = false;
  bool stray = false;  // bits of no field; tested with and without a level in the word
};

// An invalid level leaves the kept one in force.
Options decode(std::uint32_t word, const Field& own, int msg_level, int term_level) {
  Options o{msg_level, term_level};
  o.msg_level = decode_field(word, MESSAGE_LEVEL, msg_level, o.bad_message);
  o.term_level = decode_field(word, TERMINATION_LEVEL, term_level, o.bad_termination);
  o.value = decode_field(word, own, 0, o.bad_value);
  o.stray = word != 0;
  return o;
}

// Options for a handle, which keeps the levels. No handle is a deleted one.
Options decode(SolverHandle* h, std::uint32_t word, const Field& own = NO_FIELD) {
  const SolverHandle defaults;
  if (h == nullptr) return decode(word, own, defaults.msg_level, defaults.term_level);
  const Options o = decode(word, own, h->msg_level, h->term_level);
  h->msg_level = o.msg_level;
  h->term_level = o.term_level;
  return o;
}

// --- call sequence and driver ---

// Whether the operation that leads to `next` may follow the present state.
bool accepts(const SolverHandle* h, State next) {
  switch (h == nullptr ? DELETED : h->state) {
    case CREATED:
      return next == DEFINED || next == DELETED;
    case DEFINED:
      return next == REORDERED || next == DELETED;
    case REORDERED:
      return next == FACTORED || next == DELETED;
    case FACTORED:
      return next == FACTORED || next == SOLVED || next == DELETED;
    case SOLVED:
      return next != REORDERED;
    case DELETED:
      return false;
  }
  return false;
}

int report_driver(const SolverHandle& h, int error) {
  if (error == DRIVER_NUMERIC_FAILED) return SOLVER_NUMERIC_FAILURE;
  // Before the report, which may end the process.
  if (error == DRIVER_NO_MEMORY && ERROR >= h.msg_level)
    std::fprintf(stderr, "zelvo: %s\n", shortage_text(h.pt.shortage).c_str());
  const bool analysis = error == DRIVER_ANALYSIS_FAILED;
  const Check checks[] = {{analysis || error == DRIVER_BAD_INPUT, ZERO_PIVOT},
                          {analysis || error == DRIVER_NO_MEMORY, NO_MEMORY},
                          {error > 0 || error < DRIVER_NUMERIC_FAILED, UNCLASSIFIABLE}};
  return report(h.msg_level, h.term_level, checks);
}

// Runs the driver with ido and reports its error.
int run_driver(SolverHandle& h, int ido, const int* perm, const double* values, int n_rhs,
               const double* rhs, double* x) {
  int error = 0;
  // iparam(6) is 0, so the right-hand sides are only read.
  sparse_driver(h.pt, 1, 1, h.matrix_type, ido, h.n_rows, values, h.ia, h.ja, perm, n_rhs, h.iparam,
                0, const_cast<double*>(rhs), x, error);
  return report_driver(h, error);
}

}  // namespace

int solver_create(SolverHandle*& handle, std::uint32_t options) {
  const Options o = decode(nullptr, options);
  const bool wrong = o.bad_message || o.bad_termination || o.stray;
  handle = wrong ? nullptr : new (std::nothrow) SolverHandle;
  const Check checks[] = {{o.bad_message, BAD_MESSAGE_LEVEL},
                          {o.bad_termination, BAD_TERMINATION_LEVEL},
                          {o.stray, BAD_OPTION},
                          {!wrong && handle == nullptr, NO_MEMORY}};
  const int code = report(o.msg_level, o.term_level, checks);
  if (handle == nullptr) return code;
  handle->msg_level = o.msg_level;
  handle->term_level = o.term_level;
  return 0;
}

int solver_define_structure(SolverHandle* handle, std::uint32_t options, const int* ia, int n_rows,
                            int n_cols, const int* ja, int nnz) {
  const Options o = decode(handle, options, STRUCTURE);
  const Check checks[] = {{o.bad_message, BAD_MESSAGE_LEVEL},
                          {o.bad_termination, BAD_TERMINATION_LEVEL},
                          {o.bad_value, BAD_STRUCTURE_OPTION},
                          {o.stray, BAD_OPTION},
                          {!accepts(handle, DEFINED), BAD_SEQUENCE},
                          {n_cols < 2, FEW_COLUMNS},
                          {n_rows < 2, FEW_ROWS},
                          {n_rows != n_cols, NOT_SQUARE},
                          {nnz <= n_rows, FEW_VALUES},
                          {nnz > std::int64_t{n_rows} * n_cols, MANY_VALUES}};
  if (const int code = report(o.msg_level, o.term_level, checks); code != 0) return code;
  // ia is read only now that there are rows. Whether its rows ascend, the analysis finds out.
  const Check pattern[] = {{std::int64_t{ia[n_rows]} - 1 != nnz, UNCLASSIFIABLE}};
  if (const int code = report(o.msg_level, o.term_level, pattern); code != 0) return code;
  handle->state = DEFINED;
  handle->structure = o.value;
  handle->matrix_type = o.value == 0 ? 2 : 1;
  handle->n_rows = n_rows;
  handle->ia = ia;
  handle->ja = ja;
  return 0;
}

int solver_reorder(SolverHandle* handle, std::uint32_t options, const int* permutation) {
  const Options o = decode(handle, options, REORDER);
  const Check checks[] = {{o.bad_message, BAD_MESSAGE_LEVEL},
                          {o.bad_termination, BAD_TERMINATION_LEVEL},
                          {o.bad_value, BAD_REORDER_OPTION},
                          {o.stray, BAD_OPTION},
                          {!accepts(handle, REORDERED), BAD_SEQUENCE}};
  if (const int code = report(o.msg_level, o.term_level, checks); code != 0) return code;
  handle->state = REORDERED;
  handle->iparam(2) = o.value == 2 ? 0 : 2;
  handle->iparam(5) = o.value == 1 ? 1 : 0;
  return run_driver(*handle, 11, permutation, nullptr, 0, nullptr, nullptr);
}

int solver_factor_real(SolverHandle* handle, std::uint32_t options, const double* values) {
  const Options o = decode(handle, options, FACTOR);
  const Check checks[] = {{o.bad_message, BAD_MESSAGE_LEVEL},
                          {o.bad_termination, BAD_TERMINATION_LEVEL},
                          {o.bad_value, BAD_FACTOR_OPTION},
                          {o.stray, BAD_OPTION},
                          {!accepts(handle, FACTORED), BAD_SEQUENCE},
                          {o.value >= 2, CONFLICT}};  // Hermitian options are for complex values
  if (const int code = report(o.msg_level, o.term_level, checks); code != 0) return code;
  handle->state = FACTORED;
  handle->matrix_type = handle->structure != 0 ? 1 : o.value == 0 ? 2 : -2;
  return run_driver(*handle, 22, nullptr, values, 0, nullptr, nullptr);
}

int solver_solve_real(SolverHandle* handle, std::uint32_t options, const double* rhs, int n_rhs,
                      double* x) {
  const Options o = decode(handle, options);
  const Check checks[] = {{o.bad_message, BAD_MESSAGE_LEVEL},
                          {o.bad_termination, BAD_TERMINATION_LEVEL},
                          {o.stray, BAD_OPTION},
                          {!accepts(handle, SOLVED), BAD_SEQUENCE}};
  if (const int code = report(o.msg_level, o.term_level, checks); code != 0) return code;
  handle->state = SOLVED;
  return run_driver(*handle, 33, nullptr, nullptr, n_rhs, rhs, x);
}

int solver_negative_pivots(const SolverHandle* handle) {
  return handle == nullptr ? 0 : negative_pivots(handle->pt, 1);
}

int solver_delete(SolverHandle*& handle, std::uint32_t options) {
  const Options o = decode(handle, options);
  const Check checks[] = {{o.bad_message, BAD_MESSAGE_LEVEL},
                          {o.bad_termination, BAD_TERMINATION_LEVEL},
                          {o.stray, BAD_OPTION},
                          {!accepts(handle, DELETED), BAD_SEQUENCE}};
  if (const int code = report(o.msg_level, o.term_level, checks); code != 0) return code;
  // Before the first analysis the driver holds nothing, and has nothing to release.
  const int code = handle->pt.state == nullptr
                       ? 0
                       : run_driver(*handle, -1, nullptr, nullptr, 0, nullptr, nullptr);
  delete handle;
  handle = nullptr;
  return code;
}

OwnedSolver::~OwnedSolver() {
  if (handle == nullptr) return;
  // Errors are below the highest severity, so nothing is written and nothing ends the process.
  handle->msg_level = handle->term_level = FATAL;
  solver_delete(handle, 0);
}

}  // namespace zelvo
