#include "control/input.h"

#include <gtest/gtest.h>

#include "support/input_text.h"

namespace {

struct Reading {
  Input in;
  ReadOutcome outcome;
  explicit Reading(const std::string& text) : outcome(read_input(text, in)) {}
  const Model& m() const { return in.model; }
  std::string notes() const { return note_lines(in.notes); }
};

std::string read_notes(const std::string& text) { return Reading(text).notes(); }

}  // namespace

TEST(Input, FillsEveryTargetOfTheLanguage) {
  const Reading r(two_girder_input()
                      .set("rcurv", "9600.")
                      .set("buckle", ".TRUE. 3\n4")
                      .set("solver", "2 1d-6\n0.05")
                      .text());
  const Model& m = r.m();
  EXPECT_EQ(r.outcome, ReadOutcome::COMPLETE);
  EXPECT_EQ(r.notes(), "");
  EXPECT_EQ(m.prname, "a short girder");
  EXPECT_EQ(m.ngird, 2);
  EXPECT_EQ(m.rcurv, 9600.0);
  EXPECT_EQ(m.lgbr, 240);
  EXPECT_EQ(m.offset, 90.0);
  EXPECT_EQ(m.secdim(5), 324.0);
  ASSERT_EQ(m.nweb, 2);
  EXPECT_EQ(m.web_len(2), 144);
  EXPECT_EQ(m.web_t(2), 0.625);
  EXPECT_EQ(m.nbotf + m.ntopf, 2);
  EXPECT_EQ(m.botf_t(1), 1.0);
  EXPECT_EQ(m.topf_t(1), 1.5);
  ASSERT_EQ(m.nibrace, 2);
  EXPECT_EQ(m.ib_pos(2), 168);
  EXPECT_EQ(m.ib_type(2), 1);
  EXPECT_EQ(m.ib_area(2), 5.0);
  ASSERT_EQ(m.nebrace, 1);
  EXPECT_EQ(m.eb_pos(1), 120);
  ASSERT_EQ(m.nlat, 2);
  EXPECT_EQ(m.lat_type(2), 2);
  EXPECT_EQ(m.lat_from(2), 72);
  EXPECT_EQ(m.lat_to(2), 168);
  EXPECT_EQ(m.lat_area(2), 4.0);
  ASSERT_EQ(m.nstiff, 1);
  EXPECT_EQ(m.ws_b(1), 6.0);
  EXPECT_EQ(m.ws_t(1), 0.75);
  ASSERT_EQ(m.nsupp, 2);
  EXPECT_EQ(m.supp_pos(2), 240);
  ASSERT_EQ(m.nstudrow, 1);
  EXPECT_EQ(m.stud_spacing(1), 12.0);
  EXPECT_EQ(m.stud_count(1), 3);
  ASSERT_EQ(m.nanal, 2);
  ASSERT_EQ(m.npour, 2);
  EXPECT_EQ(m.pour_e(2, 1), 3600.0);
  EXPECT_EQ(m.pour_k(2, 1), 200.0);
  EXPECT_EQ(m.pour_load(1, 1), 1.0);
  EXPECT_EQ(m.pour_load(1, 2), 0.0);
  EXPECT_EQ(m.pour_load(2, 2), 1.0);
  EXPECT_TRUE(m.selfwt);
  EXPECT_TRUE(m.buckle);
  EXPECT_EQ(m.load_pattern, 3);
  EXPECT_EQ(m.nev, 4);
  EXPECT_EQ(m.solver_type, 2);
  EXPECT_EQ(m.tol, 1e-6);
  EXPECT_EQ(m.sigma, 0.05);
}

TEST(Input, StartsFromTheDefaults) {
  const Reading r("end\n");
  EXPECT_EQ(r.outcome, ReadOutcome::COMPLETE);
  EXPECT_EQ(r.m().nev, 2);
  EXPECT_FALSE(r.m().buckle || r.m().selfwt || r.m().curved());
  EXPECT_EQ(r.m().load_pattern + r.m().solver_type + r.m().nlat, 0);
}

