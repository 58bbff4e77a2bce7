#include "construction/buckling.h"

#include <string>

#include "base/vec3.h"
#include "buckling/geometric.h"
#include "solution/loads.h"
#include "solution/stiffness.h"
#include "sparse/solver.h"
#include "support/dense.h"
#include "support/models.h"
#include "support/run.h"
#include "verification/beam.h"

using namespace zelvo;

namespace {

constexpr EigenOptions TIGHT{2, 1, 1.0e-10, 0.0}, ROUGH{1, 1, 1.0e-4, 0.0};

// A model of one girder after its last stage.
struct State {
  Structure structure;
  SymmetricMatrix K, KG;
  Vector<double> history, batch;  // displacements: of the stages in turn, of all loads at once
  OwnedSolver solver;             // holds K
  LastInverse last;
  HistoryCheck check(const Vector<double>& U, const EigenOptions& options = TIGHT) {
    ShiftedStiffness shifted;
    CheckWork work{last, KG, shifted};
    return check_state(structure, {K, solver.handle}, U, 1, options, work);
  }
};

Vector<double> solve(SolverHandle* factors, const Vector<double>& F) {
  Vector<double> u(F.size());
  EXPECT_EQ(solver_solve_real(factors, 0, F.data(), 1, u.data()), 0);
  return u;
}

void build(const Model& m, State& s) {
  s.structure = generate_structure(m);
  s.K = matrix_of(s.structure);
  s.KG = {s.K.pattern, s.K.values};
  const MatrixPattern& p = *s.K.pattern;
  Vector<double> all(p.n);
  s.history = Vector<double>(p.n);
  solver_create(s.solver.handle, 0);
  solver_define_structure(s.solver.handle, SOLVER_SYMMETRIC, p.ia.data(), p.n, p.n, p.ja.data(),
                          p.nnz);
  solver_reorder(s.solver.handle, 0, nullptr);
  for (int k = 1; k <= m.nanal; ++k) {
    assemble_stiffness(m, s.structure, k, s.last, no_progress, s.K);
    ASSERT_EQ(solver_factor_real(s.solver.handle, SOLVER_POSITIVE_DEFINITE, s.K.values.data()), 0);
    Vector<double> F(p.n);
    load_one_girder(m, k, SteelWeight::LEFT_OUT, web_width(s.structure), F);
    const Vector<double> u = solve(s.solver.handle, F);
    for (int i = 1; i <= p.n; ++i) s.history(i) += u(i), all(i) += F(i);
  }
  s.batch = solve(s.solver.handle, all);
}

// The deck hardens in stage 2, which adds its own share of the load.
void harden(Model& m, double load, double added) {
  set_stages(m, {m.lgbr}, 2, 0.1, 0.0001, load);
  m.pour_e(2, 1) = 3600;
  m.pour_k(2, 1) = 20000;
  m.pour_load(2, 1) = added;
}

}  // namespace

TEST(HistoryCheck, OfStagesOfEqualStiffnessIsTheBatchCheckOfTheirSum) {
  for (const int stages : {1, 3}) {
    Model m = one_girder(96);
    brace_every(m, 48, Laterals::CROSSED);
    set_stages(m, {96}, stages);
    m.buckle = true;
    m.solver_type = 1;
    m.tol = 1e-10;
    State s;
    build(m, s);
    const HistoryCheck c = s.check(s.history);
    const Bridge b = analyse(m);
    for (int i = 1; i <= 2; ++i) {
      EXPECT_NEAR(c.modes.eigval(i) / b.results(stages).buckling.modes.eigval(i), 1, 1e-8);
      EXPECT_LT(c.quality(i).residual, 1e-6);
    }
  }
}

// The stage itself brings no load: what buckles was locked in before the deck hardened.
TEST(HistoryCheck, UnderLockedInCompressionAloneGivesTheFactorsOfADenseEigensolver) {
  Model m = one_girder(48);
  brace_every(m, 24, Laterals::CROSSED);
  m.load_pattern = 3;
  harden(m, 3, 0);
  State s;
  build(m, s);
  assemble_geometric(s.structure, 2, s.history, s.last, no_progress, s.KG);
  const std::vector<double> exact = dense_factors(s.K, s.KG, 2);
  const HistoryCheck c = s.check(s.history);
  for (int i = 1; i <= 2; ++i)
    EXPECT_NEAR(c.modes.eigval(i) / exact[static_cast<std::size_t>(i - 1)], 1, 1e-8);
  // The top flange beside the hard deck would hardly be stressed by the same load.
  EXPECT_GT(s.check(s.batch).modes.eigval(1), 2 * c.modes.eigval(1));
}

