// The program against the stored results of a second implementation: runs each folder's zvinp.txt
// and compares the nine result files number by number and the console line by line.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "cli/program.h"
#include "control/input.h"
#include "results/blocks.h"
#include "support/models.h"

using namespace zelvo;

using Lines = std::vector<std::string>;

static Lines split(const std::string& text) {
  std::istringstream in(text);
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

// Lines with a point hold fixed fields; they agree in length too, so that no column moves.
static void compare(const Lines& e, const Lines& a, double rtol, const std::string& what) {
  ASSERT_EQ(e.size(), a.size()) << what;
  for (std::size_t i = 0; i < e.size(); ++i) {
    const Lines we = words(e[i]), wa = words(a[i]);
    const std::string lines = what + ", line " + std::to_string(i + 1) + "\n" + e[i] + "\n" + a[i];
    ASSERT_EQ(we.size(), wa.size()) << lines;
    if (e[i].find('.') != std::string::npos) {
      ASSERT_EQ(e[i].size(), a[i].size()) << lines;
    }
    for (std::size_t j = 0; j < we.size(); ++j)
      ASSERT_TRUE(agree(we[j], wa[j], rtol)) << we[j] << " " << wa[j] << " in " << lines;
  }
}

// Without blanks, times and dots, reals to six decimals; a blank line behind the dots is left out.
static Lines console_form(const std::string& console) {
  Lines form;
  bool dots = false;
  double value, unit;
  for (std::string line : split(console)) {
    const std::size_t time = line.find(" seconds"), in = line.rfind(" in ");
    if (time != std::string::npos && in != std::string::npos) line.erase(in);
    std::string text;
    for (const std::string& word : words(line))
      text += (is_real(word, value, unit) ? std::to_string(value) : word) + ' ';
    if (dots && text.empty()) continue;
    dots = !text.empty() && text.find_first_not_of(". ") == std::string::npos;
    form.push_back(dots ? "<dots>" : text);
  }
  return form;
}

// A buckled mode as csc0987.txt tells it: factor and plotted positions, section by section.
struct Mode {
  std::string factor;
  std::vector<double> position;
};

static std::vector<Mode> read_modes(const std::string& file) {
  std::vector<Mode> modes;
  double x, y, unit;
  for (const std::string& line : split(file)) {
    const Lines w = words(line);
    if (w.size() == 1 && is_real(w[0], x, unit)) modes.push_back({w[0], {}});
    if (w.size() != 2 || !is_real(w[0], x, unit) || !is_real(w[1], y, unit)) continue;
    modes.back().position.insert(modes.back().position.end(), {x, y});
  }
  return modes;
}

// Factors to 1e-5, shapes up to sign to 1e-3 of their largest displacement.
static void compare_shapes(const std::string& expected, const std::string& actual, const Model& m) {
  const Structure structure = generate_structure(m);
  BucklingResults none;
  none.modes.eigval = Vector<double>(1);
  none.sections = buckled_sections(m, structure, Matrix<double>(NDOF * structure.nodes.nnode, 1));
  std::string undeformed;
  (m.ngird == 1 ? write_shape : write_shape_two)(none, 1, undeformed);
  const std::vector<double> base = read_modes(undeformed)[0].position;
  const std::vector<Mode> e = read_modes(expected), a = read_modes(actual);
  ASSERT_EQ(e.size(), a.size());
  for (std::size_t i = 0; i < e.size(); ++i) {
    EXPECT_TRUE(agree(e[i].factor, a[i].factor, 1e-5)) << e[i].factor << " " << a[i].factor;
    ASSERT_EQ(e[i].position.size(), base.size());
    ASSERT_EQ(a[i].position.size(), base.size());
    double largest = 0, same = 0, turned = 0;
    for (std::size_t j = 0; j < base.size(); ++j) {
      const double de = e[i].position[j] - base[j], da = a[i].position[j] - base[j];
      largest = std::max(largest, std::abs(de));
      same = std::max(same, std::abs(da - de));
      turned = std::max(turned, std::abs(da + de));
    }
    EXPECT_GT(largest, 0.01);  // the reference holds a shape, not the bare section
    EXPECT_LE(std::min(same, turned), 1e-3 * largest + 2e-4) << "mode " << i + 1;
  }
}

class Golden : public testing::TestWithParam<const char*> {};

TEST_P(Golden, RunGivesTheReferenceResults) {
  const std::string folder = ZELVO_SOURCE_DIR "/tests/golden/" + std::string(GetParam()) + "/";
  const std::string text = content_of(folder + "zvinp.txt");
  ProgramRun run;
  run.write_input(text);
  run.start(StandardInput::END_OF_FILE);
  ASSERT_EQ(run.status, 0) << run.err;
  Input input;
  ASSERT_EQ(read_input(text, input), ReadOutcome::COMPLETE);
  const Model& m = input.model;
  for (const char* kind : {"def", "rot", "rxn", "sec", "str", "ibr", "ebr", "axf"}) {
    const std::string file = kind + std::string("0987.txt");
    compare(split(content_of(folder + file)), split(content_of(run.path(file))),
            m.buckle ? 1e-5 : 1e-6, file);
  }
  compare(console_form(content_of(folder + "console.txt")), console_form(run.out), 1e-6, "console");
  compare_shapes(content_of(folder + "csc0987.txt"), content_of(run.path("csc0987.txt")), m);
}

INSTANTIATE_TEST_SUITE_P(Cases, Golden,
                         testing::Values("bare_straight_one", "bare_curved_two",
                                         "braced_curved_one", "braced_straight_two",
                                         "buckling_couple_one", "buckling_two"),
                         [](const auto& i) { return std::string(i.param); });