TEST(Input, TellsTheThreeEndsOfAFileApart) {
  for (const char* text : {"", "\n \t\r\n\n", "\xEF\xBB\xBF", "'never closed"})
    EXPECT_EQ(Reading(text).outcome, ReadOutcome::EMPTY) << text;
  for (const char* text : {"ngird\n1\n", "ngird", "comment", "webthick\n3\n96 0.5\n144 .5\n",
                           "webthick\n2000000000\n96 0.5\n", "secdim\n1 2 3", "ENd", " ' end'\n",
                           "pour_seq\n2000000000\n0\n", "prname\n'open\nend\n", "1\n", "/", ","})
    EXPECT_EQ(Reading(text).outcome, ReadOutcome::INPUT_ERROR) << text;
  for (const char* text : {"end", "\n\n end of it", "'end '", "\"end\"\n garbage", "comment\nend",
                           ", end\nend", "/\nend", "1*end"})
    EXPECT_EQ(Reading(text).outcome, ReadOutcome::COMPLETE) << text;
}

TEST(Input, CutsPositionsAndLengthsToTheGridTowardZero) {
  const Reading r(two_girder_input()
                      .set("lgbr", "1000")
                      .set("webthick", "2\n100 1\n-30 1")
                      .set("support", "1\n100")
                      .set("internal_brace", "3\n100 1 1\n110 1 1\n-5 1 1")
                      .set("external_brace", "1\n35 1 1")
                      .set("top_lateral", "1\n1 13 25 1")
                      .set("web_stiffener", "1\n23 1 1")
                      .set("studs", "1\n47 1 1")
                      .set("pour_seq", "0\n1\n71\n0")
                      .text());
  const Model& m = r.m();
  EXPECT_EQ(m.lgbr, 984);
  EXPECT_EQ(m.nstn(), 83);
  EXPECT_EQ(m.web_len(1), 96);
  EXPECT_EQ(m.web_len(2), -24);
  EXPECT_EQ(m.supp_pos(1), 96);
  EXPECT_EQ(m.ib_pos(1), 96);
  EXPECT_EQ(m.ib_pos(2), 108);
  EXPECT_EQ(m.ib_pos(3), 0);
  EXPECT_EQ(m.eb_pos(1), 24);
  EXPECT_EQ(m.lat_from(1), 12);
  EXPECT_EQ(m.lat_to(1), 24);
  EXPECT_EQ(m.ws_pos(1), 12);
  EXPECT_EQ(m.stud_len(1), 24);
  EXPECT_EQ(m.pour_len(1), 48);
}

TEST(Input, TakesAKeywordOnceAndSkipsItsRepetition) {
  const Reading r(
      "ngird\n2\nngird\n1\nlgbr 999 thrown away\n,\n 48 more\n secdim\n1 2,3\n4*4\nend");
  EXPECT_EQ(r.m().ngird, 2);
  EXPECT_EQ(r.m().lgbr, 0) << "an empty place, then the record goes on no further";
  EXPECT_EQ(r.m().secdim(3), 3.0);
  EXPECT_EQ(r.m().secdim(6), 4.0);
  EXPECT_NE(r.notes().find("zvinp.txt:3: warning: ngird: given again, skipped with its records; "
                           "line 1 counts"),
            std::string::npos);
}

TEST(Input, LetsAttachmentsBeGivenAgainAfterACountOfZeroOrLess) {
  for (const char* word : {"internal_brace", "external_brace", "web_stiffener"}) {
    const std::string w(word);
    const Reading r(w + "\n0\n" + w + "\n-2\n" + w + "\n2\n0 1 1\n12 1 1\nend\n");
    EXPECT_EQ(r.m().nibrace + r.m().nebrace + r.m().nstiff, 2) << word;
    EXPECT_EQ(r.notes(), "");
  }
  EXPECT_EQ(Reading("top_lateral\n0\ntop_lateral\n1\n1 0 12 1\nend").m().nlat, 1);
  EXPECT_EQ(Reading("support\n0\nsupport\n1\n24\nend").m().nsupp, 0);
}

TEST(Input, ReadsTheShiftForTheSecondSolverOnly) {
  EXPECT_EQ(Reading("solver\n1 0.01\nngird\n2\nend").m().ngird, 2);
  EXPECT_EQ(Reading("solver\n2 0.01\n.5\nend").m().sigma, 0.5);
  EXPECT_EQ(Reading("buckle\nT 1 rest\n4 rest\nend").m().nev, 4);
}

TEST(Input, SwitchesTheSelfWeightByZeroAndOneOnly) {
  EXPECT_TRUE(Reading("pour_seq\n0\n1\n24\n1\nend").m().selfwt);
  EXPECT_FALSE(Reading("pour_seq\n0\n1\n24\n0\nend").m().selfwt);
  const Reading r("pour_seq\n-3\n1\n24\n2\nend");
  EXPECT_FALSE(r.m().selfwt);
  EXPECT_EQ(r.m().nanal, 0);
  EXPECT_NE(r.notes().find("zvinp.txt:5: warning: pour_seq: the self-weight switch"),
            std::string::npos);
}

