#include "sparse/driver.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <new>
#include <vector>

#include "base/text.h"
#include "sparse/analysis.h"
#include "sparse/numeric.h"

namespace zelvo {

constexpr int NOT_SET = -777777;

struct FactorEntry {
  enum { NONE, FACTORED, FAILED } status = NONE;
  int matrix_type = NOT_SET;
  NumericWork work;
};

struct DriverState {
  int max_fac_store = 0;  // entries of the table
  // Accepted values of the last call.
  int matrix_type = NOT_SET;
  int neqns = NOT_SET;
  bool analysed = false;
  int maxsup = PANEL_LIMIT;
  std::int64_t temp_size = 0;  // reals of the temporary update block
  FactorStructure structure;
  std::vector<FactorEntry> factors;  // (max_fac_store)
};

// Details of a failure; a failed input check is told by its place in the list of checks, 1 to 13.
enum Detail {
  NO_STATE = -100,
  NO_FACTOR_TABLE = -200,
  NO_ORDERING_MEMORY = -400,
  NO_SYMBOLIC_MEMORY = -700,
  NO_NUMERIC_MEMORY = -1100,
  NO_VALUES = -1400,
  BAD_MATRIX_NUMBER = 100,
  NOTHING_TO_RELEASE = 1000,
  UNSUPPORTED_TYPE = 2000,
  BAD_CONTROL_WORD = 10000,
  NOT_ANALYSED = 100000,
};

static int fail(PointerBlock& pt, int error, int detail) {
  pt.detail = detail;
  return error;
}

static int create_state(PointerBlock& pt, int max_fac_store) {
  pt.state = new (std::nothrow) DriverState;
  if (pt.state == nullptr) return fail(pt, DRIVER_NO_MEMORY, NO_STATE);
  pt.state->max_fac_store = std::max(max_fac_store, 0);
  try {
    pt.state->factors.resize(static_cast<std::size_t>(pt.state->max_fac_store));
  } catch (const std::exception&) {  // no memory, or more than a table can ever hold
    delete pt.state;
    pt.state = nullptr;
    return fail(pt, DRIVER_NO_MEMORY, NO_FACTOR_TABLE);
  }
  return 0;
}

// The table entry of a matrix, null for a number that has none.
static FactorEntry* factor_entry(DriverState& s, int matrix_number) {
  if (matrix_number < 1 || matrix_number > s.max_fac_store) return nullptr;
  return &s.factors[static_cast<std::size_t>(matrix_number) - 1];
}

// Back to the state before any analysis; the table of factors keeps its size.
static void reset_state(DriverState& s) {
  for (FactorEntry& entry : s.factors) entry = FactorEntry{};
  s.structure = FactorStructure{};
  s.matrix_type = s.neqns = NOT_SET;
  s.analysed = false;
}

// What a call asks for.
struct Request {
  int max_fac_store, matrix_number, matrix_type, ido, neqns, nb;
  const int* ia;
  int ordering;  // 0 to 2
  bool own_order;
  int processors;
  int solution_place;
};

// The place of the first check that fails, 0 if none does.
static int failed_check(const DriverState& s, const Request& q) {
  const auto known = [](int kept) { return kept != NOT_SET && kept != 0; };
  const int type = q.matrix_type, kind = std::abs(type);
  if (q.ido < -1 || q.ido > 33) return 1;
  if (s.max_fac_store > 0 && s.max_fac_store < q.max_fac_store) return 2;
  if (q.max_fac_store < q.matrix_number) return 3;
  if (q.ido > 21 && q.matrix_number < 1) return 4;
  if (kind < 1 || kind > 6) return 5;
  if (known(s.matrix_type) && std::abs(s.matrix_type) != kind && (s.matrix_type - type) % 2 != 0) {
    return 6;
  }
  if (s.neqns > 0 && s.neqns != q.neqns) return 7;
  if (q.neqns < 1) return 8;
  if (q.ia[q.neqns] - 1 < q.neqns) return 9;
  if (q.ido >= 33 && q.nb < 1) return 10;
  if (q.solution_place != 0 && q.solution_place != 1) return 11;
  if (q.ordering < 0 || q.ordering > 2) return 12;
  const int allowed[] = {11, 12, 13, 22, 23, 33};
  return std::find(std::begin(allowed), std::end(allowed), q.ido) == std::end(allowed) ? 13 : 0;
}

// The indefinite factorization keeps columns scaled by their pivots beside the update.
static std::int64_t temp_room(const DriverState& s, int matrix_type) {
  const std::int64_t size = s.structure.update_size;
  if (matrix_type > 0) return size;
  return size == 0 ? 2 * std::int64_t{s.maxsup} * s.maxsup : 2 * size;
}

static int run_analysis(PointerBlock& pt, const Request& q, const int* ja, const int* perm) {
  DriverState& s = *pt.state;
  s.maxsup = q.processors <= 4 ? PANEL_LIMIT : 64;
  int stage = NO_ORDERING_MEMORY;
  try {
    Reordering work;
    const int* const order = q.own_order ? perm : nullptr;
    if (q.own_order && order == nullptr) {
      return fail(pt, DRIVER_ANALYSIS_FAILED, BAD_PERMUTATION);
    }
    int fault = reorder(q.neqns, q.ia, ja, order, s.maxsup, work, s.structure);
    stage = NO_SYMBOLIC_MEMORY;
    if (fault == 0) fault = symbolic(q.ia, ja, work, s.structure);
    if (fault != 0) return fail(pt, DRIVER_ANALYSIS_FAILED, fault);
  } catch (const MemoryFailure&) {
    s.structure = FactorStructure{};
    return fail(pt, DRIVER_NO_MEMORY, stage);
  }
  s.analysed = true;
  return 0;
}

static int run_factorization(PointerBlock& pt, const double* a, int matrix_type, FactorEntry& e) {
  const DriverState& s = *pt.state;
  e.status = FactorEntry::FAILED;
  if (a == nullptr) return fail(pt, DRIVER_NUMERIC_FAILED, NO_VALUES);
  try {
    reserve_numeric(s.structure, s.temp_size, e.work);
  } catch (const MemoryFailure&) {
    return fail(pt, DRIVER_NO_MEMORY, NO_NUMERIC_MEMORY);
  }
  e.matrix_type = matrix_type;
  const int fault = matrix_type > 0 ? factor_cholesky(s.structure, a, e.work)
                                    : factor_ldl(s.structure, a, e.work);
  if (fault != 0) return fail(pt, DRIVER_NUMERIC_FAILED, fault);
  e.status = FactorEntry::FACTORED;
  return 0;
}

// Releases and first calls. Returns true if the call ends here.
static bool ends_early(PointerBlock& pt, const Request& q, int& error) {
  if (q.ido < -1) {
    console("*** error sparse_driver: internal error \n");
    error = fail(pt, DRIVER_BAD_INPUT, BAD_CONTROL_WORD);
    return true;
  }
  if (pt.state == nullptr) {
    if (q.ido <= 0) {
      error = fail(pt, DRIVER_BAD_INPUT, NOTHING_TO_RELEASE);
    } else {
      error = create_state(pt, q.max_fac_store);
    }
    return error != 0;
  }
  if (q.ido == 0) {
    FactorEntry* const entry = factor_entry(*pt.state, q.matrix_number);
    if (entry == nullptr) {
      error = fail(pt, DRIVER_BAD_INPUT, BAD_MATRIX_NUMBER);
    } else {
      *entry = FactorEntry{};
    }
    return true;
  }
  if (q.ido == -1) {
    delete pt.state;
    pt.state = nullptr;
    return true;
  }
  return false;
}

static int run_stages(PointerBlock& pt, const Request& q, const double* a, const int* ja,
                      const int* perm, const double* b, double* x) {
  DriverState& s = *pt.state;
  int first = q.ido / 10;
  const int last = q.ido % 10;
  if (first > 1 && !s.analysed) return fail(pt, DRIVER_BAD_INPUT, NOT_ANALYSED);
  if (first == 1) reset_state(s);
  if (const int place = failed_check(s, q); place != 0) return fail(pt, DRIVER_BAD_INPUT, place);
  if (std::abs(q.matrix_type) != 2) return fail(pt, DRIVER_BAD_INPUT, UNSUPPORTED_TYPE);
  s.matrix_type = q.matrix_type;
  s.neqns = q.neqns;
  if (first == 1) {
    if (const int error = run_analysis(pt, q, ja, perm); error != 0) return error;
    if (last == 1) return 0;
  }
  FactorEntry* const entry = factor_entry(s, q.matrix_number);
  if (entry == nullptr) return fail(pt, DRIVER_BAD_INPUT, BAD_MATRIX_NUMBER);
  s.temp_size = temp_room(s, q.matrix_type);
  if (first == 3 && entry->status != FactorEntry::FACTORED) first = 2;
  if (first <= 2) {
    if (const int error = run_factorization(pt, a, q.matrix_type, *entry); error != 0) return error;
  }
  if (last == 2) return 0;
  if (entry->matrix_type > 0) {
    solve_cholesky(s.structure, entry->work, b, q.nb, x);
  } else {
    solve_ldl(s.structure, entry->work, b, q.nb, x);
  }
  return 0;
}

void sparse_driver(PointerBlock& pt, int max_fac_store, int matrix_number, int matrix_type, int ido,
                   int neqns, const double* a, const int* ia, const int* ja, const int* perm,
                   int nb, const DriverParameters& iparam, [[maybe_unused]] int message_flag,
                   double* b, double* x, int& error) {
  const bool given = iparam(1) == 1;
  const Request q{.max_fac_store = max_fac_store,
                  .matrix_number = matrix_number,
                  .matrix_type = matrix_type,
                  .ido = ido,
                  .neqns = neqns,
                  .nb = nb,
                  .ia = ia,
                  .ordering = given ? iparam(2) : 2,
                  .own_order = given && iparam(5) == 1,
                  .processors = std::max(iparam(3), 1),
                  .solution_place = iparam(6)};
  error = 0;
  pt.detail = 0;
  if (ends_early(pt, q, error)) return;
  error = run_stages(pt, q, a, ja, perm, b, iparam(6) == 1 ? b : x);
}

}  // namespace zelvo
