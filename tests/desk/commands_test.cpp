// Commands as a user gives them: statuses, what is said, what is written.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "desk/folder.h"
#include "exchange/json.h"
#include "support/input_text.h"

using namespace zelvo;

namespace {

const std::string SPAN_TEXT = content_of(ZELVO_SOURCE_DIR "/examples/simple_span/zvinp.txt");
const std::string TWIN_TEXT =
    content_of(ZELVO_SOURCE_DIR "/examples/three_span_curved_two_girders/zvinp.txt");

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

// A girder of 20 ft, steel and wet deck, with what it is to be compared with.
std::string limited(const char* limits) {
  return one_girder_input()
             .set("support", "2\n0\n240")
             .set("pour_seq", "2\n1\n240\n1e-6 .001 0.5\n1e-6 .001 2.\n1")
             .text() +
         limits;
}

}  // namespace

TEST(Commands, EndWithTheirStatus) {
  Folder f;
  f.write("span.txt", SPAN_TEXT);
  f.write("empty.txt", "");
  f.write("short.txt", SPAN_TEXT.substr(0, SPAN_TEXT.size() / 2));
  f.write("cut.txt", replaced(SPAN_TEXT, "2\n    0\n 1920\nst", "2\n    0\n 1910\nst"));
  f.write("faulty.txt", replaced(SPAN_TEXT, "ngird\n1", "ngird\n3"));
  f.write("results.json", "[1, 2]");
  const struct {
    const char *arguments, *said;
    int status;
  } cases[] = {
      {"--help", "Write a commented input file", 0},
      {"--version", "zelvo-desk ", 0},
      {"", "subcommand is required", 2},
      {"inspect span.txt", "subcommand is required", 2},
      {"run span.txt --buckling maybe", "--buckling", 2},
      {"check span.txt", "0 errors, 0 warnings. 43,470 equations", 0},
      {"check cut.txt", "cut.txt:", 1},
      {"check cut.txt --strict", "1910 is cut to 1896", 2},
      {"check faulty.txt", "no model has so many girders (3)", 2},
      {"check empty.txt", "empty", 65},
      {"check none.txt", "none.txt", 74},
      {"check span.txt --draw none/plan.svg", "none/plan.svg", 74},
      {"check span.txt --draw ./span.txt", "is the input itself", 74},
      {"run short.txt", "short.txt: error: the file ends before", 65},
      {"report faulty.txt", "faulty.txt:", 65},
      {"inp span.txt --stage 4", "there is no stage 4: the input has 3", 2},
      {"diff span.txt results.json", "one file is results, the other an input", 2},
      {"diff results.json results.json", "results.json", 2},
      {"diff span.txt cut.txt", "support row 2", 1},
      {"new --spans 150,-2", "error: ", 2},
      {"new --spans 150 -o span.txt", "exists; --force writes over it", 74},
      {"new --json none.json", "none.json", 74},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(f.desk(c.arguments), c.status) << c.arguments << "\n" << f.said;
    EXPECT_NE(f.said.find(c.said), std::string::npos) << c.arguments << "\n" << f.said;
  }
  EXPECT_EQ(f.read("span.txt"), SPAN_TEXT);
  EXPECT_EQ(f.files().size(), 6u);
}

TEST(Commands, CheckSaysTheSameAsJson) {
  Folder f;
  f.write("cut.txt", replaced(SPAN_TEXT, "2\n    0\n 1920\nst", "2\n    0\n 1910\nst"));
  EXPECT_EQ(f.desk("check cut.txt --json"), 1);
  const Json said = Json::parse(f.said);
  EXPECT_EQ(said["warnings"], 2);  // no frame stands at the support where it is now
  EXPECT_EQ(said["findings"][0]["keyword"], "support");
  EXPECT_EQ(said["findings"][0]["rows"], Json::array({2}));
  EXPECT_EQ(said["moved"][0]["typed"], 1910);
  EXPECT_EQ(said["moved"][0]["cut"], 1896);
  EXPECT_EQ(said["stages"].size(), 3u);
  EXPECT_NEAR(said["stages"][1]["kip"].get<double>(), 1.7 * 160, 1e-9);
  EXPECT_EQ(said["equations"], 43470);
}

