// What holds of every bridge, on bridges by chance. ZELVO_MODELS and ZELVO_SEED in the environment
// ask for more of them, and for others.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "models/random_model.h"
#include "support/run.h"

using namespace zelvo;

namespace {

#ifdef __SANITIZE_ADDRESS__  // ten times as slow
constexpr int FEW = 5;
#else
constexpr int FEW = 50;
#endif
constexpr int MOST_BAYS = 5;
constexpr std::uint64_t FIRST_SEED = 20260501;

std::uint64_t setting(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

// Calls judge(model) for each, and names the seed of the first that fails.
template <class Judge>
void each_model(Judge judge) {
  const std::uint64_t first = setting("ZELVO_SEED", FIRST_SEED), n = setting("ZELVO_MODELS", FEW);
  for (std::uint64_t seed = first; seed < first + n && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("ZELVO_MODELS=1 ZELVO_SEED=" + std::to_string(seed));
    judge(random_model(seed, MOST_BAYS));
  }
}

double largest(const Vector<double>& v) {
  double most = 0;
  for (const double x : v) most = std::max(most, std::abs(x));
  return most;
}
double largest(const Matrix<double>& m) {
  double most = 0;
  for (int j = 1; j <= m.cols(); ++j)
    for (int i = 1; i <= m.rows(); ++i) most = std::max(most, std::abs(m(i, j)));
  return most;
}

// The same model with one stage alone.
Model stage_alone(const Model& m, int k) {
  Model alone = m;
  alone.nanal = 1;
  alone.selfwt = m.selfwt && k == 1;
  for (Matrix<double> Model::*table : {&Model::pour_e, &Model::pour_k, &Model::pour_load}) {
    alone.*table = Matrix<double>(1, m.npour);
    for (int j = 1; j <= m.npour; ++j) (alone.*table)(1, j) = (m.*table)(k, j);
  }
  return alone;
}

void multiply_loads(Model& m, double by) {
  for (int k = 1; k <= m.nanal; ++k)
    for (int j = 1; j <= m.npour; ++j) m.pour_load(k, j) *= by;
}

// As mirrored along the bridge. A station between two segments takes its studs from the later one,
// and half a row of the weight of the first plates is taken back at their end: both are left out.
Model even_studs(Model m) {
  set_studs(m, {{double(m.lgbr), 12, 3}});
  for (int k = 1; k <= m.nanal; ++k)
    for (int j = 1; j <= m.npour; ++j) m.pour_k(k, j) = m.pour_k(k, 1);
  m.selfwt = false;
  return m;
}

Model mirrored(Model m) {
  for (Vector<int>* at : {&m.ib_pos, &m.eb_pos, &m.ws_pos, &m.supp_pos})
    for (int& x : *at) x = m.lgbr - x;
  for (int i = 1; i <= m.nlat; ++i) {
    std::swap(m.lat_from(i), m.lat_to(i));
    m.lat_from(i) = m.lgbr - m.lat_from(i);
    m.lat_to(i) = m.lgbr - m.lat_to(i);
    m.lat_type(i) = 3 - m.lat_type(i);
  }
  for (Vector<int>* lengths : {&m.web_len, &m.botf_len, &m.topf_len, &m.pour_len})
    std::reverse(lengths->begin(), lengths->end());
  for (Vector<double>* thicknesses : {&m.web_t, &m.botf_t, &m.topf_t})
    std::reverse(thicknesses->begin(), thicknesses->end());
  for (Matrix<double>* table : {&m.pour_e, &m.pour_load})
    for (int k = 1; k <= m.nanal; ++k)
      for (int j = 1; j <= m.npour / 2; ++j)
        std::swap((*table)(k, j), (*table)(k, m.npour + 1 - j));
  return m;
}

// Largest difference of b's table from a's, read from the other end (sign: what mirrors to what).
double mirror_gap(const Matrix<double>& a, const Matrix<double>& b, double sign) {
  double gap = 0;
  for (int g = 1; g <= a.cols(); ++g)
    for (int i = 1; i <= a.rows(); ++i)
      gap = std::max(gap, std::abs(a(i, g) - sign * b(a.rows() + 1 - i, g)));
  return gap;
}

double load_of(const Bridge& b) {
  double sum = 0;
  for (std::int64_t i = 2; i <= b.run.F.size(); i += NDOF) sum -= b.run.F(i);
  return sum;
}

}  // namespace

TEST(RandomModels, CarryTheirLoadsToTheirSupports) {
  each_model([](const Model& m) {
    for (int k = 1; k <= m.nanal; ++k) {
      const Bridge b = analyse(stage_alone(m, k));
      double sum = 0;
      for (const double r : b.reactions(1)) sum += r;
      EXPECT_NEAR(sum, load_of(b), 1e-6 * load_of(b)) << k;
    }
  });
}

// Bit for bit: a stage knows nothing of those before, and numbers double without rounding.
TEST(RandomModels, GiveAStageAloneWhatItIsInItsSequenceAndTwiceTheLoadTwiceTheResults) {
  each_model([](Model m) {
    m.selfwt = false;
    const Bridge whole = analyse(m);
    const int k = m.nanal;
    Model twice = stage_alone(m, k);
    const Bridge alone = analyse(twice);
    multiply_loads(twice, 2);
    const Bridge doubled = analyse(twice);
    const Vector<double>& U = whole.stage[static_cast<std::size_t>(k - 1)].U;
    ASSERT_GT(largest(U), 0);
    for (std::int64_t i = 1; i <= U.size(); ++i) {
      ASSERT_EQ(alone.stage[0].U(i), U(i)) << i;
      ASSERT_EQ(doubled.stage[0].U(i), 2 * U(i)) << i;
    }
    EXPECT_EQ(doubled.reactions(1)[0], 2 * whole.reactions(k)[0]);
    EXPECT_EQ(doubled.results(1).sections.moment(2), 2 * whole.results(k).sections.moment(2));
  });
}

TEST(RandomModels, AreMirroredAlongTheBridge) {
  each_model([](const Model& m) {
    const Model there = stage_alone(even_studs(m), m.nanal);
    const Bridge a = analyse(there), b = analyse(mirrored(there));
    const StationDisplacements &u = a.results(1).stations, &v = b.results(1).stations;
    EXPECT_LT(mirror_gap(u.deflection, v.deflection, 1), 1e-7 * largest(u.deflection));
    EXPECT_LT(mirror_gap(u.rotation, v.rotation, 1),
              1e-7 * largest(u.deflection) / m.secdim.bottom_width);
    for (std::size_t i = 0; i < a.reactions(1).size(); ++i)
      EXPECT_NEAR(a.reactions(1)[i], b.reactions(1)[i], 1e-6 * load_of(a)) << i;
  });
}

// Left becomes right, and the first girder the second.
TEST(RandomModels, AreMirroredAcrossAStraightBridge) {
  each_model([](Model m) {
    if (m.curved()) return;
    m = stage_alone(m, m.nanal);
    const Bridge a = analyse(m);
    for (int& type : m.lat_type) type = 3 - type;
    const Bridge b = analyse(m);
    const StationDisplacements &u = a.results(1).stations, &v = b.results(1).stations;
    const double small = 1e-7 * largest(u.deflection);
    for (int g = 1; g <= m.ngird; ++g)
      for (int s = 1; s <= m.nstn(); ++s) {
        EXPECT_NEAR(u.deflection(s, g), v.deflection(s, m.ngird + 1 - g), small) << s;
        EXPECT_NEAR(u.rotation(s, g), -v.rotation(s, m.ngird + 1 - g),
                    small / m.secdim.bottom_width)
            << s;
      }
  });
}

TEST(RandomModels, BuckleAtHalfTheFactorUnderTwiceTheLoadAndByBothKindsAlike) {
  each_model([](Model m) {
    m = stage_alone(m, m.nanal);
    m.selfwt = false;
    m.buckle = true;
    m.nev = 1;
    m.solver_type = 1;
    m.tol = 1e-9;
    const double factor = analyse(m).results(1).buckling.modes.eigval(1);
    ASSERT_TRUE(std::isfinite(factor) && factor > 0) << factor;
    m.solver_type = 2;
    m.sigma = 0.5 * factor;
    EXPECT_NEAR(analyse(m).results(1).buckling.modes.eigval(1) / factor, 1, 1e-5);
    multiply_loads(m, 2);
    m.sigma *= 0.5;
    EXPECT_NEAR(analyse(m).results(1).buckling.modes.eigval(1) / factor, 0.5, 1e-5);
  });
}
