// The program against stored reference results: runs each folder's zvinp.txt and compares the nine
// result files number by number and the console line by line.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "control/input.h"
#include "model/nodes.h"
#include "model/pattern.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

static const char* const FILES[] = {"def", "rot", "rxn", "sec", "str", "ibr", "ebr", "axf"};

static Lines read_lines(const fs::path& path) {
  std::ifstream in(path);
  EXPECT_TRUE(in.is_open()) << path;
  Lines lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

static Lines words(const std::string& line) {
  std::istringstream in(line);
  Lines all;
  for (std::string word; in >> word;) all.push_back(word);
  return all;
}

// Value of a word that is a number with a point, and the unit of its last printed digit.
static bool is_real(const std::string& word, double& value, double& unit) {
  const std::size_t point = word.find('.');
  char* end = nullptr;
  value = std::strtod(word.c_str(), &end);
  if (point == std::string::npos || *end != 0) return false;
  unit = std::pow(10.0, -static_cast<double>(word.size() - point - 1));
  return true;
}

// Whether two words agree: texts and integers exactly, reals within one unit of the last printed
// digit or rtol of themselves.
static bool agree(const std::string& e, const std::string& a, double rtol) {
  double ev, av, eunit, aunit;
  if (!is_real(e, ev, eunit) || !is_real(a, av, aunit)) return e == a;
  if (eunit != aunit) return false;
  return std::abs(ev - av) <= std::max(eunit * 1.000001, rtol * std::abs(ev));
}

// Lines of fixed fields hold a point; they agree in length too, so that no column moves.
static void compare_file(const fs::path& expected, const fs::path& actual, double rtol) {
  const Lines e = read_lines(expected), a = read_lines(actual);
  ASSERT_EQ(e.size(), a.size()) << actual;
  for (std::size_t i = 0; i < e.size(); ++i) {
    const Lines we = words(e[i]), wa = words(a[i]);
    bool same = we.size() == wa.size();
    if (e[i].find('.') != std::string::npos) same = same && e[i].size() == a[i].size();
    for (std::size_t j = 0; same && j < we.size(); ++j) same = agree(we[j], wa[j], rtol);
    ASSERT_TRUE(same) << actual << ", line " << i + 1 << "\n" << e[i] << "\n" << a[i];
  }
}

// Without blanks, times and dots; a blank line behind the dots is left out.
static Lines console_form(const fs::path& path) {
  Lines form;
  bool dots = false;
  for (std::string line : read_lines(path)) {
    const std::size_t time = line.find(" seconds"), in = line.rfind(" in ");
    if (time != std::string::npos && in != std::string::npos) line.erase(in);
    std::string text;
    for (const std::string& word : words(line)) text += word + ' ';
    if (dots && text.empty()) continue;
    dots = !text.empty() && text.find_first_not_of(". ") == std::string::npos;
    form.push_back(dots ? "<dots>" : text);
  }
  return form;
}

static void compare_console(const fs::path& expected, const fs::path& actual) {
  const Lines e = console_form(expected), a = console_form(actual);
  for (std::size_t i = 0; i < std::min(e.size(), a.size()); ++i) {
    const Lines we = words(e[i]), wa = words(a[i]);
    bool same = we.size() == wa.size();
    for (std::size_t j = 0; same && j < we.size(); ++j) {
      double ev, av, unit;
      same = is_real(we[j], ev, unit) && is_real(wa[j], av, unit)
                 ? std::abs(ev - av) <= 1e-6 * std::abs(ev)
                 : we[j] == wa[j];
    }
    ASSERT_TRUE(same) << "console line " << i + 1 << "\n" << e[i] << "\n" << a[i];
  }
  EXPECT_EQ(e.size(), a.size());
}

// A buckled mode as csc0987.txt tells it: factor and plotted positions, section by section.
struct Mode {
  std::string factor;
  std::vector<double> position;
};

static std::vector<Mode> read_modes(const fs::path& path) {
  std::vector<Mode> modes;
  double x, y, unit;
  for (const std::string& line : read_lines(path)) {
    const Lines w = words(line);
    if (w.size() == 1 && is_real(w[0], x, unit)) modes.push_back({w[0], {}});
    if (w.size() != 2 || !is_real(w[0], x, unit) || !is_real(w[1], y, unit)) continue;
    modes.back().position.insert(modes.back().position.end(), {x, y});
  }
  return modes;
}

// Positions of the undeformed section in the order and axes of csc0987.txt.
static std::vector<double> undeformed_section(const Model& model) {
  const SectionPattern& p = section_pattern(model.ngird);
  Nodes nodes;
  model.ngird == 2 ? generate_nodes_two(model, nodes) : generate_nodes_one(model, nodes);
  std::vector<double> section;
  for (int g = 0; g < p.girders; ++g)
    for (int n = p.girder[g].first; n < p.girder[g].first + GirderPattern::NODES; ++n)
      section.insert(section.end(),
                     {nodes.xyz(1, n) - nodes.xyz(1, p.shape_reference), nodes.xyz(2, n)});
  return section;
}

// Factors to 1e-5, shapes up to sign to 1e-3 of their largest displacement.
static void compare_shapes(const fs::path& expected, const fs::path& actual, const Model& model) {
  const std::vector<Mode> e = read_modes(expected), a = read_modes(actual);
  const std::vector<double> base = undeformed_section(model);
  ASSERT_EQ(e.size(), a.size());
  for (std::size_t m = 0; m < e.size(); ++m) {
    EXPECT_TRUE(agree(e[m].factor, a[m].factor, 1e-5)) << e[m].factor << " " << a[m].factor;
    const std::size_t n = e[m].position.size();
    ASSERT_EQ(n, a[m].position.size());
    ASSERT_EQ(n % base.size(), 0u);
    double largest = 0, same = 0, turned = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const double de = e[m].position[i] - base[i % base.size()];
      const double da = a[m].position[i] - base[i % base.size()];
      largest = std::max(largest, std::abs(de));
      same = std::max(same, std::abs(da - de));
      turned = std::max(turned, std::abs(da + de));
    }
    EXPECT_GT(largest, 0.01);  // the reference holds a shape, not the bare section
    EXPECT_LE(std::min(same, turned), 1e-3 * largest + 2e-4) << "mode " << m + 1;
  }
}

