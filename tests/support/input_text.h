// Sound input files for tests, to be changed block by block.
#pragma once
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace zelvo {

struct InputText {
  std::vector<std::pair<std::string, std::string>> blocks;  // keyword, records

  // Gives the keyword other records; a new keyword comes last.
  InputText& set(const std::string& keyword, const std::string& records) {
    for (auto& [word, old] : blocks)
      if (word == keyword) return old = records, *this;
    return blocks.emplace_back(keyword, records), *this;
  }
  InputText& erase(const std::string& keyword) {
    std::erase_if(blocks, [&](const auto& block) { return block.first == keyword; });
    return *this;
  }
  std::string text() const {
    std::string all;
    for (const auto& [word, records] : blocks) all += word + "\n" + records + "\n";
    return all + "end\n";
  }
};

// A girder of length inches with plates of one thickness, supported at its ends; one stage.
inline InputText plain_girder(const std::string& length) {
  const std::string all = "1\n" + length + " ";
  return {{{"ngird", "1"},
           {"lgbr", length},
           {"secdim", "60 72 84 12 144 8"},
           {"webthick", all + ".5"},
           {"botfthick", all + "1"},
           {"tfthick", all + "1.5"},
           {"support", "2\n0\n" + length},
           {"studs", all + "12 3"},
           {"pour_seq", "1\n" + all + "\n.1 .001 1\n1"},
           {"buckle", "F 1\n2"}}};
}

inline InputText one_girder_input() {
  return plain_girder("240")
      .set("internal_brace", "2\n72 1 5\n168 2 5")
      .set("top_lateral", "2\n1 0 72 4\n2 72 168 4")
      .set("web_stiffener", "1\n120 6 .75")
      .set("pour_seq", "2\n2\n120\n120\n.1 .001 1\n.1 .001 0\n3600 200 0\n.1 .001 1\n1");
}

inline InputText two_girder_input() {
  return one_girder_input()
      .set("ngird", "2")
      .set("offset", "90")
      .set("secdim", "60 72 84 12 324 8")
      .set("external_brace", "1\n120 1 5");
}

}  // namespace zelvo
