#include "buckling/check.h"

#include <algorithm>
#include <cstdint>

#include "base/text.h"
#include "buckling/arpack.h"
#include "buckling/quality.h"
#include "sparse/solver.h"

namespace zelvo {

namespace {

constexpr int REGULAR_INVERSE = 2, BUCKLING_MODE = 4;  // of ARPACK
constexpr int MAX_ITERATIONS = 300;
constexpr int LIMIT_REACHED = 1, NO_SHIFTS = 3;  // info of dsaupd
// Told as the solver's code. ARPACK gets there only if the error bounds of all unwanted values are
// exactly zero while a wanted one has not converged; more vectors could not change that.
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

  Lanczos(int size, const EigenOptions& o, int vectors)
      : mode(o.solver_type == 2 ? BUCKLING_MODE : REGULAR_INVERSE),
        n(size),
        nev(o.nev),
        ncv(vectors),
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
int shifted_matrix(const MatrixPattern& pattern, const Vector<double>& K, const Vector<double>& B,
                   double sigma, Vector<double>& C) {
  for (std::int64_t t = 1; t <= C.size(); ++t) C(t) = K(t) - sigma * B(t);
  int bad = 0;
  for (int i = 1; i <= pattern.n; ++i)
    if (C(pattern.ia(i)) <= 0) ++bad;
  return bad;
}

// Takes a new handle through analysis and factorization; returns the first code that is not 0.
int factor_as(std::uint32_t definiteness, const MatrixPattern& p, const Vector<double>& C,
              SolverHandle*& handle) {
  int code = solver_create(handle, 0);
  if (code == 0)
    code = solver_define_structure(handle, SOLVER_SYMMETRIC, p.ia.data(), p.n, p.n, p.ja.data(),
                                   p.nnz);
  if (code == 0) code = solver_reorder(handle, 0, nullptr);
  if (code == 0) code = solver_factor_real(handle, definiteness, C.data());
  return code;
}

// L L' of C, or L D L' when C is not positive definite: a shift beyond the first factor is allowed.
int factor(const MatrixPattern& p, const Vector<double>& C, SolverHandle*& handle) {
  int code = factor_as(SOLVER_POSITIVE_DEFINITE, p, C, handle);
  if (code == 0) return 0;
  solver_delete(handle, 0);
  code = factor_as(SOLVER_INDEFINITE, p, C, handle);
  if (code != 0) solver_delete(handle, 0);
  return code;
}

// The reverse communication: multiplies and solves until the iteration has ended (L.info tells
// how). Returns the code of a solve that failed, else 0.
int iterate(const RowBundles& rows, const Vector<double>& K, const Vector<double>& B,
            SolverHandle* handle, Lanczos& L) {
  Vector<double> work(L.n, "a Lanczos product", UNINITIALIZED);
  for (int ido = 0;;) {
    dsaupd_(&ido, "G", &L.n, L.which, &L.nev, &L.tol, L.resid.data(), &L.ncv, L.v.data(), &L.n,
            L.iparam, L.ipntr, L.workd.data(), L.workl.data(), &L.lworkl, &L.info, 1, 2);
    if (ido != -1 && ido != 1 && ido != 2) return 0;
    double* x = &L.workd(L.ipntr[0]);
    double* y = &L.workd(L.ipntr[1]);
    if (ido == 2) {
      sym_matvec(rows, K.data(), x, y);
      continue;
    }
    const double* w = work.data();
    if (L.mode == REGULAR_INVERSE) {
      sym_matvec(rows, B.data(), x, work.data());
      std::copy(work.begin(), work.end(), x);  // ARPACK expects B x in the place of x
    } else if (ido == -1) {
      sym_matvec(rows, K.data(), x, work.data());
    } else {
      w = &L.workd(L.ipntr[2]);  // K x stands there already
    }
    console(".");
    const int code = solver_solve_real(handle, 0, w, 1, y);
    if (code != 0) return code;
  }
}

// Eigenvalues and Ritz vectors of the projected problem, in the order of the factors. The vectors
// are those that stay in v: dseupd improves only its copy of them.
void extract(Lanczos& L, double sigma, Vector<double>& eigval, Matrix<double>& eigvec) {
  Vector<double> d(L.ncv);
  Matrix<double> z(L.n, L.nev, "the Ritz vectors");
  std::copy(L.v.begin(), L.v.begin() + std::int64_t{L.n} * L.nev, z.data());
  const int vectors = 1;
  int ierr = 0;
  dseupd_(&vectors, "A", L.select.data(), d.data(), z.data(), &L.n, &sigma, "G", &L.n, L.which,
          &L.nev, &L.tol, L.resid.data(), &L.ncv, L.v.data(), &L.n, L.iparam, L.ipntr,
          L.workd.data(), L.workl.data(), &L.lworkl, &ierr, 1, 1, 2);
  if (ierr != 0) {
    console("\n");
    console_line(" Error with dseupd, info = ", std::int64_t{ierr});
    console_line(" Check the documentation of dseupd ");
    console("\n");
  }
  for (int k = 1; k <= L.nev; ++k) {
    // mu ascends, so the last one belongs to the smallest factor.
    const int from = L.mode == REGULAR_INVERSE ? L.nev + 1 - k : k;
    eigval(k) = L.mode == REGULAR_INVERSE ? 1 / d(from) : d(from);
    std::copy_n(&L.v(std::int64_t{L.n} * (from - 1) + 1), L.n, eigvec.column(k));
  }
}

void report_code(int code) { console_line("Solver Returned Error Code ", std::int64_t{code}); }

// Factors C and iterates; returns the first code that is not 0.
int factor_and_iterate(const MatrixPattern& pattern, const RowBundles& rows,
                       const Vector<double>& K, const Vector<double>& B, const Vector<double>& C,
                       Lanczos& L) {
  SolverHandle* handle = nullptr;
  int code = factor(pattern, C, handle);
  if (code != 0) return code;
  console(" ");  // the dots follow on this line
  code = iterate(rows, K, B, handle, L);
  if (code == 0) code = solver_delete(handle, 0);
  if (code != 0) console("\n");
  return code;
}

}  // namespace

void buckling_solve(const MatrixPattern& pattern, const Vector<double>& K, Vector<double>& KG,
                    const EigenOptions& options, int ncv, Vector<double>& eigval,
                    Matrix<double>& eigvec) {
  for (double& value : KG) value = -value;
  const Vector<double>& B = KG;
  Lanczos L(pattern.n, options, ncv);
  Vector<double> C;
  if (L.mode == BUCKLING_MODE) {
    C = Vector<double>(pattern.nnz, "the shifted stiffness matrix", UNINITIALIZED);
    const int bad = shifted_matrix(pattern, K, B, options.sigma, C);
    if (bad > 0) {
      console_line(std::int64_t{bad}, " negative terms on diagonal");
      console_line("Eigensolver did not find solution");
      return;
    }
  }
  const RowBundles rows = find_bundles(pattern.n, pattern.ia.data(), pattern.ja.data());
  const int code = factor_and_iterate(pattern, rows, K, B, L.mode == BUCKLING_MODE ? C : K, L);
  if (code != 0) return report_code(code);

  if (L.info < 0) {
    console("\n");
    console_line(" Error with dsaupd, info = ", std::int64_t{L.info});
    console_line(" Check the documentation of dsaupd");
    console("\n");
    return;
  }
  extract(L, options.sigma, eigval, eigvec);
  if (L.info == LIMIT_REACHED) {
    console("\n");
    console_line(" Maximum number of iterations reached.");
    console("\n");
  }
  console("\n");
  if (L.info == NO_SHIFTS) return report_code(NO_SHIFTS_CODE);
  warn_of_loose_pairs(rows, K, B, options, L.iparam[4], eigval, eigvec);
}

}  // namespace zelvo
