#include "control/input.h"

#include <gtest/gtest.h>

#include <sstream>

#include "support/input_text.h"

using namespace zelvo;

namespace {

struct Reading {
  Input in;
  ReadOutcome outcome;
  explicit Reading(const std::string& text) : outcome(read_input(text, in)) {}
  const Model* operator->() const { return &in.model; }
  std::string notes() const { return note_lines(in.notes); }
};

// All values, one blank between them.
template <class... T>
std::string list(const T&... values) {
  std::ostringstream out;
  ((out << values << ' '), ...);
  return out.str();
}

}  // namespace

TEST(Input, FillsEveryTargetOfTheLanguage) {
  const Reading m(two_girder_input()
                      .set("prname", "'a title' behind")
                      .set("rcurv", "9600.")
                      .set("buckle", ".TRUE. 3\n4")
                      .set("solver", "2 1d-6\n0.05")
                      .text());
  EXPECT_EQ(m.notes(), "");
  EXPECT_EQ(
      list(m->prname, m->ngird, m->rcurv, m->lgbr, m->offset, m->secdim.depth, m->nsupp,
           m->supp_pos(2), m->nlat, m->lat_type(2), m->lat_from(2), m->lat_to(2), m->lat_area(2)),
      "a title 2 9600 240 90 60 2 240 2 2 72 168 4 ");
  EXPECT_EQ(list(m->nanal, m->npour, m->pour_len(2), m->pour_e(2, 1), m->pour_k(2, 1),
                 m->pour_load(2, 1), m->pour_load(2, 2), m->selfwt, m->buckle, m->load_pattern,
                 m->nev, m->solver_type, m->tol, m->sigma),
            "2 2 120 3600 200 0 1 1 1 3 4 2 1e-06 0.05 ");
  const Reading none("end");
  EXPECT_EQ(list(none->nev, none->buckle, none->load_pattern, none->selfwt, none->solver_type),
            "2 0 0 0 0 ");
}

TEST(Input, TellsTheEndsOfAFileApart) {
  for (const char* text : {"", "\n \t\r\n\n", "\xEF\xBB\xBF", "'never closed"})
    EXPECT_EQ(Reading(text).outcome, ReadOutcome::EMPTY) << text;
  for (const char* text : {"ngird\n1\n", "ngird", "comment", "webthick\n3\n96 0.5\n144 .5\n",
                           "webthick\n2000000000\n96 0.5\n", "secdim\n1 2 3", "ENd", " ' end'\n",
                           "pour_seq\n2000000000\n0\n", "prname\n'open\nend\n", "/", ","})
    EXPECT_EQ(Reading(text).outcome, ReadOutcome::INPUT_ERROR) << text;
  for (const char* text :
       {"end", "\n\n end of it", "'end '", "\"end\"\n garbage", "/\nend", "1*end", "ngird\nx\n"})
    EXPECT_EQ(Reading(text).outcome, ReadOutcome::COMPLETE) << text;
}

TEST(Input, CutsPositionsAndLengthsToTheGridTowardZero) {
  const Reading m(
      "lgbr\n1000\nwebthick\n2\n100 1\n-30 1\nsupport\n1\n100\ninternal_brace\n2\n110 1 1\n-5 1 1\n"
      "external_brace\n1\n35 1 1\ntop_lateral\n1\n1 13 25 1\nweb_stiffener\n1\n23 1 1\n"
      "studs\n1\n47 1 1\npour_seq\n0\n1\n71\n0\nend");
  EXPECT_EQ(list(m->lgbr, m->nstn(), m->web_len(1), m->web_len(2), m->supp_pos(1), m->stud_len(1),
                 m->pour_len(1), m->ib_pos(1), m->ib_pos(2), m->eb_pos(1), m->lat_from(1),
                 m->lat_to(1), m->ws_pos(1)),
            "984 83 96 -24 96 24 48 108 0 24 12 24 12 ");
  std::string moved;
  for (const MovedValue& v : m.in.moved)
    if (v.keyword == LGBR || v.keyword == TOP_LATERAL)
      moved += list(v.line, v.keyword, v.row, v.name, v.typed, v.cut);
  EXPECT_EQ(moved, list(2, LGBR, 0, "length", 1000, 984, 19, TOP_LATERAL, 1, "first position", 13,
                        12, 19, TOP_LATERAL, 1, "second position", 25, 24));
  EXPECT_EQ(m.in.moved.size(), 12u);
}

