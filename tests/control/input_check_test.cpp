#include "control/input_check.h"

#include <gtest/gtest.h>

#include <random>

#include "support/input_text.h"

namespace {

std::string notes_on(const std::string& text, bool doubts_too = false) {
  Input in;
  EXPECT_EQ(read_input(text, in), ReadOutcome::COMPLETE) << text;
  check_input(in);
  if (doubts_too && in.notes.faults.empty()) doubt_input(in);
  return note_lines(in.notes);
}

// One block changed, and what must be said of it: "row R: what" behind line and keyword.
struct Case {
  const char* keyword;
  const char* records;
  int line;  // behind the keyword
  const char* note;
};

void expect_notes(const InputText& sound, const std::vector<Case>& cases, const char* kind) {
  for (const Case& c : cases) {
    InputText input = sound;
    input.set(c.keyword, c.records);
    const std::string expected = "zvinp.txt:" + std::to_string(input.line(c.keyword, c.line)) +
                                 ": " + kind + c.keyword + c.note + "\n";
    EXPECT_EQ(notes_on(input.text(), *kind != '\0'), expected) << c.records;
  }
}

}  // namespace

TEST(InputCheck, FindsNothingInSoundInput) {
  EXPECT_EQ(notes_on(one_girder_input().text()), "");
  EXPECT_EQ(notes_on(two_girder_input().text(), true), "");
}

TEST(InputCheck, NamesEveryMissingKeyword) {
  for (const char* word : {"ngird", "lgbr", "secdim", "webthick", "botfthick", "tfthick", "support",
                           "studs", "pour_seq"}) {
    const InputText input = one_girder_input().erase(word);
    EXPECT_EQ(notes_on(input.text()), "zvinp.txt:" + std::to_string(input.line("end")) + ": " +
                                          word + ": the keyword is missing, must be given\n");
  }
  InputText least = one_girder_input();
  for (const char* word : {"prname", "internal_brace", "top_lateral", "web_stiffener", "buckle"})
    least.erase(word);
  EXPECT_EQ(notes_on(least.text()), "");
}

TEST(InputCheck, RefusesWhatHasNoSoundMeaning) {
  expect_notes(
      one_girder_input(),
      {
          {"ngird", "3", 1, ": no model has so many girders (3), must be 1 or 2"},
          {"ngird", "0", 1, ": no model has so many girders (0), must be 1 or 2"},
          {"secdim", "-60 72 84 12 144 8", 1, ": depth is not positive (-60), must be above 0"},
          {"secdim", "60 72 84 12 144 0", 1,
           ": deck thickness is not positive (0), must be above 0"},
          {"rcurv", "-1200", 1,
           ": radius is negative (-1200), must be 0 for a straight girder, or positive"},
          {"rcurv", "72", 1,
           ": radius is too small (72), must be more than the half width of the structure, 72"},
          {"webthick", "0", 1, ": number of segments is too small (0), must be 1 or more"},
          {"webthick", "1\n96 1", 0,
           ": segment lengths do not add up to the girder length (96 in multiples of 24), must be "
           "240 as lgbr"},
          {"tfthick", "1\n264 1", 0,
           ": segment lengths do not add up to the girder length (264 in multiples of 24), must be "
           "240 as lgbr"},
          {"tfthick", "2\n264 1\n-24 1", 3, " row 2: length is negative (-24), must be 0 or more"},
          {"botfthick", "1\n240 0", 2, " row 1: thickness is not positive (0), must be above 0"},
          {"botfthick", "2\n120 1\n120 -0.5", 3,
           " row 2: thickness is not positive (-0.5), must be above 0"},
          {"studs", "1\n216 12 3", 0,
           ": segment lengths do not add up to the girder length (216 in multiples of 24), must be "
           "240 as lgbr"},
          {"studs", "1\n240 -12 3", 2, " row 1: spacing is negative (-12), must be 0 or more"},
          {"studs", "1\n240 12 -3", 2,
           " row 1: number of studs across is negative (-3), must be 0 or more in the first row"},
          {"support", "-1", 1, ": number of supports is too small (-1), must be 0 or more"},
          {"support", "2\n0\n264", 3,
           " row 2: position is outside the girder (264), must be 0 to 240"},
          {"support", "1\n-24", 2,
           " row 1: position is outside the girder (-24), must be 0 to 240"},
          {"internal_brace", "1\n252 1 5", 2,
           " row 1: position is outside the girder (252), must be 0 to 240"},
          {"internal_brace", "1\n72 1 -5", 2, " row 1: area is negative (-5), must be 0 or more"},
          {"external_brace", "1\n72 1 5", 0,
           ": one girder has no external braces (1 rows), must be left out, or 0 rows"},
          {"top_lateral", "1\n3 0 72 4", 2, " row 1: type is none that exists (3), must be 1 or 2"},
          {"top_lateral", "1\n1 -12 72 4", 2,
           " row 1: first position is outside the girder (-12), must be 0 to 240"},
          {"top_lateral", "1\n1 0 252 4", 2,
           " row 1: second position is outside the girder (252), must be 0 to 240"},
          {"web_stiffener", "1\n120 -6 1", 2, " row 1: width is negative (-6), must be 0 or more"},
          {"pour_seq", "0\n0\n1", 2, ": number of segments is too small (0), must be 1 or more"},
          {"pour_seq", "1\n1\n216\n1 1 1\n1", 0,
           ": segment lengths do not add up to the girder length (216 in multiples of 24), must be "
           "240 as lgbr"},
          {"pour_seq", "2\n1\n240\n1 1 1\n1 -1 1\n1", 5,
           " row 3: stud stiffness of analysis 2 segment 1 is negative (-1), must be 0 or more"},
          {"pour_seq", "1\n1\n240\n-1 1 1\n1", 4,
           " row 2: deck modulus of analysis 1 segment 1 is negative (-1), must be 0 or more"},
          {"buckle", "T 1\n0", 2, ": number of modes is too small (0), must be 1 or more"},
      },
      "");
}