TEST(Input, ReportsValuesThatDoNotConvertAndGoesOnWithTheNextRecord) {
  const Reading r(
      "ngird\ntwo\nwebthick\n3\n96 .5in\n48. 1\n96 nan\nlgbr\n99999999999\nrcurv\n1e999\n"
      "buckle\nyes 1\n2\nstuds\nx\n24 1 1\noffset\n\xff\x01\nend\n");
  EXPECT_EQ(r.outcome, ReadOutcome::COMPLETE);
  EXPECT_EQ(
      r.notes(),
      "zvinp.txt:2: ngird: number of girders cannot be converted (two), must be an integer\n"
      "zvinp.txt:5: webthick row 1: thickness cannot be converted (.5in), must be a real\n"
      "zvinp.txt:6: webthick row 2: length cannot be converted (48.), must be an integer\n"
      "zvinp.txt:7: webthick row 3: thickness is no finite number (nan), must be a real\n"
      "zvinp.txt:9: lgbr: length is out of range (99999999999), must be an integer of at most "
      "2147483647 in size\n"
      "zvinp.txt:11: rcurv: radius is out of range (1e999), must be a real of at most 1.79e308 in "
      "size\n"
      "zvinp.txt:13: buckle: buckling switch cannot be converted (yes), must be a logical value (T "
      "or F)\n"
      "zvinp.txt:16: studs: number of rows cannot be converted (x), must be an integer\n"
      "zvinp.txt:19: offset: offset cannot be converted (\\xff\\x01), must be a real\n");
  EXPECT_EQ(r.m().web_len(3), 96);
}

TEST(Input, LeavesABlockWhenAKeywordStandsInThePlaceOfAValue) {
  const Reading r("webthick\n3\n96 .5\n144\nbotfthick\n1\n240 1\nend\n");
  EXPECT_EQ(r.m().nweb, 1) << "the second row lacks its thickness";
  EXPECT_EQ(r.m().nbotf, 1);
  EXPECT_EQ(r.notes(),
            "zvinp.txt:5: webthick row 2: a keyword stands in the place of the thickness "
            "(botfthick), must be a real; a count above may be too large, or a row short of a "
            "value\n");
}

TEST(Input, WarnsOfWordsThatAreNearlyKeywords) {
  EXPECT_EQ(
      read_notes("Ngird\nwebthik\n* note\nrcurve\nsuport\nbottom flange\nthe deck\nend\n"),
      "zvinp.txt:1: warning: unknown word, the line is skipped (Ngird), perhaps the keyword "
      "ngird is meant\n"
      "zvinp.txt:2: warning: unknown word, the line is skipped (webthik), perhaps the keyword "
      "webthick is meant\n"
      "zvinp.txt:4: warning: unknown word, the line is skipped (rcurve), perhaps the keyword "
      "rcurv is meant\n"
      "zvinp.txt:5: warning: unknown word, the line is skipped (suport), perhaps the keyword "
      "support is meant\n");
  EXPECT_EQ(near_keyword("edn"), "end");
  EXPECT_EQ(near_keyword("internalbrace"), "internal_brace");
  EXPECT_EQ(near_keyword("and"), "end");
  EXPECT_EQ(near_keyword("of"), "");
  EXPECT_EQ(near_keyword(std::string(1000, 'x')), "");
}

TEST(Input, WarnsOfNumbersLeftBehindABlock) {
  EXPECT_EQ(read_notes("support\n1\n0\n240\n480\nend\n"),
            "zvinp.txt:4: warning: number in the place of a keyword, the line is skipped (240), a "
            "count above may be too small\n");
}

TEST(Input, NamesThePlaceWhereTheFileEnds) {
  EXPECT_EQ(read_notes("ngird\n1\nwebthick\n3\n96 .5\n"),
            "zvinp.txt:5: webthick row 2: the file ends in the place of the length\n");
  EXPECT_EQ(read_notes("ngird\n1\n"), "zvinp.txt:2: the file ends without the keyword end\n");
  EXPECT_NE(read_notes("prname\n'it\nend\n").find("zvinp.txt:2: the quote that opens here"),
            std::string::npos);
}
