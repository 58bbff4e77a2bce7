// The dense kernels, written over a vector type of LANES doubles. The including file opens a
// namespace and gives LANES and MAX_NV, the registers in the height of a tile: tiles are
// P = MAX_NV * W rows by W columns. Nothing here has external linkage but the kernels themselves:
// the twin files are compiled for different processors.

#if defined(__GNUC__)
#define KERNEL_INLINE static inline __attribute__((always_inline))
#define KERNEL_PREFETCH(p) __builtin_prefetch(p, 1)
#define KERNEL_FETCH(p) __builtin_prefetch(p, 0)
#define KERNEL_UNROLL _Pragma("GCC unroll 4")
typedef double Vec __attribute__((vector_size(LANES * sizeof(double))));
KERNEL_INLINE Vec splat(double x) { return x - Vec{}; }
KERNEL_INLINE Vec load(const double* p) {
  Vec v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}
KERNEL_INLINE void store(double* p, Vec v) { __builtin_memcpy(p, &v, sizeof v); }
KERNEL_INLINE double root(double x) { return __builtin_sqrt(x); }
typedef long long LaneMask __attribute__((vector_size(LANES * sizeof(double))));
KERNEL_INLINE LaneMask first_mask(int s) {  // all bits of the first s lanes
  static const long long bits[2 * MAX_LANES] = {-1, -1, -1, -1, 0, 0, 0, 0};
  LaneMask m;
  __builtin_memcpy(&m, bits + MAX_LANES - s, sizeof m);
  return m;
}
// v with zeros in all lanes but the first s; in the first s lanes.
KERNEL_INLINE Vec first_lanes(Vec v, int s) { return (Vec)((LaneMask)v & first_mask(s)); }
KERNEL_INLINE Vec other_lanes(Vec v, int s) { return (Vec)((LaneMask)v & ~first_mask(s)); }
#else
#define KERNEL_INLINE static inline
#define KERNEL_PREFETCH(p) (void)(p)
#define KERNEL_FETCH(p) (void)(p)
#define KERNEL_UNROLL
typedef double Vec;
KERNEL_INLINE Vec splat(double x) { return x; }
KERNEL_INLINE Vec load(const double* p) { return *p; }
KERNEL_INLINE void store(double* p, Vec v) { *p = v; }
KERNEL_INLINE double root(double x) { return sqrt(x); }
KERNEL_INLINE Vec first_lanes(Vec v, int) { return v; }
KERNEL_INLINE Vec other_lanes(Vec v, int) { return v; }
#endif

constexpr int W = sizeof(Vec) / sizeof(double);
constexpr int P = MAX_NV * W;
static_assert(W <= 4 && W <= MAX_LANES);

using Index = std::ptrdiff_t;

// Packing pays when a packed value is read often enough: B by the rows of tiles, A by the columns.
constexpr int PACK_ROWS = 4 * P, PACK_COLUMNS = 8 * W, PACK_TERMS = 16;
// Columns of an update at a time, and so rows of B; and terms at a time, from several pieces.
constexpr int BLOCK_COLUMNS = 240, DEPTH = 240;
// Rows of tiles that pass B together, so that its tiles and the lines of C are fetched once.
constexpr int TOGETHER = 2;
constexpr int CACHE_LINE = 8;  // doubles
constexpr int AHEAD = 6;       // columns that are fetched ahead

// The first n of W lanes, n below W.
KERNEL_INLINE void store_first(double* p, Vec v, int n) {
  double lane[W];
  store(lane, v);
  if (n > 0) p[0] = lane[0];
  if constexpr (W > 2) {
    if (n > 1) p[1] = lane[1];
    if (n > 2) p[2] = lane[2];
  }
}

// acc(v,j) := sum over p of a(v,p) b(j,p), a in steps of lda, b in steps of ldb.
template <int NV, int NC>
KERNEL_INLINE void product(Vec (&acc)[NV][NC], int k, const double* a, Index lda, const double* b,
                           Index ldb) {
  for (int v = 0; v < NV; ++v)
    for (int j = 0; j < NC; ++j) acc[v][j] = splat(0.0);
  for (int p = 0; p < k; ++p) {
    Vec av[NV];
    for (int v = 0; v < NV; ++v) av[v] = load(a + v * W);
    for (int j = 0; j < NC; ++j) {
      const Vec bj = splat(b[j]);
      for (int v = 0; v < NV; ++v) acc[v][j] += av[v] * bj;
    }
    a += lda;
    b += ldb;
  }
}

