#include "sparse/driver.h"

#include <gtest/gtest.h>

#include <functional>

#include "sparse/analysis.h"
#include "sparse/matrices.h"

using namespace zelvo;

// A call of the driver with its parameters by name; all but ido are good.
struct Call {
  SmallMatrix m = small_matrix(6, {{1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}});
  int max_fac_store = 1, matrix_number = 1, matrix_type = 2, neqns = 6, nb = 1;
  DriverParameters iparam{{1, 2, 1, 0, 0, 0}};
  std::vector<double> b = std::vector<double>(m.n, 1.0), x = b;

  int operator()(PointerBlock& pt, int ido) {
    int error = 99;
    sparse_driver(pt, max_fac_store, matrix_number, matrix_type, ido, neqns, m.a.data(),
                  m.ia.data(), m.ja.data(), nullptr, nb, iparam, 0, b.data(), x.data(), error);
    return error;
  }
};

TEST(SparseDriver, ChecksItsInputInOrder) {
  const struct {
    int first, ido;  // a call before, 0 none; the bad call
    Detail detail;   // what it leaves
    std::function<void(Call&)> spoil = [](Call&) {};
  } cases[] = {
      {0, -1, NOTHING_TO_RELEASE},
      {0, 0, NOTHING_TO_RELEASE},
      {0, 22, NOT_ANALYSED},
      {0, -2, IDO_BELOW_RELEASE},
      {12, 34, IDO_OUT_OF_RANGE, [](Call& c) { c.max_fac_store = 9; }},
      {12, 33, MORE_FACTORS_THAN_KEPT, [](Call& c) { c.max_fac_store = c.matrix_number = 2; }},
      {12, 33, MATRIX_NUMBER_ABOVE_STORE, [](Call& c) { c.matrix_number = 2; }},
      {12, 33, MATRIX_NUMBER_BELOW_ONE, [](Call& c) { c.matrix_number = 0, c.matrix_type = 7; }},
      {12, 33, MATRIX_TYPE_OUT_OF_RANGE, [](Call& c) { c.matrix_type = 0; }},
      {12, 33, MATRIX_TYPE_CHANGED, [](Call& c) { c.matrix_type = 1; }},
      {12, 33, NEQNS_CHANGED, [](Call& c) { c.neqns = 5; }},
      {12, 11, NEQNS_BELOW_ONE, [](Call& c) { c.neqns = 0; }},
      {12, 33, FEW_STORED_VALUES, [](Call& c) { c.m.ia[6] = 6; }},
      {12, 33, NO_RIGHT_HAND_SIDES, [](Call& c) { c.nb = 0; }},
      {12, 33, BAD_SOLUTION_PLACE, [](Call& c) { c.iparam(6) = 2, c.iparam(2) = 3; }},
      {12, 33, BAD_ORDERING, [](Call& c) { c.iparam(2) = 3; }},
      {12, 14, IDO_WITHOUT_STAGES},
      {12, 21, IDO_WITHOUT_STAGES},
      {12, 0, BAD_MATRIX_NUMBER, [](Call& c) { c.matrix_number = 2; }},
      {12, 11, UNSUPPORTED_TYPE, [](Call& c) { c.matrix_type = 1; }},  // no storage
  };
  for (const auto& wrong : cases) {
    PointerBlock pt;
    Call call;
    EXPECT_EQ(wrong.first == 0 ? 0 : call(pt, wrong.first), 0);
    wrong.spoil(call);
    testing::internal::CaptureStdout();
    EXPECT_EQ(call(pt, wrong.ido), DRIVER_BAD_INPUT);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              wrong.ido == -2 ? "*** error sparse_driver: internal error \n" : "");
    EXPECT_EQ(pt.detail, wrong.detail) << "after " << wrong.first << ", ido " << wrong.ido;
    EXPECT_EQ(pt.state == nullptr ? 0 : call(pt, -1), 0);
    EXPECT_EQ(pt.state, nullptr);
  }
}