// The mode is that of the bottom flange alone, so factors are as one over its stress: y/I of the
// steel for what came before the deck hardened, y/I of the composite section for what came then.
TEST(HistoryCheck, DiffersFromTheBatchRuleAsTheStressOfTheFlangeThatBuckles) {
  constexpr double L = 480, FIRST = -1, SECOND = -0.5;  // upward: the bottom flange is compressed
  Model m = one_girder(int(L));
  set_webs(m, {{L, 0.75}});
  set_bottom(m, {{L, 0.375}});
  brace_every(m, 120);
  harden(m, FIRST, SECOND);
  State s;
  build(m, s);
  const BeamSection steel = tub_section(m);
  const double deck = m.secdim.deck_width * 8 * 3600 / STEEL_E, arm = 64 - steel.y;
  const double A = steel.A + deck, y = (steel.A * steel.y + deck * 64) / A;
  const double I = steel.I + deck * 64 / 12 + steel.A * deck / A * arm * arm;
  const double ratio = (FIRST * steel.y / steel.I + SECOND * y / I) / ((FIRST + SECOND) * y / I);
  const HistoryCheck c = s.check(s.history, ROUGH);
  EXPECT_NEAR(s.check(s.batch, ROUGH).modes.eigval(1) / c.modes.eigval(1), ratio, 0.01 * ratio);
  EXPECT_EQ(c.nature[0].kind, ModeKind::PLATE);
  EXPECT_EQ(c.nature[0].plate, Plate::BOTTOM_FLANGE);
  EXPECT_NEAR(c.nature[0].position, L / 2, 60);
}

TEST(HistoryCheck, NamesWhatBucklesAndWhatTheFactorMeans) {
  Model slender = one_girder(720), braced = one_girder(48);
  slender.secdim = {24, 30, 42, 8, 144, 8};
  set_webs(slender, {{720, 0.75}});
  brace_every(slender, 48);
  brace_every(braced, 24);
  braced.ib_area(1) = 1e5;
  State girder, frame;
  build(slender, girder);
  build(braced, frame);
  HistoryCheck c = girder.check(girder.history, ROUGH);
  EXPECT_EQ(c.nature[0].kind, ModeKind::GIRDER);
  EXPECT_NEAR(c.nature[0].position, 360, 12);
  c.modes.eigval(1) = -2;
  EXPECT_NE(check_remarks(c)[0].find("negative"), std::string::npos);
  // A stiff frame whose top corners are pressed together.
  Vector<double> U(frame.K.n());
  const GirderPattern& g = ONE_GIRDER.girder[0];
  for (const int top : {g.left_top(), g.right_top()})
    U(equation(2 * ONE_GIRDER.nodes + top, 1)) = top == g.left_top() ? 0.01 : -0.01;
  const HistoryCheck pressed = frame.check(U, SHARP_CHECK);
  EXPECT_EQ(pressed.nature[0].kind, ModeKind::FRAME);
  EXPECT_EQ(pressed.nature[0].position, 24);
  EXPECT_NE(check_remarks(pressed)[0].find("below 1"), std::string::npos);
  U.clear();
  EXPECT_NE(check_remarks(frame.check(U))[0].find("no steel is stressed"), std::string::npos);
}

// One part each, on the second of two curved girders: a roll about a pole 200 in below, the right
// flange sideways, a half wave of the left web.
TEST(ModeNature, IsThePartOfTheShapeThatIsLargest) {
  const Structure s = generate_structure(two_girders(120, 1200));
  const GirderPattern& g = TWO_GIRDERS.girder[1];
  const int before = 4 * TWO_GIRDERS.nodes;
  const Vec3 across = column3(s.nodes.vt1, before + g.bottom_centre());
  Vector<double> x(NDOF * s.nodes.nnode);
  const auto push = [&](int m, double sideways, double up) {
    for (int i = 1; i <= 3; ++i)
      x(equation(before + m, i)) = sideways * across(i) + (i == 2 ? up : 0);
  };
  const auto is = [&](ModeKind kind, int side) {
    const ModeNature n = mode_nature(s, x.data());
    EXPECT_EQ(n.kind, kind);
    EXPECT_EQ(n.girder, 2);
    EXPECT_EQ(n.side, side);
    EXPECT_EQ(n.position, 48);
    x.clear();
    return n;
  };
  for (int m = g.first; m < g.first + GirderPattern::NODES; ++m) {
    const Vec3 p = column3(s.nodes.xyz, before + m);
    push(m, -0.01 * (p(2) + 200),
         0.01 * dot(p - column3(s.nodes.xyz, before + g.bottom_centre()), across));
  }
  EXPECT_NEAR(is(ModeKind::GIRDER, 0).share, 1, 1e-12);
  for (int i = 1; i <= 4; ++i) push(g.right_flange(i), 1, 0);
  push(g.right_top(), 1, 0);
  EXPECT_EQ(is(ModeKind::FLANGE, 2).plate, Plate::TOP_FLANGE);
  for (int i = 1; i < 8; ++i) push(g.left_top() + i, i * (8 - i), 0);
  const ModeNature web = is(ModeKind::PLATE, 1);
  EXPECT_EQ(web.plate, Plate::WEB);
  EXPECT_NE(web.remark, "");
}

TEST(SoftestModel, HasTheSmallestModulusAndStudsOfEachSegment) {
  Model m = one_girder(96);
  set_stages(m, {48, 48}, 2, 5, 7);
  m.pour_e(2, 1) = 2;
  m.pour_k(1, 2) = 1;
  const Model soft = softest_model(m);
  for (int k = 1; k <= 2; ++k) {
    EXPECT_EQ(soft.pour_e(k, 1) + 10 * soft.pour_e(k, 2), 52);
    EXPECT_EQ(soft.pour_k(k, 1) + 10 * soft.pour_k(k, 2), 17);
  }
}
