// The shared columns of a bundle of five rows, for whatever instruction set it is compiled.
// LANES columns are taken at a time, with one partial sum per lane. Most columns come in runs of
// consecutive numbers: such lanes go to and from x and y as one vector.
constexpr int LANES = 4;
using Lanes = Vec<LANES>;
// Doubles between the columns in work and the values prefetched: five short streams are more than
// the processor follows by itself.
constexpr int AHEAD = 256;

void bundle(int count, const int* columns, const double* const* v, const double* xi, double* sums,
            const double* x, double* y) {
  const double *v1 = v[0], *v2 = v[1], *v3 = v[2], *v4 = v[3], *v5 = v[4];
  const double a1 = xi[0], a2 = xi[1], a3 = xi[2], a4 = xi[3], a5 = xi[4];
  Lanes s1 = {}, s2 = {}, s3 = {}, s4 = {}, s5 = {};
  int t = 0;
  for (; t + LANES <= count; t += LANES) {
    const int* c = columns + t;
    for (int p = 0; p < 3; ++p) fetch(v1 + AHEAD + 5 * t + 8 * p);
    const bool consecutive = c[3] - c[0] == 3;
    const double* xc = x + c[0] - 1;
    const Lanes xt =
        consecutive ? load<LANES>(xc) : Lanes{xc[0], x[c[1] - 1], x[c[2] - 1], x[c[3] - 1]};
    const Lanes b1 = load<LANES>(v1 + t), b2 = load<LANES>(v2 + t), b3 = load<LANES>(v3 + t),
                b4 = load<LANES>(v4 + t), b5 = load<LANES>(v5 + t);
    s1 += b1 * xt;
    s2 += b2 * xt;
    s3 += b3 * xt;
    s4 += b4 * xt;
    s5 += b5 * xt;
    const Lanes add = ((b1 * a1 + b2 * a2) + (b3 * a3 + b4 * a4)) + b5 * a5;
    if (consecutive) {
      double* yc = y + c[0] - 1;
      store(yc, load<LANES>(yc) + add);
    } else {
      for (int l = 0; l < LANES; ++l) y[c[l] - 1] += add[l];
    }
  }
  double r1 = 0, r2 = 0, r3 = 0, r4 = 0, r5 = 0;  // the columns that fill no vector
  for (; t < count; ++t) {
    const double xt = x[columns[t] - 1];
    r1 += v1[t] * xt;
    r2 += v2[t] * xt;
    r3 += v3[t] * xt;
    r4 += v4[t] * xt;
    r5 += v5[t] * xt;
    y[columns[t] - 1] += ((v1[t] * a1 + v2[t] * a2) + (v3[t] * a3 + v4[t] * a4)) + v5[t] * a5;
  }
  sums[0] = r1 + ((s1[0] + s1[1]) + (s1[2] + s1[3]));
  sums[1] = r2 + ((s2[0] + s2[1]) + (s2[2] + s2[3]));
  sums[2] = r3 + ((s3[0] + s3[1]) + (s3[2] + s3[3]));
  sums[3] = r4 + ((s4[0] + s4[1]) + (s4[2] + s4[3]));
  sums[4] = r5 + ((s5[0] + s5[1]) + (s5[2] + s5[3]));
}
