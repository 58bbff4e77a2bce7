// What `zelvo-desk check` says about sound bridges and about mistakes in them.
#include "desk/check.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "desk/folder.h"
#include "desk/mistakes.h"

using namespace zelvo;

namespace {

std::string example(const std::string& name) {
  return content_of(ZELVO_SOURCE_DIR "/examples/" + name + "/zvinp.txt");
}

Job job_of(const std::string& content) {
  Folder f;  // of its own: tests run side by side
  f.write("check.txt", content);
  return read_job(f.path + "/check.txt");
}

std::string all_lines(const CheckResult& r) {
  std::string text;
  for (const Finding& f : r.findings) text += finding_lines("f", f);
  return text;
}

const Mistake MISTAKES[] = {
    // girders, curvature, length
    {TWIN, "ngird\n2", "ngird\n1", "ngird: offset is given, but there is one girder"},
    {TWIN, "offset\n108", "", "ngird: there are two girders, but offset"},
    {TWIN, "offset\n108", "offset\n216", "the whole distance of the girders instead of half"},
    {TWIN, "offset\n108", "offset\n9",
     "(-84 in, offset 9) is outside the usual 24 to 240: in feet?\n    so offset: overhang"},
    {TWIN, "rcurv\n9600", "rcurv\n800",
     "turns through 3.15 radians, 0.035 to 0.75 is usual: in feet?"},
    {TWIN, "rcurv\n9600", "rcurv\n115200", "12 times too large? (0 is straight)"},
    {TWIN, "lgbr\n6360", "lgbr\n530", "lgbr: length is 528, but 5 other lists add up to 6360"},
    // the section, plates
    {TWIN, "84 60 102", "7 60 102", "secdim: depth 7 in is outside the usual 24 to 180: in feet"},
    {TWIN, "84 60 102", "84 102 60",
     "the bottom flange is wider than the distance of the web tops"},
    {TWIN, "420 9", "420 0.75", "deck thickness 0.75 in is outside the usual 5 to 15: in feet, "},
    {TWIN, "420 9", "340 9", "overhang of the deck beyond the outer web top (11 in)"},
    {SPAN, "192 8.5", "392 8.5", "overhang of the deck beyond the outer web top (145 in)"},
    {SPAN, "1920  0.5000", "1920  12.7",
     "webthick row 1: thickness 12.7 in is outside the usual 0.25"},
    {TWIN, "912  2.5000", "912  0.2500", "half the width over thickness is 40, up to 15 is usual"},
    {TWIN, "912  1.7500", "912  3.7500",
     "botfthick rows 2, 3: thickness changes from 0.875 to 3.75, "},
    {SPAN, "botfthick\n1\n 1920", "botfthick\n2\n 960 1\n 1920",
     "positions in the place of length"},
    {TWIN, "1464  1.3750", "1464  1 3/8", "stand on the line: ' 3/8' is not read: a fraction?"},
    {SPAN, "0.5000\nbotfthick\n1\n 1920  1.2500", "1.25\nbotfthick\n1\n 1920 0.5",
     "the web is thicker than the bottom flange (1.25 over 0.5 in): tables swapped?"},
    {ONE, "1536  1.2500\n  768  2.2500\n", "1536  2.2500\n  768  1.2500\n",
     "tfthick row 2: plate over the inner support at 1920 in (1.25 in) is thinner than amid"},
    // bracing
    {SPAN, "  480 1  5.00", "  480 1  3200",
     "area 3200 in2 is outside the usual 0.5 to 50: in mm2?"},
    {SPAN, "  480 1  5.00", "  480 1  0.9", "area 0.9 in2 differs 5 times or more from most"},
    {SPAN, "  480 1  5.00", "  480 5  1", "type code and area (5 and 1): swapped?"},
    {SPAN, "  480 1  5.00", "  240 1  5.00", "row 2: given twice at the same position (240)"},
    {SPAN, "  480 1  5.00", "  516 1  5.00",
     "row 2: stands at 516 in, while the laterals meet at 480: a wrong position?\n    so top_lat"},
    {SPAN, "7\n  240 1", "7\n! every 20 ft\n  240 1",
     "(every), must be an integer\n    so number in the place of a keyword, the line is skipped "
     "(1"},
    {OPEN, "  768 1", "  792 1", "row 4: stands 216 and 168 in from its neighbours"},
    {ONE, "2   960", "1   960", "row 6: direction 1 is that of both neighbours"},
    {ONE, "3\n    0  8.0  1.000\n 1920  9.0  1.250", "2\n    0  8.0  1.000",
     "a stiffener is missing at support row 1 (1920)"},
    {TWIN, "31\n  192", "30\n! ", "internal_brace row 1: position cannot be converted (!)"},
    {TWIN, "1536 1  6.50\n 2280", "1560 1  6.50\n 2280",
     "no internal frame stands at the position"},
    {TWIN, "external_brace\n13", "externals\n13", "perhaps the keyword external_brace is meant"},
    {TWIN, "top_lateral\n34", "! top_lateral\n34",
     "perhaps the keyword top_lateral is meant\n    so t"},
    {TWIN, "8\n    0  8.0  1.000", "8\n    0  1.000 8.0", "thicker than wide (1 by 8 in): columns"},
    {TWIN, " 6360  8.0  1.000", " 6300  8.0  1.000", "a stiffener is missing at support row 4"},
    {ONE, "2   192   384", "2   384   192", "top_lateral row 2: runs backward (384 to 192)"},
    {ONE, "2   192   384", "1     0   192", "given twice (direction 1, 0 to 192)"},
    {ONE, "2   192   384", "2   192   576", "passes a frame (192 to 576)"},
    // supports
    {TWIN, "4\n 1920\n    0\n 4440", "3\n 1920\n    0", "the longest span (4440 in) is 52.9 times"},
    {TWIN, "4440\n 6360\nst", "4440\n 1920\nst", "another support stands at this station (1920)"},
    {TWIN, " 4440\n 6360\nst", " 4200\n 6360\nst",
     "support row 3: stands at 4200 in, while laterals and a stiffener meet at 4440"},
    {ONE, "3\n 1920\n    0\n 3840", "2\n 1920\n    0",
     "the girder sticks out over the last support by"},
    {SPAN, "2\n    0\n 1920\nst", "2\n    0\n    0\nst",
     "support: a mechanism: all supports stand at one place"},
    {SPAN, "2\n    0\n 1920\nst", "2\n    0\n 1910\nst", "position 1910 is cut to 1896"},
    // studs
    {SPAN, "1920  18.0 3", "1920  1.5 3",
     "studs row 1: spacing 1.5 in is outside the usual 4 to 48"},
    {SPAN, "1920  18.0 3", "1920  3 18", "spacing and number of studs across (3 and 18): swapped?"},
    // stages
    {ONE, "1.80    stage 2", "0.15    stage 2", "row 7: load on wet concrete (0.15 kip/ft in all)"},
    {ONE, "1.80    stage 2", "1800    stage 2", "(8.5 in of deck weigh 1.7 kip/ft): in lb/ft?"},
    {TWIN, "4.00\n", "2.00\n", "of one girder? (that of the bridge is wanted)"},
    {ONE, "3600. 250.   0.90\n", "3600000. 250. 0.9\n",
     "row 17: modulus of hard concrete 3600000 ksi"},
    {ONE, "3600. 250.   0.90    st", "250. 3600. 0.9 st",
     "modulus and stud stiffness (250 and 3600)"},
    {ONE, "3600. 250.   0.90    st", "1E-6 .001  0.9 st",
     "row 16: is soft again in stage 5 segment A"},
    {ONE, "3600. 250.   0.90    st", "2000. 250. 0.9 st", "modulus falls from 2800 to 2000"},
    {ONE, "1.80    stage 2", "0.00    stage 2", "stage 2 has no load: all its results are 0"},
    {ONE, "1.80    stage 2", "0.00    stage 2",
     "but no earlier stage has poured it: hard when first"},
    {ONE, "1500.  80.   0.00    stage 3", "1500.  80.   1.80    stage 3",
     "load on hard concrete (1.8 kip/ft) is that of the segment's pour: given twice"},
    {SPAN, "0.001  1.70", "1.70 0.001",
     "stud stiffness and load (1.7 and 0.001): columns swapped?\n    so pour_seq row 4: concrete"},
    {ONE, "1    steel weight", "0    steel weight", "the weight of the steel is in no stage (0)"},
    {ONE, "5\n3\n 1344", "5 3\n 1344",
     "more numbers than the record takes (1) stand on the line: ' 3'"},
    {ONE, "5\n3\n 1344", "4\n3\n 1344", "a row too many, or too small a number of stages"},
    // records
    {SPAN, "72 66 102 18 192 8.5", "72 66 102 18\n192 8.5",
     "the line holds 4 of its values (6 are"},
    {SPAN, "480 1  5.00", "480 1", "internal_brace row 2: the line holds 2 of its values (3 are"},
    {SPAN, "480 1  5.00", "480 1  5,25",
     "more numbers than the record takes (3) stand on the line: a d"},
    {SPAN, "lgbr\n1920", "lgbr 1920\n1920",
     "numbers stand on the line of the keyword and are not re"},
    {SPAN, "'simple span 160 ft'", "simple span", "the title is only 'simple': quotes are missing"},
    {SPAN, "F 1\n2\nend", "F 1\n2\nend\nsolver\n1 1e-6", "the keyword solver stands behind end"},
    {SPAN, "buckle\nF 1", "! buckle\nF 1",
     "perhaps the keyword buckle is meant\n    so pour_seq row 3: loads are not applied"},
    {SPAN, "webthick\n", "webthik\n", "webthick is meant\n    so webthick: the keyword is missing"},
    {SPAN, "studs\n1\n 1920", "studs\n1\n 1910",
     "1910 is cut to 1896\n    so studs: segment lengths do"},
    {BUCKLING, "T 1\n2\n", "T 3\n2\n",
     "load pattern 3 turns the load of segment 1 into end couples"},
    {BUCKLING, "2 1.0E-6\n2.5", "1 0.1", "solver: tolerance 0.1 is loose, up to 0.001 is usual"},
    {SPAN, "end\n", "!@ limit sag 3\nend\n", "error: !@ limit: 'sag' must be one of deflection"},
};

TEST(Check, HasNothingToSayOfTheExamples) {
  for (const char* name :
       {TWIN, ONE, SPAN, BUCKLING, OPEN, "buckling_two", "three_span_two_girders"})
    EXPECT_EQ(all_lines(check_job(job_of(example(name)))), "") << name;
}

void expect_note(const Mistake& m) {
  std::string text = example(m.file);
  const std::size_t at = text.find(m.from);
  ASSERT_NE(at, text.npos) << m.from;
  const std::string said =
      all_lines(check_job(job_of(text.replace(at, std::strlen(m.from), m.to))));
  EXPECT_NE(said.find(m.note), said.npos) << m.to << " instead of " << m.from << ", wanted\n"
                                          << m.note << "\n"
                                          << said;
}

TEST(Check, TellsOfMistakes) {
  for (const Mistake& m : MISTAKES) expect_note(m);
  for (const Mistake& m : COLLECTED_MISTAKES) expect_note(m);
}

TEST(Check, SaysWhatItUnderstood) {
  const Job job = job_of(example(TWIN));
  const Understood u = check_job(job).understood;
  EXPECT_EQ(u.spans.size(), 3u);
  EXPECT_EQ(u.effort.equations, 284085);
  ASSERT_EQ(u.stages.size(), 8u);
  EXPECT_NEAR(u.stages[0].kips, u.plates, 1e-9);
  EXPECT_NEAR(u.stages[1].kips, 4.0 * 118, 1e-9);
  EXPECT_NEAR(u.stages[1].per_area, 4.0 / 35, 1e-12);
  EXPECT_EQ(u.stages[3].name + u.stages[3].soft + u.stages[3].hard, "pour FACEFGBD");
}

TEST(Annotations, AreReadWithTheirFaults) {
  InputNotes notes;
  const Annotations a = read_annotations(
      "!@ title A & B\n!@ stage 2 pour C \n!@ load_factor 1 1.25\n!@bearing_spacing 48\r\n"
      "!@ limit top_flange 33\n!@ stage 3 late\n!@ stage 2 again\n!@ load_factor 2 much\n"
      "!@ limit top_flange 1\n!@ colour red\n",
      2, notes);
  EXPECT_EQ(a.title + a.stage_name[1], "A & Bpour C");
  EXPECT_EQ(a.load_factor, (std::vector<double>{1.25, 1}));
  EXPECT_EQ(a.bearing_spacing, 48);
  ASSERT_EQ(a.limits.size(), 1u);
  EXPECT_EQ(a.limits[0].value, 33);
  std::string lines;
  for (const Note& n : notes.faults) lines += std::to_string(n.line) + " ";
  EXPECT_EQ(lines, "6 7 8 9 10 ");
}

}  // namespace
