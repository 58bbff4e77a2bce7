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
  FactorStructure structure;
  std::vector<FactorEntry> factors;  // (max_fac_store)
};

namespace {

int fail(PointerBlock& pt, int error, Detail detail) {
  pt.detail = detail;
  return error;
}

int fail_for_memory(PointerBlock& pt, const MemoryFailure& shortage, Detail detail) {
  pt.shortage = shortage;
  return fail(pt, DRIVER_NO_MEMORY, detail);
}

int create_state(PointerBlock& pt, int max_fac_store) {
  pt.state = new (std::nothrow) DriverState;
  if (pt.state == nullptr)
    return fail_for_memory(pt, {sizeof(DriverState), "the state of the solver"}, NO_STATE_MEMORY);
  pt.state->max_fac_store = std::max(max_fac_store, 0);
  try {
    pt.state->factors.resize(static_cast<std::size_t>(pt.state->max_fac_store));
  } catch (const std::exception&) {  // no memory, or more than a table can ever hold
    delete pt.state;
    pt.state = nullptr;
    const double bytes = static_cast<double>(max_fac_store) * double{sizeof(FactorEntry)};
    return fail_for_memory(pt, {bytes, "the table of factors"}, NO_FACTOR_TABLE);
  }
  return 0;
}

// The table entry of a matrix, null for a number that has none.
FactorEntry* factor_entry(DriverState& s, int matrix_number) {
  if (matrix_number < 1 || matrix_number > s.max_fac_store) return nullptr;
  return &s.factors[static_cast<std::size_t>(matrix_number) - 1];
}

// Back to the state before any analysis; the table of factors keeps its size.
void reset_state(DriverState& s) {
  for (FactorEntry& entry : s.factors) entry = FactorEntry{};
  s.structure = FactorStructure{};
  s.matrix_type = s.neqns = NOT_SET;
  s.analysed = false;
}

// The arguments of a call that the checks read.
struct Request {
  int max_fac_store, matrix_number, matrix_type, ido, neqns, nb;
  const int* ia;
  int ordering;  // 0 to 2
  bool own_order;
  int processors;
  int solution_place;
};

// The first check that fails, NO_DETAIL if none does.
Detail failed_check(const DriverState& s, const Request& q) {
  const auto known = [](int kept) { return kept != NOT_SET && kept != 0; };
  const int type = q.matrix_type, kind = std::abs(type);
  if (q.ido < -1 || q.ido > 33) return IDO_OUT_OF_RANGE;
  if (s.max_fac_store > 0 && s.max_fac_store < q.max_fac_store) return MORE_FACTORS_THAN_KEPT;
  if (q.max_fac_store < q.matrix_number) return MATRIX_NUMBER_ABOVE_STORE;
  if (q.ido > 21 && q.matrix_number < 1) return MATRIX_NUMBER_BELOW_ONE;
  if (kind < 1 || kind > 6) return MATRIX_TYPE_OUT_OF_RANGE;
  if (known(s.matrix_type) && std::abs(s.matrix_type) != kind && (s.matrix_type - type) % 2 != 0) {
    return MATRIX_TYPE_CHANGED;
  }
  if (s.neqns > 0 && s.neqns != q.neqns) return NEQNS_CHANGED;
  if (q.neqns < 1) return NEQNS_BELOW_ONE;
  if (std::int64_t{q.ia[q.neqns]} - 1 < q.neqns) return FEW_STORED_VALUES;
  if (q.ido >= 33 && q.nb < 1) return NO_RIGHT_HAND_SIDES;
  if (q.solution_place != 0 && q.solution_place != 1) return BAD_SOLUTION_PLACE;
  if (q.ordering < 0 || q.ordering > 2) return BAD_ORDERING;
  const int stages[] = {11, 12, 13, 22, 23, 33};
  const bool known_stages =
      std::find(std::begin(stages), std::end(stages), q.ido) != std::end(stages);
  return known_stages ? NO_DETAIL : IDO_WITHOUT_STAGES;
}

int run_analysis(PointerBlock& pt, const Request& q, const int* ja, const int* perm) {
  DriverState& s = *pt.state;
  Detail stage = NO_ORDERING_MEMORY;
  try {
    Reordering work;
    const int* const order = q.own_order ? perm : nullptr;
    if (q.own_order && order == nullptr) {
      return fail(pt, DRIVER_ANALYSIS_FAILED, BAD_PERMUTATION);
    }
    Detail fault = reorder(q.neqns, q.ia, ja, order, panel_limit(q.processors), work, s.structure);
    stage = NO_SYMBOLIC_MEMORY;
    if (fault == NO_DETAIL) fault = symbolic(q.ia, ja, work, s.structure);
    if (fault != NO_DETAIL) return fail(pt, DRIVER_ANALYSIS_FAILED, fault);
  } catch (const MemoryFailure& shortage) {
    s.structure = FactorStructure{};
    return fail_for_memory(pt, shortage, stage);
  }
  s.analysed = true;
  return 0;
}

int run_factorization(PointerBlock& pt, const double* a, int matrix_type, FactorEntry& e) {
  const DriverState& s = *pt.state;
  e.status = FactorEntry::FAILED;
  if (a == nullptr) return fail(pt, DRIVER_NUMERIC_FAILED, NO_VALUES);
  try {
    reserve_numeric(s.structure, e.work);
  } catch (const MemoryFailure& shortage) {
    return fail_for_memory(pt, shortage, NO_NUMERIC_MEMORY);
  }
  e.matrix_type = matrix_type;
  const int result = matrix_type > 0 ? factor_cholesky(s.structure, a, e.work)
                                     : factor_ldl(s.structure, a, e.work);
  if (result != FACTOR_DONE) return fail(pt, DRIVER_NUMERIC_FAILED, BAD_PIVOT);
  e.status = FactorEntry::FACTORED;
  return 0;
}

// Releases and first calls. Returns true if the call ends here.
bool ends_early(PointerBlock& pt, const Request& q, int& error) {
  if (q.ido < -1) {
    console("*** error sparse_driver: internal error \n");
    error = fail(pt, DRIVER_BAD_INPUT, IDO_BELOW_RELEASE);
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

int run_stages(PointerBlock& pt, const Request& q, const double* a, const int* ja, const int* perm,
               const double* b, double* x) {
  DriverState& s = *pt.state;
  int first = q.ido / 10;
  const int last = q.ido % 10;
  if (first > 1 && !s.analysed) return fail(pt, DRIVER_BAD_INPUT, NOT_ANALYSED);
  if (first == 1) reset_state(s);
  if (const Detail check = failed_check(s, q); check != NO_DETAIL) {
    return fail(pt, DRIVER_BAD_INPUT, check);
  }
  if (std::abs(q.matrix_type) != 2) return fail(pt, DRIVER_BAD_INPUT, UNSUPPORTED_TYPE);
  s.matrix_type = q.matrix_type;
  s.neqns = q.neqns;
  if (first == 1) {
    if (const int error = run_analysis(pt, q, ja, perm); error != 0) return error;
    if (last == 1) return 0;
  }
  FactorEntry* const entry = factor_entry(s, q.matrix_number);
  if (entry == nullptr) return fail(pt, DRIVER_BAD_INPUT, BAD_MATRIX_NUMBER);
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

}  // namespace

int negative_pivots(const PointerBlock& pt, int matrix_number) {
  if (pt.state == nullptr) return 0;
  FactorEntry* const e = factor_entry(*pt.state, matrix_number);
  const bool ldl = e != nullptr && e->status == FactorEntry::FACTORED && e->matrix_type < 0;
  return ldl ? negative_diagonals(pt.state->structure, e->work) : 0;
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
  pt.detail = NO_DETAIL;
  if (ends_early(pt, q, error)) return;
  error = run_stages(pt, q, a, ja, perm, b, iparam(6) == 1 ? b : x);
}

}  // namespace zelvo
