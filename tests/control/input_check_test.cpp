#include "control/input_check.h"
#include "control/input_doubts.h"

#include <gtest/gtest.h>

#include <random>

#include "control/input_doubts.h"
#include "support/faulty_input.h"

using namespace zelvo;

namespace {

std::string notes_on(const std::string& text) {
  Input in;
  EXPECT_EQ(read_input(text, in), ReadOutcome::COMPLETE);
  check_input(in);
  if (in.notes.faults.empty()) doubt_input(in);
  return note_lines(in.notes);
}
std::string notes_on(const InputText& input) { return notes_on(input.text()); }

}  // namespace

TEST(InputCheck, FindsNothingInSoundInput) {
  EXPECT_EQ(notes_on(one_girder_input()), "");
  EXPECT_EQ(notes_on(two_girder_input()), "");
  EXPECT_EQ(notes_on(plain_girder("24").erase("buckle").set("pour_seq", "1\n1\n24\n1 0 0\n0")), "");
  EXPECT_EQ(notes_on(plain_girder("48").set("secdim", "60 100 43.8 1 144 8")), "")
      << "webs that all but fold";
  EXPECT_EQ(notes_on(plain_girder("50")), "") << "the cut to the grid is no doubt by itself";
}

TEST(InputCheck, JudgesBucklingSettingsOnlyIfTheyAreUsed) {
  InputText input = one_girder_input().set("solver", "3 0.01").set("web_stiffener", "1\n0 0 1");
  EXPECT_EQ(notes_on(input.set("buckle", "F 1\n-5")).find("must be"), std::string::npos);
  const std::string notes = notes_on(input.set("buckle", "T 1\n2"));
  EXPECT_NE(notes.find("solver: solver type is none that exists (3), must be"), std::string::npos);
  EXPECT_NE(notes.find("web_stiffener row 1: width is not positive (0)"), std::string::npos);
}

TEST(InputCheck, ReportsAllFaultsByLineAndNoneTwice) {
  EXPECT_EQ(notes_on(one_girder_input()
                         .set("ngird", "4")
                         .set("webthick", "2\n96 x\n100 -1")
                         .set("support", "1\n999")
                         .erase("studs")),
            "zvinp.txt:2: ngird: no model has so many girders (4), must be 1 or 2\n"
            "zvinp.txt:9: webthick row 1: thickness cannot be converted (x), must be a real\n"
            "zvinp.txt:10: webthick row 2: thickness is not positive (-1), must be above 0\n"
            "zvinp.txt:19: support row 1: position is outside the girder (999, cut to 984), must "
            "be 0 to 240\n"
            "zvinp.txt:44: studs: the keyword is missing, must be given\n");
  // By a length that is none, nothing else is judged.
  EXPECT_EQ(notes_on(one_girder_input().set("lgbr", "-5")),
            "zvinp.txt:4: lgbr: length is negative (-5, cut to 0), must be 0 or more\n");
  EXPECT_EQ(notes_on("ngird\n1\nwebthick\n3\n96 x\n"),
            "zvinp.txt:5: webthick row 1: thickness cannot be converted (x), must be a real\n"
            "zvinp.txt:5: webthick row 2: the file ends in the place of the length\n");
}