// Where an update goes: column j of the product to the column of the target that col[at(j)] points
// to, row i to its row at(i).
struct Target {
  double* const* col;
  const int* place;
  int shift;
  int at(int i) const { return place == nullptr ? i + shift : place[i]; }
};

// A row of tiles: rows i to i+n-1, the last register perhaps in part.
struct TileRows {
  int i, n;
  const double* a;
  Index lda;
  int at[MAX_NV];  // where the rows of each register begin in the target
  int lanes
      [MAX_NV];  // W if all follow there, fewer before the only gap, 0 with more gaps or in part
};

KERNEL_INLINE TileRows tile_rows(const Target& t, int i, int n, const double* a, Index lda) {
  TileRows x{i, n, a, lda, {}, {}};
  for (int v = 0; v * W < n; ++v) {
    const int row = i + v * W, at = t.at(row);
    int s = 1;
    x.at[v] = at;
    if (n - v * W < W) break;
    while (s < W && t.at(row + s) == at + s) ++s;
    x.lanes[v] = s == W || t.at(row + W - 1) - t.at(row + s) == W - 1 - s ? s : 0;
  }
  return x;
}

// The tile of the rows x and the columns j to j+NC-1 of an update.
template <int NV, int NC>
static void tile(const Target& t, const TileRows& x, int j, const double* b, Index ldb, int k) {
  double* c[NC];
  for (int q = 0; q < NC; ++q) {
    c[q] = t.col[t.at(j + q)];
    if (k > PACK_TERMS) {
      KERNEL_PREFETCH(c[q] + x.at[0]);
      KERNEL_PREFETCH(c[q] + x.at[NV - 1]);
    }
  }
  Vec acc[NV][NC];
  product<NV, NC>(acc, k, x.a, x.lda, b, ldb);
  KERNEL_UNROLL
  for (int v = 0; v < NV; ++v) {
    const int row = x.i + v * W, at = x.at[v];
    const int lanes = j + NC - 1 <= row ? x.lanes[v] : 0;
    if (lanes == W) {
      KERNEL_UNROLL
      for (int q = 0; q < NC; ++q) store(c[q] + at, load(c[q] + at) - acc[v][q]);
    } else if (lanes != 0) {
      KERNEL_UNROLL
      for (int q = 0; q < NC; ++q)
        store(c[q] + at, load(c[q] + at) - first_lanes(acc[v][q], lanes));
      const int behind = t.at(row + W - 1) - (W - 1);
      KERNEL_UNROLL
      for (int q = 0; q < NC; ++q)
        store(c[q] + behind, load(c[q] + behind) - other_lanes(acc[v][q], lanes));
    } else {  // at the diagonal, the last rows, or much scattered
      const int end = x.n - v * W < W ? x.n - v * W : W;
      double lane[W];
      KERNEL_UNROLL
      for (int q = 0; q < NC; ++q) {
        store(lane, acc[v][q]);
        for (int r = j + q > row ? j + q - row : 0; r < end; ++r) c[q][t.at(row + r)] -= lane[r];
      }
    }
  }
}

// The tile of nv registers by nc columns, nv <= NV and nc <= NC.
template <int NV, int NC>
static void any_tile(int nv, int nc, const Target& t, const TileRows& x, int j, const double* b,
                     Index ldb, int k) {
  if (nv == NV && nc == NC) return tile<NV, NC>(t, x, j, b, ldb, k);
  if constexpr (NC > 1) {
    if (nc < NC) return any_tile<NV, NC - 1>(nv, nc, t, x, j, b, ldb, k);
  }
  if constexpr (NV > 1) any_tile<NV - 1, NC>(nv, nc, t, x, j, b, ldb, k);
}

// NV registers of rows of A in the order in which the tiles read them, column after column in steps
// of P; returns where the next column goes. The rows behind them are fetched meanwhile: their columns
// are too many and too far apart for the processor to see.
template <int NV>
KERNEL_INLINE double* pack_rows(double* packed, const double* a, Index lda, int k) {
  for (int p = 0; p < k; ++p, a += lda, packed += P) {
    KERNEL_FETCH(a + 2 * P);
    KERNEL_FETCH(a + 3 * P - 1);
    for (int v = 0; v < NV; ++v) store(packed + v * W, load(a + v * W));
  }
  return packed;
}

template <int NV>
static double* pack_rows(int nv, double* packed, const double* a, Index lda, int k) {
  if (nv == NV) return pack_rows<NV>(packed, a, lda, k);
  if constexpr (NV > 1) return pack_rows<NV - 1>(nv, packed, a, lda, k);
  return packed;
}

