// The update of supernodes by another; a part of dense_kernels-inl.h.

// Packing pays when a packed value is read often enough: B by the rows of tiles, A by the columns.
constexpr int PACK_ROWS = 4 * P, PACK_COLUMNS = 8 * W, PACK_TERMS = 16;
// Columns of an update at a time, and so rows of B; and terms at a time, from several pieces.
constexpr int BLOCK_COLUMNS = 240, DEPTH = 240;
// Rows of tiles that pass B together, so that its tiles and the lines of C are fetched once.
constexpr int TOGETHER = 2;
constexpr int CACHE_LINE = 8;  // doubles
constexpr int AHEAD = 6;       // columns that are fetched ahead

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

SIMD_INLINE TileRows tile_rows(const Target& t, int i, int n, const double* a, Index lda) {
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
void tile(const Target& t, const TileRows& x, int j, const double* b, Index ldb, int k) {
  double* c[NC];
  for (int q = 0; q < NC; ++q) {
    c[q] = t.col[t.at(j + q)];
    if (k > PACK_TERMS) {
      fetch_to_write(c[q] + x.at[0]);
      fetch_to_write(c[q] + x.at[NV - 1]);
    }
  }
  Reg acc[NV][NC];
  product<NV, NC>(acc, k, x.a, x.lda, b, ldb);
  SIMD_UNROLL
  for (int v = 0; v < NV; ++v) {
    const int row = x.i + v * W, at = x.at[v];
    const int lanes = j + NC - 1 <= row ? x.lanes[v] : 0;
    if (lanes == W) {
      SIMD_UNROLL
      for (int q = 0; q < NC; ++q) store(c[q] + at, load<W>(c[q] + at) - acc[v][q]);
    } else if (lanes != 0) {
      SIMD_UNROLL
      for (int q = 0; q < NC; ++q)
        store(c[q] + at, load<W>(c[q] + at) - first_lanes<W>(acc[v][q], lanes));
      const int behind = t.at(row + W - 1) - (W - 1);
      SIMD_UNROLL
      for (int q = 0; q < NC; ++q)
        store(c[q] + behind, load<W>(c[q] + behind) - other_lanes<W>(acc[v][q], lanes));
    } else {  // at the diagonal, the last rows, or much scattered
      const int end = x.n - v * W < W ? x.n - v * W : W;
      double lane[W];
      SIMD_UNROLL
      for (int q = 0; q < NC; ++q) {
        store(lane, acc[v][q]);
        for (int r = j + q > row ? j + q - row : 0; r < end; ++r) c[q][t.at(row + r)] -= lane[r];
      }
    }
  }
}

// The tile of nv registers by nc columns, nv <= NV and nc <= NC.
template <int NV, int NC>
void any_tile(int nv, int nc, const Target& t, const TileRows& x, int j, const double* b, Index ldb,
              int k) {
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
SIMD_INLINE double* pack_rows(double* packed, const double* a, Index lda, int k) {
  for (int p = 0; p < k; ++p, a += lda, packed += P) {
    fetch(a + 2 * P);
    fetch(a + 3 * P - 1);
    for (int v = 0; v < NV; ++v) store(packed + v * W, load<W>(a + v * W));
  }
  return packed;
}

template <int NV>
double* pack_rows(int nv, double* packed, const double* a, Index lda, int k) {
  if (nv == NV) return pack_rows<NV>(packed, a, lda, k);
  if constexpr (NV > 1) return pack_rows<NV - 1>(nv, packed, a, lda, k);
  return packed;
}

// A piece of B, its m rows behind `from` times D, as tiles of W rows that begin `step` apart.
void pack_tiles(double* packed, Index step, const UpdatePiece& x, int from, int m) {
  const int whole = m / W * W;
  const double* b = x.a + from;
  const double* d = x.d;
  for (int p = 0; p < x.k; ++p, b += x.lda) {
    const double dp = d == nullptr ? 1.0 : d[p * x.step];
    double* to = packed + p * W;
    if (p + AHEAD < x.k)
      for (int j = 0; j < m; j += CACHE_LINE) fetch(b + AHEAD * x.lda + j);
    for (int j = 0; j < whole; j += W, to += step) store(to, load<W>(b + j) * splat<W>(dp));
    for (int j = whole; j < m; ++j) to[j - whole] = b[j] * dp;
  }
}

std::ptrdiff_t update_work(int m, int k) {
  const Index columns = m < BLOCK_COLUMNS ? (m + W - 1) / W * W : BLOCK_COLUMNS;
  return (k < DEPTH ? DEPTH : k) * (columns + TOGETHER * P);
}

// Columns j0 to m-1 of an update, its k terms in one or more pieces: B, the rows j0 to m-1 of A, stays
// in the second-level cache while the rows below it pass.
void update_block(const Target& t, const UpdatePiece* piece, int pieces, int r, int j0, int m,
                  int k, double* packed) {
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
  assert(1 <= m && m <= r && pieces >= 1);
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