TEST(InputCheck, DoubtsWhatIsLegalButHardlyMeant) {
  const FaultyInput cases[] = {
      {1, "lgbr", "23", "lgbr: shorter than 24 inches"},
      {1, "secdim", "60 72 84 12 96 8", "secdim: the deck is not wider than the top flanges (96)"},
      {1, "secdim", "60 100 43 1 144 8", "secdim: the bottom flange is too wide for the distance"},
      {1, "secdim", "60 72 84 84 170 8", "secdim: the top flanges of a girder meet or overlap"},
      {1, "rcurv", "100", "rcurv: the girder turns through more than a quarter circle (100)"},
      {1, "support", "0", "support: fewer than two supports leave a mechanism"},
      {1, "support", "3\n0\n240\n10", "support row 3: another support stands at this station (0)"},
      {1, "internal_brace", "1\n79 1 0", "internal_brace row 1: area is 0: it adds no stiffness"},
      {1, "internal_brace", "1\n79 1 0", "internal_brace row 1: position 79 is 72 on the grid"},
      {1, "internal_brace", "-2", "internal_brace: the number of rows is negative (-2): none is"},
      {1, "internal brace", "1\n72 1 4", "(internal brace), perhaps the keyword internal_brace is"},
      {1, "laterals", "1\n1 0 72 4", "is skipped with 2 lines of numbers behind it (laterals)\n"},
      {1, "webthick", "2\n240 1\n0 0", "row 2: shorter than 24 inches: the segment only adds half"},
      {1, "botfthick", "3\n120 1\n12 1\n120 1",
       "row 2: shorter than 24 inches: the segment has no"},
      {1, "studs", "2\n240 12 3\n0 12 9", "row 2: shorter than 24 inches: the segment sets the"},
      {1, "studs", "2\n0 -1 3\n240 12 -1", "row 1: shorter than 24 inches: the segment only hands"},
      {1, "studs", "2\n120 12 3\n120 6 -1", "studs row 2: negative number of studs (-1)"},
      {1, "studs", "3\n0 9 3\n120 0 3\n120 6 0", "studs: no studs anywhere"},
      {1, "webthick", "1\n240 1,5", "webthick row 1: thickness stops at a comma (1,5), the digits"},
      {1, "pour_seq", "0\n1\n240\n1", "pour_seq: no analyses: the run ends with the model"},
      {1, "pour_seq", "1\n1\n240\n0 1 1\n1", "pour_seq row 2: deck modulus is 0"},
      {1, "pour_seq", "1\n2\n0\n240\n-1 1 1\n1 1 1\n1", "modulus, half a foot of its load stands"},
      {1, "pour_seq", "1\n2\n240\n0\n1 1 1\n-1 1 1\n1", ", it sets the stud stiffness of the"},
      {1, "buckle", nullptr, "loads are not applied: load pattern 0"},
      {1, "buckle", "T 1\n10", "buckle: the iteration fails with 10 modes or more (10)"},
      {1, "buckle", "T 1\n9", "buckle: the last of 9 modes hardly converges"},
      {1, "buckle", "T 1\n2\nsolver\n2 .1\n0", "solver: the shift of kind 2 is 0"},
      {1, "solver", "7 0.01", "solver: solver type is none that exists (7), 1 and 2 are"},
      {2, "offset", "48", "offset: the two girders touch or overlap (48)"},
      {2, "buckle", "F 2\n2", "buckle: the load pattern is not read with two girders (2)"}};
  for (const FaultyInput& c : cases) {
    Input in;
    read_input(c.text(), in);
    if (c.keyword != std::string("lgbr")) check_input(in);  // its lists are too long then
    EXPECT_TRUE(in.notes.faults.empty()) << note_lines(in.notes);
    doubt_input(in);
    EXPECT_NE(note_lines(in.notes).find(c.note), std::string::npos) << c.note;
  }
}

TEST(InputCheck, SaysHowManyNotesItLeavesOutAndWhichStagesHaveNoNumber) {
  std::string rows, stages;
  for (int i = 0; i < 1010; ++i) rows += "\n72 1 0";
  for (int k = 0; k < 100; ++k) stages += "\n1 1 1";
  const std::string notes = notes_on(one_girder_input()
                                         .set("internal_brace", "1010" + rows)
                                         .set("pour_seq", "100\n1\n240" + stages + "\n0"));
  EXPECT_NE(notes.find("\nzvinp.txt: and 11 more warnings\n"), std::string::npos);
  EXPECT_NE(notes_on(one_girder_input().set("pour_seq", "100\n1\n240" + stages + "\n0"))
                .find("analyses beyond 99 have no number in some files (100)"),
            std::string::npos);
}

// Damaged copies of a sound file: characters changed, pieces lost or repeated.
TEST(InputCheck, SurvivesDamagedFiles) {
  std::mt19937 random(20240501);
  const auto below = [&](std::size_t n) { return random() % n; };
  const std::string sound = two_girder_input().set("solver", "2 1e-4\n0.02").text();
  const std::string letters("0123456789.,-+*/'\"eEdDTF \t\r\nx\xff\0", 31);
  int complete = 0, faulty = 0;
  for (int mutant = 0; mutant < 600; ++mutant) {
    std::string text = sound;
    for (std::size_t edits = 1 + below(4); edits > 0; --edits) {
      const std::size_t at = below(text.size()), length = below(30);
      if (below(3) > 0)
        text[at] = letters[below(letters.size())];
      else
        text.replace(at, length, text, below(text.size()), below(30)).append(" ");
    }
    Input in;
    const ReadOutcome outcome = read_input(text, in);
    if (outcome == ReadOutcome::INPUT_ERROR) {
      EXPECT_FALSE(in.notes.faults.empty()) << text;
    }
    if (outcome != ReadOutcome::COMPLETE) continue;
    check_input(in);
    if (in.notes.faults.empty()) doubt_input(in);
    in.notes.faults.empty() ? ++complete : ++faulty;
    for (const Note& n : in.notes.faults)
      EXPECT_EQ(n.line, std::clamp(n.line, 1, in.last_line)) << n.text;
  }
  EXPECT_GT(complete, 50);
  EXPECT_GT(faulty, 200);
}