// A piece of B, its m rows behind `from` times D, as tiles of W rows that begin `step` apart.
static void pack_tiles(double* packed, Index step, const UpdatePiece& x, int from, int m) {
  const int whole = m / W * W;
  const double* b = x.a + from;
  const double* d = x.d;
  for (int p = 0; p < x.k; ++p, b += x.lda) {
    const double dp = d == nullptr ? 1.0 : d[p * x.step];
    double* to = packed + p * W;
    if (p + AHEAD < x.k)
      for (int j = 0; j < m; j += CACHE_LINE) KERNEL_FETCH(b + AHEAD * x.lda + j);
    for (int j = 0; j < whole; j += W, to += step) store(to, load(b + j) * splat(dp));
    for (int j = whole; j < m; ++j) to[j - whole] = b[j] * dp;
  }
}

std::ptrdiff_t update_work(int m, int k) {
  const Index columns = m < BLOCK_COLUMNS ? (m + W - 1) / W * W : BLOCK_COLUMNS;
  return (k < DEPTH ? DEPTH : k) * (columns + TOGETHER * P);
}

// Columns j0 to m-1 of an update, its k terms in one or more pieces: B, the rows j0 to m-1 of A, stays
// in the second-level cache while the rows below it pass.
static void update_block(const Target& t, const UpdatePiece* piece, int pieces, int r, int j0,
                         int m, int k, double* packed) {
  const bool pack_b = pieces > 1 || piece->d != nullptr || (r - j0 > PACK_ROWS && k > PACK_TERMS);
  const bool pack_a = pieces > 1 || (m - j0 > PACK_COLUMNS && k > PACK_TERMS);
  double* a_packed = packed;
  const double* b = piece->a + j0;
  Index ldb = piece->lda, tile_step = W;
  if (pack_b) {
    double* b_packed = packed + Index{k} * (TOGETHER * P);
    b = b_packed;
    ldb = W;
    tile_step = Index{k} * W;
    for (int q = 0; q < pieces; b_packed += piece[q++].k * W)
      pack_tiles(b_packed, tile_step, piece[q], j0, m - j0);
  }
  for (int i = j0; i < r;) {
    TileRows rows[TOGETHER];
    int count = 0;
    for (; count < TOGETHER && i < r; ++count) {
      const int left = r - i;
      // A tile one register high waits for its own sums: two equal rows of tiles are faster.
      const int n = left < P ? left : left > P && left <= P + W ? P - W : P;
      rows[count] = tile_rows(t, i, n, piece->a + i, piece->lda);
      if (pack_a && (left >= P || pieces > 1)) {
        double* to = a_packed + count * (Index{k} * P);
        rows[count].a = to;
        rows[count].lda = P;
        for (int q = 0; q < pieces; ++q)
          to = pack_rows<MAX_NV>((n + W - 1) / W, to, piece[q].a + i, piece[q].lda, piece[q].k);
      }
      i += n;
    }
    const double* bj = b;
    for (int j = j0; j < m && j < i; j += W, bj += tile_step) {
      const int nc = m - j < W ? m - j : W;
      for (int q = 0; q < count; ++q) {
        const TileRows& x = rows[q];
        if (j >= x.i + x.n) continue;  // above the diagonal
        any_tile<MAX_NV, W>((x.n + W - 1) / W, nc, t, x, j, bj, ldb, k);
      }
    }
  }
}

void update(double* const* col, const int* place, int shift, const UpdatePiece* piece, int pieces,
            int r, int m, double* packed) {
  const Target t{col, place, shift};
  for (int j = 0; j < m; j += BLOCK_COLUMNS) {
    const int end = m < j + BLOCK_COLUMNS ? m : j + BLOCK_COLUMNS;
    // Several pieces in one pass, which reads and writes C once, where the operands are packed.
    const bool deep = r - j > PACK_ROWS && end - j > PACK_COLUMNS;
    for (int q = 0, n; q < pieces; q += n) {
      int k = piece[q].k;
      for (n = 1; deep && q + n < pieces && k + piece[q + n].k <= DEPTH; ++n) k += piece[q + n].k;
      update_block(t, piece + q, n, r, j, end, k, packed);
    }
  }
}

