// Whole runs of the program: console, files and status.
#include <gtest/gtest.h>

#include <filesystem>

#include "cli/program.h"
#include "support/input_text.h"

namespace {

ProgramRun run_of(const WorkDirectory& dir, const InputText& input) {
  dir.write("zvinp.txt", input.text());
  return run_program_in(dir, StandardInput::TERMINAL);
}

// A sound file in which every freedom of the record syntax is used.
const char* const FREE_STYLE =
    "\xEF\xBB\xBF* the girder\r\n"
    "prname\r\n\"a ''short'' girder\"\r\n"
    "ngird 7\r\n1,\tone\r\n"
    "\r\nlgbr\r\n\r\n245 cut to 240\r\n"
    "secdim\r\n60.D0, 7.2+1\r\n84. 12\r\n144,8/\r\n"
    "webthick\r\n1\r\n240, 1*0.5\r\n"
    "botfthick\r\n2\r\n2*120\r\n120 1\r\n"
    "tfthick\r\n1\r\n240\r\n1.5E+00 in\r\n"
    "lgbr\r\n480\r\n"
    "internal_brace\r\n0\r\n"
    "support\r\n2\r\n,\r\n250\r\n"
    "studs\r\n1\r\n240 12 3\r\n"
    "buckle\r\n.false. 1\r\n/\r\n"
    "pour_seq\r\n1\r\n1\r\n240\r\n3*1.\r\n0\r\n"
    "end of the file\r\n";

}  // namespace

TEST(Program, RunsAStageAndWritesItsResults) {
  const WorkDirectory dir;
  const ProgramRun run = run_of(dir, one_girder_input().set("pour_seq", "1\n1\n240\n.1 .001 1\n1"));
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_FALSE(run.waited_for_key);
  const std::string end = " Post-processing of Top Lateral Forces Completed\n";
  EXPECT_EQ(run.out.substr(run.out.size() - end.size()), end);
  for (const char* name : {"rxn0987.txt", "axf0987.txt", "def0987.txt", "sec0987.txt",
                           "str0987.txt", "ibr0987.txt", "rot0987.txt"})
    EXPECT_EQ(dir.read(name).substr(0, 4), " run") << name;
  EXPECT_EQ(dir.read("ebr0987.txt") + dir.read("csc0987.txt"), "");
}

TEST(Program, TakesEveryFreedomOfTheRecordSyntax) {
  const WorkDirectory dir;
  dir.write("zvinp.txt", FREE_STYLE);
  const ProgramRun run = run_program_in(dir, StandardInput::CLOSED);
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("        1134  nodes\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(" Post-processing of Support Reactions Completed\n"), std::string::npos);
  EXPECT_NE(run.err.find("warning: lgbr: given again"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("must be"), std::string::npos) << run.err;
}

TEST(Program, EndsWithTheModelIfNoAnalysisIsAskedFor) {
  const WorkDirectory dir;
  const ProgramRun run = run_of(dir, two_girder_input().set("pour_seq", "-1\n1\n240\n1"));
  EXPECT_EQ(run.status, 0);
  const std::string end = " Connectivity Process Completed\n";
  EXPECT_EQ(run.out.substr(run.out.size() - end.size()), end);
}

TEST(Program, GoesOnAfterAMechanismWithZeroResults) {
  const WorkDirectory dir;
  const ProgramRun run =
      run_of(dir, one_girder_input().set("support", "0").set("pour_seq", "1\n1\n240\n1 1 1\n1"));
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find(" Solver Step 3 of 6 - Reordering Completed\n Solver Returned Error Code"),
            std::string::npos)
      << run.out;
  EXPECT_NE(dir.read("def0987.txt").find("       240        0.00\n"), std::string::npos);
}

TEST(Program, NamesTheStageWhoseDisplacementsAreNotFinite) {
  const WorkDirectory dir;
  const ProgramRun run = run_of(
      dir, one_girder_input().set("buckle", "F 3\n2").set("pour_seq", "1\n1\n240\n1 1 1e308\n0"));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "zelvo: analysis 1: the displacements are not finite after the solution\n");
}

TEST(Program, EndsWithStatus74IfAResultFileCannotTakeItsBlock) {
  const WorkDirectory dir;
  std::filesystem::create_symlink("/dev/full", dir.path("run/sec0987.txt"));
  const ProgramRun run = run_of(dir, one_girder_input());
  EXPECT_EQ(run.status, 74);
  EXPECT_EQ(run.err, "zelvo: sec0987.txt: No space left on device\n");
}
