#include "sparse/driver.h"

#include <gtest/gtest.h>

#include <functional>

#include "sparse/matrices.h"

// A call of the driver with its parameters by name; all but ido are good.
struct Call {
  SmallMatrix m = small_matrix(6, {{1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}});
  int max_fac_store = 1, matrix_number = 1, matrix_type = 2, ido = 11, neqns = 6, nb = 1;
  DriverParameters iparam{{1, 2, 1, 0, 0, 0}};
  std::vector<double> b = std::vector<double>(6, 1.0), x = std::vector<double>(6);

  int operator()(PointerBlock& pt, int with_ido) {
    int error = 99;
    sparse_driver(pt, max_fac_store, matrix_number, matrix_type, with_ido, neqns, m.a.data(),
                  m.ia.data(), m.ja.data(), nullptr, nb, iparam, 0, b.data(), x.data(), error);
    return error;
  }
};

TEST(Driver, RefusesToReleaseBeforeTheFirstAnalysisAndUnknownControlWords) {
  PointerBlock pt;
  Call call;
  EXPECT_EQ(call(pt, -1), DRIVER_BAD_INPUT);
  EXPECT_EQ(pt.detail, 1000);
  EXPECT_EQ(call(pt, 0), DRIVER_BAD_INPUT);
  EXPECT_EQ(call(pt, 22), DRIVER_BAD_INPUT);
  EXPECT_EQ(pt.detail, 100000);  // nothing analysed
  testing::internal::CaptureStdout();
  EXPECT_EQ(call(pt, -2), DRIVER_BAD_INPUT);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "*** error sparse_driver: internal error \n");
  EXPECT_EQ(pt.detail, 10000);
  EXPECT_EQ(call(pt, -1), 0);  // the first call with a stage made the state
  EXPECT_EQ(pt.state, nullptr);
}

TEST(Driver, ChecksItsInputInOrder) {
  const struct {
    int place, ido;
    std::function<void(Call&)> spoil;
  } cases[] = {
      {1, 34, [](Call& c) { c.max_fac_store = 9; }},
      {2, 33, [](Call& c) { c.max_fac_store = c.matrix_number = 2; }},
      {3, 33, [](Call& c) { c.matrix_number = 2; }},
      {4, 33, [](Call& c) { c.matrix_number = 0, c.matrix_type = 7; }},
      {5, 33, [](Call& c) { c.matrix_type = 0; }},
      {6, 33, [](Call& c) { c.matrix_type = 1; }},
      {7, 33, [](Call& c) { c.neqns = 5; }},
      {8, 11, [](Call& c) { c.neqns = 0; }},
      {9, 33, [](Call& c) { c.m.ia[6] = 6; }},
      {10, 33, [](Call& c) { c.nb = 0; }},
      {11, 33, [](Call& c) { c.iparam(6) = 2, c.iparam(2) = 3; }},
      {12, 33, [](Call& c) { c.iparam(2) = 3; }},
      {13, 14, [](Call&) {}},
      {13, 21, [](Call&) {}},
  };
  for (const auto& wrong : cases) {
    PointerBlock pt;
    ASSERT_EQ(Call{}(pt, 12), 0);
    Call call;
    wrong.spoil(call);
    EXPECT_EQ(call(pt, wrong.ido), DRIVER_BAD_INPUT);
    EXPECT_EQ(pt.detail, wrong.place);
    EXPECT_EQ(Call{}(pt, -1), 0);
  }
}

TEST(Driver, AllowsTheChangeToIndefiniteAndRefusesTypesWithoutStorage) {
  PointerBlock pt;
  Call call;
  EXPECT_EQ(call(pt, 12), 0);
  call.matrix_type = -2;
  EXPECT_EQ(call(pt, 23), 0);
  call.matrix_type = 1;
  EXPECT_EQ(call(pt, 11), DRIVER_BAD_INPUT);
  EXPECT_EQ(call(pt, -1), 0);
}

TEST(Driver, FactorsAgainOnASolveOnlyAfterTheFactorWasReleased) {
  PointerBlock pt;
  Call call;
  ASSERT_EQ(call(pt, 13), 0);
  const std::vector<double> x = call.x;
  for (double& value : call.m.a) value *= 2;
  ASSERT_EQ(call(pt, 33), 0);
  EXPECT_EQ(call.x, x);  // the factor of the first values
  ASSERT_EQ(call(pt, 0), 0);
  ASSERT_EQ(call(pt, 33), 0);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_DOUBLE_EQ(call.x[i], x[i] / 2);
  call.matrix_number = 2;
  EXPECT_EQ(call(pt, 0), DRIVER_BAD_INPUT);
  EXPECT_EQ(pt.detail, 100);
  call.iparam = {{0, 7, 0, 0, 1, 1}};  // entries 2 and 5 are not read, and b is overwritten
  call.matrix_number = 1;
  ASSERT_EQ(call(pt, 13), 0);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_DOUBLE_EQ(call.b[i], x[i] / 2);
  EXPECT_EQ(call(pt, -1), 0);
}