// Factors a tile of NC <= W columns whose diagonal lies in its first NC rows; x[column][row] holds W
// rows. False at a bad pivot.
template <int NC>
static bool factor_tile(double (&x)[NC][W], double* pivot, double* inverse, bool ldl) {
  for (int q = 0; q < NC; ++q) {
    const double d = x[q][q];
    if (ldl ? d == 0.0 : !(d > 0.0)) return false;
    pivot[q] = ldl ? d : root(d);
    inverse[q] = 1.0 / pivot[q];
    x[q][q] = pivot[q];
    double column[W];  // L for Cholesky, L D for ldl
    for (int i = q + 1; i < W; ++i) {
      column[i] = x[q][i];
      x[q][i] *= inverse[q];
      if (!ldl) column[i] = x[q][i];
    }
    for (int j = q + 1; j < NC; ++j)
      for (int i = j; i < W; ++i) x[j][i] -= x[q][i] * column[j];
  }
  return true;
}

// Where tile t of the packed diagonal block begins: tile t has W (t + 1) columns of W values.
KERNEL_INLINE Index packed_tile(int t) { return Index{W} * W * t * (t + 1) / 2; }

std::ptrdiff_t panel_work(int c) {
  const int tiles = (c + W - 1) / W;
  return packed_tile(tiles) + Index{tiles} * W * (P + 2);
}

// Work of factor_panel: the finished diagonal block as tiles, in rows as product() reads them (for
// ldl, times D), its pivots and their reciprocals, and the rows in work, column after column.
struct PanelWork {
  double* block;
  double* pivot;
  double* inverse;
  double* rows;
  bool ldl;
};

// Rows j.. of the diagonal block, which lie in the rows in work from lane on, to their tile.
static void pack_block(int j, int lane, const PanelWork& w) {
  double* block = w.block + packed_tile(j / W);
  for (int p = 0; p < j; ++p) {
    const Vec x = load(w.rows + p * P + lane);
    store(block + p * W, w.ldl ? x * splat(w.pivot[p]) : x);
  }
}

// Factors the tile at column j whose W rows (the first NC hold the diagonal) are x, and packs it.
template <int NC>
static bool factor_diagonal(Vec (&x)[NC], int j, const PanelWork& w) {
  double* block = w.block + packed_tile(j / W) + j * W;
  double t[NC][W];
  for (int q = 0; q < NC; ++q) store(t[q], x[q]);
  if (!factor_tile<NC>(t, w.pivot + j, w.inverse + j, w.ldl)) return false;
  for (int q = 0; q < NC; ++q) {
    x[q] = load(t[q]);
    store(block + q * W, w.ldl ? x[q] * splat(w.pivot[j + q]) : x[q]);
  }
  return true;
}

// Columns j to j+NC-1 of the n rows of the panel from row i on, at x: subtracts what the columns
// before contribute, then factors the diagonal tile (where it lies in these rows) and solves below.
template <int NV, int NC>
static bool panel_tile(double* x, Index ld, int i, int j, int n, const PanelWork& w) {
  if (j >= i) pack_block(j, j - i, w);
  const double* block = w.block + packed_tile(j / W);
  Vec acc[NV][NC];
  product<NV, NC>(acc, j, w.rows, P, block, W);
  for (int v = 0; v < NV; ++v)
    for (int q = 0; q < NC; ++q) acc[v][q] = load(x + q * ld + v * W) - acc[v][q];
  const int diagonal = j >= i ? (j - i) / W : -1;
  for (int v = 0; v < NV; ++v)
    if (v == diagonal && !factor_diagonal<NC>(acc[v], j, w)) return false;
  const double* u = block + j * W;  // u[p * W + q]: row q, column p of the diagonal tile
  for (int q = 0; q < NC; ++q) {
    const Vec inverse = splat(w.inverse[j + q]);
    for (int v = 0; v < NV; ++v) {
      Vec y = acc[v][q];
      for (int p = 0; p < q; ++p) y -= acc[v][p] * splat(u[p * W + q]);
      if (v > diagonal) acc[v][q] = y * inverse;
    }
  }
  const int whole = n / W, rest = n % W;
  for (int q = 0; q < NC; ++q)
    for (int v = 0; v < NV; ++v) {
      store(w.rows + (j + q) * P + v * W, acc[v][q]);
      if (v < whole)
        store(x + q * ld + v * W, acc[v][q]);
      else
        store_first(x + q * ld + v * W, acc[v][q], rest);
    }
  return true;
}