TEST(Commands, CheckDrawsTheBridge) {
  Folder f;
  f.write("twin.txt", TWIN_TEXT);
  EXPECT_EQ(f.desk("check twin.txt --draw plan.svg"), 0) << f.said;
  const std::string svg = f.read("plan.svg");
  for (const char* part : {"<svg xmlns=\"http://www.w3.org/2000/svg\"", "210 ft", "R = 800 ft",
                           "deck 420 x 9 in", "girder 2", "</svg>"})
    EXPECT_NE(svg.find(part), std::string::npos) << part;
  for (const char* bad : {"nan", "inf", "-0.0\""})
    EXPECT_EQ(svg.find(bad), std::string::npos) << bad;
  f.write("twin.txt", replaced(TWIN_TEXT, "ngird\n2", "ngird\n3"));
  std::filesystem::remove(f.path + "/plan.svg");
  EXPECT_EQ(f.desk("check twin.txt --draw plan.svg"), 2);
  EXPECT_FALSE(std::filesystem::exists(f.path + "/plan.svg"));
}

TEST(Commands, RunComparesWithTheLimitsOfTheInput) {
  Folder f;
  f.write("a.txt", limited("!@ stage 2 wet\n!@ load_factor 2 1.5\n!@ limit reaction 20\n"
                           "!@ limit deflection 1e-6\n!@ bearing_spacing 36\n"));
  ASSERT_LE(f.desk("run a.txt --json"), 1) << f.said;
  const Json results = Json::parse(f.read("results.json"));
  const Json &low = results["limits"][0], &sag = results["limits"][1];
  const Json& totals = results["totals"];
  EXPECT_EQ(low["met"], false);  // half of the steel and 0.5 kip/ft over 20 ft come first
  EXPECT_EQ(low["value"], totals[0]["reaction"][0][0]);
  EXPECT_EQ(low["stage"], 1);
  EXPECT_EQ(sag["met"], false);
  EXPECT_EQ(sag["stage"], 2);
  EXPECT_EQ(sag["place_in"], 120);
  EXPECT_EQ(sag["value"], results["governing"]["deflection"]["low"]["value"]);
  // 1.5 times 2 kip/ft over 20 ft, shared by two lines of two bearings.
  const double line =
      totals[1]["reaction"][0][0].get<double>() - totals[0]["reaction"][0][0].get<double>();
  EXPECT_NEAR(line, 1.5 * 2 * 20 / 2, 1e-6);
  EXPECT_NEAR(totals[1]["bearings"][0][0].get<double>() + totals[1]["bearings"][1][0].get<double>(),
              totals[1]["reaction"][0][0].get<double>(), 1e-6);
  // Camber is what the last total takes away.
  const Json& camber = results["camber"];
  for (std::size_t i = 0; i < camber["points"].size(); ++i)
    EXPECT_EQ(camber["camber"][0][i].get<double>(), -camber["totals"][1][0][i].get<double>());
  EXPECT_EQ(results["stages"][1]["name"], "wet");
  EXPECT_NE(f.said.find("stage 2/2  wet"), std::string::npos) << f.said;
}

TEST(Commands, NewTakesASketchInAnyUnit) {
  Folder f;
  f.write("a.json",
          R"({"spans": [140, "2160in"], "radius": "700ft", "girders": 1, "title": "ramp"})");
  EXPECT_EQ(f.desk("new --json a.json -o a.txt"), 0) << f.said;
  EXPECT_EQ(f.desk("new --spans 140ft,180 --radius 8400in --title ramp -o b.txt"), 0) << f.said;
  EXPECT_EQ(f.read("a.txt"), f.read("b.txt"));
  EXPECT_EQ(f.desk("check a.txt"), 0) << f.said;
  EXPECT_NE(f.said.find("R 700 ft, spans 140 + 180 ft"), std::string::npos) << f.said;
  for (const char* bad :
       {"[3]", "{\"spans\": 3}", "{\"span\": [140]}", "{\"spans\": [\"140 furlongs\"]}", "{",
        "{\"spans\": [140], \"girders\": 7}"}) {
    f.write("a.json", bad);
    EXPECT_EQ(f.desk("new --json a.json"), 2) << bad << f.said;
    EXPECT_EQ(f.said.rfind("error: ", 0), 0u) << bad << f.said;
  }
}
