// Sound input files for tests, to be changed block by block.
#pragma once
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

struct InputText {
  std::vector<std::pair<std::string, std::string>> blocks;  // keyword, records

  // Gives the keyword other records; a new keyword comes last.
  InputText& set(const std::string& keyword, const std::string& records) {
    for (auto& [word, old] : blocks)
      if (word == keyword) return old = records, *this;
    blocks.emplace_back(keyword, records);
    return *this;
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
  // Line of row r behind the keyword, 0 for the keyword itself; every row is one line.
  int line(const std::string& keyword, int r = 0) const {
    int n = 1;
    for (const auto& [word, records] : blocks) {
      if (word == keyword) return n + r;
      n += 2 + static_cast<int>(std::count(records.begin(), records.end(), '\n'));
    }
    return n + r;  // the keyword end
  }
};

inline InputText one_girder_input() {
  return {{{"prname", "'a short girder'"},
           {"ngird", "1"},
           {"lgbr", "240"},
           {"secdim", "60 72 84 12 144 8"},
           {"webthick", "2\n96 0.5\n144 0.625"},
           {"botfthick", "1\n240 1"},
           {"tfthick", "1\n240 1.5"},
           {"internal_brace", "2\n72 1 5\n168 1 5"},
           {"top_lateral", "2\n1 0 72 4\n2 72 168 4"},
           {"web_stiffener", "1\n120 6 0.75"},
           {"support", "2\n0\n240"},
           {"studs", "1\n240 12 3"},
           {"pour_seq", "2\n2\n120\n120\n.1 .001 1\n.1 .001 0\n3600 200 0\n.1 .001 1\n1"},
           {"buckle", "F 1\n2"}}};
}

inline InputText two_girder_input() {
  return one_girder_input()
      .set("ngird", "2")
      .set("offset", "90")
      .set("secdim", "60 72 84 12 324 8")
      .set("external_brace", "1\n120 1 5");
}
