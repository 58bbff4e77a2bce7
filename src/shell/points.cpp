#include "shell/points.h"

namespace zelvo {

namespace {

// Thickness points. The two-point Gauss rule about the middle surface; a deck stands with its whole
// thickness on the director side of its nodes, so there the same rule is moved up by 1.
constexpr double ZETA = 0.5773502691896258;  // 1/sqrt(3)
constexpr double PLATE_ZETA[2] = {-ZETA, ZETA};
constexpr double DECK_ZETA[2] = {0.42264973081037416, 1.5773502691896257};

// A deck is a kind between these, held in single precision.
constexpr double DECK_ABOVE = 1.9f, DECK_BELOW = 2.1f;

struct alignas(32) ZetaLanes {
  double z[SHELL_LANES];
};

// The lanes beyond the last point repeat it.
constexpr int surface_point(int lane) { return lane < SHELL_POINTS ? lane % 9 + 1 : 9; }

constexpr LaneTables make_lane_tables() {
  LaneTables t{};
  for (int l = 0; l < SHELL_LANES; ++l) {
    const int g = surface_point(l);
    for (int i = 1; i <= SHELL_NODES; ++i) {
      t.N[i - 1][l] = SHAPE.shp(i, g);
      t.dxi[i - 1][l] = SHAPE.d(1, i, g);
      t.deta[i - 1][l] = SHAPE.d(2, i, g);
    }
    t.weight[l] = l < SHELL_POINTS ? SHAPE.gwt(g) : 0.0;
  }
  return t;
}

constexpr ZetaLanes make_zeta_lanes(const double (&zeta)[2]) {
  ZetaLanes lanes{};
  for (int l = 0; l < SHELL_LANES; ++l) lanes.z[l] = zeta[l < 9 ? 0 : 1];
  return lanes;
}

constexpr LaneTables LANES = make_lane_tables();
constexpr ZetaLanes PLATE_LANES = make_zeta_lanes(PLATE_ZETA);
constexpr ZetaLanes DECK_LANES = make_zeta_lanes(DECK_ZETA);

}  // namespace

const LaneTables& lane_tables() { return LANES; }

ShellData shell_data(const ShellWork& w) {
  const bool deck = w.kind > DECK_ABOVE && w.kind < DECK_BELOW;
  const double c1 = w.young / (1 - w.poisson * w.poisson);
  return {w.exyz.data(),
          w.evn.data(),
          w.evt1.data(),
          w.evt2.data(),
          w.thick / 2,
          deck ? DECK_LANES.z : PLATE_LANES.z,
          c1,
          w.poisson * c1,
          0.5 * w.young / (1 + w.poisson)};
}

namespace {

// Lane l of a table of 3 x 3 matrices held by rows.
void load(const double (&lanes)[9][SHELL_LANES], int l, Matrix3& m) {
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) m(i, j) = lanes[3 * (i - 1) + j - 1][l];
}
void store(const Matrix3& m, int l, double (&lanes)[9][SHELL_LANES]) {
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) lanes[3 * (i - 1) + j - 1][l] = m(i, j);
}

void point_frames(const ShellData& s, PointFrames& f) { shell_kernels().point_frames(LANES, s, f); }

}  // namespace

int map_points(const ShellData& s, Matrix3& ainv, PointFrames& f) {
  point_frames(s, f);
  bool regular = true;
  for (const double det : f.det) regular &= !(det < DETERMINANT_LIMIT);
  if (regular) {
    load(f.R, SHELL_POINTS - 1, ainv);
    return 0;
  }
  int failures = 0;
  Matrix3 J;
  for (int l = 0; l < SHELL_LANES; ++l) {
    if (l < SHELL_POINTS) {
      load(f.J, l, J);
      f.det[l] = invert3(J, ainv);
      failures += f.det[l] < DETERMINANT_LIMIT;
    }
    store(ainv, l, f.R);
  }
  return failures;
}

int map_point(const ShellData& s, int lane, Matrix3& ainv, Matrix3& e) {
  PointFrames f;
  Matrix3 J;
  point_frames(s, f);
  load(f.J, lane, J);
  load(f.e, lane, e);
  return invert3(J, ainv) < DETERMINANT_LIMIT ? 1 : 0;
}

void shell_product(const ShellData& s, const PointFrames& f, ShellMatrix& ke) {
  shell_kernels().shell_product(LANES, s, f, ke.data());
}
void point_stresses(const ShellData& s, const PointFrames& f, const ShellVector& d,
                    PointStresses& S) {
  shell_kernels().point_stresses(LANES, s, f, d.data(), S);
}
void node_forces(const ShellData& s, const PointFrames& f, const PointStresses& S, int node,
                 FixedVector<double, 5>& force) {
  shell_kernels().node_forces(LANES, s, f, S, node - 1, force.data());
}
void gradient_products(const ShellData& s, const PointFrames& f, const PointStresses& S,
                       FixedMatrix<double, 18, 18>& c) {
  shell_kernels().gradient_products(LANES, s, f, S, c.data());
}

}  // namespace zelvo
