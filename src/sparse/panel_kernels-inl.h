// Factorization of a panel, and its part in the solves; a part of dense_kernels-inl.h.

// The first n of W lanes, n below W.
SIMD_INLINE void store_first(double* p, Reg v, int n) {
  double lane[W];
  store(lane, v);
  if (n > 0) p[0] = lane[0];
  if constexpr (W > 2) {
    if (n > 1) p[1] = lane[1];
    if (n > 2) p[2] = lane[2];
  }
}

// Factors a tile of NC <= W columns whose diagonal lies in its first NC rows; x[column][row] holds W
// rows. Columns of L are products with the reciprocals of the pivots, but where that of a pivot of D
// below 5.6e-309 overflows; small then becomes true. (Pivots of Cholesky are roots and never get
// there.) False at a bad pivot.
template <int NC>
bool factor_tile(double (&x)[NC][W], double* pivot, double* inverse, bool ldl, bool& small) {
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
    if (inverse[q] - inverse[q] != 0.0) [[unlikely]] {  // infinite
      small = true;
      for (int i = q + 1; i < W; ++i) x[q][i] = column[i] / pivot[q];
    }
    for (int j = q + 1; j < NC; ++j)
      for (int i = j; i < W; ++i) x[j][i] -= x[q][i] * column[j];
  }
  return true;
}

// Where tile t of the packed diagonal block begins: tile t has W (t + 1) columns of W values.
SIMD_INLINE Index packed_tile(int t) { return Index{W} * W * t * (t + 1) / 2; }

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
  bool small = false;  // a pivot so far is too small for its reciprocal
};

// Rows j.. of the diagonal block, which lie in the rows in work from lane on, to their tile.
void pack_block(int j, int lane, const PanelWork& w) {
  double* block = w.block + packed_tile(j / W);
  for (int p = 0; p < j; ++p) {
    const Reg x = load<W>(w.rows + p * P + lane);
    store(block + p * W, w.ldl ? x * splat<W>(w.pivot[p]) : x);
  }
}

// Factors the tile at column j whose W rows (the first NC hold the diagonal) are x, and packs it.
template <int NC>
bool factor_diagonal(Reg (&x)[NC], int j, PanelWork& w) {
  double* block = w.block + packed_tile(j / W) + j * W;
  double t[NC][W];
  for (int q = 0; q < NC; ++q) store(t[q], x[q]);
  if (!factor_tile<NC>(t, w.pivot + j, w.inverse + j, w.ldl, w.small)) return false;
  for (int q = 0; q < NC; ++q) {
    x[q] = load<W>(t[q]);
    store(block + q * W, w.ldl ? x[q] * splat<W>(w.pivot[j + q]) : x[q]);
  }
  return true;
}

// Solves the registers of acc below the diagonal one with the tile u: u[p * W + q] is its row q, column
// p. by holds the pivots to divide by, or their reciprocals.
template <bool DIVIDE, int NV, int NC>
SIMD_INLINE void solve_below(Reg (&acc)[NV][NC], int diagonal, const double* u, const double* by) {
  for (int q = 0; q < NC; ++q) {
    const Reg factor = splat<W>(by[q]);
    for (int v = 0; v < NV; ++v) {
      Reg y = acc[v][q];
      for (int p = 0; p < q; ++p) y -= acc[v][p] * splat<W>(u[p * W + q]);
      if (v > diagonal) acc[v][q] = DIVIDE ? y / factor : y * factor;
    }
  }
}

// Columns j to j+NC-1 of the n rows of the panel from row i on, at x: subtracts what the columns
// before contribute, then factors the diagonal tile (where it lies in these rows) and solves below.
template <int NV, int NC>
bool panel_tile(double* x, Index ld, int i, int j, int n, PanelWork& w) {
  if (j >= i) pack_block(j, j - i, w);
  const double* block = w.block + packed_tile(j / W);
  Reg acc[NV][NC];
  product<NV, NC>(acc, j, w.rows, P, block, W);
  for (int v = 0; v < NV; ++v)
    for (int q = 0; q < NC; ++q) acc[v][q] = load<W>(x + q * ld + v * W) - acc[v][q];
  const int diagonal = j >= i ? (j - i) / W : -1;
  for (int v = 0; v < NV; ++v)
    if (v == diagonal && !factor_diagonal<NC>(acc[v], j, w)) return false;
  const double* u = block + j * W;  // the diagonal tile
  if (w.small) [[unlikely]] {
    solve_below<true>(acc, diagonal, u, w.pivot + j);
  } else {
    solve_below<false>(acc, diagonal, u, w.inverse + j);
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
bool last_panel_tile(double* x, Index ld, int i, int j, int n, int columns, PanelWork& w) {
  if constexpr (NC > 0) {
    if (columns == NC) return panel_tile<NV, NC>(x, ld, i, j, n, w);
    return last_panel_tile<NV, NC - 1>(x, ld, i, j, n, columns, w);
  }
  return true;
}

// n rows of the panel from row i on: the first m columns.
template <int NV>
bool panel_rows(double* panel, Index ld, int i, int n, int m, PanelWork& w) {
  int j = 0;
  for (; j + W <= m; j += W)
    if (!panel_tile<NV, W>(panel + i + j * ld, ld, i, j, n, w)) return false;
  return last_panel_tile<NV, W - 1>(panel + i + j * ld, ld, i, j, n, m - j, w);
}

template <int NV>
bool panel_rows_of_height(int nv, double* panel, Index ld, int i, int n, int m, PanelWork& w) {
  if constexpr (NV > 0) {
    if (nv == NV) return panel_rows<NV>(panel, ld, i, n, m, w);
    return panel_rows_of_height<NV - 1>(nv, panel, ld, i, n, m, w);
  }
  return true;
}

int factor_panel(double* panel, Index ld, int r, int c, bool ldl, double* packed) {
  assert(c <= r && r <= ld);
  const int whole = (c + W - 1) / W;  // tiles
  double* pivot = packed + packed_tile(whole);
  PanelWork w{packed, pivot, pivot + whole * W, pivot + 2 * whole * W, ldl};
  for (int i = 0; i < r; i += P) {
    const int n = r - i < P ? r - i : P;
    const int m = c < i + n ? c : i + n;
    if (!panel_rows_of_height<MAX_NV>((n + W - 1) / W, panel, ld, i, n, m, w)) return -1;
  }
  return 0;
}

// z(i) -= sum over q of l(i,q) x(q), NC columns, n values.
template <int NC>
SIMD_INLINE void subtract_columns(const double* l, Index ld, const double (&x)[NC], int n,
                                  double* z) {
  int i = 0;
  for (; i + W <= n; i += W) {
    Reg y = load<W>(z + i);
    for (int q = 0; q < NC; ++q) y -= load<W>(l + q * ld + i) * splat<W>(x[q]);
    store(z + i, y);
  }
  for (; i < n; ++i) {
    double y = z[i];
    for (int q = 0; q < NC; ++q) y -= l[q * ld + i] * x[q];
    z[i] = y;
  }
}

template <int NC>
void forward_columns(const double* l, Index ld, int r, bool unit, double* z) {
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
void backward_columns(const double* l, Index ld, int r, bool unit, double* z) {
  Reg sum[NC];
  for (int q = 0; q < NC; ++q) sum[q] = splat<W>(0.0);
  int i = NC;
  for (; i + W <= r; i += W) {
    const Reg y = load<W>(z + i);
    for (int q = 0; q < NC; ++q) sum[q] += load<W>(l + q * ld + i) * y;
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