TEST(InputCheck, RefusesGirdersWhoseCornersMeet) {
  expect_notes(
      two_girder_input(),
      {{"offset", "-90", 1, ": offset is negative (-90), must be 0 or more"},
       {"offset", "42", 1,
        ": web tops of the two girders coincide (42), must be other than half the distance "
        "of the web tops"},
       {"offset", "36", 1,
        ": bottom flange corners of the two girders coincide (36), must be other than half "
        "the bottom flange width"},
       {"rcurv", "162", 1,
        ": radius is too small (162), must be more than the half width of the structure, "
        "162"}},
      "");
}

TEST(InputCheck, JudgesBucklingSettingsOnlyIfTheyAreUsed) {
  InputText input = one_girder_input().set("solver", "3 0.01");
  EXPECT_EQ(notes_on(input.set("buckle", "F 1\n-5").text()), "");
  const std::string notes = notes_on(input.set("buckle", "T 1\n2").text());
  EXPECT_NE(notes.find("solver: solver type is none that exists (3), must be 1 or 2, or 0"),
            std::string::npos);
  input.set("solver", "0 0").set("web_stiffener", "1\n0 0 1");
  EXPECT_NE(notes_on(input.text()).find("width is not positive (0)"), std::string::npos);
}

TEST(InputCheck, ReportsAllFaultsByLineAndNoneTwice) {
  const std::string notes = notes_on(one_girder_input()
                                         .set("ngird", "4")
                                         .set("webthick", "2\n96 x\n100 -1")
                                         .set("support", "1\n999")
                                         .erase("studs")
                                         .text());
  EXPECT_EQ(notes,
            "zvinp.txt:4: ngird: no model has so many girders (4), must be 1 or 2\n"
            "zvinp.txt:11: webthick row 1: thickness cannot be converted (x), must be a real\n"
            "zvinp.txt:12: webthick row 2: thickness is not positive (-1), must be above 0\n"
            "zvinp.txt:32: support row 1: position is outside the girder (984), must be 0 to 240\n"
            "zvinp.txt:46: studs: the keyword is missing, must be given\n");
  EXPECT_EQ(notes_on(one_girder_input().set("lgbr", "-240").text()).find("row"), std::string::npos);
}

