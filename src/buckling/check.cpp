#include "buckling/check.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/platform.h"
#include "buckling/arpack.h"
#include "matrix/product.h"
#include "sparse/solver.h"

namespace zelvo {

namespace {

constexpr int REGULAR_INVERSE = 2, BUCKLING_MODE = 4;  // of ARPACK
constexpr int MAX_ITERATIONS = 300;
constexpr int NO_SHIFTS = 3;  // info of dsaupd
// Stands for it where a code of the solver would. ARPACK gets there only if the error bounds of all
// values beyond nev are exactly zero before the first nev have converged: more vectors do not help.
constexpr int NO_SHIFTS_CODE = 1;

// The problem as ARPACK sees it, and its work space.
//   kind 1, mode 2:  B x = mu K x, mu = 1/lambda, largest mu first
//   kind 2, mode 4:  K x = lambda B x by (K - sigma B)^-1 K, whose values are
//                    nu = lambda / (lambda - sigma), largest |nu| first
struct Lanczos {
  int mode, n, nev, ncv, lworkl, info = 0;
  const char* which;
  double tol;
  Vector<double> resid, v, workd, workl;
  Vector<int> select;
  int iparam[11] = {}, ipntr[11] = {};

  Lanczos(int size, const EigenOptions& o)
      : mode(o.solver_type == 2 ? BUCKLING_MODE : REGULAR_INVERSE),
        n(size),
        nev(o.nev),
        ncv(o.ncv),
        lworkl(ncv * (ncv + 8)),
        which(mode == BUCKLING_MODE ? "LM" : "LA"),
        tol(o.tol),
        resid(n, "the Lanczos residual"),
        v(std::int64_t{n} * ncv, "the Lanczos vectors"),
        workd(std::int64_t{3} * n, "the Lanczos work vectors"),
        workl(lworkl, "the projected eigenproblem"),
        select(ncv) {
    iparam[0] = 1;  // exact shifts
    iparam[2] = MAX_ITERATIONS;
    iparam[6] = mode;
  }
};

// C = K - sigma B; returns how many of its diagonals are zero or negative.
int shifted_matrix(const SymmetricMatrix& K, const SymmetricMatrix& B, double sigma,
                   SymmetricMatrix& C) {
  for (std::int64_t t = 1; t <= C.values.size(); ++t)
    C.values(t) = K.values(t) - sigma * B.values(t);
  int bad = 0;
  for (int i = 1; i <= C.n(); ++i)
    if (C.diagonal(i) <= 0) ++bad;
  return bad;
}

// Analyses the pattern of a matrix in a handle that has none yet. Returns the code of the solver.
int analyse(const SymmetricMatrix& C, OwnedSolver& solver) {
  if (solver.handle != nullptr) return 0;
  const MatrixPattern& p = *C.pattern;
  int code = solver_create(solver.handle, 0);
  if (code == 0)
    code = solver_define_structure(solver.handle, SOLVER_SYMMETRIC, p.ia.data(), p.n, p.n,
                                   p.ja.data(), p.nnz);
  if (code == 0) code = solver_reorder(solver.handle, 0, nullptr);
  return code;
}

// Takes a new handle through analysis and factorization; returns the first code that is not 0.
int factor_as(std::uint32_t definiteness, const SymmetricMatrix& C, OwnedSolver& solver) {
  int code = analyse(C, solver);
  if (code == 0) code = solver_factor_real(solver.handle, definiteness, C.values.data());
  return code;
}

// L L' of C, or L D L' when C is not positive definite: a shift beyond the first factor is allowed.
int factor(const SymmetricMatrix& C, OwnedSolver& solver) {
  const int code = factor_as(SOLVER_POSITIVE_DEFINITE, C, solver);
  if (code == 0) return 0;
  solver_delete(solver.handle, 0);
  return factor_as(SOLVER_INDEFINITE, C, solver);
}

// OpenBLAS, which ARPACK works with, takes one work buffer of this size at the first call that wants
// it, keeps it, and asks for ever where it cannot be had.
constexpr std::size_t BLAS_BUFFER = (std::size_t{32} << 22) + (std::size_t{1} << 16);

// Throws MemoryFailure where the buffer cannot be had. Nothing is allocated between this and the use.
void require_blas_buffer() {
  static bool taken = false;
  if (!taken && !address_space_left(BLAS_BUFFER))
    throw MemoryFailure{static_cast<double>(BLAS_BUFFER), "the work buffer of the BLAS library"};
  taken = true;
}

// The reverse communication: multiplies and solves until the iteration has ended (L.info says
// how). Returns the code of a solve that failed, else 0.
int iterate(const SymmetricMatrix& K, const SymmetricMatrix& B, SolverHandle* handle,
            const Progress& done, Lanczos& L) {
  const RowBundles rows = find_bundles(K.pattern);
  Vector<double> work(L.n, "a Lanczos product", UNINITIALIZED);
  require_blas_buffer();
  for (int ido = 0;;) {
    dsaupd_(&ido, "G", &L.n, L.which, &L.nev, &L.tol, L.resid.data(), &L.ncv, L.v.data(), &L.n,
            L.iparam, L.ipntr, L.workd.data(), L.workl.data(), &L.lworkl, &L.info, 1, 2);
    if (ido != -1 && ido != 1 && ido != 2) return 0;
    double* x = &L.workd(L.ipntr[0]);
    double* y = &L.workd(L.ipntr[1]);
    if (ido == 2) {
      sym_matvec(rows, K, x, y);
      continue;
    }
    const double* w = work.data();
    if (L.mode == REGULAR_INVERSE) {
      sym_matvec(rows, B, x, work.data());
      std::copy(work.begin(), work.end(), x);  // ARPACK expects B x in the place of x
    } else if (ido == -1) {
      sym_matvec(rows, K, x, work.data());
    } else {
      w = &L.workd(L.ipntr[2]);  // K x stands there already
    }
    done(Step::EIGEN_SOLUTION);
    const int code = solver_solve_real(handle, 0, w, 1, y);
    if (code != 0) return code;
  }
}

// Eigenvalues and Ritz vectors of the projected problem, in the order of the factors. The vectors
// are those that stay in v: dseupd improves only its copy of them. Returns the info of dseupd.
int extract(Lanczos& L, double sigma, BucklingModes& modes) {
  Vector<double> d(L.ncv);
  Matrix<double> z(L.n, L.nev, "the Ritz vectors");
  std::copy(L.v.begin(), L.v.begin() + std::int64_t{L.n} * L.nev, z.data());
  const int vectors = 1;
  int ierr = 0;
  dseupd_(&vectors, "A", L.select.data(), d.data(), z.data(), &L.n, &sigma, "G", &L.n, L.which,
          &L.nev, &L.tol, L.resid.data(), &L.ncv, L.v.data(), &L.n, L.iparam, L.ipntr,
          L.workd.data(), L.workl.data(), &L.lworkl, &ierr, 1, 1, 2);
  for (int k = 1; k <= L.nev; ++k) {
    // mu ascends, so the last one belongs to the smallest factor.
    const int from = L.mode == REGULAR_INVERSE ? L.nev + 1 - k : k;
    modes.eigval(k) = L.mode == REGULAR_INVERSE ? 1 / d(from) : d(from);
    std::copy_n(&L.v(std::int64_t{L.n} * (from - 1) + 1), L.n, modes.eigvec.column(k));
  }
  return ierr;
}

// Stores what the iteration has found, and how it ended.
void finish(Lanczos& L, double sigma, EigenOutcome& outcome, BucklingModes& modes) {
  outcome.iterated = true;
  outcome.dsaupd_info = L.info;
  if (L.info < 0) return;
  outcome.dseupd_info = extract(L, sigma, modes);
  outcome.found = true;
  outcome.nconv = L.iparam[4];
  if (L.info == NO_SHIFTS) outcome.solver_code = NO_SHIFTS_CODE;
}

void check_sizes([[maybe_unused]] const SymmetricMatrix& K,
                 [[maybe_unused]] const SymmetricMatrix& KG,
                 [[maybe_unused]] const EigenOptions& options,
                 [[maybe_unused]] const BucklingModes& modes) {
  assert(KG.pattern == K.pattern && modes.eigvec.rows() == K.n());
  assert(modes.eigval.size() == options.nev && modes.eigvec.cols() == options.nev);
}

constexpr double LOOSE = 1e-2;  // tolerance of the estimate
constexpr double BELOW =
    0.9;                   // of the estimate stands the first shift, each next of the one before
constexpr int SHIFTS = 6;  // that are tried

// Factors K - sigma B about a shift below the smallest positive factor, which is at most `first`.
// Returns the shift, or 0 if none is found.
double shift_below(const SymmetricMatrix& K, const SymmetricMatrix& B, double first,
                   ShiftedStiffness& shifted) {
  if (!shifted.matrix.pattern) shifted.matrix = zero_matrix(K.pattern, "a shifted stiffness");
  if (analyse(shifted.matrix, shifted.solver) != 0) return 0;
  double sigma = first;
  for (int i = 1; i <= SHIFTS; ++i) {
    sigma *= BELOW;
    if (shifted_matrix(K, B, sigma, shifted.matrix) > 0) continue;
    if (solver_factor_real(shifted.solver.handle, SOLVER_POSITIVE_DEFINITE,
                           shifted.matrix.values.data()) == 0)
      return sigma;
  }
  return 0;
}

// Positive factors first, the smallest of them in front.
void sort_modes(BucklingModes& modes) {
  const auto place = [&](int m) { return std::pair(modes.eigval(m) <= 0, modes.eigval(m)); };
  for (int m = 1; m < modes.eigval.size(); ++m) {
    int least = m;
    for (int i = m + 1; i <= modes.eigval.size(); ++i)
      if (place(i) < place(least)) least = i;
    if (least == m) continue;
    std::swap(modes.eigval(m), modes.eigval(least));
    std::swap_ranges(modes.eigvec.column(m), modes.eigvec.column(m) + modes.eigvec.rows(),
                     modes.eigvec.column(least));
  }
}

}  // namespace

EigenOutcome buckling_solve(const SymmetricMatrix& K, SymmetricMatrix& KG,
                            const EigenOptions& options, const Progress& done,
                            BucklingModes& modes) {
  check_sizes(K, KG, options, modes);
  for (double& value : KG.values) value = -value;
  const SymmetricMatrix& B = KG;
  EigenOutcome outcome;
  Lanczos L(K.n(), options);
  SymmetricMatrix shifted;
  if (L.mode == BUCKLING_MODE) {
    shifted.pattern = K.pattern;
    shifted.values = Vector<double>(K.values.size(), "the shifted stiffness matrix", UNINITIALIZED);
    outcome.negative_terms = shifted_matrix(K, B, options.sigma, shifted);
    if (outcome.negative_terms > 0) return outcome;
  }
  OwnedSolver solver;
  outcome.solver_code = factor(L.mode == BUCKLING_MODE ? shifted : K, solver);
  if (outcome.solver_code != 0) return outcome;
  done(Step::EIGEN_FACTORIZATION);
  if (L.mode == BUCKLING_MODE) outcome.below_shift = solver_negative_pivots(solver.handle);
  outcome.solver_code = iterate(K, B, solver.handle, done, L);
  if (outcome.solver_code == 0) outcome.solver_code = solver_delete(solver.handle, 0);
  if (outcome.solver_code == 0) finish(L, options.sigma, outcome, modes);
  return outcome;
}

EigenOutcome buckling_solve_factored(const SymmetricMatrix& K, SolverHandle* factors,
                                     SymmetricMatrix& KG, const EigenOptions& options,
                                     const Progress& done, BucklingModes& modes) {
  check_sizes(K, KG, options, modes);
  assert(options.solver_type == 1 && factors != nullptr);
  for (double& value : KG.values) value = -value;
  EigenOutcome outcome;
  Lanczos L(K.n(), options);
  outcome.solver_code = iterate(K, KG, factors, done, L);
  if (outcome.solver_code == 0) finish(L, options.sigma, outcome, modes);
  return outcome;
}

EigenOutcome lowest_factors(const SymmetricMatrix& K, SolverHandle* factors, SymmetricMatrix& KG,
                            const EigenOptions& options, ShiftedStiffness& shifted,
                            BucklingModes& modes) {
  EigenOptions loose = options, sharp = options;
  loose.nev = 1;
  loose.tol = std::max(options.tol, LOOSE);
  BucklingModes estimate{Vector<double>(1), Matrix<double>(K.n(), 1, "a buckling mode")};
  const EigenOutcome first = buckling_solve_factored(K, factors, KG, loose, no_progress, estimate);
  const SymmetricMatrix& B = KG;
  if (!first.found) return first;
  const double sigma =
      estimate.eigval(1) > 0 ? shift_below(K, B, estimate.eigval(1), shifted) : 0.0;
  sharp.solver_type = sigma > 0 ? 2 : 1;
  EigenOutcome outcome;
  Lanczos L(K.n(), sharp);
  outcome.solver_code = iterate(K, B, sigma > 0 ? shifted.solver.handle : factors, no_progress, L);
  if (outcome.solver_code == 0) finish(L, sigma, outcome, modes);
  if (outcome.found && sigma > 0) sort_modes(modes);
  return outcome;
}

}  // namespace zelvo
