// What a user sees of input that cannot be run: words, exit status, result files, key press.
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "cli/program.h"
#include "support/input_text.h"

namespace {

constexpr StandardInput INPUTS[] = {StandardInput::END_OF_FILE, StandardInput::CLOSED,
                                    StandardInput::TERMINAL};
constexpr const char* RESULT_FILES[] = {"rxn0987.txt", "axf0987.txt", "def0987.txt",
                                        "sec0987.txt", "str0987.txt", "ibr0987.txt",
                                        "ebr0987.txt", "rot0987.txt", "csc0987.txt"};

void expect_empty_result_files(const WorkDirectory& dir) {
  for (const char* name : RESULT_FILES) {
    EXPECT_TRUE(dir.has(name)) << name;
    EXPECT_EQ(dir.read(name), "") << name;
  }
}

// A file with a fault, and a part of the line that tells it.
struct FaultyFile {
  std::string text;
  std::string note;
};

FaultyFile with(const char* keyword, const char* records, const char* note) {
  return {one_girder_input().set(keyword, records).text(), note};
}
FaultyFile two_with(const char* keyword, const char* records, const char* note) {
  return {two_girder_input().set(keyword, records).text(), note};
}
FaultyFile without(const char* keyword) {
  return {one_girder_input().erase(keyword).text(),
          std::string(keyword) + ": the keyword is missing"};
}

std::vector<FaultyFile> faulty_files() {
  return {
      {"end\n", "1: ngird: the keyword is missing"},
      without("ngird"),
      without("lgbr"),
      without("secdim"),
      without("webthick"),
      without("support"),
      without("studs"),
      without("pour_seq"),
      with("ngird", "3", "4: ngird: no model has so many girders (3)"),
      with("ngird", "one", "4: ngird: number of girders cannot be converted (one)"),
      with("ngird", "1.0", "4: ngird: number of girders cannot be converted (1.0)"),
      with("lgbr", "-240", "6: lgbr: length is negative (-240)"),
      with("lgbr", "9999999999", "6: lgbr: length is out of range (9999999999)"),
      with("lgbr", "264", "webthick: segment lengths do not add up"),
      with("secdim", "60 72 84 12 144 NaN", "8: secdim: deck thickness is no finite number (NaN)"),
      with("secdim", "60 72 inf 12 144 8", "8: secdim: distance of the web tops is no finite"),
      with("secdim", "60 0 84 12 144 8", "8: secdim: bottom flange width is not positive (0)"),
      with("secdim", "60 72 84 12 144", "9: secdim: a keyword stands in the place of the deck"),
      with("rcurv", "-9600", "rcurv: radius is negative (-9600)"),
      with("rcurv", "50", "rcurv: radius is too small (50)"),
      with("rcurv", "1e999", "rcurv: radius is out of range (1e999)"),
      with("webthick", "2\n96 0,5\n144 .5", "11: webthick row 1: thickness is not positive (0)"),
      with("webthick", "3\n96 .5\n144 .5", "13: webthick row 3: a keyword stands"),
      with("webthick", "2000000000\n240 .5", "12: webthick row 2: a keyword stands"),
      with("botfthick", "-1", "botfthick: number of segments is too small (-1)"),
      with("tfthick", "1\n240 -1", "tfthick row 1: thickness is not positive (-1)"),
      with("internal_brace", "1\n-12 1 5", "internal_brace row 1: position is outside the girder"),
      with("external_brace", "1\n72 1 5", "external_brace: one girder has no external braces"),
      with("top_lateral", "1\n0 0 72 5", "top_lateral row 1: type is none that exists (0)"),
      with("web_stiffener", "1\n999 6 1", "web_stiffener row 1: position is outside the girder"),
      with("support", "2\n0\n480", "support row 2: position is outside the girder (480)"),
      with("studs", "2\n120 12 3\n96 12 3", "studs: segment lengths do not add up"),
      with("studs", "1\n240 -1 3", "studs row 1: spacing is negative (-1)"),
      with("pour_seq", "1\n0\n1", "pour_seq: number of segments is too small (0)"),
      with("pour_seq", "1\n1\n240\n-1 1 1\n0", "pour_seq row 2: deck modulus of analysis 1"),
      with("buckle", "T 1\n-1", "buckle: number of modes is too small (-1)"),
      with("buckle", "1 1\n2", "buckle: buckling switch cannot be converted (1)"),
      two_with("offset", "42", "offset: web tops of the two girders coincide (42)"),
      two_with("offset", "-90", "offset: offset is negative (-90)"),
      two_with("external_brace", "1\n72 1 -5", "external_brace row 1: area is negative (-5)"),
  };
}

}  // namespace

