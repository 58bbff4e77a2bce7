#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "desk/diff.h"
#include "exchange/csv.h"
#include "exchange/results_view.h"
#include "exchange/sha256.h"

using namespace zelvo;

namespace {

TEST(Sha256, MeetsTheExamplesOfTheStandard) {
  EXPECT_EQ(sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(sha256("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),  // two blocks
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
  EXPECT_EQ(sha256(std::string(1000000, 'a')),
            "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Csv, CellsAreTextWhateverTheyHold) {
  EXPECT_EQ(csv_cell("pour A"), "pour A");
  EXPECT_EQ(csv_cell("=1+1"), "'=1+1");
  EXPECT_EQ(csv_cell("-2, \"b\""), "\"'-2, \"\"b\"\"\"");
  EXPECT_EQ(csv_cell("a\nb"), "\"a\nb\"");
}

// Results of one stage with one table, of two girders at two stations.
Json small_results() {
  const Json values = {{1, 2}, {3, 4}}, stages = {{1, 1}, {1, 1}};
  const Json envelope = {
      {"u", {{"high", values}, {"low", values}, {"high_stage", stages}, {"low_stage", stages}}}};
  const Json table = {{"title", "Deflection"},
                      {"unit", "in"},
                      {"along", "station"},
                      {"positive", "up"},
                      {"series", {"girder 1", "girder 2"}}};
  const Json checks = Json::array({nullptr}), none = Json::array();
  return {{"format", "zelvo-results"},
          {"title", "small"},
          {"stages", Json::array({{{"name", "steel"}}})},
          {"places", {{"station", {{"position_in", {0, 12}}}}}},
          {"tables", {{"u", table}}},
          {"increments", Json::array({{{"u", values}}})},
          {"totals", Json::array({{{"u", values}}})},
          {"envelopes", {{"increments", envelope}, {"totals", envelope}}},
          {"member_stress", Json::object()},
          {"camber", {{"points", none}, {"series", none}, {"camber", none}, {"to_come", {none}}}},
          {"buckling", {{"history", checks}, {"batch_rule", checks}, {"softest", checks}}}};
}

TEST(ResultsView, RefusesWhatIsNoResults) {
  EXPECT_EQ(view_results(small_results()).tables.at(0).total[0][1][1], 4);
  const auto refused = [](const char* pointer, const Json& value) {
    Json broken = small_results();
    broken[Json::json_pointer(pointer)] = value;
    try {
      view_results(broken);
    } catch (const std::runtime_error&) {
      return true;
    }
    return false;
  };
  EXPECT_TRUE(refused("/format", 3));
  EXPECT_TRUE(refused("/stages", {{{"number", 1}}}));       // no name
  EXPECT_TRUE(refused("/places", Json::object()));          // not those of the table
  EXPECT_TRUE(refused("/totals", Json::array()));           // of no stage
  EXPECT_TRUE(refused("/totals/0/u", {{1, 2}}));            // a series is missing
  EXPECT_TRUE(refused("/totals/0/u/1", {3}));               // a place is missing
  EXPECT_TRUE(refused("/envelopes/totals/u/low", {1, 2}));  // no list of lists
  EXPECT_TRUE(refused("/tables/u", Json::object()));
  EXPECT_TRUE(refused("/buckling/softest", Json::array()));
}

TEST(CompareResults, NamesThePlaceAndKeepsToTheRoundingOfTheTable) {
  Json other = small_results();
  other["totals"][0]["u"][1][0] = 3 * (1 + 1e-10);
  const ResultsView a = view_results(small_results());
  EXPECT_TRUE(compare_results(a, view_results(other)).empty());
  other["totals"][0]["u"][1][0] = 1;
  other["totals"][0]["u"][0][1] = nullptr;
  const auto differences = compare_results(a, view_results(other));
  ASSERT_EQ(differences.size(), 1U);
  EXPECT_EQ(differences[0].what, "u, total 1, girder 1, 1 ft");
  EXPECT_EQ(differences[0].a + differences[0].b, "2 in");  // the other has none
}

}  // namespace
