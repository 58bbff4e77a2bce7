// The matrix product of BLAS, the measure of what this processor does.
#pragma once

namespace zelvo {

extern "C" {
void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc);
}

}  // namespace zelvo