template <int NV, int NC>
static bool last_panel_tile(double* x, Index ld, int i, int j, int n, int columns,
                            const PanelWork& w) {
  if constexpr (NC > 0) {
    if (columns == NC) return panel_tile<NV, NC>(x, ld, i, j, n, w);
    return last_panel_tile<NV, NC - 1>(x, ld, i, j, n, columns, w);
  }
  return true;
}

// n rows of the panel from row i on: the first m columns.
template <int NV>
static bool panel_rows(double* panel, Index ld, int i, int n, int m, const PanelWork& w) {
  int j = 0;
  for (; j + W <= m; j += W)
    if (!panel_tile<NV, W>(panel + i + j * ld, ld, i, j, n, w)) return false;
  return last_panel_tile<NV, W - 1>(panel + i + j * ld, ld, i, j, n, m - j, w);
}

template <int NV>
static bool panel_rows_of_height(int nv, double* panel, Index ld, int i, int n, int m,
                                 const PanelWork& w) {
  if constexpr (NV > 0) {
    if (nv == NV) return panel_rows<NV>(panel, ld, i, n, m, w);
    return panel_rows_of_height<NV - 1>(nv, panel, ld, i, n, m, w);
  }
  return true;
}

int factor_panel(double* panel, Index ld, int r, int c, bool ldl, double* packed) {
  const int whole = (c + W - 1) / W;  // tiles
  double* pivot = packed + packed_tile(whole);
  const PanelWork w{packed, pivot, pivot + whole * W, pivot + 2 * whole * W, ldl};
  for (int i = 0; i < r; i += P) {
    const int n = r - i < P ? r - i : P;
    const int m = c < i + n ? c : i + n;
    if (!panel_rows_of_height<MAX_NV>((n + W - 1) / W, panel, ld, i, n, m, w)) return -1;
  }
  return 0;
}

// z(i) -= sum over q of l(i,q) x(q), NC columns, n values.
template <int NC>
KERNEL_INLINE void subtract_columns(const double* l, Index ld, const double (&x)[NC], int n,
                                    double* z) {
  int i = 0;
  for (; i + W <= n; i += W) {
    Vec y = load(z + i);
    for (int q = 0; q < NC; ++q) y -= load(l + q * ld + i) * splat(x[q]);
    store(z + i, y);
  }
  for (; i < n; ++i) {
    double y = z[i];
    for (int q = 0; q < NC; ++q) y -= l[q * ld + i] * x[q];
    z[i] = y;
  }
}

template <int NC>
static void forward_columns(const double* l, Index ld, int r, bool unit, double* z) {
  double x[NC];
  for (int q = 0; q < NC; ++q) {
    double y = z[q];
    for (int p = 0; p < q; ++p) y -= l[q + p * ld] * x[p];
    z[q] = x[q] = unit ? y : y / l[q + q * ld];
  }
  subtract_columns<NC>(l + NC, ld, x, r - NC, z + NC);
}

void forward_panel(const double* panel, Index ld, int r, int c, bool unit, double* z) {
  int j = 0;
  for (; j + 4 <= c; j += 4) forward_columns<4>(panel + j + j * ld, ld, r - j, unit, z + j);
  for (; j < c; ++j) forward_columns<1>(panel + j + j * ld, ld, r - j, unit, z + j);
}

// NC columns of the panel, the last of those not yet solved; l is their diagonal tile.
template <int NC>
static void backward_columns(const double* l, Index ld, int r, bool unit, double* z) {
  Vec sum[NC];
  for (int q = 0; q < NC; ++q) sum[q] = splat(0.0);
  int i = NC;
  for (; i + W <= r; i += W) {
    const Vec y = load(z + i);
    for (int q = 0; q < NC; ++q) sum[q] += load(l + q * ld + i) * y;
  }
  for (int q = NC - 1; q >= 0; --q) {
    double lane[W], y = z[q];
    store(lane, sum[q]);
    for (int v = 0; v < W; ++v) y -= lane[v];
    for (int t = i; t < r; ++t) y -= l[q * ld + t] * z[t];
    for (int p = q + 1; p < NC; ++p) y -= l[q * ld + p] * z[p];
    z[q] = unit ? y : y / l[q + q * ld];
  }
}

void backward_panel(const double* panel, Index ld, int r, int c, bool unit, double* z) {
  int j = c;
  for (; j % 4 != 0; --j)
    backward_columns<1>(panel + (j - 1) * (ld + 1), ld, r - j + 1, unit, z + j - 1);
  for (; j > 0; j -= 4)
    backward_columns<4>(panel + (j - 4) * (ld + 1), ld, r - j + 4, unit, z + j - 4);
}
