// Runs of zelvo-desk as a user makes them: all files or none, whatever happens.
#include "desk/run.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "desk/check.h"
#include "desk/folder.h"
#include "desk/new.h"
#include "support/input_text.h"

using namespace zelvo;

namespace {

InputText braced() {
  return one_girder_input()
      .set("support", "2\n0\n240")
      .set("pour_seq",
           "2\n1\n240\n1e-6 .001 1.\n"
           "3000 200 0.5\n1");
}

}  // namespace

TEST(Run, WritesTheNineFilesOfTheBatchProgram) {
  for (const std::string& text :
       {braced().text(), two_girder_input().text(),
        braced().set("buckle", "T 1\n1").set("solver", "1 1e-6").text()}) {
    Folder f;
    f.write("zvinp.txt", text);
    ASSERT_EQ(f.run(ZELVO_PROGRAM), 0) << f.said;
    const auto wanted = f.files();
    EXPECT_LE(f.desk("run -d results"), EXIT_WARNINGS) << f.said;
    for (const auto& [name, content] : wanted) {
      if (name == "zvinp.txt") continue;
      EXPECT_EQ(f.read("results/" + name), content) << name;
    }
    EXPECT_EQ(f.files().size(), wanted.size() + 11);  // the folder, nine files, results.json
  }
}

TEST(Run, LeavesTheLastResultsWhenItFails) {
  Folder f;
  f.write("a.txt", braced().text());
  ASSERT_LE(f.desk("run a.txt"), EXIT_WARNINGS) << f.said;
  const struct {
    std::string text, arguments;
    int status;
    const char* why;
  } cases[] = {
      {braced().set("support", "1\n0").text(), "", EXIT_ERRORS, "free to move"},
      {braced().set("pour_seq", "1\n1\n240\n1e-6 .001 90000.\n1").text(), "", EXIT_ERRORS,
       "more than a fiftieth of the span: check units"},
      {braced().set("rcurv", "72").text(), "", 65, "radius is too small"},
      {braced().set("web_stiffener", "1\n120 0 .75").text(), "--strict", EXIT_ERRORS,
       "warning: web_stiffener row 1: width is 0"},
      {braced().text() + "!@ stage 9 none\n", "", 65, "error: !@ stage"},
      {braced().set("pour_seq", "0\n1\n240\n1").text(), "", EXIT_ERRORS, "there are no stages"},
  };
  for (const auto& c : cases) {
    f.write("a.txt", c.text);
    const auto before = f.files();
    EXPECT_EQ(f.desk("run a.txt " + c.arguments), c.status) << f.said;
    EXPECT_NE(f.said.find(c.why), std::string::npos) << f.said;
    EXPECT_TRUE(f.files() == before) << c.why;
  }
}

TEST(Run, LeavesNothingWhenItIsInterrupted) {
  Folder f;
  f.write("a.txt", content_of(ZELVO_SOURCE_DIR "/examples/two_span_curved/zvinp.txt"));
  const auto before = f.files();
  for (const auto& [signal, status] : {std::pair("INT", 130), std::pair("TERM", 143)}) {
    EXPECT_EQ(f.run("timeout --preserve-status -s " + std::string(signal) +
                    " 0.4 " ZELVO_DESK_PROGRAM " run a.txt"),
              status)
        << f.said;
    EXPECT_TRUE(f.files() == before) << signal;
  }
}

TEST(Run, IsMadeAnewOnlyWhenTheInputHasChanged) {
  Folder f;
  f.write("a.txt", braced().text());
  EXPECT_LE(f.desk("csv a.txt"), EXIT_WARNINGS) << f.said;
  const auto stamp = [&] { return std::filesystem::last_write_time(f.path + "/results.json"); };
  const auto first = stamp();
  EXPECT_LE(f.desk("xlsx a.txt"), EXIT_WARNINGS) << f.said;
  EXPECT_EQ(stamp(), first);
  f.write("a.txt", braced().set("web_stiffener", "1\n120 0 .75").text());
  EXPECT_EQ(f.desk("csv a.txt"), EXIT_WARNINGS) << f.said;
  EXPECT_EQ(f.desk("csv a.txt --strict"), EXIT_ERRORS) << f.said;  // with results that lie there
  f.write("a.txt", braced().text() + "!@ title another\n");
  EXPECT_LE(f.desk("report a.txt"), EXIT_WARNINGS) << f.said;
  EXPECT_EQ(Json::parse(f.read("results.json"))["title"], "another");
  f.write("results.json", "{\"format\": [], \"input\": 3}");
  EXPECT_LE(f.desk("csv a.txt -o /dev/stdout"), EXIT_WARNINGS);
  EXPECT_NE(f.said.find("stage,stage_name,kind"), std::string::npos) << f.said.substr(0, 400);
}

TEST(Run, NeverWritesOverItsInput) {
  Folder f;
  f.write("rxn0987.txt", braced().text());
  for (const char* arguments : {"run rxn0987.txt", "report rxn0987.txt -o rxn0987.txt",
                                "inp rxn0987.txt -o ./rxn0987.txt"}) {
    EXPECT_EQ(f.desk(arguments), 74) << f.said;
    EXPECT_NE(f.said.find("is the input itself"), std::string::npos) << f.said;
    EXPECT_EQ(f.files().size(), 1u);
  }
}

TEST(New, WritesBridgesThatPassTheCheck) {
  BridgeSketch plain, curved, twin;
  plain.spans = {"150"};
  curved.spans = {"140", "180ft"};
  curved.radius = "700ft";
  curved.buckle = true;
  twin.girders = 2;
  twin.spans = {"160", "210", "160"};
  twin.radius = "800";
  twin.order = "1+5,3,2,4";
  for (const BridgeSketch& sketch : {plain, curved, twin}) {
    Folder f;
    f.write("new.txt", bridge_text(sketch));
    std::string said;
    for (const Finding& finding : check_job(read_job(f.path + "/new.txt")).findings)
      said += finding_lines("new.txt", finding);
    EXPECT_EQ(said, "");
  }
}
