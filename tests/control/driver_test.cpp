#include "control/driver.h"

#include <gtest/gtest.h>

#include "control/input_check.h"
#include "support/input_text.h"

namespace {

// The smallest girder with two bays; three stages, of which the second repeats the deck and studs
// of the first.
InputText three_stages() {
  return one_girder_input()
      .set("lgbr", "48")
      .set("webthick", "1\n48 .5")
      .set("botfthick", "1\n48 1")
      .set("tfthick", "1\n48 1")
      .set("internal_brace", "1\n24 1 5")
      .set("top_lateral", "0")
      .set("web_stiffener", "0")
      .set("support", "2\n0\n48")
      .set("studs", "1\n48 12 3")
      .set("pour_seq", "3\n2\n24\n24\n.1 .01 1\n.1 .01 0\n.1 .01 0\n.1 .01 2\n9 .01 0\n.1 .01 0\n1")
      .set("buckle", "F 1\n2");
}

struct Session {
  Run run;
  std::string lines;  // of the console
  explicit Session(const InputText& input) {
    Input in;
    EXPECT_EQ(read_input(input.text(), in), ReadOutcome::COMPLETE);
    check_input(in);
    EXPECT_EQ(note_lines(in.notes), "");
    run.model = std::move(in.model);
    testing::internal::CaptureStdout();
    generate_model(run);
    lines = testing::internal::GetCapturedStdout();
  }
  void analyse(int k) {
    testing::internal::CaptureStdout();
    run_analysis(run, k);
    lines = testing::internal::GetCapturedStdout();
  }
  bool wrote(const std::string& line) const { return lines.find(line + "\n") != std::string::npos; }
  double load() const {  // total downward load, kips
    double sum = 0;
    for (int n = 1; n <= run.nodes.nnode; ++n) sum -= run.F(5 * (n - 1) + 2);
    return sum;
  }
};

double largest_difference(const Vector<double>& a, const Vector<double>& b, double factor) {
  double largest = 0;
  for (int i = 1; i <= a.size(); ++i) largest = std::max(largest, std::abs(a(i) - factor * b(i)));
  return largest;
}

}  // namespace

TEST(Driver, PrintsTheModelSummary) {
  EXPECT_EQ(Session(three_stages()).lines,
            " Zelvo 2.0 FE Model has:\n"
            "           1  straight girder\n"
            "         270  nodes\n"
            "          52  shell elements\n"
            "           1  internal brace elements\n"
            "           0  external brace elements\n"
            "           0  top lateral elements\n"
            "           0  web stiffener elements\n"
            "          30  stud elements\n"
            "           2  support elements\n"
            "          85  total elements\n"
            " Connectivity Process Completed\n");
  EXPECT_TRUE(Session(two_girder_input().set("rcurv", "9600"))
                  .wrote("           2  curved girders\n        2247  nodes"));
}

TEST(Driver, KeepsTheStiffnessWhileDeckAndStudsStayTheSame) {
  Session s(three_stages());
  EXPECT_FALSE(stiffness_holds(s.run.model, 1));
  EXPECT_TRUE(stiffness_holds(s.run.model, 2));
  EXPECT_FALSE(stiffness_holds(s.run.model, 3));
  s.run.model.pour_k(2, 2) = 0.011;
  EXPECT_FALSE(stiffness_holds(s.run.model, 2));
  s.run.model.pour_k(2, 2) = 0.01;
  s.analyse(1);
  EXPECT_TRUE(s.wrote(" Start of Analysis Number 1"));
  EXPECT_TRUE(s.wrote(" Assembly of Internal Braces Completed\n Assembly of Supports Completed"));
  EXPECT_FALSE(s.wrote(" Assembly of Top Laterals Completed"));
  const Vector<double> K = s.run.K;
  s.analyse(2);
  EXPECT_TRUE(s.wrote(" Assembly Completed in Analysis 1\n Formation of Load Vector Completed"));
  EXPECT_EQ(largest_difference(K, s.run.K, 1), 0) << "penalties are not added twice";
  s.analyse(3);
  EXPECT_TRUE(s.wrote(" Assembly of Stud Elements Completed"));
  EXPECT_FALSE(s.wrote(" Assembly Completed in Analysis 2"));
}

TEST(Driver, LoadsTheSelfWeightOnceAndEachStageWithItsOwnLoads) {
  Session s(three_stages());
  s.analyse(1);
  const double with_weight = s.load();
  EXPECT_GT(with_weight, 2.1);  // 1 kip/ft on 2 ft, and the steel
  s.analyse(2);
  EXPECT_NEAR(s.load(), 4.0, 1e-12);
  s.analyse(3);
  EXPECT_EQ(s.load(), 0.0);
  EXPECT_EQ(*std::max_element(s.run.U.begin(), s.run.U.end()), 0.0);
}

TEST(Driver, AddsUpTheLoadsOfTheStagesAndScalesTheirResultsIfBucklingIsChecked) {
  Session plain(three_stages()), checked(three_stages().set("buckle", "T 1\n1"));
  plain.analyse(1);
  const double first = plain.load();
  checked.analyse(1);
  EXPECT_EQ(checked.run.model.solver_type, 2);
  EXPECT_EQ(checked.run.model.tol, 9.999999747378752e-05);
  EXPECT_EQ(checked.run.model.sigma, 0.02);
  const double factor = checked.run.eigval(1);
  EXPECT_NE(factor, 0.0);
  EXPECT_LT(largest_difference(checked.run.U, plain.run.U, factor), 1e-9 * std::abs(factor));
  checked.analyse(2);
  EXPECT_NEAR(checked.load(), first + 4.0, 1e-12);
  const std::size_t shape = checked.lines.find("Post-processing of Buckled Shape Completed");
  const std::size_t deflections = checked.lines.find("Post-processing of Deflections Completed");
  const std::size_t reactions =
      checked.lines.find("Post-processing of Support Reactions Completed");
  const std::size_t sections = checked.lines.find("Post-processing of Cross Sectional Forces");
  EXPECT_TRUE(shape < deflections && deflections < reactions && reactions < sections);
}

TEST(Driver, WritesABlockPerStageIntoTheFilesThatItsModelNeeds) {
  Session s(three_stages());
  s.analyse(1);
  const ResultFiles& f = s.run.files;
  for (const ResultFile* file : {&f.rxn, &f.def, &f.sec, &f.str, &f.ibr, &f.rot})
    EXPECT_EQ(file->text.substr(0, 4), " run");
  for (const ResultFile* file : {&f.axf, &f.ebr, &f.csc}) EXPECT_EQ(file->text, "");
  const std::size_t one_block = f.def.text.size();
  s.analyse(2);
  EXPECT_EQ(f.def.text.size(), 2 * one_block);
}