class Golden : public testing::TestWithParam<const char*> {};

TEST_P(Golden, RunGivesTheReferenceResults) {
  const fs::path expected = fs::path(ZELVO_SOURCE_DIR) / "tests/golden" / GetParam();
  const fs::path run = fs::temp_directory_path() /
                       ("zelvo_golden_" + std::string(GetParam()) + "_" + std::to_string(getpid()));
  fs::create_directories(run);
  fs::copy_file(expected / "zvinp.txt", run / "zvinp.txt", fs::copy_options::overwrite_existing);
  const std::string command =
      "cd '" + run.string() + "' && '" ZELVO_PROGRAM "' > console.txt < /dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0);
  std::ifstream text(run / "zvinp.txt");
  Input input;
  ASSERT_EQ(read_input({std::istreambuf_iterator<char>(text), {}}, input), ReadOutcome::COMPLETE);
  const Model& model = input.model;

  for (const char* name : FILES) {
    const std::string file = std::string(name) + "0987.txt";
    compare_file(expected / file, run / file, model.buckle ? 1e-5 : 1e-6);
  }
  compare_console(expected / "console.txt", run / "console.txt");
  compare_shapes(expected / "csc0987.txt", run / "csc0987.txt", model);
  fs::remove_all(run);
}

INSTANTIATE_TEST_SUITE_P(Cases, Golden,
                         testing::Values("bare_straight_one", "bare_curved_two",
                                         "braced_curved_one", "braced_straight_two",
                                         "buckling_couple_one", "buckling_two"),
                         [](const auto& i) { return std::string(i.param); });
