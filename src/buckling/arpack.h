// The two ARPACK entries in use, in their Fortran calling form: every argument by address, the
// lengths of the character arguments behind the others (Lehoucq, Sorensen, Yang 1998).
#pragma once
#include <cstddef>

extern "C" {
void dsaupd_(int* ido, const char* bmat, const int* n, const char* which, const int* nev,
             const double* tol, double* resid, const int* ncv, double* v, const int* ldv,
             int* iparam, int* ipntr, double* workd, double* workl, const int* lworkl, int* info,
             std::size_t bmat_length, std::size_t which_length);
void dseupd_(const int* rvec, const char* howmny, int* select, double* d, double* z, const int* ldz,
             const double* sigma, const char* bmat, const int* n, const char* which, const int* nev,
             const double* tol, double* resid, const int* ncv, double* v, const int* ldv,
             int* iparam, int* ipntr, double* workd, double* workl, const int* lworkl, int* info,
             std::size_t howmny_length, std::size_t bmat_length, std::size_t which_length);
}
