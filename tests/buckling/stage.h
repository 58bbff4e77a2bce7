// One construction stage, assembled and solved, ready for a buckling check.
#pragma once
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "bars/geometric.h"
#include "bars/laterals.h"
#include "bars/studs.h"
#include "bars/supports.h"
#include "buckling/check.h"
#include "shell/assembly.h"
#include "shell/geometric.h"
#include "solution/loads.h"
#include "solution/supports.h"
#include "sparse/solver.h"
#include "support/models.h"

struct Stage {
  Model model;
  Structure structure;
  MatrixPattern pattern;
  Vector<double> K, KG, U;
};

// Solves K x = f.
inline Vector<double> solve(const MatrixPattern& p, const Vector<double>& K,
                            const Vector<double>& f) {
  Vector<double> x(p.n);
  SolverHandle* handle = nullptr;
  solver_create(handle, 0);
  solver_define_structure(handle, SOLVER_SYMMETRIC, p.ia.data(), p.n, p.n, p.ja.data(), p.nnz);
  solver_reorder(handle, 0, nullptr);
  EXPECT_EQ(solver_factor_real(handle, SOLVER_POSITIVE_DEFINITE, K.data()), 0);
  solver_solve_real(handle, 0, f.data(), 1, x.data());
  solver_delete(handle, 0);
  return x;
}

// Stage 1 of the model, without self-weight.
inline Stage make_stage(Model m) {
  Stage s;
  s.structure = generate(m);
  const auto& [nodes, el, prop] = s.structure;
  testing::internal::CaptureStdout();
  s.pattern = build_pattern(nodes.nnode, el);
  s.K = s.KG = Vector<double>(s.pattern.nnz);
  assemble_shells(nodes, el, prop, 1, s.pattern, s.K);
  assemble_ibraces(nodes, el, prop, s.pattern, s.K);
  assemble_ebraces(nodes, el, prop, s.pattern, s.K);
  assemble_laterals(nodes, el, prop, s.pattern, s.K);
  assemble_stiffeners(nodes, el, prop, s.pattern, s.K);
  assemble_supports(nodes, el, s.pattern, s.K);
  assemble_studs(el, prop, 1, s.pattern, s.K);
  apply_supports(m, el, s.pattern, s.K);
  Vector<double> F(s.pattern.n);
  (m.ngird == 2 ? load_two_girders : load_one_girder)(m, 1, false, web_width(m, nodes), F);
  s.U = solve(s.pattern, s.K, F);
  assemble_shell_geometric(nodes, el, prop, 1, s.U, m.ngird, s.pattern, s.KG);
  assemble_ibraces_geo(nodes, el, prop, s.U, s.pattern, s.KG);
  assemble_ebraces_geo(nodes, el, prop, s.U, s.pattern, s.KG);
  assemble_laterals_geo(nodes, el, prop, s.U, s.pattern, s.KG);
  assemble_stiffeners_geo(nodes, el, prop, s.U, s.pattern, s.KG);
  testing::internal::GetCapturedStdout();
  s.model = std::move(m);
  return s;
}

// What a check leaves and what it says.
struct Check {
  Vector<double> eigval, KG;
  Matrix<double> eigvec;
  std::string console, warnings;
};

// eigval and eigvec begin with the value untouched.
inline Check run_check(const Stage& s, const EigenOptions& options, double untouched = 0) {
  Check c;
  c.KG = s.KG;
  c.eigval = Vector<double>(options.nev);
  c.eigvec = Matrix<double>(s.pattern.n, options.nev);
  for (double& v : c.eigval) v = untouched;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  buckling_solve(s.pattern, s.K, c.KG, options, LANCZOS_VECTORS, c.eigval, c.eigvec);
  c.warnings = testing::internal::GetCapturedStderr();
  c.console = testing::internal::GetCapturedStdout();
  return c;
}