TEST(InputCheck, DoubtsWhatIsLegalButHardlyMeant) {
  expect_notes(
      one_girder_input(),
      {{"secdim", "60 72 84 12 90 8", 0, ": the deck is narrower than the top flanges (90)"},
       {"secdim", "60 72 84 84 170 8", 0,
        ": the top flanges of a girder meet or overlap (84 wide)"},
       {"rcurv", "100", 0, ": the girder turns through more than a quarter circle (100)"},
       {"support", "1\n0", 0, ": fewer than two supports leave a mechanism"},
       {"support", "0", 0, ": fewer than two supports leave a mechanism"},
       {"support", "3\n0\n240\n10", 4, " row 3: another support stands at this station (0)"},
       {"internal_brace", "1\n72 1 0", 2, " row 1: area is 0: it adds no stiffness"},
       {"botfthick", "2\n240 1\n12 1", 3,
        " row 2: shorter than 24 inches: the segment has no effect"},
       {"studs", "2\n120 12 3\n120 6 -1", 3,
        " row 2: negative number of studs (-1): that of the row before is used"},
       {"pour_seq", "0\n1\n240\n1", 0, ": no analyses: the run ends with the model"},
       {"pour_seq", "1\n1\n240\n0 1 1\n1", 4,
        " row 2: deck modulus is 0: the matrix becomes singular, wet concrete wants a small "
        "number"},
       {"buckle", "T 1\n10", 0, ": the iteration fails with 10 modes or more (10)"},
       {"solver", "7 0.01", 0,
        ": solver type is none that exists (7), 1 and 2 are; it is not used"}},
      "warning: ");
  expect_notes(
      two_girder_input(),
      {{"offset", "48", 0, ": the two girders touch or overlap (48)"},
       {"buckle", "F 2\n2", 0,
        ": the load pattern is not read with two girders (2), loads go to the top flanges"}},
      "warning: ");
  EXPECT_NE(notes_on(one_girder_input().erase("buckle").text(), true)
                .find("pour_seq row 3: loads are not applied: load pattern 0 of the buckle record"),
            std::string::npos);
  const std::string shortest = notes_on(one_girder_input()
                                            .set("lgbr", "23")
                                            .set("webthick", "1\n23 1")
                                            .set("botfthick", "1\n12 1")
                                            .set("tfthick", "1\n0 1")
                                            .set("studs", "1\n0 1 1")
                                            .set("support", "1\n0")
                                            .set("pour_seq", "1\n1\n0\n1 1 0\n1")
                                            .set("internal_brace", "0")
                                            .set("top_lateral", "0")
                                            .set("web_stiffener", "0")
                                            .text(),
                                        true);
  EXPECT_EQ(shortest.find("zvinp.txt:5: warning: lgbr: shorter than 24 inches"), 0u) << shortest;
}

// A few hundred damaged copies of a sound file: characters changed, lines lost, doubled, exchanged.
TEST(InputCheck, SurvivesDamagedFiles) {
  std::mt19937 random(20240501);
  const std::string sound = two_girder_input().set("solver", "2 1e-4\n0.02").text();
  const std::string letters = std::string("0123456789.,-+*/'\"eEdDTF \t\r\nx\xff") + '\0';
  const auto below = [&](std::size_t n) { return random() % n; };
  int complete = 0, faulty = 0;
  for (int mutant = 0; mutant < 600; ++mutant) {
    std::string text = sound;
    for (std::size_t edits = 1 + below(4); edits > 0; --edits) {
      const std::size_t at = below(text.size());
      const std::size_t length = std::min<std::size_t>(below(30), text.size() - at);
      switch (below(4)) {
        case 0:
          text[at] = letters[below(letters.size())];
          break;
        case 1:
          text.erase(at, std::min(length, text.size() - 1));
          break;
        case 2:
          text.insert(below(text.size()), text.substr(at, length));
          break;
        default:
          text.insert(at, std::to_string(random()));
      }
    }
    Input in;
    const ReadOutcome outcome = read_input(text, in);
    EXPECT_FALSE(outcome == ReadOutcome::INPUT_ERROR && in.notes.faults.empty());
    if (outcome != ReadOutcome::COMPLETE) continue;
    check_input(in);
    if (in.notes.faults.empty()) doubt_input(in);
    in.notes.faults.empty() ? ++complete : ++faulty;
    for (const Note& n : in.notes.faults) EXPECT_TRUE(n.line >= 1 && n.line <= in.last_line);
    EXPECT_EQ(in.model.web_len.size(), std::max(in.model.nweb, 0));
    EXPECT_EQ(in.model.pour_e.cols(), in.model.nanal > 0 ? std::max(in.model.npour, 0) : 0);
  }
  EXPECT_GT(complete, 50);
  EXPECT_GT(faulty, 200);
}