TEST(SparseDriver, FactorsAgainOnASolveOnlyAfterTheFactorWasReleased) {
  PointerBlock pt;
  Call call;
  ASSERT_EQ(call(pt, 13), 0);
  const std::vector<double> x = call.x;
  for (double& value : call.m.a) value *= 2;
  ASSERT_EQ(call(pt, 33), 0);
  EXPECT_EQ(call.x, x);  // the factor of the first values
  ASSERT_EQ(call(pt, 0), 0);
  ASSERT_EQ(call(pt, 33), 0);
  for (int i = 0; i < 6; ++i) EXPECT_DOUBLE_EQ(call.x[i], x[i] / 2);
  call.matrix_type = -2;               // may change
  call.iparam = {{0, 7, 0, 0, 1, 1}};  // entries 2 and 5 are not read, and b is overwritten
  ASSERT_EQ(call(pt, 23), 0);
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(call.b[i], x[i] / 2, 1e-15);
  EXPECT_EQ(call(pt, -1), 0);
}

TEST(SparseDriver, SolvesWithTheFactorThatIsThereWhicheverSignTheCallNames) {
  for (const int type : {2, -2}) {
    PointerBlock pt;
    Call call{.matrix_type = type};
    ASSERT_EQ(call(pt, 13), 0);
    const std::vector<double> x = call.x;
    call.matrix_type = -type;
    ASSERT_EQ(call(pt, 33), 0);
    EXPECT_EQ(call.x, x);
    call.m.diagonal(4) = -1;  // a factorization takes the sign of its own call
    EXPECT_EQ(call(pt, 22), type == 2 ? 0 : DRIVER_NUMERIC_FAILED);
    EXPECT_EQ(pt.detail, type == 2 ? NO_DETAIL : BAD_PIVOT);
    EXPECT_EQ(call(pt, -1), 0);
  }
}

TEST(SparseDriver, ReleasesFactorsAtANewAnalysisAndReadsAnOrderOnlyWhenSwitched) {
  PointerBlock pt;
  Call call, other{.m = small_matrix(4, {{1, 2}, {3, 4}}), .matrix_type = -2, .neqns = 4};
  ASSERT_EQ(call(pt, 12), 0);
  other.iparam = {{0, 0, 1, 0, 1, 0}};  // no order is given, and none is read
  ASSERT_EQ(other(pt, 11), 0);
  ASSERT_EQ(other(pt, 33), 0);  // factors first: the old factor is gone
  const SmallMatrix& m = other.m;
  each_value(m, [&](int i, int j, int t) {
    other.b[i - 1] -= m.a[t - 1] * other.x[j - 1];
    if (i != j) other.b[j - 1] -= m.a[t - 1] * other.x[i - 1];
  });
  for (const double residual : other.b) EXPECT_NEAR(residual, 0, 1e-14);
  other.iparam(1) = 1;
  EXPECT_EQ(other(pt, 11), DRIVER_ANALYSIS_FAILED);
  EXPECT_EQ(pt.detail, BAD_PERMUTATION);
  EXPECT_EQ(other(pt, -1), 0);
}

TEST(SparseDriver, CutsNarrowerPanelsForFiveProcessors) {
  std::vector<double> x[2];
  for (const int processors : {4, 5}) {
    PointerBlock pt;
    Call call{.m = small_matrix(1, {}, 200), .neqns = 200};
    call.iparam(3) = processors;
    ASSERT_EQ(call(pt, 13), 0);
    EXPECT_EQ(call(pt, -1), 0);
    x[processors - 4] = call.x;
  }
  for (int i = 0; i < 200; ++i) EXPECT_NEAR(x[0][i], x[1][i], 1e-15);
  EXPECT_NE(x[0], x[1]);  // panels of 80 and 64 columns round in other places
  EXPECT_EQ(panel_limit(4), 80);
  EXPECT_EQ(panel_limit(5), 64);
}
