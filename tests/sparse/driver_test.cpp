#include "sparse/driver.h"

#include <gtest/gtest.h>

#include <functional>

#include "sparse/matrices.h"

using namespace zelvo;

// A call of the driver with its parameters by name; all but ido are good.
struct Call {
  SmallMatrix m = small_matrix(6, {{1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}});
  int max_fac_store = 1, matrix_number = 1, matrix_type = 2, neqns = 6, nb = 1;
  DriverParameters iparam{{1, 2, 1, 0, 0, 0}};
  std::vector<double> b = std::vector<double>(6, 1.0), x = std::vector<double>(6);

  int operator()(PointerBlock& pt, int ido) {
    int error = 99;
    sparse_driver(pt, max_fac_store, matrix_number, matrix_type, ido, neqns, m.a.data(),
                  m.ia.data(), m.ja.data(), nullptr, nb, iparam, 0, b.data(), x.data(), error);
    return error;
  }
};

TEST(Driver, ChecksItsInputInOrder) {
  const struct {
    int first, ido, detail;  // a call before, 0 none; the bad call, and what it leaves
    std::function<void(Call&)> spoil = [](Call&) {};
  } cases[] = {
      {0, -1, 1000},
      {0, 0, 1000},
      {0, 22, 100000},
      {0, -2, 10000},
      {12, 34, 1, [](Call& c) { c.max_fac_store = 9; }},
      {12, 33, 2, [](Call& c) { c.max_fac_store = c.matrix_number = 2; }},
      {12, 33, 3, [](Call& c) { c.matrix_number = 2; }},
      {12, 33, 4, [](Call& c) { c.matrix_number = 0, c.matrix_type = 7; }},
      {12, 33, 5, [](Call& c) { c.matrix_type = 0; }},
      {12, 33, 6, [](Call& c) { c.matrix_type = 1; }},
      {12, 33, 7, [](Call& c) { c.neqns = 5; }},
      {12, 11, 8, [](Call& c) { c.neqns = 0; }},
      {12, 33, 9, [](Call& c) { c.m.ia[6] = 6; }},
      {12, 33, 10, [](Call& c) { c.nb = 0; }},
      {12, 33, 11, [](Call& c) { c.iparam(6) = 2, c.iparam(2) = 3; }},
      {12, 33, 12, [](Call& c) { c.iparam(2) = 3; }},
      {12, 14, 13},
      {12, 21, 13},
      {12, 0, 100, [](Call& c) { c.matrix_number = 2; }},
      {12, 11, 2000, [](Call& c) { c.matrix_type = 1; }},  // no storage
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
  for (int i = 0; i < 6; ++i) EXPECT_DOUBLE_EQ(call.x[i], x[i] / 2);
  call.matrix_type = -2;               // may change
  call.iparam = {{0, 7, 0, 0, 1, 1}};  // entries 2 and 5 are not read, and b is overwritten
  ASSERT_EQ(call(pt, 23), 0);
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(call.b[i], x[i] / 2, 1e-15);
  EXPECT_EQ(call(pt, -1), 0);
}
