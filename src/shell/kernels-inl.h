// The loops declared in kernels.h, for whatever vectors the including file is compiled for.

// Four points side by side. The lane tables are aligned, so they are read and written in place.
using v4 = Vec<4>;

constexpr int VECTORS = SHELL_LANES / 4;

inline const v4& at(const double* lanes, int v) { return reinterpret_cast<const v4*>(lanes)[v]; }
inline v4& at(double* lanes, int v) { return reinterpret_cast<v4*>(lanes)[v]; }

inline v4 dot(const v4* a, const v4* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
inline v4 dot(const v4* a, const double* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

// Reciprocal of the square root.
inline v4 inverse_root(const v4& square) {
  v4 x = square;
  for (int l = 0; l < 4; ++l) x[l] = root(x[l]);
  return 1.0 / x;
}

inline void load3x3(const double (*m)[SHELL_LANES], int v, v4* out) {
  for (int i = 0; i < 9; ++i) out[i] = at(m[i], v);
}

// J and its inverse by cofactors; e1 along xi, e3 normal to xi and eta, e2 = e3 x e1.
void frame_at(const v4* J, int v, PointFrames& f) {
  const v4 c0 = J[4] * J[8] - J[7] * J[5], c1 = J[5] * J[6] - J[3] * J[8],
           c2 = J[3] * J[7] - J[6] * J[4];
  const v4 det = J[0] * c0 + J[1] * c1 + J[2] * c2, s = 1.0 / det;
  at(f.det, v) = det;
  at(f.R[0], v) = c0 * s;
  at(f.R[3], v) = c1 * s;
  at(f.R[6], v) = c2 * s;
  at(f.R[1], v) = (J[2] * J[7] - J[1] * J[8]) * s;
  at(f.R[4], v) = (J[0] * J[8] - J[2] * J[6]) * s;
  at(f.R[7], v) = (J[1] * J[6] - J[0] * J[7]) * s;
  v4 e1[3],
      e3[3] = {J[1] * J[5] - J[2] * J[4], J[2] * J[3] - J[0] * J[5], J[0] * J[4] - J[1] * J[3]};
  for (int b = 0; b < 3; ++b) at(f.R[3 * b + 2], v) = e3[b] * s;
  const v4 s1 = inverse_root(dot(J, J)), s3 = inverse_root(dot(e3, e3));
  for (int b = 0; b < 3; ++b) {
    at(f.e[b], v) = e1[b] = J[b] * s1;
    at(f.e[6 + b], v) = e3[b] = e3[b] * s3;
  }
  at(f.e[3], v) = e3[1] * e1[2] - e3[2] * e1[1];
  at(f.e[4], v) = e3[2] * e1[0] - e3[0] * e1[2];
  at(f.e[5], v) = e3[0] * e1[1] - e3[1] * e1[0];
}

void point_frames(const LaneTables& t, const ShellData& s, PointFrames& f) {
  for (int v = 0; v < VECTORS; ++v) {
    const v4 zh = at(s.zeta, v) * s.h;
    v4 J[9] = {};
    for (int k = 0; k < 9; ++k) {
      const v4 dxi = at(t.dxi[k], v), deta = at(t.deta[k], v), Nh = at(t.N[k], v) * s.h;
      for (int b = 0; b < 3; ++b) {
        const double vn = s.vn[3 * k + b];
        const v4 p = s.xyz[3 * k + b] + zh * vn;
        J[b] += dxi * p;
        J[3 + b] += deta * p;
        J[6 + b] += Nh * vn;
      }
    }
    for (int i = 0; i < 9; ++i) at(f.J[i], v) = J[i];
    frame_at(J, v, f);
  }
}

// Operands of a sum of outer products over the points: columns of ROWS lanes, one after the other.
// The two points left over after sixteen stand together, two rows in a vector: 5 rows of 18 points
// take 23 vectors.
constexpr int SHELL_K = 23, COLUMNS = 48;
struct alignas(32) Operands {
  v4 a[COLUMNS][SHELL_K], b[COLUMNS][SHELL_K];
};

inline void put_row(v4* column, int row, int v, const v4& x) {
  if (v < 4) {
    column[4 * row + v] = x;
  } else {
    double* tail = reinterpret_cast<double*>(column + 20) + 2 * row;
    __builtin_memcpy(tail, &x, 2 * sizeof(double));
  }
}

// Strains 11, 22, 12, 13, 23 of one freedom into a, stress times weight into b.
inline void put_strains(Operands& o, int column, int v, const v4* eps, const v4* D) {
  v4* a = o.a[column];
  v4* b = o.b[column];
  for (int r = 0; r < 5; ++r) put_row(a, r, v, eps[r]);
  put_row(b, 0, v, D[0] * eps[0] + D[1] * eps[1]);
  put_row(b, 1, v, D[1] * eps[0] + D[0] * eps[1]);
  for (int r = 2; r < 5; ++r) put_row(b, r, v, D[2] * eps[r]);
}

// Strains under a displacement along the local vector a whose factor has the local gradient g.
inline void strains(const v4* a, const v4* g, v4* eps) {
  eps[0] = a[0] * g[0];
  eps[1] = a[1] * g[1];
  eps[2] = a[0] * g[1] + a[1] * g[0];
  eps[3] = a[0] * g[2] + a[2] * g[0];
  eps[4] = a[1] * g[2] + a[2] * g[1];
}

void strain_operands(const LaneTables& t, const ShellData& s, const PointFrames& f, Operands& o) {
  for (int c = 0; c < 45; ++c) o.a[c][SHELL_K - 1] = o.b[c][SHELL_K - 1] = v4{};
  for (int v = 0; v < VECTORS; ++v) {
    v4 e[9], R[9], L[9];  // L = E R: derivatives of the natural along the local coordinates
    load3x3(f.e, v, e);
    load3x3(f.R, v, R);
    for (int i = 0; i < 3; ++i)
      for (int a = 0; a < 3; ++a)
        L[3 * i + a] = e[3 * i] * R[a] + e[3 * i + 1] * R[3 + a] + e[3 * i + 2] * R[6 + a];
    const v4 w = at(f.det, v) * at(t.weight, v), zeta = at(s.zeta, v);
    const v4 D[3] = {s.c1 * w, s.c2 * w, s.G * w};
    for (int k = 0; k < 9; ++k) {
      const v4 N = at(t.N[k], v), dxi = at(t.dxi[k], v), deta = at(t.deta[k], v);
      v4 g[3], q[3], a[3], eps[5];
      for (int i = 0; i < 3; ++i) {
        g[i] = L[3 * i] * dxi + L[3 * i + 1] * deta;
        q[i] = L[3 * i + 2] * N + zeta * g[i];
      }
      for (int c = 0; c < 3; ++c) {
        for (int i = 0; i < 3; ++i) a[i] = e[3 * i + c];
        strains(a, g, eps);
        put_strains(o, 5 * k + c, v, eps, D);
      }
      for (int i = 0; i < 3; ++i) a[i] = dot(e + 3 * i, s.vt2 + 3 * k) * -s.h;
      strains(a, q, eps);
      put_strains(o, 5 * k + 3, v, eps, D);
      for (int i = 0; i < 3; ++i) a[i] = dot(e + 3 * i, s.vt1 + 3 * k) * s.h;
      strains(a, q, eps);
      put_strains(o, 5 * k + 4, v, eps, D);
    }
  }
}

// The sums of the lanes of four vectors.
inline v4 lane_sums(const v4& c0, const v4& c1, const v4& c2, const v4& c3) {
  const v4 lo =
      __builtin_shufflevector(c0, c1, 0, 4, 2, 6) + __builtin_shufflevector(c0, c1, 1, 5, 3, 7);
  const v4 hi =
      __builtin_shufflevector(c2, c3, 0, 4, 2, 6) + __builtin_shufflevector(c2, c3, 1, 5, 3, 7);
  return __builtin_shufflevector(lo, hi, 0, 1, 4, 5) + __builtin_shufflevector(lo, hi, 2, 3, 6, 7);
}

// c (4,3), columns ld apart = a' b over k vectors: twelve sums in registers.
inline void tile(const v4 (*a)[SHELL_K], const v4 (*b)[SHELL_K], int k, double* c, int ld) {
  v4 s00{}, s10{}, s20{}, s30{}, s01{}, s11{}, s21{}, s31{}, s02{}, s12{}, s22{}, s32{};
  for (int p = 0; p < k; ++p) {
    const v4 b0 = b[0][p], b1 = b[1][p], b2 = b[2][p];
    v4 x = a[0][p];
    s00 += x * b0;
    s01 += x * b1;
    s02 += x * b2;
    x = a[1][p];
    s10 += x * b0;
    s11 += x * b1;
    s12 += x * b2;
    x = a[2][p];
    s20 += x * b0;
    s21 += x * b1;
    s22 += x * b2;
    x = a[3][p];
    s30 += x * b0;
    s31 += x * b1;
    s32 += x * b2;
  }
  at(c, 0) = lane_sums(s00, s10, s20, s30);
  at(c + ld, 0) = lane_sums(s01, s11, s21, s31);
  at(c + 2 * ld, 0) = lane_sums(s02, s12, s22, s32);
}

// Upper triangle of c (n,n), columns ld apart: a' b over k vectors, symmetric. n is a multiple of 3,
// ld of 4 and at least n; columns of a up to the next multiple of 4 are read. Rows are taken in
// groups of 16: that much of a stays in the first-level cache.
void symmetric_product(const Operands& o, int n, int k, double* c, int ld) {
  for (int top = 0; top < n; top += 16)
    for (int j = top - top % 3; j < n; j += 3)
      for (int i = top; i < top + 16 && i < j + 3; i += 4)
        tile(o.a + i, o.b + j, k, c + i + ld * j, ld);
}

void shell_product(const LaneTables& t, const ShellData& s, const PointFrames& f, double* ke) {
  Operands o;
  alignas(32) double c[45 * COLUMNS];
  for (int j = 45; j < COLUMNS; ++j)
    for (int p = 0; p < SHELL_K; ++p) o.a[j][p] = v4{};
  strain_operands(t, s, f, o);
  symmetric_product(o, 45, SHELL_K, c, COLUMNS);
  for (int j = 0; j < 45; ++j)
    for (int i = 0; i <= j; ++i) ke[i + 45 * j] = ke[j + 45 * i] = c[i + COLUMNS * j];
}

// Gradients along x, y, z of N and of zeta N of node k.
inline void gradients(const LaneTables& t, const ShellData& s, const v4* R, int v, int k, v4* g,
                      v4* q) {
  const v4 N = at(t.N[k], v), dxi = at(t.dxi[k], v), deta = at(t.deta[k], v), zeta = at(s.zeta, v);
  for (int b = 0; b < 3; ++b) {
    g[b] = R[3 * b] * dxi + R[3 * b + 1] * deta;
    q[b] = R[3 * b + 2] * N + zeta * g[b];
  }
}

// Displacement gradient H, strains e_i' (H + H') e_j, stresses, and these turned to global axes.
void point_stresses(const LaneTables& t, const ShellData& s, const PointFrames& f, const double* d,
                    PointStresses& S) {
  for (int v = 0; v < VECTORS; ++v) {
    v4 R[9], H[9] = {};  // H, row b: derivatives along global coordinate b
    load3x3(f.R, v, R);
    for (int k = 0; k < 9; ++k) {
      v4 g[3], q[3];
      gradients(t, s, R, v, k, g, q);
      const double alpha = -s.h * d[5 * k + 3], beta = s.h * d[5 * k + 4];
      for (int c = 0; c < 3; ++c) {
        const double turn = alpha * s.vt2[3 * k + c] + beta * s.vt1[3 * k + c];
        for (int b = 0; b < 3; ++b) H[3 * b + c] += g[b] * d[5 * k + c] + q[b] * turn;
      }
    }
    v4 e[9], He[9], eps[9];  // He, column j: H e_j;  eps = E H E'
    load3x3(f.e, v, e);
    for (int b = 0; b < 3; ++b)
      for (int j = 0; j < 3; ++j) He[3 * j + b] = dot(H + 3 * b, e + 3 * j);
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) eps[3 * i + j] = dot(e + 3 * i, He + 3 * j);
    const v4 s11 = s.c1 * eps[0] + s.c2 * eps[4], s22 = s.c2 * eps[0] + s.c1 * eps[4];
    const v4 s12 = s.G * (eps[1] + eps[3]), s13 = s.G * (eps[2] + eps[6]),
             s23 = s.G * (eps[5] + eps[7]);
    const v4 local[6] = {s11, s22, v4{}, s12, s13, s23};
    v4 t1[3], t2[3], t3[3];  // tractions on the three local faces
    for (int c = 0; c < 3; ++c) {
      t1[c] = s11 * e[c] + s12 * e[3 + c] + s13 * e[6 + c];
      t2[c] = s12 * e[c] + s22 * e[3 + c] + s23 * e[6 + c];
      t3[c] = s13 * e[c] + s23 * e[3 + c];
    }
    constexpr int ROW[6] = {0, 1, 2, 0, 0, 1}, COLUMN[6] = {0, 1, 2, 1, 2, 2};
    for (int r = 0; r < 6; ++r) {
      const int a = ROW[r], b = COLUMN[r];
      at(S.local[r], v) = local[r];
      at(S.global[r], v) = e[a] * t1[b] + e[3 + a] * t2[b] + e[6 + a] * t3[b];
    }
  }
}

// w times the stress tensor.
inline void load_tensor(const PointStresses& S, int v, const v4& w, v4* M) {
  for (int r = 0; r < 3; ++r) M[4 * r] = w * at(S.global[r], v);
  M[1] = M[3] = w * at(S.global[3], v);
  M[2] = M[6] = w * at(S.global[4], v);
  M[5] = M[7] = w * at(S.global[5], v);
}

void node_forces(const LaneTables& t, const ShellData& s, const PointFrames& f,
                 const PointStresses& S, int node, double* force) {
  v4 F[3] = {}, Q[3] = {};
  for (int v = 0; v < VECTORS; ++v) {
    v4 M[9], R[9], g[3], q[3];
    load_tensor(S, v, at(f.det, v) * at(t.weight, v), M);
    load3x3(f.R, v, R);
    gradients(t, s, R, v, node, g, q);
    for (int c = 0; c < 3; ++c) {
      F[c] += dot(M + 3 * c, g);
      Q[c] += dot(M + 3 * c, q);
    }
  }
  force[3] = force[4] = 0;
  for (int c = 0; c < 3; ++c) {
    force[c] = (F[c][0] + F[c][1]) + (F[c][2] + F[c][3]);
    const double tip = (Q[c][0] + Q[c][1]) + (Q[c][2] + Q[c][3]);
    force[3] -= s.h * s.vt2[3 * node + c] * tip;
    force[4] += s.h * s.vt1[3 * node + c] * tip;
  }
}

void gradient_products(const LaneTables& t, const ShellData& s, const PointFrames& f,
                       const PointStresses& S, double* c) {
  constexpr int N = 18, LD = 20, K = 3 * VECTORS;
  Operands o;
  alignas(32) double padded[N * LD];
  for (int j = N; j < LD; ++j)
    for (int p = 0; p < K; ++p) o.a[j][p] = v4{};
  for (int v = 0; v < VECTORS; ++v) {
    v4 M[9], R[9];
    load_tensor(S, v, at(f.det, v) * at(t.weight, v), M);
    load3x3(f.R, v, R);
    for (int k = 0; k < 9; ++k) {
      v4* const g = o.a[k] + 3 * v;
      v4* const q = o.a[k + 9] + 3 * v;
      gradients(t, s, R, v, k, g, q);
      for (int b = 0; b < 3; ++b) {
        o.b[k][3 * v + b] = dot(M + 3 * b, g);
        o.b[k + 9][3 * v + b] = dot(M + 3 * b, q);
      }
    }
  }
  symmetric_product(o, N, K, padded, LD);
  for (int j = 0; j < N; ++j)
    for (int i = 0; i <= j; ++i) c[i + N * j] = padded[i + LD * j];
}