TEST(Input, TakesAKeywordOnceAndSkipsItsRepetition) {
  const Reading m("ngird\n2\nngird\n1\nlgbr thrown away\n,\n secdim\n1 2,3\n4*4\nend");
  EXPECT_EQ(list(m->ngird, m->lgbr, m->secdim.top_spacing, m->secdim.deck_thickness), "2 0 3 4 ");
  EXPECT_EQ(m.notes(),
            "zvinp.txt:3: warning: ngird: given again, skipped with its records; line 1 counts\n");
  const std::string free = "internal_brace\n0\ninternal_brace\n-2\ninternal_brace\n1\n12 1 1\nend";
  EXPECT_EQ(Reading(free)->nibrace, 1) << "a count of zero leaves the keyword free";
  EXPECT_EQ(Reading("support\n0\nsupport\n1\n24\nend")->nsupp, 0);
}

TEST(Input, ReadsWhatDependsOnAValueReadBefore) {
  EXPECT_EQ(Reading("solver\n1 0.01\nngird\n2\nend")->ngird, 2);
  EXPECT_EQ(Reading("solver\n2 0.01\n.5\nend")->sigma, 0.5);
  EXPECT_TRUE(Reading("pour_seq\n0\n1\n24\n1\nend")->selfwt);
  const Reading m("pour_seq\n-3\n1\n24\n2\nend");
  EXPECT_EQ(list(m->selfwt, m->nanal), "0 0 ");
  EXPECT_NE(m.notes().find(":5: warning: pour_seq: the self-weight switch"), std::string::npos);
}

TEST(Input, GoesOnAfterAFaultWithTheNextRecordOrKeyword) {
  const Reading m(
      "webthick\n3\n96 .5in\n48. 1\n96 1\nstuds\nx\n24 1 1\nbotfthick\n2\n96 1\n144\n"
      "tfthick\n1\n24 1\nend\n");
  EXPECT_EQ(m.outcome, ReadOutcome::COMPLETE);
  EXPECT_EQ(list(m->nweb, m->web_len(3), m->nstudrow, m->nbotf, m->ntopf), "3 96 0 1 1 ");
  EXPECT_EQ(m.in.notes.faults.size(), 4u) << m.notes();
}

TEST(Input, WarnsOfWordsAndNumbersThatMayBeMeantOtherwise) {
  std::string lines;
  const Reading r(
      "Ngird\nwebthik\n* note\nthe deck\nsupport\n1\n0\n240\n480\nprname\nngird\nend\n");
  for (const Note& n : r.in.notes.warnings) lines += list(n.line);
  EXPECT_EQ(lines, "1 2 8 11 ") << r.notes();
  const Reading quiet("buckle\nT 1\n2\n! top lateral\n1 2\nbuckle\nF 1\n2\nend");
  EXPECT_EQ(quiet.in.notes.warnings.size(), 1u) << "comments, records of a repeated keyword";
  EXPECT_EQ(list(near_keyword("edn"), near_keyword("internalbrace"), near_keyword("Rcurve"),
                 near_keyword("of"), near_keyword(std::string(1000, 'x'))),
            "end internal_brace rcurv   ");
  EXPECT_NE(Reading("ngird\r1\rend\r").notes().find("1: warning: carriage returns"),
            std::string::npos);
}

TEST(Input, NamesThePlaceWhereTheFileEnds) {
  EXPECT_EQ(Reading("ngird\n1\nwebthick\n3\n96 .5\n").notes(),
            "zvinp.txt:5: webthick row 2: the file ends in the place of the length\n");
  EXPECT_EQ(Reading("ngird\n1\n").notes(), "zvinp.txt:2: the file ends without the keyword end\n");
  EXPECT_EQ(Reading("prname\n'it\nend").notes().find("zvinp.txt:2: the quote that opens here"), 0u);
}
