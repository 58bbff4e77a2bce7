#include "desk/diff.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "base/failures.h"
#include "base/text.h"
#include "desk/run.h"
#include "exchange/results_json.h"

namespace zelvo {

namespace {

constexpr double SAME = 1e-9;           // shares below it are rounding
constexpr std::size_t MOST_LINES = 60;  // printed; --json has all

std::string text_of(double value) { return formatted("%.9g", value); }

void sort(std::vector<Difference>& differences) {
  std::stable_sort(differences.begin(), differences.end(),
                   [](const Difference& x, const Difference& y) { return x.share > y.share; });
}

// ---- results

// What is compared of a table: every stage's total, or what stands in its place.
struct State {
  std::string name;
  const Values* values;
};
std::vector<State> states_of(const TableView& t) {
  std::vector<State> states;
  for (std::size_t k = 0; k < t.total.size(); ++k)
    states.push_back({", total " + std::to_string(k + 1), &t.total[k]});
  if (!t.single.empty()) states.push_back({"", &t.single});
  if (states.empty()) states = {{", high", &t.envelope.high}, {", low", &t.envelope.low}};
  return states;
}

double largest_magnitude(const TableView& t) {
  double largest = 0;
  for (const State& state : states_of(t))
    for (const auto& series : *state.values)
      for (const double v : series)
        if (std::isfinite(v)) largest = std::max(largest, std::abs(v));
  return largest;
}

using PlaceKey = std::tuple<double, std::string, int>;
PlaceKey key_of(const PlaceView& p) {
  return {std::isnan(p.position) ? 0 : p.position, p.member, p.girder};
}

// Place of b for each of a, or -1.
std::vector<int> match_places(const TableView& a, const TableView& b) {
  std::map<PlaceKey, std::vector<int>> at;  // places alike, as two laterals of a panel, in order
  for (std::size_t p = b.places.size(); p-- > 0;)
    at[key_of(b.places[p])].push_back(static_cast<int>(p));
  std::vector<int> match;
  for (const PlaceView& place : a.places) {
    auto& left = at[key_of(place)];
    match.push_back(left.empty() ? -1 : left.back());
    if (!left.empty()) left.pop_back();
  }
  return match;
}

std::string place_text(const TableView& t, std::size_t s, std::size_t p) {
  const PlaceView& place = t.places[p];
  std::string text = t.series[s].name == t.title ? "" : ", " + t.series[s].name;
  if (place.girder != 0) text += ", girder " + std::to_string(place.girder);
  if (!place.member.empty()) text += ", " + place.member;
  if (std::isfinite(place.position)) text += ", " + text_of(place.position / 12) + " ft";
  return text;
}

std::string value_text(double value, const std::string& unit) {
  if (std::isnan(value)) return "";
  return text_of(value) + (unit == "1" ? "" : " " + unit);
}

// The difference of two values as a share of scale.
double share_between(double x, double y, double scale) {
  if (std::isnan(x) || std::isnan(y)) return std::isnan(x) == std::isnan(y) ? 0 : 1;
  return x == y ? 0 : std::abs(x - y) / scale;
}

// The largest difference of a state of a table.
void compare_state(const TableView& a, const TableView& b, const State& state, const Values& vb,
                   double scale, const std::vector<int>& match, std::vector<Difference>& out) {
  Difference worst;
  const Values& va = *state.values;
  for (std::size_t s = 0; s < std::min(va.size(), vb.size()); ++s)
    for (std::size_t p = 0; p < va[s].size(); ++p) {
      if (match[p] < 0) continue;
      const double x = va[s][p], y = vb[s][static_cast<std::size_t>(match[p])];
      const double share = share_between(x, y, scale);
      if (share <= std::max(worst.share, SAME)) continue;
      worst = {a.name + state.name + place_text(a, s, p), value_text(x, a.series[s].unit),
               value_text(y, b.series[s].unit), share};
    }
  if (worst.share > 0) out.push_back(worst);
}

void compare_table(const TableView& a, const TableView& b, std::vector<Difference>& out) {
  const std::vector<int> match = match_places(a, b);
  const auto missing = std::count(match.begin(), match.end(), -1);
  if (missing > 0 || a.places.size() != b.places.size() || a.series.size() != b.series.size())
    out.push_back({a.name + ": series and places",
                   std::to_string(a.series.size()) + " x " + std::to_string(a.places.size()),
                   std::to_string(b.series.size()) + " x " + std::to_string(b.places.size()), 1});
  const double scale = std::max(largest_magnitude(a), largest_magnitude(b));
  if (scale == 0) return;
  const std::vector<State> sa = states_of(a), sb = states_of(b);
  for (std::size_t k = 0; k < std::min(sa.size(), sb.size()); ++k)
    compare_state(a, b, sa[k], *sb[k].values, scale, match, out);
}

// ---- inputs

struct Item {
  std::string what, text;
  double value;  // nan for a text
};

struct Items {
  std::vector<Item> list;
  void text(const std::string& what, const std::string& value) {
    list.push_back({what, value, NAN});
  }
  void number(const std::string& what, double value) {
    list.push_back({what, text_of(value), value});
  }
  // A table of n rows, column by column.
  template <class T>
  void column(const char* keyword, const char* name, int n, const Vector<T>& values) {
    for (int i = 1; i <= n; ++i)
      number(std::string(keyword) + " row " + std::to_string(i) + " " + name, double(values(i)));
  }
};

void add_scalars(const Model& m, Items& i) {
  const SectionDimensions& d = m.secdim;
  i.text("prname", m.prname);
  i.number("ngird", m.ngird);
  i.number("rcurv", m.rcurv);
  i.number("lgbr", m.lgbr);
  i.number("offset", m.offset);
  i.number("secdim depth", d.depth);
  i.number("secdim bottom flange width", d.bottom_width);
  i.number("secdim web top spacing", d.top_spacing);
  i.number("secdim top flange width", d.flange_width);
  i.number("secdim deck width", d.deck_width);
  i.number("secdim deck thickness", d.deck_thickness);
  i.number("buckle check", m.buckle);
  i.number("buckle load pattern", m.load_pattern);
  i.number("buckle modes", m.nev);
  i.number("solver kind", m.solver_type);
  i.number("solver tolerance", m.tol);
  i.number("solver shift", m.sigma);
}

void add_tables(const Model& m, Items& i) {
  i.column("webthick", "length", m.nweb, m.web_len);
  i.column("webthick", "thickness", m.nweb, m.web_t);
  i.column("botfthick", "length", m.nbotf, m.botf_len);
  i.column("botfthick", "thickness", m.nbotf, m.botf_t);
  i.column("tfthick", "length", m.ntopf, m.topf_len);
  i.column("tfthick", "thickness", m.ntopf, m.topf_t);
  i.column("internal_brace", "position", m.nibrace, m.ib_pos);
  i.column("internal_brace", "type", m.nibrace, m.ib_type);
  i.column("internal_brace", "area", m.nibrace, m.ib_area);
  i.column("external_brace", "position", m.nebrace, m.eb_pos);
  i.column("external_brace", "type", m.nebrace, m.eb_type);
  i.column("external_brace", "area", m.nebrace, m.eb_area);
  i.column("top_lateral", "direction", m.nlat, m.lat_type);
  i.column("top_lateral", "first end", m.nlat, m.lat_from);
  i.column("top_lateral", "second end", m.nlat, m.lat_to);
  i.column("top_lateral", "area", m.nlat, m.lat_area);
  i.column("web_stiffener", "position", m.nstiff, m.ws_pos);
  i.column("web_stiffener", "width", m.nstiff, m.ws_b);
  i.column("web_stiffener", "thickness", m.nstiff, m.ws_t);
  i.column("support", "position", m.nsupp, m.supp_pos);
  i.column("studs", "length", m.nstudrow, m.stud_len);
  i.column("studs", "spacing", m.nstudrow, m.stud_spacing);
  i.column("studs", "count", m.nstudrow, m.stud_count);
}

void add_pours(const Model& m, Items& i) {
  i.column("pour_seq segment", "length", m.npour, m.pour_len);
  for (int k = 1; k <= m.nanal; ++k)
    for (int j = 1; j <= m.npour; ++j) {
      const std::string at =
          "pour_seq stage " + std::to_string(k) + " segment " + std::to_string(j);
      i.number(at + " modulus", m.pour_e(k, j));
      i.number(at + " stud stiffness", m.pour_k(k, j));
      i.number(at + " load", m.pour_load(k, j));
    }
  i.number("pour_seq weight of the steel", m.selfwt);
}

void add_annotations(const Annotations& a, Items& i) {
  i.text("!@ title", a.title);
  for (std::size_t k = 0; k < a.stage_name.size(); ++k) {
    i.text("!@ stage " + std::to_string(k + 1), a.stage_name[k]);
    i.number("!@ load_factor " + std::to_string(k + 1), a.load_factor[k]);
  }
  i.number("!@ bearing_spacing", a.bearing_spacing);
  for (const Limit& limit : a.limits) i.number("!@ limit " + limit.name, limit.value);
}

Items items_of(const Job& job) {
  Items items;
  add_scalars(job.input.model, items);
  add_tables(job.input.model, items);
  add_pours(job.input.model, items);
  add_annotations(job.annotations, items);
  return items;
}

double share_of(const Item& a, const Item& b) {
  if (std::isnan(a.value) || std::isnan(b.value)) return a.text == b.text ? 0 : 1;
  const double larger = std::max(std::abs(a.value), std::abs(b.value));
  return larger == 0 ? 0 : std::abs(a.value - b.value) / larger;
}

// ---- the command

bool is_json(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  char c = 0;
  return file >> c && (c == '{' || c == '[');
}

void print(const std::vector<Difference>& differences) {
  std::string out;
  for (std::size_t i = 0; i < std::min(differences.size(), MOST_LINES); ++i) {
    const Difference& d = differences[i];
    out += formatted("%8.3g%%  ", 100 * d.share) + printable(d.what) + ": " +
           (d.a.empty() ? "-" : printable(d.a)) + " -> " + (d.b.empty() ? "-" : printable(d.b)) +
           "\n";
  }
  if (differences.empty()) out = "no difference\n";
  if (differences.size() > MOST_LINES)
    out += "and " + std::to_string(differences.size() - MOST_LINES) + " smaller ones (--json)\n";
  std::fputs(out.c_str(), stdout);
}

void print_json(const std::vector<Difference>& differences) {
  Json list = Json::array();
  for (const Difference& d : differences)
    list.push_back({{"what", d.what}, {"a", d.a}, {"b", d.b}, {"share", d.share}});
  std::fputs(json_text(list).c_str(), stdout);
}

}  // namespace

std::vector<Difference> compare_results(const ResultsView& a, const ResultsView& b) {
  std::vector<Difference> out;
  if (a.stage_name.size() != b.stage_name.size())
    out.push_back(
        {"stages", std::to_string(a.stage_name.size()), std::to_string(b.stage_name.size()), 1});
  const auto in = [](const ResultsView& v, const std::string& name) {
    return std::find_if(v.tables.begin(), v.tables.end(),
                        [&](const TableView& t) { return t.name == name; });
  };
  for (const TableView& t : a.tables)
    if (const auto other = in(b, t.name); other != b.tables.end())
      compare_table(t, *other, out);
    else
      out.push_back({t.name, "given", "", 1});
  for (const TableView& t : b.tables)
    if (in(a, t.name) == a.tables.end()) out.push_back({t.name, "", "given", 1});
  sort(out);
  return out;
}

std::vector<Difference> compare_inputs(const Job& a, const Job& b) {
  const Items ia = items_of(a), ib = items_of(b);
  std::map<std::string, const Item*> left;
  for (const Item& item : ib.list) left[item.what] = &item;
  std::vector<Difference> out;
  for (const Item& item : ia.list) {
    const auto other = left.find(item.what);
    if (other == left.end()) {
      out.push_back({item.what, item.text, "", 1});
      continue;
    }
    if (const double share = share_of(item, *other->second); share > 0)
      out.push_back({item.what, item.text, other->second->text, share});
    left.erase(other);
  }
  for (const Item& item : ib.list)
    if (left.contains(item.what)) out.push_back({item.what, "", item.text, 1});
  sort(out);
  return out;
}

int diff_command(const std::string& a, const std::string& b, bool json) {
  std::vector<Difference> differences;
  if (is_json(a) != is_json(b)) {
    std::fputs("diff: one file is results, the other an input\n", stderr);
    return EXIT_ERRORS;
  }
  if (is_json(a)) {
    try {
      differences = compare_results(read_results(a), read_results(b));
    } catch (const std::runtime_error& e) {
      std::fprintf(stderr, "diff: %s\n", e.what());
      return EXIT_ERRORS;
    }
  } else {
    const Job ja = read_job(a), jb = read_job(b);
    for (const Job* job : {&ja, &jb})
      if (!job->sound()) {
        print_notes(*job);
        return EXIT_BAD_INPUT;
      }
    differences = compare_inputs(ja, jb);
  }
  if (json)
    print_json(differences);
  else
    print(differences);
  return differences.empty() ? EXIT_CLEAN : EXIT_WARNINGS;
}

}  // namespace zelvo