TEST(Program, ReportsAMissingFileAndTouchesNothing) {
  for (const StandardInput input : INPUTS) {
    const WorkDirectory dir;
    const ProgramRun run = run_program_in(dir, input);
    EXPECT_EQ(run.out, " Input file not found. Press any key to exit.\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.waited_for_key, input == StandardInput::TERMINAL);
    for (const char* name : RESULT_FILES) EXPECT_FALSE(dir.has(name)) << name;
  }
}

TEST(Program, ReportsAnEmptyFile) {
  for (const StandardInput input : INPUTS) {
    const WorkDirectory dir;
    dir.write("zvinp.txt", "\n  \t\r\n\n");
    const ProgramRun run = run_program_in(dir, input);
    EXPECT_EQ(run.out, " Input file empty. Press any key to exit.\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.waited_for_key, input == StandardInput::TERMINAL);
    expect_empty_result_files(dir);
  }
}

TEST(Program, ReportsAFileThatEndsTooEarly) {
  const std::string sound = one_girder_input().text();
  const std::string texts[] = {sound.substr(0, sound.size() - 4), "webthick\n2000000000\n96 .5\n",
                               std::string("\x7f\x45\x4c\x46\0\0\1\xff\xfe\n\0\n", 12),
                               std::string(3'000'000, 'x'), "ngird\n1\nlgbr\n"};
  for (const std::string& text : texts) {
    for (const StandardInput input : INPUTS) {
      const WorkDirectory dir;
      dir.write("zvinp.txt", text);
      const ProgramRun run = run_program_in(dir, input);
      EXPECT_EQ(run.out, " Input file error. Press any key to exit.\n");
      EXPECT_NE(run.err.find("the file ends"), std::string::npos) << run.err;
      EXPECT_EQ(run.status, 0);
      EXPECT_EQ(run.waited_for_key, input == StandardInput::TERMINAL);
      expect_empty_result_files(dir);
    }
  }
}

TEST(Program, NamesTheFaultsOfAFileAndEndsWithStatus65WithoutAKey) {
  int next = 0;
  for (const FaultyFile& f : faulty_files()) {
    const WorkDirectory dir;
    dir.write("zvinp.txt", f.text);
    const ProgramRun run = run_program_in(dir, INPUTS[next++ % 3]);
    EXPECT_NE(run.err.find(f.note), std::string::npos) << "wanted " << f.note << "\n" << run.err;
    EXPECT_EQ(run.err.rfind("zvinp.txt:", 0), 0u) << run.err;
    EXPECT_EQ(run.out, "") << f.note;
    EXPECT_EQ(run.status, 65) << f.note;
    EXPECT_FALSE(run.waited_for_key);
    expect_empty_result_files(dir);
  }
  EXPECT_GE(next, 30);
}

TEST(Program, EndsWithStatus71IfAModelIsTooLarge) {
  const WorkDirectory dir;
  const std::string all = "1\n2147483647 ";
  dir.write("zvinp.txt", one_girder_input()
                             .set("lgbr", "2147483647")
                             .set("webthick", all + ".5")
                             .set("botfthick", all + "1")
                             .set("tfthick", all + "1")
                             .set("studs", all + "12 3")
                             .set("support", "2\n0\n2147483647")
                             .set("pour_seq", "1\n1\n2147483647\n1 1 1\n0")
                             .text());
  const ProgramRun run = run_program_in(dir, StandardInput::END_OF_FILE);
  EXPECT_EQ(run.status, 71);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err.rfind("zelvo: no memory for ", 0), 0u) << run.err;
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1);
}

TEST(Program, EndsWithStatus74IfAFileCannotBeReadOrWritten) {
  const std::string sound = one_girder_input().set("pour_seq", "0\n1\n240\n1").text();
  const auto expect_failure = [](const WorkDirectory& dir, const std::string& words,
                                 const char* out = nullptr) {
    const ProgramRun run = run_program_in(dir, StandardInput::END_OF_FILE, out);
    EXPECT_EQ(run.status, 74) << words;
    EXPECT_NE(run.err.find(words), std::string::npos) << run.err;
  };
  const WorkDirectory no_file;
  std::filesystem::create_directory(no_file.path("run/zvinp.txt"));
  expect_failure(no_file, "zelvo: zvinp.txt: Is a directory");
  const WorkDirectory no_result;
  no_result.write("zvinp.txt", sound);
  std::filesystem::create_directory(no_result.path("run/rot0987.txt"));
  expect_failure(no_result, "zelvo: rot0987.txt: Is a directory");
  const WorkDirectory full_console;
  full_console.write("zvinp.txt", sound);
  expect_failure(full_console, "zelvo: standard output: No space left on device", "/dev/full");
}
